"""Runs the commands in the documents, each section in a folder of its own:
test_commands.py TOBRIMAX_CLI EXAMPLES PROJECT DOCUMENT
EXAMPLES is the folder with the programs of docs/examples."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from PIL import Image, ImageDraw

from documents import Document

PROGRAM = EXAMPLES = PROJECT = DOCUMENT = ""
COMMANDS = ("sh", "console")
# What is shown and not run. A block without a language could be anything.
OTHERS = ("text", "toml", "cmake", "cpp", "xml", "html", "json", "yaml", "js")


def disc(size, color, ground=(0, 0, 0, 0)):
    picture = Image.new("RGBA", size, ground)
    ImageDraw.Draw(picture).ellipse((8, 8, size[0] - 9, size[1] - 9), color)
    return picture


class Commands(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.root = pathlib.Path(temporary.name)
        self.environment = {"PATH": f"{pathlib.Path(PROGRAM).parent}:{EXAMPLES}:{os.environ['PATH']}",
                            "HOME": str(self.root), "SHELL": shutil.which("bash"), "LC_ALL": "C.UTF-8"}
        # A sanitizer's build reads these.
        self.environment |= {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}

    def scratch(self, name):
        """A folder with the pictures and projects that the documents speak of."""
        folder, pattern = self.root / name, self.root / "pattern"
        if not pattern.exists():
            self.fill(pattern)
        shutil.copytree(pattern, folder)
        return folder

    def fill(self, folder):
        samples = pathlib.Path(PROJECT) / "resources" / "sample"
        for path in ("pictures", "My App", "my_app/web", "my-app/src-tauri", "App/Assets.xcassets", "app/src/main", "public"):
            (folder / path).mkdir(parents=True)
        shutil.copy(samples / "tobrimax-sample.svg", folder / "logo.svg")
        shutil.copy(samples / "tobrimax-sample.png", folder / "logo.png")
        disc((2048, 1280), "teal").save(folder / "wide.png")
        for name in ("mark", "dark"):
            (folder / f"{name}.svg").write_text('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">'
                                                '<circle cx="32" cy="32" r="20" fill="#17657a"/></svg>\n')
        subprocess.run([PROGRAM, "icns", "make", folder / "logo.svg", "--out", folder / "logo.icns"], check=True,
                       stdout=subprocess.DEVNULL, env=self.environment)
        for color in ("red", "green"):
            disc((256, 256), color).save(folder / "pictures" / f"{color}.png")
        (folder / "my_app" / "pubspec.yaml").write_text("name: my_app\n")
        (folder / "my-app" / "src-tauri" / "tauri.conf.json").write_text('{ "bundle": { "active": true } }\n')
        (folder / "app" / "src" / "main" / "AndroidManifest.xml").write_text(
            '<manifest xmlns:android="http://schemas.android.com/apk/res/android">\n    <application/>\n</manifest>\n')

    def bash(self, lines, folder):
        return subprocess.run(["bash", "-ec", "set -o pipefail\n" + lines], cwd=folder, env=self.environment, timeout=250,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def run_shell(self, block, folder):
        done = self.bash(block.text, folder)
        self.assertEqual(done.returncode, 0, f"{block}: {done.stdout.decode()}")

    def run_console(self, block, folder):
        """Each command prints what the block shows."""
        first, *steps = re.split(r"^\$ ", block.text, flags=re.MULTILINE)
        self.assertEqual(first, "", f"{block} does not begin with a command")
        for step in steps:
            lines = step.splitlines()
            # A command goes on where its line ends with a backslash.
            end = next(i for i, line in enumerate(lines) if not line.endswith("\\")) + 1
            done = self.bash("\n".join(lines[:end]), folder)
            printed = done.stdout.decode()
            pattern = "".join("(?:.*\n)*?" if line == "…" else re.escape(line).replace("…", ".*?") + "\n"
                              for line in lines[end:])
            self.assertRegex(printed, rf"\A{pattern}\Z", f"{block}: {lines[0]}")

    def test_every_command_does_what_the_document_says(self):
        document = Document(DOCUMENT)
        folders, ran = {}, 0
        for block in document.blocks:
            with self.subTest(str(block)):
                self.assertIn(block.language, COMMANDS + OTHERS, f"{block}: name the language behind ```")
                isCommand = block.language in COMMANDS
                self.assertFalse("not-run" in block.marks and not isCommand, f"{block} is not run in any case")
                if "not-run" in block.marks or not isCommand and "file" not in block.marks:
                    continue
                if block.section not in folders:
                    folders[block.section] = self.scratch(str(len(folders)))
                folder = folders[block.section]
                if "file" in block.marks:
                    (folder / block.marks["file"]).write_text(block.text, encoding="utf-8")
                elif block.language == "sh":
                    self.run_shell(block, folder)
                else:
                    self.run_console(block, folder)
                ran += 1
        # A document without commands has no case of its own in CMakeLists.txt.
        self.assertGreater(ran, 0)


if __name__ == "__main__":
    PROGRAM, EXAMPLES, PROJECT, DOCUMENT = sys.argv[1:5]
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
