"""Compares the files that `tobrimax-cli generate` opens, and the connections that it makes, for hostile pictures with
those for harmless ones of their kind: test_traces.py TOBRIMAX_CLI

The tests fail where strace is not permitted to trace."""

import base64
import os
import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile
import unittest

import hostile_files
import hostile_svg
from case import png, quarters
from hostile_bitmaps import bmp, gif, saved, tiff
from hostile_jpeg import jpeg
from hostile_svg import svg

PROGRAM = ""
CALL = re.compile(r"^(?:\d+ +)?([a-z0-9_]+)\((.*)$")
PATH = re.compile(r'"((?:[^"\\]|\\.)*)"(\.\.\.)?')
# It uses all that a drawing may need: fonts, the readers of embedded pictures, the threads of a filter.
HARMLESS = svg("".join((
    "<style>rect{stroke:#000}</style><linearGradient id='g'><stop stop-color='red'/></linearGradient>",
    "<filter id='f'><feGaussianBlur stdDeviation='2'/></filter><rect width='9' height='9' fill='url(#g)' filter='url(#f)'/>",
    "<text y='50'>ab c</text><text y='50' font-family='a'> d</text><text font-family='a'> </text>",
    *(f"<image width='9' height='9' href='data:image/{kind};base64,{base64.b64encode(data).decode()}'/>"
      for kind, data in (("png", png()), ("jpeg", jpeg()), ("svg+xml", svg("")))))))


def whole(lines):
    """The lines of strace; a call that others interrupt is one line."""
    begun = {}
    for line in lines:
        process = line.split()[0]
        if line.endswith(" <unfinished ...>"):
            begun[process] = line.removesuffix(" <unfinished ...>")
        else:
            if process in begun and "resumed>" in line:
                line = begun.pop(process) + line.partition("resumed>")[2]
            yield line


class TraceTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.catalogue = self.folder / "catalogue"
        icons = {"a": {"Name": "a", "Dimensions": "{32, 32}"}}
        self.catalogue.write_bytes(plistlib.dumps([icons, {}, {}, {}, {}]))

    def call(self, line):
        """The name of a system call and its paths; all arguments where it has no path or is one of the network."""
        found = CALL.match(line)
        if not found:
            return None  # the end of another call, or of the process
        name, rest = found.groups()
        rest = re.sub(r"tobrimax-\d+-\d+", "temporary", rest.replace(str(self.folder), "FOLDER"))
        rest = re.sub(r"FOLDER/out-\d+", "FOLDER/out", rest)
        # Numbers are what the worker is told at its start, such as the size of the document.
        paths = tuple(path for path, _ in PATH.findall(rest) if not path.isdigit())
        if name.startswith("readlink"):
            paths = paths[:1]  # the link's target follows, unless another thread's call comes between
        if paths and not name.startswith(("connect", "send", "bind")):
            return name, *paths
        return name, rest

    def trace(self, number, picture="picture"):
        log = self.folder / "log"
        environment = dict(os.environ, LLVM_PROFILE_FILE="/dev/null")
        environment["ASAN_OPTIONS"] = environment.get("ASAN_OPTIONS", "") + ":detect_leaks=0"  # which traces too
        subprocess.run(["strace", "-f", "--seccomp-bpf", "-s", "4096", "-e", "trace=%file,%network", "-o", str(log), PROGRAM,
                        "generate", str(self.folder / picture), "--out", str(self.folder / f"out-{number}"), "--catalogue",
                        str(self.catalogue), "--platform", "iphone"], env=environment, capture_output=True, timeout=120,
                       check=False)
        lines = list(whole(log.read_text(errors="replace").splitlines()))
        calls = {self.call(line) for line in lines} - {None}
        self.assertIn(f"FOLDER/{picture}", {part for call in calls for part in call}, "strace does not trace")
        return calls

    def traced(self, data, number):
        path = self.folder / "picture"
        path.unlink(missing_ok=True)
        path.write_bytes(data)
        return self.trace(number)

    def check(self, cases, harmless):
        allowed = set()
        for i, data in enumerate(harmless):
            calls = self.traced(data, i)
            self.assertIn("FOLDER/out/iphone/AppIcon.appiconset/a.png", {part for call in calls for part in call})
            allowed |= calls
        # Checks this check: another opened file is seen.
        (self.folder / "other").write_bytes(harmless[0])
        self.assertIn("FOLDER/other", {part for call in self.trace(99, "other") - allowed for part in call})
        (self.folder / "plain.svg").write_bytes(svg(hostile_svg.RED_PAGE))
        os.mkfifo(self.folder / "a-pipe.png")
        count = 0
        for count, case in enumerate(cases, 1):
            with self.subTest(case.name):
                self.assertEqual(self.traced(case.data, 100 + count) - allowed, set())
        return count

    def test_entities_and_data(self):
        self.assertGreaterEqual(self.check([*hostile_svg.entities(), *hostile_svg.embedded()], [HARMLESS]), 17)

    def test_links(self):
        self.assertGreaterEqual(self.check(hostile_svg.links(), [HARMLESS]), 17)

    def test_polyglots(self):
        harmless = [HARMLESS, png(), jpeg(), gif(64, 64), tiff(), bmp(), saved("WEBP", quarters())]
        self.assertGreaterEqual(self.check(hostile_files.polyglots(), harmless), 10)

    def test_bitmaps(self):
        """No picture but an SVG document starts a program."""
        def programs(data):
            return [call[1].rpartition("/")[2] for call in self.traced(data, "bitmap") if call[0].startswith("execve")]

        self.assertEqual(sorted(programs(HARMLESS)), ["tobrimax-cli", "tobrimax-svg"])
        for data in png(), jpeg(), gif(64, 64), tiff(), bmp(), saved("WEBP", quarters()):
            with self.subTest(data[:4]):
                self.assertEqual(programs(data), ["tobrimax-cli"])

    def test_catalogues(self):
        """Catalogues that link to other files."""
        allowed = self.traced(HARMLESS, 0)
        plain = self.catalogue.read_text()
        for i, declaration in enumerate(("[<!ENTITY a SYSTEM 'file:///etc/passwd'>]", "[<!ENTITY % a SYSTEM 'other'> %a;]",
                                         "SYSTEM 'http://localhost:9/a.dtd'", "SYSTEM 'other.dtd'")):
            with self.subTest(declaration):
                self.catalogue.write_text(re.sub("<!DOCTYPE[^>]*>", f"<!DOCTYPE plist {declaration}>", plain)
                                          .replace("<string>a<", "<string>&a;<" if "a S" in declaration else "<string>a<"))
                self.assertEqual(self.trace(i + 1) - allowed, set())


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
