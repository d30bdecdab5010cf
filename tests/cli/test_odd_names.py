"""Gives tobrimax-cli names that are easily misread, for pictures, folders and icons: test_odd_names.py TOBRIMAX_CLI [CASE]

On the disk, a name has exactly the given bytes. Messages never control the terminal or change the writing direction."""

import json
import os
import pathlib
import plistlib
import shutil
import subprocess
import sys
import tempfile
import time
import unicodedata
import unittest

PROGRAM = ""

SVG = b'<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"><rect width="8" height="8" fill="tomato"/></svg>'

ODD = ("100%", "%", "%%s%n%1", "%zz", " a  b ", "-x", "--json", "--", "two\nlines", "\t", "\r", "a\x1b[31mb\x07c\x08\x7f",
       "a\x9b31mb\x85c", "a\u202eb\u2066c\u200fd\u061ce", "a\u2028b\u2029c\ufeffd\u200be", "a\U000e0041\U000e007fb\U0001d173c",
       "q\"uo\\te'$(x)`y`", "~", "*?[a]",
       "\u00e9", "e\u0301", "\u5dee\u2603\U0001f3a8", "a:b", "con", "x" * 255, "\u00e9" * 127)

PATH_MAX = 4096


def is_shown_safely(text):
    return all(c == "\n" or unicodedata.category(c) not in ("Cc", "Cf", "Zl", "Zp", "Cs") for c in text)


class OddNamesTest(unittest.TestCase):
    def setUp(self):
        # Names are bytes here, since they need not be in any encoding.
        self.folder = os.fsencode(pathlib.Path(tempfile.mkdtemp()).resolve())
        self.addCleanup(shutil.rmtree, self.folder)
        self.picture = self.file(b"picture.svg", SVG)

    def file(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content)
        return path

    def catalogue(self, *names):
        """A catalogue of icons of these names, for the iPhone."""
        entries = {str(number): {"Name": name, "Dimensions": "{8, 8}"} for number, name in enumerate(names)}
        return self.file(b"catalogue.plist", plistlib.dumps([entries, {}, {}, {}, {}], fmt=plistlib.FMT_BINARY))

    def run_cli(self, *words):
        """Runs the program in the test's folder. Checks that its output is safe to show."""
        words = [word if isinstance(word, bytes) else word.encode() for word in words]
        result = subprocess.run([os.fsencode(PROGRAM), *words], capture_output=True, cwd=self.folder, timeout=120)
        for stream in result.stdout, result.stderr:
            self.assertTrue(is_shown_safely(stream.decode()), stream)
        return result

    def generate(self, picture, out, catalogue, *more):
        # Without a background the store's warning would come.
        return self.run_cli("generate", *more, "--platform", "iphone", "--background", "white", "--catalogue", catalogue,
                            "--out=" + out if isinstance(out, str) else b"--out=" + out, "--", picture)

    def generated(self, picture, out, catalogue, *more):
        result = self.generate(picture, out, catalogue, *more)
        self.assertEqual((result.returncode, result.stderr if "--verbose" not in more else b""), (0, b""))
        return result

    def files_below(self, folder):
        return sorted(os.path.relpath(os.path.join(above, name), folder)
                      for above, _, names in os.walk(folder) for name in names)

    def test_picture(self):
        catalogue = self.catalogue("icon")
        for name in ODD:
            with self.subTest(name=name):
                path = self.file(name.encode(), SVG)
                document = json.loads(self.generated(name, "out", catalogue, "--json").stdout)
                self.assertEqual(document["picture"], name)
                self.assertEqual(self.files_below(os.path.join(self.folder, b"out")),
                                 [b"iphone/AppIcon.appiconset/icon.png"])
                self.assertEqual(document["errors"], [])
                os.remove(path)
                missing = self.generate(name, "out", catalogue)
                self.assertEqual(missing.returncode, 1)
                self.assertEqual(missing.stderr.count(b"\n"), 1)
                document = json.loads(self.generate(name, "out", catalogue, "--json").stdout)
                self.assertEqual(document["errors"],
                                 [{"path": name, "code": "not-found", "sentence": "No such file or directory"}])
                shutil.rmtree(os.path.join(self.folder, b"out"))

    def test_picture_of_no_encoding(self):
        catalogue = self.catalogue("icon")
        for name in b"caf\xe9", b"\xff\xfe", b"a\xc3", b"\xed\xa0\x80", b"\xf4\x90\x80\x80":
            with self.subTest(name=name):
                path = self.file(name, SVG)
                self.generated(name, "out", catalogue, "--verbose")
                document = json.loads(self.generated(name, "out", catalogue, "--json").stdout)
                self.assertEqual(document["picture"], name.decode(errors="replace")
                                 if name != b"\xf4\x90\x80\x80" else document["picture"])
                os.remove(path)
                self.assertEqual(self.generate(name, "out", catalogue).returncode, 1)

    def test_folder(self):
        catalogue = self.catalogue("icon")
        for name in ODD:
            with self.subTest(name=name):
                document = json.loads(self.generated(self.picture, name, catalogue, "--json").stdout)
                path = f"{name}/iphone/AppIcon.appiconset/icon.png"
                self.assertEqual(document["out"], name)
                self.assertEqual([file["path"] for file in document["files"]], [path])
                self.assertEqual(self.files_below(os.path.join(self.folder, name.encode())),
                                 [b"iphone/AppIcon.appiconset/icon.png"])
                self.generated(self.picture, name, catalogue)
                self.generated(self.picture, name, catalogue, "--verbose")
        # Names that look alike are different names.
        self.assertEqual(sorted(os.listdir(self.folder)),
                         sorted([name.encode() for name in ODD] + [b"catalogue.plist", b"picture.svg"]))

    def test_folder_of_no_encoding(self):
        """Names are bytes: what is no UTF-8 is shown by its number, and in JSON by U+FFFD."""
        catalogue = self.catalogue("icon")
        for name, shown in ((b"caf\xe9", "caf\\xe9"), (b"a\xff\x1b[31m", "a\\xff\\x1b[31m"), (b"\xc3(\xc3", "\\xc3(\\xc3"),
                            (b"\xed\xa0\x80", "\\xed\\xa0\\x80"), (b"\xff/\xfe", "\\xff/\\xfe"),
                            ("\U0001f3a8".encode() + b"\xf0\x9f", "\U0001f3a8\\xf0\\x9f")):
            with self.subTest(name=name):
                result = self.generated(self.picture, name, catalogue, "--verbose")
                self.assertTrue(result.stdout.decode().endswith("/" + shown + "\n"), result.stdout)
                self.assertEqual(self.files_below(os.path.join(self.folder, name)), [b"iphone/AppIcon.appiconset/icon.png"])
                document = json.loads(self.generated(self.picture, name, catalogue, "--json").stdout)
                self.assertEqual(document["files"][0]["path"], document["out"] + "/iphone/AppIcon.appiconset/icon.png")
                self.assertRegex(document["out"], "\ufffd")
                self.assertNotRegex(document["out"], "[\ud800-\udfff]")
        with open(os.path.join(self.folder, b"file\xe9"), "wb"):
            failed = self.generate(self.picture, b"file\xe9/below", catalogue, "--json")
        self.assertEqual(failed.stderr, b"tobrimax-cli: error: file\\xe9/below: Not a directory\n")
        self.assertEqual(json.loads(failed.stdout)["errors"],
                         [{"path": "file\ufffd/below", "code": "not-writable", "sentence": "Not a directory"}])

    def test_current_folder_of_no_encoding(self):
        catalogue = self.catalogue("icon")
        self.folder += b"/here\xe9"
        os.mkdir(self.folder)
        result = self.generated(self.picture, "out", catalogue)
        self.assertTrue(result.stdout.endswith(b"/here\\xe9/out\n"), result.stdout)
        self.folder = self.folder[:-6]

    def test_folder_of_no_encoding_is_opened(self):
        """The file browser is told of it by a URL."""
        catalogue = self.catalogue("icon")
        os.mkdir(os.path.join(self.folder, b"bin"))
        browser = self.file(b"bin/xdg-open", b'#!/bin/sh\nprintf %s "$*" >"${0%/*}/told" && mv "${0%/*}/told" "${0%/*}/opened"\n')
        os.chmod(browser, 0o700)
        before = os.environ["PATH"]
        self.addCleanup(os.environ.__setitem__, "PATH", before)
        os.environ["PATH"] = os.fsdecode(self.folder) + "/bin:" + before
        self.generated(self.picture, b"caf\xe9", catalogue, "--open")
        opened = os.path.join(self.folder, b"bin/opened")
        end = time.monotonic() + 20
        while not os.path.exists(opened) and time.monotonic() < end:
            time.sleep(0.05)
        with open(opened, "rb") as file:
            self.assertEqual(file.read(), b"file://" + self.folder + b"/caf%E9/")

    def test_folder_with_escapes(self):
        """A percent sign stands for itself."""
        catalogue = self.catalogue("icon")
        for name in "a%20b", "%C3%a9", "x%1B[31m", "y%2Fz", "%2525", "a%ff", "a%00", "a%ed%a0%80":
            with self.subTest(name=name):
                document = json.loads(self.generated(self.picture, name, catalogue, "--json").stdout)
                self.assertEqual(document["files"][0]["path"], f"{name}/iphone/AppIcon.appiconset/icon.png")
                self.assertEqual(self.files_below(os.path.join(self.folder, name.encode())),
                                 [b"iphone/AppIcon.appiconset/icon.png"])
        self.assertEqual(len(os.listdir(self.folder)), 8 + 2)

    def test_icon(self):
        names = [name for name in ODD if len(name.encode()) < 252]
        catalogue = self.catalogue(*names)
        document = json.loads(self.generated(self.picture, "out", catalogue, "--json").stdout)
        self.assertEqual(sorted(os.path.basename(file["path"]) for file in document["files"]),
                         sorted(f"{name}.png" for name in names))
        found = sorted(os.listdir(os.path.join(self.folder, b"out/iphone/AppIcon.appiconset")))
        self.assertEqual(found, sorted(f"{name}.png".encode() for name in names))
        self.generated(self.picture, "out", catalogue, "--verbose")

    def test_icon_with_escapes(self):
        """Escapes are replaced in the folder's name only."""
        self.generated(self.picture, "out", self.catalogue("a%20b", "%2e%2e%2f"))
        self.assertEqual(sorted(os.listdir(os.path.join(self.folder, b"out/iphone/AppIcon.appiconset"))),
                         [b"%2e%2e%2f.png", b"a%20b.png"])

    def test_icon_as_long_as_names_may_be(self):
        for name, is_written in (("n" * 251, True), ("n" * 252, False), ("\u00e9" * 125 + "n", True),
                                 ("\u00e9" * 126, False)):
            with self.subTest(length=len(name.encode())):
                result = self.generate(self.picture, "out", self.catalogue(name, "other"))
                self.assertEqual(result.returncode, 0 if is_written else 1, result.stderr)
                found = os.listdir(os.path.join(self.folder, b"out/iphone/AppIcon.appiconset"))
                self.assertEqual(sorted(found), sorted([b"other.png"] + [f"{name}.png".encode()] * is_written))
                if not is_written:
                    self.assertIn(b"File name too long", result.stderr)
                shutil.rmtree(os.path.join(self.folder, b"out"))

    def test_icon_with_slashes(self):
        """A slash leads into a folder that is not made, and never out of the platform's folder."""
        catalogue = self.catalogue("below/icon", "/absolute", "../above", "a/../b", "..")
        result = self.generate(self.picture, "out", catalogue, "--json")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(len(json.loads(result.stdout)["errors"]), 3)
        self.assertEqual(self.files_below(os.path.join(self.folder, b"out")),
                         [b"iphone/AppIcon.appiconset/...png", b"iphone/AppIcon.appiconset/absolute.png"])
        os.mkdir(os.path.join(self.folder, b"out/iphone/AppIcon.appiconset/below"))
        self.generate(self.picture, "out", catalogue)
        self.assertEqual(self.files_below(os.path.join(self.folder, b"out")),
                         [b"iphone/AppIcon.appiconset/...png", b"iphone/AppIcon.appiconset/absolute.png",
                          b"iphone/AppIcon.appiconset/below/icon.png"])

    def folder_of_length(self, length):
        """A path of that many bytes below the test's folder. No part of it is too long for a file name."""
        path = self.folder
        while length - len(path) > 202:
            path += b"/" + b"d" * 200
        return path + b"/" + b"e" * (length - len(path) - 1)

    def test_paths_as_long_as_the_system_takes(self):
        catalogue = self.catalogue("i")
        tail = len(b"/iphone/AppIcon.appiconset/i.png")
        longest = self.folder_of_length(PATH_MAX - 1 - tail)
        self.generated(self.picture, longest, catalogue, "--verbose")
        self.assertTrue(os.path.exists(longest + b"/iphone/AppIcon.appiconset/i.png"))
        document = json.loads(self.generated(self.picture, longest, catalogue, "--json").stdout)
        self.assertEqual(document["out"], longest.decode())
        for more in 1, 4, 26, tail:
            result = self.generate(self.picture, self.folder_of_length(PATH_MAX - 1 - tail + more), catalogue)
            self.assertEqual(result.returncode, 1)
            self.assertIn(b"File name too long", result.stderr)
        for above, _, names in os.walk(self.folder):
            self.assertFalse([name for name in names if name.startswith(b".")])

    def test_picture_in_the_longest_path(self):
        folder = self.folder_of_length(PATH_MAX - 1 - len(b"/p.svg"))
        os.makedirs(folder)
        shutil.copy(self.picture, folder + b"/p.svg")
        self.generated(folder + b"/p.svg", "out", self.catalogue("icon"))
        self.assertEqual(self.generate(folder + b"/pp.svg", "out", self.catalogue("icon")).returncode, 1)

    def test_other_commands(self):
        for name in ODD:
            with self.subTest(name=name):
                path = os.path.join(self.folder, name.encode())
                made = self.run_cli("icns", "make", "--out=" + name, "--", self.picture)
                self.assertEqual(made.returncode, 0, made.stderr)
                with open(path, "rb") as file:
                    self.assertEqual(file.read(4), b"icns")
                listed = self.run_cli("icns", "list", "--json", "--", name)
                self.assertEqual(json.loads(listed.stdout)["file"], name)
                self.assertEqual(self.run_cli("icns", "list", "--", name).returncode, 0)
                extracted = self.run_cli("icns", "extract", "--out=" + name, "--", name)
                self.assertEqual(extracted.returncode, 1, "a file is where the folder should be")
                os.remove(path)
                exported = self.run_cli("export", "--format", "png", "--out=" + name, "--", self.picture)
                self.assertEqual(exported.returncode, 0, exported.stderr)
                with open(path, "rb") as file:
                    self.assertEqual(file.read(4), b"\x89PNG")
                self.assertEqual(self.run_cli("icns", "list", "--", name).returncode, 1, "it is no icns file")
                os.remove(path)

    def test_other_commands_with_no_encoding(self):
        catalogue = self.catalogue("icon")
        for name in b"caf\xe9", b"\xff\xfe":
            with self.subTest(name=name):
                for words in ((b"icns", b"make", self.picture, b"--out", name + b".icns"),
                              (b"icns", b"list", name + b".icns"),
                              (b"icns", b"extract", name + b".icns", b"--out", name + b".d"),
                              (b"export", self.picture, b"--format", b"png", b"--out", name),
                              (b"custom-icon", b"set", name, name + b".icns", b"--apple-double"),
                              (b"custom-icon", b"set", name + b".d", name + b".icns", b"--apple-double"),
                              (b"custom-icon", b"remove", name, b"--apple-double"),
                              (b"custom-icon", b"remove", name + b".d", b"--apple-double")):
                    result = self.run_cli(*words)
                    self.assertEqual((result.returncode, result.stderr), (0, b""), words)
                for made in name, b"._" + name, name + b".icns", name + b".d", b"._" + name + b".d":
                    self.assertTrue(os.path.exists(os.path.join(self.folder, made)), made)
                self.assertEqual(len(os.listdir(os.path.join(self.folder, name + b".d"))), 7)
                document = json.loads(self.run_cli(b"icns", b"list", b"--json", name + b".icns").stdout)
                self.assertEqual(document["file"], name.decode(errors="replace") + ".icns")
                shutil.copy(catalogue, os.path.join(self.folder, name + b".plist"))
                self.generated(self.picture, "out", name + b".plist")

    def test_wrong_usage(self):
        for name in *ODD, b"caf\xe9", b"\xff\x1b[31m":
            word = name if isinstance(name, bytes) else name.encode()
            for words in (b"--" + word,), (b"x" + word,), (b"generate", b"p", b"--out", b"o", b"--platform=" + word):
                result = self.run_cli(*words)
                self.assertEqual((result.returncode, result.stderr.count(b"\n")), (2, 1), words)


if __name__ == "__main__":
    PROGRAM = str(pathlib.Path(sys.argv[1]).resolve())
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
