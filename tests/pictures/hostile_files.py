"""Special files, files with misleading or odd names, and files of two formats at once."""

import gzip
import io
import os
import socket
import zipfile

from case import QUARTERS, RED, BLUE, png, refused, shown
from hostile_bitmaps import bmp, gif, tiff
from hostile_jpeg import jpeg, with_segment
from hostile_svg import RED_PAGE, BLUE_PAGE, svg


def make_socket(path):
    here = os.getcwd()
    os.chdir(path.parent)  # a socket's name may not be long
    try:
        with socket.socket(socket.AF_UNIX) as end:
            end.bind(path.name)
    finally:
        os.chdir(here)


def link_to(target):
    return lambda path: path.symlink_to(target)


def special():
    regular = "Not a regular file"
    yield refused("a-pipe.png", os.mkfifo, regular)
    yield refused("a-socket.png", make_socket, regular)
    yield refused("a-folder.png", os.mkdir, "directory")
    for name in ("zero", "null", "full", "random", "tty"):
        yield refused(f"a-link-to-{name}.png", link_to(f"/dev/{name}"), "" if name == "tty" else regular)
    yield refused("a-link-to-nothing.png", link_to("nothing"), "No such file")
    yield refused("a-link-to-itself.png", link_to("a-link-to-itself.png"), "symbolic links")
    yield refused("a-link-to-memory.png", link_to("/proc/self/mem"), "")
    yield refused("a-link-to-a-pipe.svg", link_to("a-pipe.png"), regular)
    yield refused("empty.png", b"", "the file is empty")
    yield refused("one-byte.png", b"\x89", "not a picture")
    yield refused("zeros.png", bytes(100000), "not a picture")

    def sparse(path):
        with open(path, "wb") as file:
            file.write(png())
            file.truncate(1 << 42)
    yield refused("four-terabytes.png", sparse, "the file is larger than")
    yield refused("words.svg", b"some words about svg", "not a picture but text")


def names():
    for name, data in {"png": png(), "bmp": bmp(), "tif": tiff()}.items():
        for suffix in ("svg", "jpg", "txt", "", "..."):
            yield shown(f"{name}-as.{suffix}", data, QUARTERS)
    yield shown("svg-as.png", svg(RED_PAGE), RED, tolerance=0)
    yield shown("jpg-as.svg", jpeg(), QUARTERS, tolerance=3)
    yield shown("gif-as.svgz", gif(64, 64), RED)
    for name in (" ", "-", "--out", "a b\tc.png", "new\nline.png", "\x1b[2Jescape.png", "'\"$(touch x)`.png", "%41.png",
                 "ü" * 100 + ".png"):
        yield shown(f"{name}", png(), QUARTERS)


def polyglots():
    archive = io.BytesIO()
    with zipfile.ZipFile(archive, "w") as file:
        file.writestr("a.svg", svg(BLUE_PAGE))
    yield shown("png-and-zip.zip", png() + archive.getvalue(), QUARTERS)
    yield shown("png-and-svg.svg", png() + svg(BLUE_PAGE), QUARTERS)
    yield shown("jpg-and-svg.svg", with_segment(0xfe, svg(BLUE_PAGE)), QUARTERS, tolerance=3)
    yield shown("gif-and-script.js", gif(64, 64) + b"/*=1;alert(1)*/", RED)
    yield shown("svg-with-png.png", svg(BLUE_PAGE + "<!-- \x89PNG -->"), BLUE)
    yield refused("script-and-gif.js", b"/*" + gif(64, 64), "not a picture")
    yield refused("pdf-and-svg.svg", b"%PDF-1.4\n" + svg(RED_PAGE), "not a picture but a PDF document")
    yield refused("zip-alone.png", archive.getvalue(), "not a picture but a ZIP archive")
    yield refused("bitmap-words.bmp", b"BMW is a make of cars, of which svg says nothing", "the limit")
    yield refused("gzip-of-png.svgz", gzip.compress(png()), "SVG picture is truncated or damaged")


def cases():
    for group in (special, names, polyglots):
        yield from group()
