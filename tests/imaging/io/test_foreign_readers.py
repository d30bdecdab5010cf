"""Opens what `tobrimax-cli export` writes with other programs: test_foreign_readers.py TOBRIMAX_CLI"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

from PIL import Image

PROGRAM = ""


def run(*words):
    return subprocess.run([str(word) for word in words], capture_output=True, check=True, timeout=60).stdout


class ForeignReaderTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        # Every other row is opaque. In the other rows the alpha changes along the row.
        self.picture = Image.new("RGBA", (51, 37))
        self.picture.putdata([(x * 5, y * 6, 255 - x * 5, 255 if y % 2 else x * 5) for y in range(37)
                              for x in range(51)])
        self.source = self.folder / "source.png"
        self.picture.save(self.source)

    def exported(self, name, suffix, *more):
        path = self.folder / f"exported.{suffix}"
        run(PROGRAM, "export", self.source, "--format", name, "--out", path, *more)
        return path

    def assert_near(self, a, b, tolerance):
        self.assertEqual((a.size, a.mode), (b.size, b.mode))
        self.assertLessEqual(max(abs(p - q) for p, q in zip(a.tobytes(), b.tobytes())), tolerance)

    def assert_shows_the_picture(self, image):
        self.assert_near(image.convert("RGBA").convert("RGBa"), self.picture.convert("RGBa"), 1)

    def assert_same_for_imagemagick(self, path):
        png = self.exported("png", "png")
        result = subprocess.run(["compare", "-metric", "AE", png, path, "null:"], capture_output=True, check=False)
        self.assertEqual((result.returncode, result.stderr.decode()), (0, "0"))
        self.assertEqual(run("identify", "-format", "%wx%h", path).decode(), "51x37")

    def test_png(self):
        path = self.exported("png", "png")
        run("pngcheck", "-q", path)
        with Image.open(path) as image:
            self.assert_shows_the_picture(image)

    def test_tiff(self):
        path = self.exported("tiff", "tiff")
        told = run("tiffinfo", path).decode()
        for line in ("Image Width: 51 Image Length: 37", "Compression Scheme: LZW", "unassoc-alpha",
                     "Samples/Pixel: 4", "Bits/Sample: 8"):
            self.assertIn(line, told)
        self.assert_same_for_imagemagick(path)
        with Image.open(path) as image:
            self.assert_shows_the_picture(image)

    def test_bmp(self):
        path = self.exported("bmp", "bmp")
        self.assert_same_for_imagemagick(path)
        with Image.open(path) as image:
            self.assertEqual(image.format, "BMP")
            self.assert_shows_the_picture(image)

    def test_jpeg2000(self):
        path = self.exported("jpeg2000", "jp2")
        told = run("opj_dump", "-i", path).decode()
        self.assertIn("numcomps=4", told)
        self.assertIn("qmfbid=1", told, "the reversible transform")
        self.assert_same_for_imagemagick(path)
        with Image.open(path) as image:
            self.assert_shows_the_picture(image)

    def test_jpeg(self):
        # Colours and alpha that change slowly, as the format is made for.
        self.picture.putdata([(x * 4, y * 5, 200 - x * 3, 75 + y * 5) for y in range(37) for x in range(51)])
        self.picture.save(self.source)
        path = self.exported("jpeg", "jpg")
        ppm = self.folder / "out.ppm"
        run("djpeg", "-outfile", ppm, path)
        white = Image.new("RGBA", self.picture.size, "white")
        white.alpha_composite(self.picture)
        with Image.open(ppm) as image:
            self.assert_near(image, white.convert("RGB"), 10)
        # Quality 70 means 60 percent (200 - 2 × 70) of the standard's quantisation tables, rounded. They begin with 16.
        with Image.open(path) as image:
            self.assertEqual(image.quantization[0][0], (16 * 60 + 50) // 100)

    def test_gif(self):
        path = self.exported("gif", "gif")
        told = run("giftext", path).decode()
        self.assertIn("Width = 51, Height = 37", told)
        self.assertIn("Transparency on: yes", told)
        with Image.open(path) as opened:
            image = opened.convert("RGBA")
        near = 0
        for (*colour, shown), (*wanted, alpha) in zip(image.getdata(), self.picture.getdata()):
            self.assertEqual(shown, 255 if alpha >= 128 else 0)
            near += shown == 0 or max(abs(p - q) for p, q in zip(colour, wanted)) <= 24
        self.assertGreaterEqual(near, 0.99 * 51 * 37)

    def test_size(self):
        for name, suffix in (("png", "png"), ("tiff", "tiff"), ("bmp", "bmp"), ("jpeg2000", "jp2"), ("jpeg", "jpg"),
                             ("gif", "gif")):
            path = self.exported(name, suffix, "--size", "17x23")
            self.assertEqual(run("identify", "-format", "%wx%h", path).decode(), "17x23")


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
