"""Measures how time and memory grow with the source's side and with the number of icons: see bench/growth."""

import argparse
import collections
import math
import pathlib
import plistlib
import shutil
import sys

import catalogue
import chart
import measured

WORK = measured.ROOT / "build" / "growth"
SIDES = (512, 1024, 2048, 4096, 8192, 16384)
COUNTS = (10, 30, 100, 300, 1000)
FEWEST_RUNS = 5
# Linear growth has 1. The rest allows for caches that a larger picture does not fit into, and for the clock.
LARGEST_EXPONENT = 1.1

# x is the source's side or the number of icons; pixels are those of the source or of all icons together.
Point = collections.namedtuple("Point", "x pixels wall peak")


def side(i):
    """The side of the i-th icon of a made-up catalogue: from 32 to 224 pixels, spread evenly, not in order."""
    return 32 + 37 * i % 193


def made_up_catalogue(count):
    """The path of a catalogue of `count` icons, all of them the iPhone's."""
    icons = {f"icon-{i}": {"Dimensions": f"{{{side(i)}, {side(i)}}}", "Name": f"icon-{i}"} for i in range(count)}
    path = WORK / f"catalogue-{count}.plist"
    path.write_bytes(plistlib.dumps([icons] + [{}] * (len(catalogue.PLATFORMS) - 1)))
    return path


def points(runs, cases):
    """A point for each of `cases`, [(x, pixels, words, files)]: `words` are the command's, `files` is how many files it
    writes. The cases take turns."""
    figures = {case[0]: [] for case in cases}
    for turn in range(runs):
        for x, _, words, files in cases:
            folder = measured.fresh(WORK / "out")
            figures[x].append(measured.run([measured.CLI, "generate", *words, "--out", folder]))
            written = sum(path.is_file() for path in folder.rglob("*"))
            if written != files:
                sys.exit(f"growth: {written} files were written instead of {files}")
        print(f"growth: run {turn + 1} of {runs}", file=sys.stderr)
    shutil.rmtree(WORK / "out")
    medians = {x: measured.median(found) for x, found in figures.items()}
    return [Point(x, pixels, medians[x]["wall"], medians[x]["peak"]) for x, pixels, _, _ in cases]


def with_sides(runs, largest):
    icons = catalogue.png_icons()
    return points(runs, [(side, side**2, [measured.picture("logo", side, WORK / f"logo-{side}.png")],
                          len(icons) + 1) for side in SIDES if side <= largest])


def with_counts(runs):
    source = measured.picture("logo", 1024, WORK / "logo-1024.png")
    return points(runs, [(count, sum(side(i) ** 2 for i in range(count)),
                          [source, "--platform", "iphone", "--catalogue", made_up_catalogue(count)], count)
                         for count in COUNTS])


def line(found):
    """(a, b) of the line wall = a + b × pixels that is nearest to the points by least squares of relative errors."""
    weights = [1 / point.wall**2 for point in found]
    total = sum(weights)
    x = sum(w * point.pixels for w, point in zip(weights, found)) / total
    y = sum(w * point.wall for w, point in zip(weights, found)) / total
    b = (sum(w * (point.pixels - x) * (point.wall - y) for w, point in zip(weights, found)) /
         sum(w * (point.pixels - x) ** 2 for w, point in zip(weights, found)))
    return y - b * x, b


def exponent(found):
    """p of wall ~ pixels^p, over the larger half of the points: the constant part of a run counts least there."""
    larger = found[len(found) // 2:] if len(found) > 3 else found[-2:]
    x, y = [math.log(point.pixels) for point in larger], [math.log(point.wall) for point in larger]
    mean_x, mean_y = sum(x) / len(x), sum(y) / len(y)
    return (sum((u - mean_x) * (v - mean_y) for u, v in zip(x, y)) / sum((u - mean_x) ** 2 for u in x))


def state(what, pixels, found):
    """Prints the points and their growth. Returns whether time grows no faster than the pixels."""
    a, b = line(found)
    worst = max(abs(a + b * point.pixels - point.wall) / point.wall for point in found)
    power = exponent(found)
    print(f"{what:>10} {'Mpixels':>10} {'wall ms':>10} {'peak MB':>10}")
    for point in found:
        print(f"{point.x:>10,} {point.pixels / 1e6:>10.1f} {1000 * point.wall:>10.0f} {point.peak / 1e6:>10.0f}")
    print(f"growth: wall = {1000 * a:.0f} ms + {1e9 * b:.1f} ns × {pixels} pixels, within "
          f"{100 * worst:.0f} %; over the larger half it grows with the pixels' {power:.2f}th power")
    is_met = power <= LARGEST_EXPONENT
    if not is_met:
        print(f"growth: that is faster than the pixels: the power may be at most {LARGEST_EXPONENT}")
    return is_met


def picture(description, x_name, pixels, found, memory_guide, memory_name):
    a, b = line(found)
    ticks = [point.x for point in found]
    return chart.picture(description, [
        chart.panel("Time, ms", x_name, ticks, [(point.x, 1000 * point.wall) for point in found],
                    [(point.x, 1000 * (a + b * point.pixels)) for point in found],
                    f"{1000 * a:.0f} ms + {1e9 * b:.0f} ns per {pixels} pixel"),
        chart.panel("Peak memory, MB", x_name, ticks, [(point.x, point.peak / 1e6) for point in found],
                    [(point.x, memory_guide(point) / 1e6) for point in found], memory_name)])


def main():
    parser = argparse.ArgumentParser(prog="bench/growth", description="Measures how time and memory grow.")
    parser.add_argument("--runs", type=int, default=FEWEST_RUNS, help=f"of each size ({FEWEST_RUNS})")
    parser.add_argument("--largest", type=int, choices=SIDES[2:], default=SIDES[-1], help="source side")
    parser.add_argument("--write", type=pathlib.Path, metavar="FOLDER",
                        help="the folder for the charts; by default docs where everything is measured, otherwise "
                        "build/growth")
    arguments = parser.parse_args()
    WORK.mkdir(parents=True, exist_ok=True)
    load = measured.load()
    if load:
        print(f"growth: warning: {load}", file=sys.stderr)
    print(f"growth: {measured.machine()}")
    by_side, by_count = with_sides(arguments.runs, arguments.largest), with_counts(arguments.runs)
    is_met = [state("side", "source", by_side), state("icons", "output", by_count)]
    is_whole = arguments.largest == SIDES[-1] and arguments.runs >= FEWEST_RUNS
    folder = arguments.write or (measured.ROOT / "docs" if is_whole else WORK)
    (folder / "growth-source.svg").write_text(picture(
        "Time and memory against the side of the source picture", "side of the source, pixels", "source",
        by_side, lambda point: 5.4 * point.x**2 + 96e6, "source pixels × 5.4 bytes + 96 MB"))
    (folder / "growth-icons.svg").write_text(picture(
        "Time and memory against the number of icons", "icons", "output", by_count,
        lambda point: by_count[0].peak, "no growth"))
    print(f"growth: charts are in {folder}")
    return 0 if all(is_met) else 1


if __name__ == "__main__":
    sys.exit(main())
