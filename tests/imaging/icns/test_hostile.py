"""Runs `tobrimax-cli icns` on every hostile file: test_hostile.py TOBRIMAX_CLI"""

import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import time
import unittest

import hostile

PROGRAM = ""
# Instrumented programs are slow, and sanitizers reserve far more address space than the limit.
IS_INSTRUMENTED = "ASAN_OPTIONS" in os.environ or "LLVM_PROFILE_FILE" in os.environ
MEMORY = None if IS_INSTRUMENTED else 1 << 30
SECONDS = 10 if IS_INSTRUMENTED else 2


class HostileTest(unittest.TestCase):
    def run_cli(self, *words):
        # A busy machine may take long for a short run, so there are three attempts.
        for _ in range(3):
            start = time.monotonic()
            result = subprocess.run([PROGRAM, "icns", *words], capture_output=True, timeout=60, check=False)
            seconds = time.monotonic() - start
            if seconds < SECONDS:
                break
        self.assertLess(seconds, SECONDS)
        return result.returncode, result.stdout.decode(), result.stderr.decode()

    def check_errors(self, status, errors, sentence):
        if status == 0:
            self.assertEqual(errors, "")
            return
        for line in errors.splitlines():
            self.assertRegex(line, r"^tobrimax-cli: error: \S+: \S.*[^.]$")
        self.assertIn(sentence, errors)
        self.assertNotEqual(errors, "")

    def check_case(self, case, folder):
        path = folder / f"{case.name}.icns"
        out = folder / case.name
        path.write_bytes(case.data)
        status, output, errors = self.run_cli("list", str(path))
        self.assertEqual(status, case.list_status, errors)
        self.check_errors(status, errors, case.sentence)
        self.assertIn(case.remark, output)
        self.assertNotRegex(output.replace("\n", ""), r"[\x00-\x1f\x7f]")
        status, output, errors = self.run_cli("extract", str(path), "--out", str(out))
        self.assertEqual(status, case.extract_status, errors)
        self.check_errors(status, errors, case.sentence)
        written = [str(file) for file in out.iterdir()] if out.exists() else []
        self.assertEqual(len(written), case.pictures)
        self.assertEqual(sorted(output.splitlines()), sorted(written))

    def check_group(self, name, least):
        cases = list(hostile.GROUPS[name]())
        self.assertGreaterEqual(len(cases), least)
        with tempfile.TemporaryDirectory() as folder:
            for case in cases:
                with self.subTest(case.name):
                    self.check_case(case, pathlib.Path(folder))

    def test_containers(self):
        self.check_group("containers", 345)

    def test_nests(self):
        self.check_group("nests", 32)

    def test_pictures(self):
        self.check_group("pictures", 220)

    def test_colors(self):
        self.check_group("colors", 58)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    if MEMORY:
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    unittest.main()
