"""Builds CMake projects that use an installed Tobrimax: test_example.py PREFIX EXAMPLE CMAKE GENERATOR TESTS…"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PREFIX = EXAMPLE = CMAKE = GENERATOR = ""


class Example(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory(prefix="tobrimax example ")
        self.addCleanup(temporary.cleanup)
        self.source = pathlib.Path(temporary.name) / "source"
        self.build = pathlib.Path(temporary.name) / "build"
        shutil.copytree(EXAMPLE, self.source)
        self.picture = self.source / "logo.svg"

    def configure(self, lines=None, prefix=None):
        if lines is not None:
            head = "cmake_minimum_required(VERSION 3.18)\nproject(Example LANGUAGES NONE)\n"
            (self.source / "CMakeLists.txt").write_text(f"{head}find_package(Tobrimax REQUIRED)\n{lines}")
        command = [CMAKE, "-G", GENERATOR, "-S", self.source, "-B", self.build, f"-DCMAKE_PREFIX_PATH={prefix or PREFIX}"]
        return subprocess.run(command, capture_output=True, text=True)

    def configured(self, lines=None, prefix=None):
        done = self.configure(lines, prefix)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def built(self, *options):
        done = subprocess.run([CMAKE, "--build", self.build, *options], capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return done.stdout

    def icons(self, folder):
        """The files below a folder: name to bytes and time of writing."""
        return {str(path.relative_to(self.build / folder)): (path.read_bytes(), path.stat().st_mtime_ns)
                for path in (self.build / folder).rglob("*") if path.is_file()}

    def assert_made_again(self, before, after):
        self.assertEqual(before.keys(), after.keys())
        for name, (_, time) in before.items():
            self.assertGreater(after[name][1], time, name)

    def test_icons_are_made_while_building(self):
        self.configured()
        self.assertIn("Making the app icons of logo.svg", self.built())
        phones = self.icons("phone_icons")
        self.assertEqual({name.partition("/")[0] for name in phones}, {"iphone", "android"})
        self.assertEqual(len(phones), 9 + 7)
        desktops = self.icons("icons/desktop")
        self.assertEqual({name.partition("/")[0] for name in desktops}, {"mac"})
        self.assertIn("mac/Application.icns", desktops)
        self.assertEqual(len(desktops), 10 + 1)
        site = self.icons("site_icons")
        self.assertLessEqual({"favicon.ico", "icon.svg", "apple-touch-icon.png", "manifest.webmanifest"}, site.keys())
        self.assertIn(b'"name": "Example"', site["manifest.webmanifest"][0])
        # The program makes the same icons from the same arguments.
        out = self.build / "by hand"
        subprocess.run([f"{PREFIX}/bin/tobrimax-cli", "generate", self.picture, "--out", out, "--platform", "mac", "--quiet",
                        "--round-corner", "0.22", "--border", "0.03", "--border-color", "#0d4255"], check=True)
        for name, (content, _) in desktops.items():
            self.assertEqual((out / name).read_bytes(), content, name)

    def test_the_lines_in_the_documents_make_icons(self):
        project = pathlib.Path(EXAMPLE).parents[1]
        found = 0
        for document in ("README.md", "docs/guide.md"):
            text = (project / document).read_text(encoding="utf-8")
            for lines in re.findall(r"```cmake\n(.*?)```", text, re.DOTALL):
                self.configured(lines)
                self.built()
                self.assertEqual({name.partition("/")[0] for name in self.icons("app_icons")}, {"iphone", "mac"})
                if "site_icons" in lines:
                    self.assertIn("favicon.ico", self.icons("site_icons"))
                found += 1
        self.assertGreater(found, 0)

    def test_nothing_is_made_where_nothing_changed(self):
        self.configured()
        self.built()
        before = self.icons("phone_icons"), self.icons("icons/desktop")
        self.assertNotIn("Making", self.built())
        self.configured()
        self.assertNotIn("Making", self.built())
        self.assertEqual((self.icons("phone_icons"), self.icons("icons/desktop")), before)

    def test_a_picture_that_was_touched_makes_them_again(self):
        self.configured()
        self.built()
        before = self.icons("phone_icons")
        os.utime(self.picture)
        self.built()
        self.assert_made_again(before, self.icons("phone_icons"))

    def test_a_changed_picture_gives_other_icons(self):
        self.configured()
        self.built()
        before = self.icons("phone_icons")
        self.picture.write_text(self.picture.read_text().replace("#17657a", "#a01020"))
        self.built()
        after = self.icons("phone_icons")
        for name, (content, _) in before.items():
            self.assertNotEqual(after[name][0], content, name)

    def test_a_changed_catalogue_makes_them_again(self):
        catalogue = self.source / "sizes.plist"

        def sizes(side):
            values = f"<key>Name</key><string>a</string><key>Dimensions</key><string>{{{side}, {side}}}</string>"
            platform = f"<dict><key>a</key><dict>{values}</dict></dict>"
            catalogue.write_text(f'<plist version="1.0"><array>{5 * platform}</array></plist>')

        sizes(20)
        self.configured("tobrimax_add_icons(icons PICTURE logo.svg PLATFORM watch CATALOGUE sizes.plist)\n")
        self.built()
        (name, before), = self.icons("icons").items()
        self.assertEqual(int.from_bytes(before[0][16:20], "big"), 20)
        self.assertNotIn("Making", self.built())
        sizes(21)
        self.built()
        self.assertEqual(int.from_bytes(self.icons("icons")[name][0][16:20], "big"), 21)

    def test_a_changed_layout_makes_them_again(self):
        layout = self.source / "own.toml"
        layout.write_text("[[file]]\npath = 'a.png'\nsize = 16\n")
        self.configured("tobrimax_add_icons(icons PICTURE logo.svg LAYOUT own.toml)")
        self.built()
        self.assertEqual(self.icons("icons").keys(), {"a.png"})
        layout.write_text("[[file]]\npath = 'b.png'\nsize = 16\n")
        self.built()
        self.assertEqual(self.icons("icons").keys(), {"a.png", "b.png"})

    def test_changed_arguments_make_them_again(self):
        self.configured("tobrimax_add_icons(icons PICTURE logo.svg PLATFORM watch)\n")
        self.built()
        before = self.icons("icons")
        self.configured("tobrimax_add_icons(icons PICTURE logo.svg PLATFORM watch ROUND_CORNER 0.5)\n")
        self.built()
        self.assert_made_again(before, self.icons("icons"))

    def test_another_program_makes_them_again(self):
        copy = self.build.parent / "copy"
        shutil.copytree(PREFIX, copy)
        self.configured(prefix=copy)
        self.built()
        before = self.icons("phone_icons")
        os.utime(copy / "bin" / "tobrimax-cli")
        self.built()
        self.assert_made_again(before, self.icons("phone_icons"))

    def test_a_picture_made_by_another_command_is_waited_for(self):
        self.configured("""
            set(picture ${CMAKE_CURRENT_BINARY_DIR}/made.svg)
            set(original ${CMAKE_CURRENT_SOURCE_DIR}/logo.svg)
            add_custom_command(OUTPUT ${picture} COMMAND ${CMAKE_COMMAND} -E copy ${original} ${picture} DEPENDS ${original})
            tobrimax_add_icons(icons PICTURE ${picture} PLATFORM watch)
        """)
        self.built()
        before = self.icons("icons")
        self.assertEqual(len(before), 17)
        os.utime(self.picture)
        self.built()
        self.assert_made_again(before, self.icons("icons"))

    def test_odd_names_reach_the_program_as_they_are(self):
        shutil.copy(self.picture, self.source / "-a logo@2x (x) & 'é'.svg")
        self.configured("tobrimax_add_icons(icons PICTURE \"-a logo@2x (x) & 'é'.svg\" OUTPUT \"o o@1x@\" PLATFORM watch)")
        self.built()
        self.assertEqual(len(self.icons("o o@1x@")), 17)

    def test_cleaning_takes_the_icons_away(self):
        self.configured()
        self.built()
        self.built("--target", "clean")
        self.assertEqual(self.icons("phone_icons"), {})
        # A chosen folder may hold other files, so it stays.
        self.assertEqual(len(self.icons("icons/desktop")), 11)
        self.built()
        self.assertEqual(len(self.icons("phone_icons")), 16)

    def test_wrong_arguments_stop_cmake_with_one_sentence(self):
        (self.source / "folder").mkdir()
        for arguments, sentence in (
                ("a", "there is no PICTURE."),
                ("a PICTURE", "PICTURE has no value."),
                ("a PICTURE logo.svg PLATFORM", "PLATFORM has no value."),
                ("a logo.svg", "'logo.svg' is no argument of it."),
                ("a PICTURE logo.svg SIZE 3", "'SIZE' is no argument of it."),
                ("a PICTURE logo.svg BORDER 0.1 0.2", "'0.2' is no argument of it."),
                ("a PICTURE none.svg", f"PICTURE {self.source}/none.svg is no file."),
                ("a PICTURE folder", f"PICTURE {self.source}/folder is no file."),
                ("a PICTURE logo.svg CATALOGUE none.plist", f"CATALOGUE {self.source}/none.plist is no file."),
                ("a PICTURE logo.svg PLATFORM iphone mak", "there is no platform 'mak'; did you mean 'mac'?"),
                ("a PICTURE logo.svg ROUND_CORNER 7", "--round-corner takes a fraction from 0 to 1, not '7'"),
                ("a PICTURE logo.svg BORDER wide", "--border takes a fraction from 0 to 1, not 'wide'"),
                ("a PICTURE logo.svg BORDER_COLOR tomatoe", "there is no colour 'tomatoe'; did you mean 'tomato'?"),
                ("taken PICTURE logo.svg", "there is a target of that name already."),
        ):
            with self.subTest(arguments):
                done = self.configure(f"add_custom_target(taken)\ntobrimax_add_icons({arguments})\n")
                self.assertEqual(done.returncode, 1)
                said = re.sub(r"\s+", " ", done.stderr)
                self.assertIn(f"tobrimax_add_icons({arguments.split()[0]}): {sentence} Call Stack", said)
                self.assertEqual(said.count("CMake Error"), 1, said)

    def test_the_version_is_looked_at(self):
        for wanted, is_found in ("0.2", True), ("0.1", False), ("0.9", False), ("1", False):
            with self.subTest(wanted):
                shutil.rmtree(self.build, ignore_errors=True)
                done = self.configure(f"find_package(Tobrimax {wanted} REQUIRED)\n")
                self.assertEqual(done.returncode == 0, is_found, done.stderr)


if __name__ == "__main__":
    PREFIX, EXAMPLE, CMAKE, GENERATOR = sys.argv[1:5]
    del sys.argv[1:5]
    unittest.main()
