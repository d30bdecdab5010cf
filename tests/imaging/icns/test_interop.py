"""Compares icns files and their pictures with what other programs make of them:
test_interop.py TOBRIMAX_CLI SAMPLE FIXTURE

FIXTURE is an icns file of the pictures that pattern() draws, made by the npm package @fiahfy/icns 0.0.7."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

from PIL import Image

import icns_format

PROGRAM = SAMPLE = FIXTURE = ""


def run(*words):
    return subprocess.run([str(word) for word in words], capture_output=True, check=True, timeout=120)


def pattern(side):
    """A picture in which each column has its own alpha and each pixel its own colour."""
    image = Image.new("RGBA", (side, side))
    image.putdata([(x * 7 % 256, y * 5 % 256, x * y % 256, x * 255 // (side - 1)) for y in range(side)
                   for x in range(side)])
    return image


def straight(path):
    return Image.open(path).convert("RGBA")


class InteropTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def extracted(self, file):
        """The extracted pictures by element type."""
        out = self.folder / "extracted"
        run(PROGRAM, "icns", "extract", file, "--out", out)
        return {path.name[:4]: straight(path) for path in out.iterdir()}

    def made(self):
        file = self.folder / "made.icns"
        run(PROGRAM, "icns", "make", SAMPLE, "--out", file, "--round-corner", "0.22", "--border", "0.05")
        return file

    def assert_same(self, a, b, tolerance=0):
        self.assertEqual(a.size, b.size)
        a, b = a.tobytes(), b.tobytes()
        self.assertLessEqual(max(abs(p - q) for p, q in zip(a, b)), tolerance)

    def test_what_is_made_is_what_pillow_and_a_parser_of_our_own_read(self):
        file = self.made()
        pictures = self.extracted(file)
        self.assertEqual(sorted(pictures), ["ic07", "ic08", "ic09", "ic10", "ic12", "il32", "is32"])
        with Image.open(file) as opened:
            for code, size in {"ic10": (512, 512, 2), "ic09": (512, 512, 1), "ic08": (256, 256, 1),
                               "ic07": (128, 128, 1), "ic12": (32, 32, 2), "il32": (32, 32, 1),
                               "is32": (16, 16, 1)}.items():
                self.assert_same(opened.icns.getimage(size).convert("RGBA"), pictures[code])
        elements = dict(icns_format.parse(file.read_bytes()))
        self.assertEqual(list(elements),
                         ["ic10", "ic09", "ic08", "ic07", "ic12", "il32", "l8mk", "is32", "s8mk"])
        for code in ("il32", "is32"):
            side, mask = icns_format.COLORS[code]
            rest = elements[code]
            planes = []
            for _ in range(3):
                plane, rest = icns_format.unpack(rest, side * side)
                planes.append(Image.frombytes("L", (side, side), plane))
            self.assertEqual(rest, b"")
            planes.append(Image.frombytes("L", (side, side), elements[mask]))
            self.assert_same(Image.merge("RGBA", planes), pictures[code])

    def test_what_is_made_is_what_icns2png_reads(self):
        file = self.made()
        pictures = self.extracted(file)
        out = self.folder / "other"
        out.mkdir()
        run("icns2png", "-x", "-o", out, file)
        sides = {"ic10": 1024, "ic09": 512, "ic08": 256, "il32": 32, "is32": 16}
        # Newer versions know ic07 and ic12 too.
        if (out / "made_128x128x32.png").exists():
            sides |= {"ic07": 128, "ic12": 64}
        self.assertEqual(len(list(out.iterdir())), len(sides))
        for code, side in sides.items():
            self.assert_same(straight(out / f"made_{side}x{side}x32.png"), pictures[code])

    def test_what_png2icns_makes_is_read(self):
        sides = (16, 32, 48, 128, 256, 512, 1024)
        sources = []
        for side in sides:
            sources.append(self.folder / f"{side}.png")
            pattern(side).save(sources[-1])
        file = self.folder / "other.icns"
        run("png2icns", file, *sources)
        pictures = self.extracted(file)
        masks = {mask for _, mask in icns_format.COLORS.values()}
        self.assertEqual(set(pictures), dict(icns_format.parse(file.read_bytes())).keys() - masks)
        # Each side once. The writer's version decides whether 128 pixels are an it32 or an ic07.
        self.assertEqual(sorted(picture.width for picture in pictures.values()), list(sides))
        for code, side in {"is32": 16, "il32": 32, "ih32": 48, "ic08": 256, "ic09": 512, "ic10": 1024}.items():
            self.assertEqual(pictures[code].width, side)
        for code, picture in pictures.items():
            side = picture.width
            if code in icns_format.COLORS:
                self.assert_same(picture, pattern(side))
            else:
                # JPEG 2000 is decoded for drawing: the colour of a translucent pixel is rounded.
                self.assert_same(picture.convert("RGBa"), pattern(side).convert("RGBa"), 1)

    def test_packed_argb_of_another_writer_is_read(self):
        pictures = self.extracted(FIXTURE)
        self.assertEqual(sorted(pictures), ["ic04", "ic05", "ic11", "il32", "is32"])
        for picture in pictures.values():
            self.assert_same(picture, pattern(picture.width))


if __name__ == "__main__":
    PROGRAM, SAMPLE, FIXTURE = sys.argv[1:4]
    del sys.argv[1:4]
    unittest.main()
