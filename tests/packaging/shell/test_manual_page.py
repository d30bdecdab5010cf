"""The manual page of tobrimax-cli: it has what the parser takes, and its form is right.

    test_manual_page.py PAGE OPTION_TABLE [TEST]
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

page = option_table = None


def written(option, separator):
    """An option as the page writes it: "Fl h , -help" or "Fl -out Ar DIR"."""
    names = f" {separator} ".join(name[1:] for name in option["names"])
    return f"Fl {names}" + (f" Ar {option['value']}" if option["value"] else "")


class ManualPageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.table = json.loads(subprocess.run([option_table], capture_output=True, check=True).stdout)
        cls.text = pathlib.Path(page).read_text(encoding="utf-8")
        # The subsections have the names of commands; what stands before them is of the program itself.
        parts = re.split(r"^\.Ss (.*)\n", cls.section("DESCRIPTION"), flags=re.MULTILINE)
        cls.descriptions = {"": parts[0], **dict(zip(parts[1::2], parts[2::2]))}

    @classmethod
    def section(cls, name):
        return re.search(rf"^\.Sh {name}\n(.*?)(?=^\.Sh |\Z)", cls.text, re.DOTALL | re.MULTILINE)[1]

    def working_commands(self):
        """Those that do something, and the program itself."""
        return [command for command in self.table if not command["subcommands"] or not command["command"]]

    def test_synopsis(self):
        wanted = []
        for command in [*self.working_commands()[1:], self.table[0]]:
            words = command["command"]
            lines = [f".Cm {words}"] if words else []
            for option in command["options"]:
                if words and "--help" in option["names"]:
                    continue
                text = written(option, "|")
                lines.append(f".{text}" if option["isRequired"] else f".Op {text}")
            kind = ".Ar" if command["areOperandsRequired"] else ".Op Ar"
            lines += [f"{kind} {operand}" for operand in command["operands"]]
            lines[-1] += " ..." if command["isLastOperandRepeatable"] else ""
            wanted.append("\n".join(lines))
        found = [lines.strip() for lines in self.section("SYNOPSIS").split(".Nm\n")]
        self.assertEqual(found, ["", *wanted])

    def test_commands(self):
        self.assertEqual(list(self.descriptions), [command["command"] for command in self.working_commands()])

    def test_options(self):
        for command in self.working_commands():
            found = re.findall(r"^\.It (.*)", self.descriptions[command["command"]], re.MULTILINE)
            self.assertEqual(sorted(found), sorted(written(option, ",") for option in command["options"]), command["command"])

    def test_words_that_an_option_takes(self):
        count = 0
        for command in self.working_commands():
            for option in command["options"]:
                if option["choices"]:
                    count += 1
                    item = self.descriptions[command["command"]].split(f".It {written(option, ',')}\n")[1]
                    item = re.split(r"^\.(?:It|El)", item, flags=re.MULTILINE)[0]
                    self.assertEqual(re.findall(r"^\.Cm (\S+)", item, re.MULTILINE), option["choices"])
        self.assertEqual(count, 7, "--platform, --layout, --compress and --format, and --fit of three commands")

    @unittest.skipUnless(shutil.which("mandoc"), "mandoc is not installed")
    def test_form_by_mandoc(self):
        checked = subprocess.run(["mandoc", "-T", "lint", "-W", "style", page], capture_output=True, text=True, check=False)
        self.assertEqual((checked.returncode, checked.stdout + checked.stderr), (0, ""))

    @unittest.skipUnless(shutil.which("groff"), "groff is not installed")
    def test_form_by_groff(self):
        checked = subprocess.run(["groff", "-mandoc", "-Tutf8", "-ww", page], capture_output=True, text=True, check=True)
        self.assertEqual(checked.stderr, "")


if __name__ == "__main__":
    page, option_table = sys.argv[1:3]
    del sys.argv[1:3]
    unittest.main()
