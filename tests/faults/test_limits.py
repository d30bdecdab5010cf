"""Runs the program without enough room, memory or permission, and two programs at once:
test_limits.py TOBRIMAX_CLI FAULT_LIBRARY STORE_SAVER [CASE]

The checks are those of test_faults.py. A case that mounts file systems is skipped where that is not permitted (exit
status 77)."""

import ctypes
import os
import pathlib
import plistlib
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from PIL import Image

import test_faults
from test_faults import Container, Export, Icons, Sidecar, Store

SUBJECTS = Icons, Container, Export, Sidecar, Store

SKIPPED = 77
CLONE_NEWNS, CLONE_NEWUSER = 0x00020000, 0x10000000


def enter_mount_namespace():
    """Gives this process mounts of its own, as root or in a user namespace. False if that is not permitted."""
    libc = ctypes.CDLL(None, use_errno=True)
    user, group = os.getuid(), os.getgid()
    if libc.unshare(CLONE_NEWNS) != 0:
        if libc.unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0:
            return False
        for name, content in (("setgroups", "deny"), ("uid_map", f"0 {user} 1"), ("gid_map", f"0 {group} 1")):
            pathlib.Path("/proc/self", name).write_text(content)
    return subprocess.run(["mount", "--make-rprivate", "/"], stderr=subprocess.DEVNULL).returncode == 0


class Disk:
    """A file system in memory with the size in its options."""

    def __init__(self, path, options):
        self.path = path
        path.mkdir(exist_ok=True)
        if subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tobrimax-test", path],
                          stderr=subprocess.DEVNULL).returncode != 0:
            raise unittest.SkipTest("no file system may be mounted here")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        subprocess.run(["umount", self.path], check=True)

    def change(self, options):
        subprocess.run(["mount", "-o", f"remount,bind,{options}", self.path], check=True)


class LimitTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name).resolve()

    def check_run(self, subject, **limits):
        """Runs the subject, and checks that each file left is whole. Returns whether all files were written."""
        result, _ = subject.run(**limits)
        self.assertGreaterEqual(result.returncode, 0, result.stderr)
        subject.check(self, result)
        self.assertEqual(subject.temporaries(), [])
        return result.returncode == 0

    def check_small_disks(self, option, sizes):
        """Runs each subject on disks of all these sizes. The first sizes are too small for it, the last one is not."""
        if not enter_mount_namespace():
            self.skipTest("mounts of its own are not permitted here")
        for subject_class in SUBJECTS:
            subject = subject_class(self.folder, self.folder / "disk" / "out")
            outcomes = []
            for size in sizes:
                with self.subTest(subject=subject_class.__name__, size=size), \
                        Disk(self.folder / "disk", f"{option}={size}"):
                    try:
                        subject.prepare()
                    except OSError:
                        continue
                    outcomes.append(self.check_run(subject))
            self.assertIn(False, outcomes)
            self.assertTrue(outcomes[-1])
            # More room never makes a run fail.
            self.assertEqual(outcomes, sorted(outcomes))

    def test_full_disk(self):
        self.check_small_disks("size", [4096 * pages for pages in (*range(1, 14), 32, 64, 96)])

    def test_no_inodes(self):
        self.check_small_disks("nr_inodes", range(2, 14))

    def test_read_only_disk(self):
        if not enter_mount_namespace():
            self.skipTest("mounts of its own are not permitted here")
        for subject_class in SUBJECTS:
            with self.subTest(subject=subject_class.__name__):
                subject = subject_class(self.folder, self.folder / "disk" / "out")
                with Disk(self.folder / "disk", "size=1M") as disk:
                    subject.prepare()
                    before = subject.found()
                    disk.change("ro")
                    result, _ = subject.run()
                    self.assertGreater(result.returncode, 0)
                    self.assertNotEqual(result.stderr, b"")
                    self.assertEqual(subject.found(), before)
                    disk.change("rw")
                    self.assertTrue(self.check_run(subject))

    def test_short_files(self):
        for subject_class in SUBJECTS:
            subject = subject_class(self.folder)
            longest = max(len(content) for content in subject.new.values())
            outcomes = []
            for bytes in (0, 1, longest // 8, longest // 2, longest - 1, longest, longest + 1):
                subject.prepare()
                with self.subTest(subject=subject_class.__name__, bytes=bytes):
                    outcomes.append(self.check_run(subject, limits={resource.RLIMIT_FSIZE: bytes}))
            self.assertEqual(outcomes, [False] * 5 + [True] * 2)

    def starts(self, memory):
        """Whether the program starts with this memory limit. If it is too low, libraries end the program."""
        result = subprocess.run([test_faults.PROGRAM, "--version"], capture_output=True,
                                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (memory, memory)))
        return result.returncode == 0

    def test_little_memory(self):
        subject = Container(self.folder)
        step = 1 << 19
        memory = next(memory for memory in range(1 << 24, 1 << 30, step) if self.starts(memory)) + step
        outcomes = []
        while outcomes[-3:] != [True] * 3:
            memory += step
            self.assertLess(memory, 1 << 30)
            subject.prepare()
            with self.subTest(memory=memory):
                outcomes.append(self.check_run(subject, limits={resource.RLIMIT_AS: memory}))
        self.assertIn(False, outcomes)

    def test_little_memory_for_a_large_icon(self):
        """Want of memory is told as such, and not as an icon that can't be made."""
        catalogue = self.folder / "catalogue.plist"
        entry = {"Name": "large", "Dimensions": "{9000, 9000}"}
        catalogue.write_bytes(plistlib.dumps([{"large": entry}, {}, {}, {}, {}]))
        picture = self.folder / "picture.png"
        Image.radial_gradient("L").save(picture)
        outcomes = []
        for megabytes in (300, 400, 500, 1500):
            memory = megabytes << 20
            result = subprocess.run(
                [test_faults.PROGRAM, "generate", picture, "--out", self.folder / "out", "--catalogue", catalogue, "--platform",
                 "iphone", "--quiet"],
                capture_output=True, timeout=120,
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (memory, memory)))
            outcomes.append(result.returncode)
            errors = [line for line in result.stderr.decode().splitlines() if "error: " in line]
            told = "tobrimax-cli: error: iphone/AppIcon.appiconset/large.png: " \
                   "not enough memory for an icon of 9000 × 9000 points"
            self.assertEqual(errors, [told] if result.returncode else [])
        self.assertEqual((outcomes[0], outcomes[-1]), (1, 0))

    def test_two_at_once(self):
        """Both runs succeed, and each file is completely from one of them."""
        subject = Container(self.folder)
        (self.folder / "other").mkdir()
        other = Container(self.folder / "other", subject.out, "tomato")
        self.assertEqual(subject.new.keys(), other.new.keys())
        for path, content in subject.new.items():
            self.assertNotEqual(content, other.new[path])
        chance = random.Random(1)
        hits = 0
        for turn in range(12):
            with self.subTest(turn=turn):
                (subject if turn % 2 else super(Container, subject)).prepare()
                # Making a command also writes its catalogue, which none of the programs is to read meanwhile.
                commands = [[str(word) for word in one.command()] for one in (subject, other)]
                both = [subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE) for command in commands]
                killed = subprocess.Popen(commands[0], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                time.sleep(chance.uniform(0, 0.15))
                killed.send_signal(signal.SIGKILL)
                hits += killed.wait() == -signal.SIGKILL
                for process in both:
                    _, errors = process.communicate(timeout=120)
                    self.assertEqual(process.returncode, 0, errors)
                found = subject.found()
                self.assertEqual(found.keys(), subject.new.keys())
                for path, content in found.items():
                    self.assertIn(content, (subject.new[path], other.new[path]), path)
                subject.run_plainly()
                self.assertEqual(subject.found(), subject.new)
        self.assertGreater(hits, 0)


if __name__ == "__main__":
    test_faults.PROGRAM, test_faults.LIBRARY, test_faults.STORE_SAVER = sys.argv[1:4]
    tests = unittest.main(argv=[sys.argv[0], *sys.argv[4:]], exit=False).result
    if tests.wasSuccessful() and tests.skipped:
        print("skipped:", tests.skipped[0][1])
        sys.exit(SKIPPED)
    sys.exit(0 if tests.wasSuccessful() else 1)
