"""Traces `tobrimax-cli generate` where it promises to write nothing: test_writes_nothing.py TOBRIMAX_CLI PICTURE

The tests fail where strace is not permitted to trace."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = PICTURE = ""
# Names of calls that change what is on the disk. Others do so by a flag of what they open.
CHANGING = re.compile(r"^(mkdir|mknod|rename|unlink|rmdir|link|symlink|creat|truncate|chmod|fchmodat|chown|fchownat|utime|"
                      r"futimesat|[lf]?setxattr|[lf]?removexattr)")
OPENED_FOR_WRITING = re.compile(r"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|O_TMPFILE")


class WritesNothingTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def changes(self, *options):
        """The lines of a run's trace that change something below the folder."""
        log = self.folder.with_suffix(".log")
        self.addCleanup(lambda: log.unlink(missing_ok=True))
        environment = dict(os.environ, LLVM_PROFILE_FILE="/dev/null")
        environment["ASAN_OPTIONS"] = environment.get("ASAN_OPTIONS", "") + ":detect_leaks=0"  # which traces too
        subprocess.run(["strace", "-f", "-y", "--seccomp-bpf", "-e", "trace=%file,ftruncate,fchmod,fchown,fallocate",
                        "-o", str(log), PROGRAM, "generate", PICTURE, "--out", "icons", *options],
                       cwd=self.folder, env=environment, capture_output=True, timeout=120, check=False)
        calls = [line.split(" ", 1)[1].strip() for line in log.read_text(errors="replace").splitlines()]
        self.assertTrue(any(pathlib.Path(PICTURE).name in call for call in calls), "strace does not trace")
        return [call for call in calls
                # What is in memory alone: the drawings of an SVG picture.
                if "/dev/" not in call and "/proc/" not in call and "</memfd:" not in call
                and (CHANGING.match(call) or OPENED_FOR_WRITING.search(call) or call.startswith(("ftruncate", "fallocate")))]

    def check(self, option):
        for set_options in (), ("--layout", "web", "--layout", "tauri"):
            with self.subTest(set_options):
                self.assertEqual(self.changes(option, *set_options), [])
                self.assertEqual(list(self.folder.iterdir()), [])
                self.assertTrue(self.changes(*set_options))  # this check sees what is written
                self.assertEqual(self.changes(option, *set_options), [])
                subprocess.run(["rm", "-r", self.folder / "icons"], check=True)

    def test_dry_run(self):
        self.check("--dry-run")

    def test_check(self):
        self.check("--check")


if __name__ == "__main__":
    PROGRAM, PICTURE = sys.argv.pop(1), sys.argv.pop(1)
    unittest.main()
