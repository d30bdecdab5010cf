"""Compares drawings of SVG files: svg_themes.py TOBRIMAX_CLI MOST FOLDER…

Of each folder it takes MOST files, evenly from all of them in the order of their paths; 0 for all. A file that is there
twice counts once.
"""

import collections
import concurrent.futures
import hashlib
import os
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image, ImageChops, ImageStat

SIZES = (64, 512)
SECONDS = 10
MOST_LEVELS = 2


def drawn(command, out):
    """The picture, or None with what was said."""
    try:
        run = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=SECONDS + 20, check=False)
    except subprocess.TimeoutExpired:
        return None, "takes too long"
    if run.returncode or not out.exists():
        return None, run.stderr.decode(errors="replace").strip()
    with Image.open(out) as picture:
        return picture.convert("RGBA"), ""


def premultiplied(picture):
    alpha = picture.getchannel("A")
    return Image.merge("RGBA", [*(ImageChops.multiply(channel, alpha) for channel in picture.split()[:3]), alpha])


def levels(one, other):
    """The root of the mean square of the difference. Colours under little alpha count as little as they show."""
    difference = ImageChops.difference(premultiplied(one), premultiplied(other))
    return (sum(ImageStat.Stat(difference).sum2) / (4 * one.width * one.height)) ** 0.5


def finding(program, path, size):
    with tempfile.TemporaryDirectory() as folder:
        ours, theirs = pathlib.Path(folder, "ours.png"), pathlib.Path(folder, "theirs.png")
        wanted, _ = drawn(["rsvg-convert", "-w", str(size), "-h", str(size), "-o", theirs, path], theirs)
        found, said = drawn([program, "export", path, "--format", "png", "--size", f"{size}x{size}", "--out", ours], ours)
        if wanted is None:
            return "not drawn by rsvg-convert", ""
        if found is None:
            return "refused", said
        if wanted.size != found.size:
            return "of another size", f"{found.size} for {wanted.size}"
        difference = levels(wanted, found)
        return ("differs", f"{difference:.1f} levels") if difference > MOST_LEVELS else ("same", "")


def documents(folder, most, seen):
    """The paths of SVG files in the folder whose bytes are not in `seen`, which gets them."""
    found = []
    for path in sorted({path.resolve() for path in pathlib.Path(folder).rglob("*.svg*")
                        if path.suffix in (".svg", ".svgz") and path.is_file()}):
        digest = hashlib.sha256(path.read_bytes()).digest()
        if digest not in seen:
            seen.add(digest)
            found.append(path)
    if not 0 < most < len(found):
        return found
    return [found[i * len(found) // most] for i in range(most)]


def main():
    program, most, *folders = sys.argv[1:]
    seen = set()
    by_folder = [documents(folder, int(most), seen) for folder in folders]
    paths = [path for folder in by_folder for path in folder]
    counts = collections.Counter()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        jobs = [(path, size) for path in paths for size in SIZES]
        for (path, size), (kind, said) in zip(jobs, pool.map(lambda job: finding(program, *job), jobs)):
            counts[kind] += 1
            if kind not in ("same", "not drawn by rsvg-convert"):
                print(f"{kind} at {size}: {path}: {said}", flush=True)
    print(f"{len(paths)} of {len(seen)} files in {sum(map(bool, by_folder))} folders at {len(SIZES)} sizes: " + ", ".join(f"{count} {kind}" for kind, count in counts.most_common()))
    return 0 if set(counts) <= {"same", "not drawn by rsvg-convert"} else 1


if __name__ == "__main__":
    sys.exit(main())
