"""Checks the installed files: test_installed.py PREFIX SOURCE VERSION TESTS…"""

import configparser
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

PREFIX = SOURCE = pathlib.Path()
VERSION = ""
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
METAINFO = "share/metainfo/local.varnholt.tobrimax.metainfo.xml"


def releases():
    """Version and date of each release, as CHANGELOG.md has them."""
    text = (SOURCE / "CHANGELOG.md").read_text(encoding="utf-8")
    return re.findall(r"^## \[(.*)\] - (.*)$", text, re.MULTILINE)


class Installed(unittest.TestCase):
    def test_every_file_is_at_its_place(self):
        wanted = {"bin/tobrimax", "bin/tobrimax-cli", "libexec/tobrimax/tobrimax-svg", "share/applications/tobrimax.desktop", METAINFO,
                  "share/icons/hicolor/scalable/apps/tobrimax.svg"}
        wanted |= {f"share/icons/hicolor/{size}x{size}/apps/tobrimax.png" for size in SIZES}
        wanted |= {f"share/doc/tobrimax/{name}" for name in ("README.md", "CHANGELOG.md", "copyright")}
        wanted |= {f"share/doc/tobrimax/docs/{path.name}" for path in (SOURCE / "docs").glob("*.md")}
        self.assertIn("share/doc/tobrimax/docs/guide.md", wanted)
        wanted |= {f"lib/cmake/Tobrimax/Tobrimax{name}.cmake" for name in ("Config", "ConfigVersion", "Icons", "Programs")}
        wanted |= {"share/man/man1/tobrimax-cli.1", "share/bash-completion/completions/tobrimax-cli",
                   "share/fish/vendor_completions.d/tobrimax-cli.fish", "share/zsh/site-functions/_tobrimax-cli"}
        found = {str(path.relative_to(PREFIX)) for path in PREFIX.rglob("*") if not path.is_dir()}
        # This file's name has the kind of build in it.
        found = {name for name in found if not re.fullmatch(r"lib/cmake/Tobrimax/TobrimaxPrograms-\w+\.cmake", name)}
        self.assertEqual(found, wanted)

    def test_the_version_is_the_same_everywhere(self):
        said = subprocess.run([PREFIX / "bin/tobrimax-cli", "--version"], capture_output=True, text=True, check=True)
        self.assertEqual(said.stdout, f"tobrimax-cli {VERSION}\n")
        self.assertEqual(releases()[0][0], VERSION)

    def test_an_svg_picture_is_drawn_by_the_installed_worker(self):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name in "bin/tobrimax-cli", "libexec/tobrimax/tobrimax-svg":
                (root / name).parent.mkdir(parents=True)
                shutil.copy(PREFIX / name, root / name)
            command = [root / "bin/tobrimax-cli", "export", SOURCE / "resources/sample/tobrimax-sample.svg", "--format", "png",
                       "--size", "16x16", "--out", root / "picture.png"]
            subprocess.run(command, capture_output=True, check=True)
            self.assertEqual((root / "picture.png").read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
            (root / "libexec/tobrimax/tobrimax-svg").unlink()
            told = subprocess.run(command, capture_output=True, text=True, check=False)
            self.assertEqual(told.returncode, 1)
            self.assertRegex(told.stderr, r"^tobrimax-cli: error: \S+: the SVG document can't be drawn, since the program "
                                          r"\S+/libexec/tobrimax/tobrimax-svg can't be started \(No such file or directory\)\n$")

    def test_the_changes_are_told_newest_first_with_their_dates(self):
        versions = [[int(part) for part in version.split(".")] for version, _ in releases()]
        self.assertEqual(versions, sorted(versions, reverse=True))
        self.assertGreaterEqual(len(versions), 2)
        for _, date in releases():
            self.assertRegex(date, r"^\d{4}-\d\d-\d\d$")
        headings = re.findall(r"^#{2,}.*$", (SOURCE / "CHANGELOG.md").read_text(encoding="utf-8"), re.MULTILINE)
        for heading in headings:
            self.assertRegex(heading, r"^(## \[[\d.]+\] - [\d-]+|### (Added|Changed|Deprecated|Removed|Fixed|Security))$")

    def test_the_icon_has_every_size(self):
        for size in SIZES:
            icon = (PREFIX / f"share/icons/hicolor/{size}x{size}/apps/tobrimax.png").read_bytes()
            self.assertEqual(icon[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual((int.from_bytes(icon[16:20], "big"), int.from_bytes(icon[20:24], "big")), (size, size))
        drawing = (PREFIX / "share/icons/hicolor/scalable/apps/tobrimax.svg").read_bytes()
        self.assertEqual(drawing, (SOURCE / "resources/sample/tobrimax-sample.svg").read_bytes())

    def test_the_desktop_entry_starts_what_is_there(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read(PREFIX / "share/applications/tobrimax.desktop", encoding="utf-8")
        entry = entry["Desktop Entry"]
        # The application takes no arguments.
        self.assertTrue((PREFIX / "bin" / entry["Exec"]).is_file())
        self.assertNotIn("MimeType", entry)
        self.assertTrue((PREFIX / f"share/icons/hicolor/48x48/apps/{entry['Icon']}.png").is_file())
        # A desktop finds the entry of a window by this name.
        self.assertIn('setDesktopFileName(QStringLiteral("tobrimax"))',
                      (SOURCE / "shell/ApplicationMain.cpp").read_text(encoding="utf-8"))

    def test_software_centres_are_told_what_is_there(self):
        root = xml.etree.ElementTree.parse(PREFIX / METAINFO).getroot()
        self.assertEqual(root.findtext("id") + ".metainfo.xml", pathlib.Path(METAINFO).name)
        self.assertTrue((PREFIX / "share/applications" / root.findtext("launchable")).is_file())
        for program in root.findall("provides/binary"):
            self.assertTrue((PREFIX / "bin" / program.text).is_file(), program.text)
        self.assertEqual([(each.get("version"), each.get("date")) for each in root.findall("releases/release")], releases())

    def test_the_licence_is_told_in_full(self):
        told = (PREFIX / "share/doc/tobrimax/copyright").read_text(encoding="utf-8")
        licence = (SOURCE / "LICENSE").read_text(encoding="utf-8")
        for line in licence.splitlines()[4:]:
            self.assertIn(f"\n {line or '.'}\n", told)
        self.assertIn("\nCopyright: " + re.search(r"^Copyright \(c\) (.*)$", licence, re.MULTILINE)[1] + "\n", told)


if __name__ == "__main__":
    PREFIX, SOURCE = (pathlib.Path(word) for word in sys.argv[1:3])
    VERSION = sys.argv[3]
    del sys.argv[1:4]
    unittest.main()
