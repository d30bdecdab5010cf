"""Runs `tobrimax-cli generate` on every hostile picture: test_hostile.py TOBRIMAX_CLI"""

import os
import pathlib
import plistlib
import subprocess
import sys
import tempfile
import threading
import time
import unittest

from PIL import Image

import hostile
from case import GREEN
from hostile_bitmaps import bmp

PROGRAM = ""
# An instrumented program is slow and large.
IS_INSTRUMENTED = "ASAN_OPTIONS" in os.environ or "LLVM_PROFILE_FILE" in os.environ
SECONDS = 20 if IS_INSTRUMENTED else 2
MEMORY = None if IS_INSTRUMENTED else 512 << 20
# An SVG picture gets so many seconds, and the program one more. Each of its processes has a limit of memory.
SVG_LIMIT = 2
SVG_SECONDS = 20 if IS_INSTRUMENTED else SVG_LIMIT + 1
SVG_MEMORY = None if IS_INSTRUMENTED else 1 << 30
ICONS = {"small": 36, "large": 256}


class Run:
    """One run of the program to its end, with its status, messages, time and memory."""

    def __init__(self, *words):
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as errors:
            start = time.monotonic()
            # pylint: disable-next=consider-using-with
            process = subprocess.Popen([PROGRAM, *words], stdin=subprocess.DEVNULL, stdout=out, stderr=errors)
            alarm = threading.Timer(30 * SECONDS, process.kill)
            alarm.start()
            _, status, usage = os.wait4(process.pid, 0)
            alarm.cancel()
            process.returncode = self.status = os.waitstatus_to_exitcode(status)
            self.seconds = time.monotonic() - start
            self.processor_seconds = usage.ru_utime + usage.ru_stime
            # In KiB, but for macOS.
            self.bytes = usage.ru_maxrss << (0 if sys.platform == "darwin" else 10)
            errors.seek(0)
            self.errors = errors.read().decode()


class HostileTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.catalogue = self.folder / "sizes.plist"
        icons = {name: {"Name": name, "Dimensions": f"{{{side}, {side}}}"} for name, side in ICONS.items()}
        self.catalogue.write_bytes(plistlib.dumps([icons, {}, {}, {}, {}]))

    def generate(self, path, out, pixels, most_seconds=SECONDS, most_bytes=MEMORY):
        run = Run("generate", "--out", str(out), "--catalogue", str(self.catalogue), "--platform", "iphone",
                  "--svg-limit", str(SVG_LIMIT), "--", str(path))
        # A busy machine spends time on others too. What is left beyond that is waiting.
        self.assertLessEqual(run.processor_seconds, most_seconds)
        self.assertLessEqual(run.seconds, 10 * most_seconds)
        if most_bytes:
            # At most the picture and its reduced copies: a quarter, a sixteenth, and so on.
            self.assertLessEqual(run.bytes, most_bytes + 4 * pixels * 4 // 3)
        return run

    def check_refused(self, case, run, out):
        self.assertEqual(run.status, 1, run.errors)
        *warnings, error = run.errors.splitlines()
        self.assertRegex(error, r"^tobrimax-cli: error: .+: \S.*[^.]$")
        self.assertIn(case.sentence, error)
        self.assertNotRegex(error, r"[\x00-\x1f\x7f]")
        for line in warnings:
            self.assertRegex(line, r"^tobrimax-cli: warning: \S.*[^.]$")
        if not case.may_be_shown:
            self.assertEqual(warnings, [])
            self.assertFalse(out.exists())

    def check_shown(self, colors, tolerance, run, out):
        self.assertEqual(run.status, 0, run.errors)
        for line in run.errors.splitlines():
            self.assertRegex(line, r"^tobrimax-cli: warning: \S.*[^.]$")
        for name, side in ICONS.items():
            icon = Image.open(out / "iphone" / "AppIcon.appiconset" / f"{name}.png").convert("RGBA")
            self.assertEqual(icon.size, (side, side))
            for i, color in enumerate(colors):
                found = icon.getpixel((side * (1 + 2 * (i % 2)) // 4, side * (1 + 2 * (i // 2)) // 4))
                self.assertLessEqual(max(abs(a - b) for a, b in zip(found, color)), tolerance, f"{found} is not {color}")

    def check_case(self, case, number):
        path = hostile.make(case, self.folder)
        out = self.folder / f"out-{number}"
        is_svg = path.suffix in (".svg", ".svgz")
        run = self.generate(path, out, case.pixels, *((SVG_SECONDS, SVG_MEMORY) if is_svg else ()))
        if case.may_be_shown and run.status == 0:
            self.assertTrue((out / "iphone" / "AppIcon.appiconset" / "large.png").exists())
        elif case.colors:
            self.check_shown(case.colors, case.tolerance, run, out)
        else:
            self.check_refused(case, run, out)

    def check_group(self, name, least):
        count = 0
        for case in hostile.GROUPS[name]():
            count += 1
            with self.subTest(case.name):
                self.check_case(case, count)
        self.assertGreaterEqual(count, least)

    def test_png(self):
        self.check_group("png", 165)

    def test_jpeg(self):
        self.check_group("jpeg", 114)

    def test_bitmaps(self):
        self.check_group("bitmaps", 138)

    def test_ico(self):
        self.check_group("ico", 40)

    def test_svg(self):
        self.check_group("svg", 105)

    def test_files(self):
        self.check_group("files", 50)

    def test_shrinking(self):
        """A file that grows and shrinks while it is read is drawn as it is, or refused, and nothing else happens."""
        path = self.folder / "shrinking.bmp"
        whole = bmp(4000, 4000, data=bytes((0, 255, 0)) * (4000 * 4000))
        is_over = threading.Event()

        def change():
            while not is_over.is_set():
                for size in (len(whole), len(whole) // 2, 60):
                    with open(path, "r+b") as file:
                        file.seek(0)
                        file.write(whole[:size])
                        file.truncate(size)
                    time.sleep(0.005)
        path.write_bytes(whole)
        changer = threading.Thread(target=change)
        changer.start()
        try:
            statuses = set()
            for i in range(12):
                run = self.generate(path, self.folder / f"out-{i}", 4000 * 4000)
                statuses.add(run.status)
                self.assertIn(run.status, (0, 1), run.errors)
                if run.status == 1:
                    self.assertRegex(run.errors, r"^tobrimax-cli: error: \S+: .*(BMP picture is truncated or damaged|"
                                                 r"the file was changed while it was read).*\n$")
                else:
                    self.check_shown((GREEN,) * 4, 0, run, self.folder / f"out-{i}")
        finally:
            is_over.set()
            changer.join()
        self.assertIn(1, statuses)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
