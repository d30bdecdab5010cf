"""Makes each call on the output fail in turn, or kills the program there, and checks what the program leaves:
test_faults.py TOBRIMAX_CLI FAULT_LIBRARY STORE_SAVER [CASE]

Each file is whole after every fault: the old one or the new one. The program reports a file as written only if it
is. The next run removes what a killed run leaves."""

import errno
import itertools
import json
import os
import pathlib
import plistlib
import re
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

from PIL import Image

PROGRAM = LIBRARY = STORE_SAVER = ""

OLD = b"an older file"


def is_temporary(path):
    return path.name.startswith(".tobrimax-")


class Subject:
    """A command that writes files into the folder `out`. `new` maps their paths to the bytes that they get."""

    is_synced = False

    def __init__(self, folder, out=None, color="black"):
        self.folder = folder
        self.out = out or folder / "out"
        self.out.parent.mkdir(exist_ok=True)
        self.picture = folder / "picture.png"
        picture = Image.radial_gradient("L").resize((24, 24)).convert("RGB")
        picture.paste(color, (0, 0, 8, 8))
        picture.save(self.picture)
        self.new = {}
        self.prepare()
        self.run_plainly()
        self.new = self.found()

    def prepare(self):
        """Sets up the files that are there before a run."""
        for path in sorted(self.out.rglob("*"), reverse=True):
            path.rmdir() if path.is_dir() else path.unlink()
        if self.out.exists():
            self.out.rmdir()

    def command(self):
        raise NotImplementedError

    def found(self):
        """{path: bytes} of all files except temporary ones."""
        return {path: path.read_bytes()
                for path in self.out.rglob("*") if path.is_file() and not is_temporary(path)}

    def temporaries(self):
        return [path for path in self.out.rglob("*") if is_temporary(path)]

    def run(self, kind=None, call=0, limits=None):
        """Runs the command within `limits`, {resource: value}. Returns its result and the names of the calls that it
        made; a "!" follows the name of a call that failed."""
        log = self.folder / "log"
        log.unlink(missing_ok=True)
        variables = dict(os.environ, LD_PRELOAD=str(LIBRARY), FAULT_FOLDER=str(self.out), FAULT_LOG=str(log),
                         FAULT_CALL=str(call), FAULT_KIND=str(kind or ""))
        # AddressSanitizer refuses to run if another library is loaded first; this option turns that check off.
        variables["ASAN_OPTIONS"] = variables.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"

        def limit():
            for kind_of_limit, value in (limits or {}).items():
                resource.setrlimit(kind_of_limit, (value, value))

        result = subprocess.run([str(word) for word in self.command()], capture_output=True, env=variables,
                                preexec_fn=limit, timeout=120)
        return result, log.read_text().split() if log.exists() else []

    def run_plainly(self):
        result, calls = self.run()
        if result.returncode != 0 or self.temporaries():
            raise AssertionError(f"without a fault: {result}, {self.temporaries()}")
        return calls

    def check(self, test, result):
        """Checks the files, and what the program reports about them, after a run that was not killed."""
        found = self.found()
        self.check_whole(test, found)
        if result.returncode == 0:
            test.assertEqual(found, self.new)
        else:
            test.assertNotEqual(result.stderr, b"")

    def check_after_one_error(self, test, result):
        pass

    def check_whole(self, test, found):
        for path, content in found.items():
            test.assertIn(path, self.new)
            test.assertIn(content, (OLD, self.new[path]), path)


class Icons(Subject):
    """Three icons in a folder that the program makes."""

    platform = "iphone"

    def command(self):
        catalogue = self.folder / "catalogue.plist"
        entries = {name: {"Name": name, "Dimensions": f"{{{size}, {size}}}"}
                   for name, size in (("a", 16), ("b", 24), ("c", 40))}
        catalogue.write_bytes(plistlib.dumps([entries, {}, {}, {"a": entries["a"]}, {}]))
        return (PROGRAM, "generate", self.picture, "--out", self.out, "--catalogue", catalogue, "--json",
                "--platform", self.platform)

    def check(self, test, result):
        super().check(test, result)
        document = json.loads(result.stdout)
        written = {pathlib.Path(file["path"]) for file in document["files"]}
        test.assertEqual(written, {path for path, content in self.found().items() if content != OLD})
        test.assertEqual(result.returncode, 1 if document["errors"] else 0)
        if result.returncode != 0:
            for path in self.new.keys() - written:
                test.assertTrue(any(error["path"] == str(path) or str(self.out) in error["path"] + error["sentence"]
                                    for error in document["errors"]), path)


class Container(Icons):
    """An icon and then the Mac's container. Older files of both names exist already."""

    platform = "mac"

    def prepare(self):
        super().prepare()
        for path in self.new:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(OLD)


class Export(Subject):
    is_synced = True

    def prepare(self):
        super().prepare()
        self.out.mkdir()
        for path in self.new:
            path.write_bytes(OLD)

    def command(self):
        return PROGRAM, "export", self.picture, "--format", "tiff", "--out", self.out / "picture.tiff"


class Sidecar(Subject):
    """The AppleDouble file of an item that has another icon. It is written in more than one step."""

    def prepare(self):
        super().prepare()
        self.out.mkdir()
        (self.out / "item").write_bytes(b"item")
        before = self.folder / "before"
        if not before.exists():
            Image.new("RGB", (24, 24), "tomato").save(self.folder / "other.png")
            for name in "other", "picture":
                self.call("icns", "make", self.folder / f"{name}.png", "--out", self.folder / f"{name}.icns")
            self.call("custom-icon", "set", self.out / "item", self.folder / "other.icns", "--apple-double")
            before.write_bytes((self.out / "._item").read_bytes())
        (self.out / "._item").write_bytes(before.read_bytes())

    def call(self, *words):
        subprocess.run([str(word) for word in (PROGRAM, *words)], check=True, capture_output=True, timeout=120)

    def command(self):
        return PROGRAM, "custom-icon", "set", self.out / "item", self.folder / "picture.icns", "--apple-double"

    def check_whole(self, test, found):
        test.assertEqual(found[self.out / "item"], b"item")
        content = found.get(self.out / "._item")
        if content is None:
            return
        magic, version, count = struct.unpack_from(">II16xH", content)
        test.assertEqual((magic, version), (0x00051607, 0x00020000))
        end = 0
        for index in range(count):
            kind, offset, length = struct.unpack_from(">III", content, 26 + 12 * index)
            end = max(end, offset + length)
            if kind == 2 and length > 0:
                data, names, data_length, names_length = struct.unpack_from(">IIII", content, offset)
                test.assertLessEqual(data + data_length, length)
                test.assertLessEqual(names + names_length, length)
        test.assertEqual(end, len(content))


class Store(Subject):
    is_synced = True

    def prepare(self):
        super().prepare()
        if self.new:
            (path,) = self.new
            path.parent.mkdir(parents=True)
            path.write_bytes(self.new[path].replace(b"new", b"old"))

    def command(self):
        return STORE_SAVER, self.out / "Varnholt.Tobrimax" / "Tobrimax.storedata", "new " * 2000

    def check_whole(self, test, found):
        for path, content in found.items():
            test.assertIn(content, (self.new[path], self.new[path].replace(b"new", b"old")))

    def check_after_one_error(self, test, result):
        # The second try succeeds, if the store could be opened.
        test.assertIn(result.returncode, (0, 1, 3))
        if result.returncode != 3:
            test.assertEqual(self.found(), self.new)


class FaultTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name).resolve()

    def each_call(self, subject, kind):
        """Runs the subject once for each of its calls, with a fault there. Yields each run's result and calls."""
        subject.prepare()
        usual = subject.run_plainly()
        for call in itertools.count(1):
            if kind in ("short", "interrupt") and call <= len(usual) and usual[call - 1] != "write":
                continue
            subject.prepare()
            result, calls = subject.run(kind, call)
            if call > len(calls):
                self.assertGreater(call, 8)
                self.assertFalse(any(name.endswith("!") for name in calls))
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertEqual(subject.found(), subject.new)
                return
            yield result, calls

    def check_errors(self, subject, kind):
        """Every kind of call fails somewhere, and some failures are reported."""
        failed = set()
        told = 0
        for result, calls in self.each_call(subject, kind):
            self.assertGreaterEqual(result.returncode, 0, result.stderr)
            subject.check(self, result)
            if kind != "full":
                subject.check_after_one_error(self, result)
            names = {name[:-1] for name in calls if name.endswith("!")}
            failed |= names
            told += result.returncode != 0
            # A failed close after the bytes were written is reported too. Failures of other closes are not reported.
            closes = re.search(r"write (fsync )?close!", " ".join(calls))
            if names & {"create", "write", "fsync", "rename"} or closes:
                self.assertNotEqual(result.returncode, 0)
            if "unlink" not in names:
                self.assertEqual(subject.temporaries(), [])
        self.assertLessEqual({"create", "write", "rename"}, failed)
        # A subject that promises to have the file on the disk syncs it: first the bytes, then the name.
        self.assertEqual("fsync" in failed, subject.is_synced)
        if subject.is_synced:
            self.assertRegex(" ".join(subject.run_plainly()), r"write( write)* fsync close rename fsync")
        self.assertGreater(told, 2)

    def check_kills(self, subject):
        strays = 0
        for result, calls in self.each_call(subject, "kill"):
            self.assertEqual(result.returncode, -9, result.stderr)
            self.assertEqual(sum(name.endswith("!") for name in calls), 1)
            subject.check_whole(self, subject.found())
            strays += len(subject.temporaries())
            subject.run_plainly()
            self.assertEqual(subject.found(), subject.new)
        self.assertGreater(strays, 0)

    def check_writes(self, subject):
        """After a short or an interrupted write the program goes on."""
        for kind in "short", "interrupt":
            count = 0
            for result, calls in self.each_call(subject, kind):
                count += "write!" in calls
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertEqual(subject.found(), subject.new)
                self.assertEqual(subject.temporaries(), [])
            self.assertGreater(count, 0)


    def test_missing_worker(self):
        """Without the program that draws them, SVG pictures are refused and all other pictures are drawn."""
        svg = self.folder / "picture.svg"
        svg.write_text('<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><rect width="9" height="9"/></svg>')
        png = self.folder / "picture.png"
        Image.new("RGB", (1024, 1024), "red").save(png)
        (self.folder / "bin").mkdir()
        program = self.folder / "bin" / "tobrimax-cli"
        shutil.copy(PROGRAM, program)

        def status(picture):
            result = subprocess.run([program, "generate", picture, "--out", self.folder / "out", "--platform", "iphone",
                                     "--background", "white"], capture_output=True, timeout=120, check=False)
            return result.returncode, result.stderr.decode()

        helper = self.folder / "libexec" / "tobrimax" / "tobrimax-svg"
        self.assertEqual(status(svg), (1, f"tobrimax-cli: error: {svg}: the SVG document can't be drawn, since the program "
                                          f"{helper} can't be started (No such file or directory)\n"))
        self.assertEqual(status(png), (0, ""))
        helper.parent.mkdir(parents=True)
        shutil.copy(pathlib.Path(PROGRAM).parent.parent / "svgworker" / "tobrimax-svg", helper)
        self.assertEqual(status(svg), (0, ""))
        # A program that is none.
        helper.write_text("")
        code, error = status(svg)
        self.assertEqual(code, 1)
        self.assertIn("the SVG document can't be drawn", error)

    def test_missing_plugin(self):
        """Without Qt's plugin for them WebP pictures are refused, and are not called damaged."""
        webp = self.folder / "picture.webp"
        Image.new("RGB", (1024, 1024), "red").save(webp)
        variables = dict(os.environ, LD_PRELOAD=str(LIBRARY), FAULT_LIBRARY="qwebp")
        variables["ASAN_OPTIONS"] = variables.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"
        result = subprocess.run([PROGRAM, "export", webp, "--format", "png", "--out", self.folder / "picture.png"],
                                capture_output=True, env=variables, timeout=120)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.decode(),
                         f"tobrimax-cli: error: {webp}: WebP pictures can't be read, since Qt's plugin for them can't be "
                         "loaded\n")


def add_tests():
    def test(subject, check, *arguments):
        return lambda self: check(self, subject(self.folder), *arguments)

    for subject in Icons, Container, Export, Sidecar, Store:
        start = f"test_{subject.__name__.lower()}_"
        for name in "EIO", "ENOSPC", "EDQUOT":
            setattr(FaultTest, start + name, test(subject, FaultTest.check_errors, getattr(errno, name)))
        setattr(FaultTest, start + "full", test(subject, FaultTest.check_errors, "full"))
        setattr(FaultTest, start + "kill", test(subject, FaultTest.check_kills))
        setattr(FaultTest, start + "writes", test(subject, FaultTest.check_writes))


add_tests()

if __name__ == "__main__":
    PROGRAM, LIBRARY, STORE_SAVER = sys.argv[1:4]
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
