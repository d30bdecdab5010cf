"""Gives the files of layouts to the tools that build or show them: test_project_tools.py TOBRIMAX_CLI PICTURE TESTS…
The exit status is 77 where a tool is missing."""

import functools
import http.server
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest

from browser import Browser

PROGRAM = PICTURE = ""
FRAMEWORK = pathlib.Path("/usr/share/android-framework-res/framework-res.apk")
MANIFEST = """<manifest xmlns:android="http://schemas.android.com/apk/res/android" package="org.example.app">
    <application android:label="App" {lines}/>
</manifest>
"""
# The size of each picture of the page and of its manifest, as the browser shows it.
SIZES = """(async () => {
    const size = address => new Promise(resolve => {
        const picture = new Image();
        picture.onload = () => resolve(picture.naturalWidth);
        picture.onerror = () => resolve(0);
        picture.src = address;
    });
    const sizes = {};
    for (const link of document.querySelectorAll('link[rel~=icon], link[rel=apple-touch-icon]'))
        sizes[link.getAttribute('href')] = await size(link.href);
    const manifest = document.querySelector('link[rel=manifest]').href;
    for (const icon of (await (await fetch(manifest)).json()).icons)
        sizes[icon.src] = await size(new URL(icon.src, manifest));
    return sizes;
})()"""


class Site(http.server.SimpleHTTPRequestHandler):
    extensions_map = http.server.SimpleHTTPRequestHandler.extensions_map | {".webmanifest": "application/manifest+json"}

    def log_message(self, format, *arguments):
        pass


def needed(*programs):
    """The first of the programs that is there; skips the test where none is."""
    for program in programs:
        if found := shutil.which(program):
            return found
    raise unittest.SkipTest(f"{programs[0]} is missing")


class ProjectTools(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def generate(self, layout, *arguments, out="."):
        done = subprocess.run([PROGRAM, "generate", PICTURE, "--layout", layout, "--out", self.folder / out, "--background",
                               "white", "--quiet", *arguments], capture_output=True, text=True, check=True)
        return done.stderr

    def test_android_resources_link_into_a_package_with_every_icon(self):
        aapt2 = needed("aapt2")
        if not FRAMEWORK.exists():
            self.skipTest(f"{FRAMEWORK} is missing")
        manifest = self.folder / "AndroidManifest.xml"
        manifest.write_text(MANIFEST.format(lines=""))
        lines = re.findall(r"lacks the line: (.*)", self.generate("android"))
        self.assertEqual(len(lines), 2)
        manifest.write_text(MANIFEST.format(lines=" ".join(lines)))
        subprocess.run([aapt2, "compile", "--dir", "res", "-o", "all.zip"], cwd=self.folder, check=True)
        subprocess.run([aapt2, "link", "-I", FRAMEWORK, "--manifest", manifest, "--min-sdk-version", "21", "-o", "app.apk",
                        "all.zip"], cwd=self.folder, check=True)
        said = subprocess.run([aapt2, "dump", "resources", "app.apk"], cwd=self.folder, check=True, capture_output=True,
                              text=True).stdout
        pictures = {path.relative_to(self.folder / "res") for path in (self.folder / "res").rglob("*.png")}
        self.assertEqual(len(pictures), 20)
        for path in pictures:
            # Folders of densities get the version that brought them.
            self.assertIn(f"res/{path.parent}-v4/{path.name}", said)
        for name in ("ic_launcher", "ic_launcher_round"):
            self.assertIn(f"(anydpi-v26) (file) res/mipmap-anydpi-v26/{name}.xml", said)
        badging = subprocess.run([aapt2, "dump", "badging", "app.apk"], cwd=self.folder, check=True, capture_output=True,
                                 text=True).stdout
        self.assertIn("application: label='App' icon='res/mipmap-anydpi-v26/ic_launcher.xml'", badging)

    def test_a_browser_shows_every_icon_of_a_site_and_would_install_it(self):
        program = needed("chromium", "chromium-browser", "google-chrome")
        self.generate("web", "--name", "A site")
        head = (self.folder / "head.html").read_text()
        (self.folder / "index.html").write_text(f"<!doctype html><title>A site</title>{head}")
        handler = functools.partial(Site, directory=self.folder)
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.addCleanup(server.server_close)
        thread = threading.Thread(target=server.serve_forever)
        thread.start()
        self.addCleanup(thread.join)
        self.addCleanup(server.shutdown)
        page = Browser(program, f"http://127.0.0.1:{server.server_port}/index.html")
        self.addCleanup(page.close)
        sizes = page.value(SIZES)
        self.assertIn(sizes.pop("/favicon.ico"), (16, 32, 48))
        self.assertGreater(sizes.pop("/icon.svg"), 0)
        self.assertEqual(sizes, {"/apple-touch-icon.png": 180, "icon-192.png": 192, "icon-512.png": 512,
                                 "icon-maskable-192.png": 192, "icon-maskable-512.png": 512})
        self.assertEqual(page.ask("Page.getAppManifest")["errors"], [])
        self.assertEqual(page.ask("Page.getInstallabilityErrors")["installabilityErrors"], [])

    def test_the_icon_theme_finds_every_size_for_a_desktop_entry(self):
        validate = needed("desktop-file-validate")
        try:
            import gi
            gi.require_version("Gtk", "3.0")
            from gi.repository import Gtk
        except (ImportError, ValueError):
            self.skipTest("GTK's Python binding is missing")
        name = "org.example.App"
        self.generate("linux", "--name", name)
        entry = self.folder / f"{name}.desktop"
        entry.write_text(f"[Desktop Entry]\nType=Application\nName=App\nExec=app\nIcon={name}\nCategories=Utility;\n")
        subprocess.run([validate, entry], check=True)
        theme = Gtk.IconTheme()
        theme.set_custom_theme("hicolor")
        theme.set_search_path([str(self.folder), "/usr/share/icons"])
        for side in (16, 22, 24, 32, 48, 64, 128, 256, 512):
            found = theme.lookup_icon(name, side, Gtk.IconLookupFlags(0))
            self.assertIsNotNone(found)
            self.assertEqual(pathlib.Path(found.get_filename()), self.folder / f"hicolor/{side}x{side}/apps/{name}.png")
            self.assertEqual(found.load_icon().get_width(), side)
        # Between two sizes the drawing is taken.
        between = theme.lookup_icon(name, 40, Gtk.IconLookupFlags(0)).get_filename()
        self.assertEqual(pathlib.Path(between), self.folder / f"hicolor/scalable/apps/{name}.svg")

    def test_a_resource_compiler_puts_every_picture_of_the_ico_into_a_program(self):
        compiler = needed("llvm-rc", "llvm-rc-14", "llvm-rc-19")
        self.generate("windows")
        (self.folder / "app.rc").write_text('1 ICON "app.ico"\n')
        subprocess.run([compiler, "/fo", "app.res", "app.rc"], cwd=self.folder, check=True)
        resources = (self.folder / "app.res").read_bytes()
        ico = (self.folder / "app.ico").read_bytes()
        count = int.from_bytes(ico[4:6], "little")
        self.assertEqual(count, 8)
        for i in range(count):
            entry = ico[6 + 16 * i:22 + 16 * i]
            length, offset = int.from_bytes(entry[8:12], "little"), int.from_bytes(entry[12:16], "little")
            self.assertIn(ico[offset:offset + length], resources)


if __name__ == "__main__":
    PROGRAM, PICTURE = sys.argv[1:3]
    result = unittest.main(argv=sys.argv[:1] + sys.argv[3:], exit=False).result
    sys.exit(1 if not result.wasSuccessful() else 77 if result.skipped else 0)
