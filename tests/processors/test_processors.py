"""Runs the program on processors that lack what this one has, and compares the files:
test_processors.py TOBRIMAX_CLI SAMPLE [CASE]

The processors are emulated by qemu's user mode; without it the test is skipped (exit status 77). Where the environment
has TOBRIMAX_CLI_ELSEWHERE, the files are compared with those of this command alone, which may run another build."""

import os
import pathlib
import platform
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

from PIL import Image, ImageDraw

SKIPPED = 77
PROGRAM = SAMPLE = ""

# Without SSE 4, without AVX, and with AVX2; without and with what came after ARM's first 64-bit processors.
MODELS = {"x86_64": ("core2duo", "Nehalem", "Haswell"), "aarch64": ("cortex-a53", "max")}


def photograph(path):
    """Waves under noise, as JPEG, not square."""
    waves = Image.radial_gradient("L").resize((700, 500))
    noise = Image.effect_noise((700, 500), 40)
    Image.merge("RGB", (Image.blend(waves, noise, 0.2), Image.blend(waves.rotate(180), noise, 0.3), noise)).save(
        path, quality=90)


def graphic(path):
    """Flat shapes with translucent edges, smaller than the largest icon."""
    picture = Image.new("RGBA", (1200, 1200))
    draw = ImageDraw.Draw(picture)
    draw.rounded_rectangle((60, 90, 1140, 1100), 200, "steelblue")
    draw.ellipse((300, 300, 900, 900), (255, 99, 71, 180))
    draw.line((0, 0, 1200, 1000), "white", 31)
    picture.resize((300, 300), Image.Resampling.LANCZOS).save(path)


class ProcessorTest(unittest.TestCase):
    def files(self, command, picture, options):
        """{path: bytes} of the set that the command makes of the picture."""
        with tempfile.TemporaryDirectory() as out:
            subprocess.run([*command, "generate", picture, "--out", out, "--quiet", *options],
                           check=True, capture_output=True, timeout=250)
            return {path.relative_to(out): path.read_bytes()
                    for path in pathlib.Path(out).rglob("*") if path.is_file()}

    def commands_elsewhere(self):
        """{processor: command that runs the program there}"""
        if "TOBRIMAX_CLI_ELSEWHERE" in os.environ:
            return {"elsewhere": shlex.split(os.environ["TOBRIMAX_CLI_ELSEWHERE"])}
        machine = platform.machine()
        emulator = shutil.which(f"qemu-{machine}")
        if emulator is None or machine not in MODELS:
            self.skipTest("no qemu for this processor's family")
        return {model: [emulator, "-cpu", model, PROGRAM] for model in MODELS[machine]}

    def check(self, picture, *options):
        elsewhere = self.commands_elsewhere()
        here = self.files([PROGRAM], picture, options)
        self.assertEqual(len(here), 54)
        for processor, command in elsewhere.items():
            there = self.files(command, picture, options)
            self.assertEqual(there.keys(), here.keys())
            differing = [str(path) for path in here if there[path] != here[path]]
            self.assertEqual(differing, [], processor)

    def test_sample(self):
        self.check(SAMPLE)

    def test_photograph(self):
        with tempfile.TemporaryDirectory() as folder:
            photograph(pathlib.Path(folder, "photograph.jpg"))
            self.check(pathlib.Path(folder, "photograph.jpg"), "--round-corner", "0.4", "--border", "0.05")

    def test_graphic(self):
        with tempfile.TemporaryDirectory() as folder:
            graphic(pathlib.Path(folder, "graphic.png"))
            self.check(pathlib.Path(folder, "graphic.png"), "--round-corner", "0.2")


if __name__ == "__main__":
    PROGRAM, SAMPLE = sys.argv[1:3]
    tests = unittest.main(argv=[sys.argv[0], *sys.argv[3:]], exit=False).result
    if tests.wasSuccessful() and tests.skipped:
        print("skipped:", tests.skipped[0][1])
        sys.exit(SKIPPED)
    sys.exit(0 if tests.wasSuccessful() else 1)
