"""Completions of tobrimax-cli in a real shell: what is offered is what the parser takes.

    test_completions.py SHELL PROGRAM OPTION_TABLE CMAKE BUILD_FOLDER

installs what BUILD_FOLDER installs for shells, below /usr in a temporary folder, and asks SHELL: bash, zsh or fish. Ends
with status 77 where the shell is not installed.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import shells

FOLDERS = {"icons", "two words"}
FILES = {"mac", "logo.svg", "a picture.png"}
# The values that are files or folders, by the word that the help has for them.
PATHS = {"DIR": FOLDERS, **dict.fromkeys(("FILE", "FILE.icns", "PICTURE", "PICTURE:PX", "NAME|FILE"), FOLDERS | FILES)}

shell_class = program = option_table = cmake = build_folder = None


class CompletionTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.table = json.loads(subprocess.run([option_table], capture_output=True, check=True).stdout)
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        root, work, home = (pathlib.Path(cls.folder.name, name) for name in ("root", "work", "home"))
        home.mkdir()
        for folder in FOLDERS:
            (work / folder).mkdir(parents=True)
        for file in FILES:
            (work / file).touch()
        subprocess.run([cmake, "--install", build_folder, "--prefix", "/usr"], env={**os.environ, "DESTDIR": str(root)},
                       stdout=subprocess.DEVNULL, check=True)
        cls.shell = shell_class(pathlib.Path(program).resolve().parent, root / "usr/share", work, home)
        cls.addClassCleanup(cls.shell.end)

    def offered(self, fixed, partial=""):
        words = [word.rstrip("/") for word in self.shell.candidates(f"tobrimax-cli {fixed}", partial)]
        self.assertEqual(len(words), len(set(words)), f"each once behind '{fixed}{partial}'")
        return set(words)

    def expect(self, words, fixed, partial=""):
        """All of `words` that begin with `partial` are offered behind `fixed`, and nothing else."""
        wanted = {word for word in words if word.startswith(partial)}
        self.assertEqual(self.offered(fixed, partial), wanted, f"behind '{fixed}{partial}'")

    def commands(self):
        """Each command with its words, and a space behind them."""
        for command in self.table:
            yield command, (command["command"] + " ").lstrip()

    def options_with_values(self):
        """Each of them, with its command and each of its names in all ways to write them."""
        for command, words in self.commands():
            for option in command["options"]:
                if option["value"]:
                    for name in option["names"]:
                        for between in " =" if name.startswith("--") else " ":
                            yield option, f"{words}{name}{between}"

    def test_commands(self):
        for command, words in self.commands():
            if command["subcommands"]:
                found = {word for word in self.offered(words) if not word.startswith("-")}
                self.assertEqual(found, set(command["subcommands"]))
                self.expect(command["subcommands"], words, command["subcommands"][0][:2])

    def test_options(self):
        for command, words in self.commands():
            self.expect([name for option in command["options"] for name in option["names"]], words, "--")

    def test_words_that_an_option_takes(self):
        count = 0
        for option, fixed in self.options_with_values():
            if option["choices"]:
                count += 1
                words = {*option["choices"], *PATHS.get(option["value"], ())}
                self.expect(words, fixed)
                self.expect(words, fixed, option["choices"][0][:2])
        self.assertEqual(count, 16, "--platform, -p, --layout, -l, --compress and --format, and --fit of three commands")

    def test_files_and_folders_that_an_option_takes(self):
        for option, fixed in self.options_with_values():
            if not option["choices"]:
                self.expect(PATHS.get(option["value"], set()), fixed)
                self.expect(PATHS.get(option["value"], set()), fixed, "i")

    def test_an_option_that_may_be_repeated(self):
        for option, fixed in self.options_with_values():
            if option["isRepeatable"]:
                name = option["names"][-1]
                words = {*option["choices"], *PATHS.get(option["value"], ())}
                value = min(words, key=lambda word: (" " in word, word))
                self.expect(words, f"{fixed}{value} {name} ")
                self.expect([name], f"{fixed}{value} ", name)

    def test_operands(self):
        for command, words in self.commands():
            operands = FOLDERS | FILES | set(command["operandChoices"])
            for count in range(len(command["operands"])):
                given = words + "x.icns " * count
                self.expect(operands, given)
                self.expect(operands, given, "l")
            if command["operands"]:
                self.expect(operands, words + "-- ")
                given = words + "x.icns " * (len(command["operands"]) + 1)
                offered = FOLDERS | FILES if command["isLastOperandRepeatable"] else set()
                self.assertEqual(self.offered(given) & (FOLDERS | FILES), offered, f"behind '{given}'")

    def test_operands_behind_options(self):
        for option, fixed in self.options_with_values():
            self.expect(FOLDERS | FILES, fixed + "x ")
        for command, words in self.commands():
            for option in command["options"] if command["operands"] else []:
                if not option["value"] and "--help" not in option["names"]:
                    self.expect(FOLDERS | FILES | set(command["operandChoices"]), f"{words}{option['names'][-1]} ")


if __name__ == "__main__":
    shell_class = shells.SHELLS[sys.argv.pop(1)]
    program, option_table, cmake, build_folder = sys.argv[1:5]
    del sys.argv[1:5]
    if not shells.is_installed(shell_class):
        print(f"{shell_class.name} is not installed, or bash-completion is not")
        sys.exit(77)
    unittest.main()
