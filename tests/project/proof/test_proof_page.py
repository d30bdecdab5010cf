"""Reads the HTML of proof sheets as a browser does: test_proof_page.py TOBRIMAX_CLI PICTURE [CASE]

The case "browser" takes pictures of a page with Chromium, and ends with status 77 where that is not installed."""

import base64
import hashlib
import html.parser
import io
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = PICTURE = ""
CHROMIUM = shutil.which("chromium")
VOID = {"meta", "br", "img", "link", "input", "hr", "wbr"}


class Page(html.parser.HTMLParser):
    """A page's elements, each with its name, attributes and the name of the element around it."""

    def __init__(self, text):
        super().__init__()
        self.elements, self.open, self.texts, self.faults = [], [], {}, []
        self.feed(text)
        self.close()
        self.faults += [f"{tag} is not closed" for tag in self.open]

    def handle_starttag(self, tag, attributes):
        self.elements.append((tag, dict(attributes)))
        if tag not in VOID:
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        self.elements.append((tag, dict(attributes)))

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"{tag} is closed at the wrong place, line {self.getpos()[0]}")

    def handle_data(self, data):
        if self.open:
            self.texts.setdefault(self.open[-1], []).append(data.strip())

    def all(self, tag, **wanted):
        return [attributes for name, attributes in self.elements
                if name == tag and all(attributes.get(key) == value for key, value in wanted.items())]


def luminance(color):
    parts = [int(color[i:i + 2], 16) / 255 for i in (1, 3, 5)]
    parts = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]


def contrast(one, other):
    lighter, darker = sorted((luminance(one), luminance(other)), reverse=True)
    return (lighter + 0.05) / (darker + 0.05)


class ProofPageTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.proof = self.folder / "proof.html"

    def run_cli(self, *words):
        return subprocess.run([PROGRAM, *words], cwd=self.folder, capture_output=True, check=True, timeout=200).stdout

    def generated(self, *words):
        printed = self.run_cli("generate", PICTURE, "--out", "icons", "--json", "--proof", str(self.proof), *words)
        return [pathlib.Path(self.folder, file["path"]) for file in json.loads(printed)["files"]]

    def read(self):
        """The page, after what holds for each."""
        text = self.proof.read_text(encoding="utf-8")
        page = Page(text)
        self.assertEqual(page.faults, [])
        self.assertEqual(page.all("script") + page.all("link") + page.all("iframe") + page.all("object"), [])
        without_data = re.sub(r"data:[^\"]*", "data:", text)
        self.assertNotRegex(without_data, r"https?:|@import|url\(|\bon\w+=|javascript:")
        self.assertEqual(page.all("html")[0]["lang"], "en")
        self.assertEqual(len(page.all("h1")), 1)
        levels = [int(tag[1]) for tag, _ in page.elements if re.fullmatch("h[1-6]", tag)]
        self.assertTrue(all(after <= before + 1 for before, after in zip(levels, levels[1:])), levels)
        ids = [attributes["id"] for _, attributes in page.elements if "id" in attributes]
        self.assertEqual(len(ids), len(set(ids)))
        for _, attributes in page.elements:
            if attributes.get("href", "").startswith("#"):
                self.assertIn(attributes["href"][1:], ids)
            if "aria-labelledby" in attributes:
                self.assertIn(attributes["aria-labelledby"], ids)
        shown = page.all("svg", role="img")
        self.assertTrue(all(svg["aria-label"].strip() for svg in shown))
        self.assertEqual(len(shown), len(page.all("use")))
        self.assertEqual(len(page.all("div", **{"class": "ground light"})), len(page.all("div", **{"class": "ground dark"})))
        self.check_colors(text)
        return page

    def check_colors(self, text):
        style = text[text.index("<style>"):text.index("</style>")]
        for scheme in re.findall(r":root \{([^}]*)\}", style):
            colors = dict(re.findall(r"--(\w+): (#\w{6})", scheme))
            for ink in ("ink", "soft", "link"):
                self.assertGreaterEqual(contrast(colors[ink], colors["page"]), 4.5, (ink, colors))
        for ground in ("light", "dark"):
            background, ink = re.search(rf"\.{ground} \{{ background: (#\w{{6}}); color: (#\w{{6}})", style).groups()
            self.assertGreaterEqual(contrast(background, ink), 4.5, ground)

    def pictures(self, page):
        """The bytes of each picture on the page, by its name."""
        found = {}
        for image in page.all("image"):
            kind, data = image["href"].split(";base64,")
            self.assertIn(kind, ("data:image/png", "data:image/svg+xml"))
            found[image["id"]] = base64.b64decode(data, validate=True)
        return found

    def expect_true_sizes(self, page):
        from PIL import Image
        sizes = {name: Image.open(io.BytesIO(data)).size for name, data in self.pictures(page).items()
                 if data.startswith(b"\x89PNG")}
        for image in page.all("image"):
            if image["id"] in sizes:
                self.assertEqual((int(image["width"]), int(image["height"])), sizes[image["id"]])
        for svg in page.all("svg", role="img"):
            width, height = int(svg["width"]), int(svg["height"])
            part = [int(word) for word in svg["viewbox"].split()]
            times = 8 if "enlarged" in svg["class"] else 1
            self.assertEqual((width, height), (part[2] * times, part[3] * times))

    def test_platforms(self):
        files = self.generated()
        page = self.read()
        pngs = {file.read_bytes() for file in files if file.suffix == ".png"}
        self.assertLessEqual(pngs, set(self.pictures(page).values()))
        self.assertEqual(len(page.all("li", **{"class": "icon"}) + page.all("li", **{"class": "icon wide"})), 53 + 7)
        self.expect_true_sizes(page)
        self.assertEqual(page.texts["h2"], ["iPhone", "iPad", "Apple Watch", "Mac", "Android"])

    def test_layouts(self):
        layouts = ("web", "android", "xcode", "tauri", "linux")
        files = self.generated("--layout", ",".join(layouts))
        page = self.read()
        shown = set(self.pictures(page).values())
        for file in files:
            if file.suffix in (".png", ".svg"):
                self.assertIn(file.read_bytes(), shown, file)
        self.expect_true_sizes(page)
        self.assertEqual(len(page.texts["h2"]), len(layouts))

    def test_container(self):
        self.run_cli("icns", "make", PICTURE, "--out", "logo.icns")
        self.run_cli("icns", "list", "logo.icns", "--proof", str(self.proof))
        page = self.read()
        icns = (self.folder / "logo.icns").read_bytes()
        pictures = list(self.pictures(page).values())
        self.assertEqual(len(pictures), 7)
        self.assertEqual(sum(picture in icns for picture in pictures), 5)
        self.expect_true_sizes(page)

    def test_repeated(self):
        """Every picture is in the page once, however often it is shown."""
        self.generated()
        hashes = [hashlib.sha256(data).digest() for data in self.pictures(self.read()).values()]
        self.assertEqual(len(hashes), len(set(hashes)))
        first = self.proof.read_bytes()
        self.generated()
        self.assertEqual(self.proof.read_bytes(), first)

    def test_browser(self):
        from PIL import Image
        # Opaque, so that its pixels are those on the page.
        files = self.generated("--platform", "mac", "--background", "white")
        opaque = Image.open(next(file for file in files if file.name == "icon_16x16.png")).convert("RGB")
        grounds = {}
        for scheme, setting in ("dark", 0), ("light", 1):
            for width in 1400, 500:
                shot = self.folder / f"{scheme}-{width}.png"
                subprocess.run([CHROMIUM, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                                "--hide-scrollbars", f"--user-data-dir={self.folder / 'profile'}", "--force-device-scale-factor=1",
                                "--force-color-profile=srgb", f"--blink-settings=preferredColorScheme={setting}",
                                f"--window-size={width},900", f"--screenshot={shot}", self.proof.as_uri()],
                               check=True, timeout=100, capture_output=True)
                page = Image.open(shot).convert("RGB")
                self.assertEqual(page.width, width)
                grounds[scheme, width] = page.getpixel((2, 2))
                self.assertGreaterEqual(self.count(page, opaque), 1, (scheme, width))
                enlarged = opaque.resize((128, 128), Image.NEAREST)
                self.assertGreaterEqual(self.count(page, enlarged), 1, (scheme, width))
        self.assertEqual(grounds, {("dark", 1400): (16, 16, 17), ("dark", 500): (16, 16, 17),
                                   ("light", 1400): (255, 255, 255), ("light", 500): (255, 255, 255)})

    @staticmethod
    def count(page, icon):
        """How often the pixels of `icon` stand on `page`."""
        rows = [page.crop((0, y, page.width, y + 1)).tobytes() for y in range(page.height)]
        # The row with the most colours is the one that is found least elsewhere.
        wanted = [icon.crop((0, y, icon.width, y + 1)).tobytes() for y in range(icon.height)]
        key = max(range(icon.height), key=lambda y: len(set(icon.crop((0, y, icon.width, y + 1)).getdata())))
        found = 0
        for y in range(key, page.height - icon.height + key + 1):
            at = rows[y].find(wanted[key])
            while at >= 0:
                if at % 3 == 0 and all(rows[y - key + i][at:at + 3 * icon.width] == wanted[i] for i in range(icon.height)):
                    found += 1
                at = rows[y].find(wanted[key], at + 1)
        return found


if __name__ == "__main__":
    if sys.argv[3:] == ["ProofPageTest.test_browser"] and not CHROMIUM:
        print("chromium is not installed")
        sys.exit(77)
    PROGRAM, PICTURE = str(pathlib.Path(sys.argv[1]).resolve()), str(pathlib.Path(sys.argv[2]).resolve())
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
