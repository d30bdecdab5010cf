"""Runs the commands for many pictures in docs/guide.md, with twenty pictures:
test_many_pictures.py TOBRIMAX_CLI GUIDE TESTS…"""

import csv
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from PIL import Image, ImageDraw

PROGRAM = GUIDE = ""
PICTURES = 20
FILES = 54  # in a set


def recipe(first_words):
    """The lines of a code block in the guide, from `first_words` to the end of the block."""
    text = pathlib.Path(GUIDE).read_text(encoding="utf-8")
    start = text.index(first_words)
    return text[start:text.index("```", start)]


def spin():
    """A command that keeps a processor busy with the same work each time."""
    return [sys.executable, "-IS", "-c", "sum(i * i for i in range(3_000_000))"]


class ManyPictures(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        (self.folder / "pictures").mkdir()
        for i in range(PICTURES):
            picture = Image.new("RGBA", (256, 256))
            ImageDraw.Draw(picture).ellipse((8, 8, 247, 247 - 4 * i), (255 - 12 * i, 12 * i, 128, 255))
            picture.save(self.folder / "pictures" / f"logo {i:02}'s.png")
        self.environment = {"PATH": f"{pathlib.Path(PROGRAM).parent}:{os.environ['PATH']}", "HOME": str(self.folder),
                            "SHELL": shutil.which("bash"), "LC_ALL": "C.UTF-8"}
        # A sanitizer's build reads these.
        self.environment |= {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}

    def start(self, lines, **more):
        return subprocess.Popen(["bash", "-ec", lines], cwd=self.folder, env=self.environment | more,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                start_new_session=True)

    def run_recipe(self, lines=None, status=0, **more):
        """Runs a recipe. Returns the seconds that it took, and its standard error."""
        begin = time.monotonic()
        process = self.start(lines or recipe("find pictures"), **more)
        _, errors = process.communicate(timeout=250)
        self.assertEqual(process.returncode, status, errors.decode())
        return time.monotonic() - begin, errors.decode()

    def log(self):
        """{sequence number: exit status} of the jobs that ended. Each job is there only once."""
        path = self.folder / "icons.log"
        if not path.exists():
            return {}
        with open(path, encoding="utf-8") as lines:
            # The last line may be incomplete.
            rows = [row for row in csv.DictReader(lines, delimiter="\t", quoting=csv.QUOTE_NONE) if row["Command"]]
        self.assertEqual(len(rows), len({row["Seq"] for row in rows}))
        return {int(row["Seq"]): int(row["Exitval"]) or int(row["Signal"]) for row in rows}

    def set_folder(self, number):
        return self.folder / "icons" / f"logo {number - 1:02}'s"

    def files(self, number):
        """{path: (bytes, modification time, inode)} of the set with that sequence number."""
        folder = self.set_folder(number)
        return {path.relative_to(folder): (path.read_bytes(), path.stat().st_mtime_ns, path.stat().st_ino)
                for path in folder.rglob("*") if path.is_file()}

    def expect_all_sets(self):
        self.assertEqual(self.log(), {number: 0 for number in range(1, PICTURES + 1)})
        for number in range(1, PICTURES + 1):
            self.assertEqual(len(self.files(number)), FILES)
        # Each set shows its own picture.
        largest = pathlib.Path("mac/AppIcon.appiconset/icon_512x512@2x.png")
        self.assertEqual(len({self.files(number)[largest][0] for number in range(1, PICTURES + 1)}), PICTURES)

    def test_every_picture_gets_its_set(self):
        _, errors = self.run_recipe()
        self.assertIn("100%", errors)
        self.expect_all_sets()
        before = self.files(7)
        self.run_recipe()
        self.assertEqual(self.files(7), before)
        alone = self.folder / "alone"
        subprocess.run([PROGRAM, "generate", self.folder / "pictures" / "logo 06's.png", "--out", alone, "--quiet"],
                       check=True, env=self.environment)
        self.assertEqual({path.relative_to(alone): path.read_bytes() for path in alone.rglob("*") if path.is_file()},
                         {path: content for path, (content, _, _) in before.items()})

    def test_a_killed_run_goes_on_where_it_was(self):
        process = self.start(recipe("find pictures"))
        end = time.monotonic() + 120
        while len(self.log()) < 4:
            self.assertIsNone(process.poll(), "it ended before it could be killed")
            self.assertLess(time.monotonic(), end)
            time.sleep(0.005)
        # Kills the whole session, with the jobs that are running.
        os.killpg(process.pid, signal.SIGKILL)
        process.communicate()
        done = self.log()
        self.assertLess(len(done), PICTURES)
        self.assertEqual(set(done.values()), {0})
        before = {number: self.files(number) for number in done}
        self.run_recipe()
        self.expect_all_sets()
        for number, files in before.items():
            self.assertEqual(self.files(number), files, f"set {number} was made again")

    def test_a_picture_that_failed_is_tried_again(self):
        broken = self.folder / "pictures" / "logo 03's.png"
        whole = broken.read_bytes()
        broken.write_bytes(whole[:100])
        _, errors = self.run_recipe(status=1)
        self.assertIn("tobrimax-cli: error: pictures/logo 03's.png", errors)
        self.assertEqual({number for number, status in self.log().items() if status != 0}, {4})
        before = self.files(5)
        broken.write_bytes(whole)
        self.run_recipe()
        self.assertEqual(len(self.files(4)), FILES)
        self.assertEqual(self.files(5), before)

    def test_other_hosts_take_their_part(self):
        # Two folders stand for two hosts. A host's shell starts in its folder, and records its jobs there.
        hosts = self.folder / "hosts"
        tools = self.folder / "tools"
        tools.mkdir()
        (tools / "ssh").write_text(f"""#!/usr/bin/env bash
while [[ $1 == -* ]]; do [[ $1 == -[lp] ]] && shift; shift; done
host=$1; shift
[[ $1 == -- ]] && shift
cd "{hosts}/$host"
export HOME=$PWD
[[ $* == *GNU_Parallel_worker* ]] && echo >>jobs
exec /bin/sh -c "$*"
""")
        (tools / "ssh").chmod(0o755)
        for host in ("build1", "build2"):
            (hosts / host).mkdir(parents=True)
        lines = recipe("find pictures").splitlines()[0] + "\n" + recipe("RSYNC_OLD_ARGS")
        self.run_recipe(lines, PATH=f"{tools}:{self.environment['PATH']}")
        self.expect_all_sets()
        for host in ("build1", "build2"):
            self.assertTrue((hosts / host / "jobs").exists(), f"{host} had nothing to do")
            self.assertEqual(list((hosts / host / "pictures").glob("*")), [], "a picture was left there")

    def test_two_jobs_take_less_time_than_one(self):
        cores = len(os.sched_getaffinity(0)) if hasattr(os, "sched_getaffinity") else os.cpu_count()
        if cores < 2:
            self.skipTest("this machine has one core")
        clear, attempts = 0.75, 4
        # Eight pictures are enough to compare times.
        for path in sorted((self.folder / "pictures").iterdir())[8:]:
            path.unlink()
        told = []
        were_free = False
        for _ in range(attempts):
            taken = {}
            for jobs in (1, 2):
                (self.folder / "icons.log").unlink(missing_ok=True)
                taken[jobs], _ = self.run_recipe(PARALLEL=f"--jobs {jobs}")
            ratio = taken[2] / taken[1]
            if ratio < clear:
                return
            free = self.share_of_two_cores()
            were_free = were_free or free < clear
            told.append(f"{ratio:.2f} (plain work {free:.2f})")
        if not were_free:
            self.skipTest(f"others use this machine's cores: with two jobs the time is {', '.join(told)} of one's")
        self.fail(f"with two jobs the time is {', '.join(told)} of one's")

    @staticmethod
    def share_of_two_cores():
        """The time of two processes of plain work side by side, divided by their time one after the other."""
        begin = time.monotonic()
        for _ in range(2):
            subprocess.run(spin(), check=True)
        middle = time.monotonic()
        for process in [subprocess.Popen(spin()) for _ in range(2)]:
            process.wait()
        return (time.monotonic() - middle) / (middle - begin)


if __name__ == "__main__":
    PROGRAM, GUIDE = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
