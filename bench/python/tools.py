"""The programs that are compared, and how each is called."""

import dataclasses
import json
import os
import pathlib
import shutil
import subprocess
import sys

from PIL import Image

import catalogue
from measured import CLI, HERE, ROOT

PEERS = HERE.parent / "peers"
WORK = ROOT / "build" / "compare"
MODULES = WORK / "node_modules"
MAGICK = next((found for name in ("convert-im6.q16", "magick", "convert") if (found := shutil.which(name))), "convert")
# Node.js looks for the modules beside the scripts.
SHARP_SCRIPT = WORK / "sharp-icons.mjs"
RESVG_SCRIPT = WORK / "resvg-icons.mjs"
SKIA_SCRIPT = WORK / "skia-icons.mjs"
SHORTEN_SCRIPT = WORK / "shorten.mjs"
VIPS_PROGRAM = WORK / "vips-icons"


@dataclasses.dataclass(frozen=True, eq=False)
class Tool:
    name: str
    ways: tuple = ()  # options of the script for sharp
    environment: dict = dataclasses.field(default_factory=dict)
    is_pinned: bool = True

    def command(self, source, folder):
        """The command that writes all icons of `source` (a Path) into `folder`."""
        raise NotImplementedError

    def check(self, folder):
        """Ends the program where an icon is missing, broken or of another size."""
        for icon in catalogue.plan():
            check_picture(folder / icon["file"], icon["side"])


def check_picture(path, side):
    try:
        with Image.open(path) as picture:
            picture.load()
            size = picture.size
    except (OSError, SyntaxError) as error:
        sys.exit(f"{path}: {error}")
    if size != (side, side):
        sys.exit(f"{path}: {size[0]} x {size[1]} instead of {side} x {side}")


class Tobrimax(Tool):
    def command(self, source, folder):
        return [CLI, "generate", source, "--out", folder, "--platform", "all"]

    def check(self, folder):
        for icon in catalogue.png_icons():
            check_picture(folder / icon["file"], icon["side"])
        with Image.open(folder / "mac" / "Application.icns") as icns:
            sizes = sorted({(w * scale, h * scale) for w, h, scale in icns.info["sizes"]}, reverse=True)
            if sizes != [(side, side) for side in catalogue.icns_sides()]:
                sys.exit(f"Application.icns holds {sizes}")
            for size in icns.info["sizes"]:
                icns.size = size
                icns.load()


class Sharp(Tool):
    def command(self, source, folder):
        return ["node", SHARP_SCRIPT, source, WORK / "plan.json", folder, *self.ways]


class Vips(Tool):
    def command(self, source, folder):
        return [VIPS_PROGRAM, source, WORK / "plan.txt", folder]


@dataclasses.dataclass(frozen=True, eq=False)
class Script(Tool):
    """A script that takes the plan as JSON."""
    script: pathlib.Path = None

    def command(self, source, folder):
        return ["node", self.script, source, WORK / "plan.json", folder]


class ImageMagick(Tool):
    def command(self, source, folder):
        words = [MAGICK, source]
        for icon in catalogue.plan():
            file = folder / icon["file"]
            file.parent.mkdir(parents=True, exist_ok=True)
            words += ["(", "+clone", "-resize", f"{icon['side']}x{icon['side']}!", "-write", file, "+delete", ")"]
        return [*words, "null:"]


class Tauri(Tool):
    def command(self, source, folder):
        return ["node", MODULES / "@tauri-apps" / "cli" / "tauri.js", "icon", as_png(source), "-o", folder]

    def check(self, folder):
        if self.pixels(folder) == 0:
            sys.exit("tauri icon wrote nothing")

    @staticmethod
    def pixels(folder):
        """The pixels of all pictures in its set, also of those inside its icns and ico files."""
        count = 0
        for path in folder.rglob("*"):
            if path.suffix not in (".png", ".icns", ".ico"):
                continue
            with Image.open(path) as picture:
                picture.load()
                sizes = picture.info["sizes"] if path.suffix != ".png" else [picture.size]
            for width, height, *scale in sizes:
                count += width * height * (scale[0] ** 2 if scale else 1)
        return count


def as_png(source):
    """The path of `source` as a PNG file: tauri icon reads no JPEG."""
    if source.suffix == ".png":
        return source
    png = source.with_name(source.stem + "-for-tauri.png")
    if not png.exists() or png.stat().st_mtime < source.stat().st_mtime:
        with Image.open(source) as picture:
            picture.save(png)
    return png


ONE_THREAD = {"UV_THREADPOOL_SIZE": "1"}
OURS = Tobrimax("tobrimax-cli")
SHARP = Sharp("sharp", environment=ONE_THREAD)
OURS_ON_ALL_CORES = Tobrimax("tobrimax-cli, all cores", is_pinned=False)
# The page that bench/compare writes says what (a) to (f) are.
SHARP_ONCE = Sharp("sharp (a)", ("once",), ONE_THREAD)
SHARP_FIRST = Sharp("sharp (b)", ("first",), ONE_THREAD)
SHARP_BOTH = Sharp("sharp (a) (b)", ("once", "first"), ONE_THREAD)
SHARP_EACH = Sharp("sharp (c)", ("each",), ONE_THREAD)
SHARP_THREADS = Sharp("sharp (d)", ("threads",), is_pinned=False)
SHARP_HALVES = Sharp("sharp (e)", ("once", "halves"), ONE_THREAD)
SHARP_ADAPTIVE = Sharp("sharp (f)", ("once", "halves", "adaptive"), ONE_THREAD)
VIPS = Vips("libvips, C")
RESVG = Script("resvg", script=RESVG_SCRIPT)
SKIA = Script("Skia's canvas", environment=ONE_THREAD, script=SKIA_SCRIPT)
IMAGEMAGICK = ImageMagick("ImageMagick", environment={"MAGICK_THREAD_LIMIT": "1", "OMP_NUM_THREADS": "1"})
TAURI = Tauri("tauri icon")


def all_for(source):
    """The tools that are run on a source. No icon is larger than 1024 pixels, so for a source of 1024 the first
    reduction of (b) would change nothing."""
    if source.file.endswith(".svg"):
        return [OURS, OURS_ON_ALL_CORES, RESVG]
    if not source.is_for_all:
        return [OURS, SHARP, SHARP_HALVES, SHARP_ADAPTIVE, VIPS, SKIA]
    clever = [SHARP_ONCE] if source.side <= 1024 else [SHARP_ONCE, SHARP_FIRST, SHARP_BOTH]
    return [OURS, SHARP, *clever, SHARP_HALVES, SHARP_ADAPTIVE, SHARP_EACH, SHARP_THREADS, VIPS, SKIA,
            IMAGEMAGICK, TAURI]


def install():
    """Installs the other programs from npm, at the versions in bench/peers/package.json."""
    WORK.mkdir(parents=True, exist_ok=True)
    for script in (SHARP_SCRIPT, RESVG_SCRIPT, SKIA_SCRIPT, SHORTEN_SCRIPT):
        shutil.copy(PEERS / script.name, script)
    (WORK / "plan.json").write_text(json.dumps(catalogue.plan()))
    (WORK / "plan.txt").write_text("".join(f"{icon['side']} {icon['file']}\n" for icon in catalogue.plan()))
    wanted = (PEERS / "package.json").read_text()
    package = WORK / "package.json"
    if not MODULES.exists() or not package.exists() or package.read_text() != wanted:
        shutil.rmtree(MODULES, ignore_errors=True)
        (WORK / "package-lock.json").unlink(missing_ok=True)
        package.write_text(wanted)
        subprocess.run(["npm", "install", "--no-audit", "--no-fund", "--silent"], cwd=WORK, check=True)


def build_vips():
    """Builds the program on libvips."""
    flags = subprocess.run(["pkg-config", "--cflags", "--libs", "vips"], check=True, stdout=subprocess.PIPE,
                           text=True).stdout.split()
    subprocess.run(["cc", "-O2", "-o", VIPS_PROGRAM, PEERS / "vips-icons.c", *flags], check=True)


def shortened(way, files):
    """{"bytes", "cpu"}: what PNG files take after an optimiser, "oxipng" or "napi" (@napi-rs/image), and its seconds of
    processor time."""
    return json.loads(subprocess.run(["node", SHORTEN_SCRIPT, way, *files], check=True, stdout=subprocess.PIPE).stdout)


def versions():
    """[(program, version)]"""
    def output(*words):
        return subprocess.run([str(word) for word in words], cwd=WORK, stdout=subprocess.PIPE, check=True,
                              text=True).stdout.strip()

    dependencies = json.loads((PEERS / "package.json").read_text())["dependencies"]
    libvips = output("node", "-e", "console.log(require('sharp').versions.vips)")
    return [("tobrimax-cli", output(CLI, "--version").split()[-1]),
            ("sharp", f"{dependencies['sharp']} (libvips {libvips}, Node.js {output('node', '--version')[1:]})"),
            ("libvips for the program in C", output("pkg-config", "--modversion", "vips")),
            *((name, dependencies[name]) for name in sorted(dependencies) if name != "sharp"),
            ("ImageMagick", output(MAGICK, "-version").split()[2])]
