"""Runs every program on the same work, and prints and writes tables of what each took: see bench/compare."""

import argparse
import collections
import json
import os
import pathlib
import random
import shutil
import subprocess
import sys
import textwrap

from PIL import Image

import catalogue
import measured
import quality
import tools
import written_bytes

# `wall` and `cpu` are the largest parts of sharp's wall time and of the C program's CPU time that tobrimax-cli may
# take. Not all programs run on sources that are not `is_for_all`.
Source = collections.namedtuple("Source", "name title side file is_for_all wall cpu")
SOURCES = (Source("logo-1024", "Logo", 1024, "logo-1024.png", True, 0.17, 0.40),
           Source("photo-1024", "Photograph", 1024, "photo-1024.png", True, 0.15, 0.40),
           Source("logo-4096", "Logo", 4096, "logo-4096.png", True, 0.05, 0.40),
           Source("photo-4096", "Photograph", 4096, "photo-4096.jpg", True, 0.12, 0.40),
           Source("sample", "The project's sample", 1024, "sample.png", False, 0.17, 0.40),
           Source("two-colours", "Flat art of two colours", 1024, "two-colours.png", False, 0.17, 0.40),
           Source("graphic-256", "A graphic that is enlarged", 256, "graphic-256.png", False, 0.17, 0.40),
           Source("screenshot", "A screenshot with text", 1024, "screenshot.png", False, 0.17, 0.40),
           Source("photo-16", "The photograph with 16 bits a sample", 1024, "photo-16.png", False, 0.17, 0.40),
           Source("webp", "The photograph as lossy WebP", 1024, "photo-1024.webp", False, 0.17, 0.40),
           Source("sample-svg", "The project's sample as a drawing", 1024, "sample.svg", False, None, None))
# The pictures that are drawn from a seed: bench/bytes has more of each kind.
DRAWN = {"two-colours": written_bytes.two_colours, "graphic-256": written_bytes.small_graphic,
         "screenshot": written_bytes.screenshot}
SEED = 1
DOCUMENT = measured.ROOT / "docs" / "performance.md"
FEWEST_RUNS = 5
MEGABYTE = 1e6

# A figure of tobrimax-cli, its bound, and whether the figure keeps to it.
Bound = collections.namedtuple("Bound", "what figure limit is_kept")


def at_most(what, figure, limit, unit=""):
    return Bound(what, f"{figure:.2f}{unit}", f"≤ {limit:.2f}{unit}", figure <= limit)


def at_least(what, figure, limit):
    return Bound(what, f"{figure:.2f}", f"≥ {limit}", figure >= limit)


def milliseconds(seconds):
    return f"{1000 * seconds:,.0f}"


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|---" + "|---:" * (len(head) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def stage_times(path, folder, runs):
    """{stage: seconds} from tobrimax-cli's option --timings; empty where this build does not report them."""
    command = [tools.CLI, "generate", path, "--out", folder, "--json", "--timings"]
    figures = []
    for _ in range(runs):
        done = subprocess.run(["taskset", "-c", str(measured.CORE), *command], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE)
        if done.returncode == 2:
            return {}
        if done.returncode != 0:
            sys.exit(done.stderr.decode())
        told = json.loads(done.stdout).get("timings", {})
        figures.append({name: value / 1000 for name, value in told.items()})
    return measured.median(figures)


# Seconds. A program takes ten milliseconds or more to read from the disk with its libraries; a shorter run shows that.
SHORT = 1


def picture(source):
    """The path of a source's picture. It is made where it is missing."""
    path = tools.WORK / "sources" / source.file
    path.parent.mkdir(parents=True, exist_ok=True)
    if source.name in ("sample", "sample-svg"):
        shutil.copy(measured.ROOT / "resources" / "sample" / f"tobrimax-{source.file}", path)
    elif source.name in DRAWN:
        DRAWN[source.name](random.Random(f"{SEED} {DRAWN[source.name].__name__}")).save(path)
    elif source.name == "webp":
        with Image.open(measured.picture("photo", source.side, path.with_suffix(".png"))) as photograph:
            photograph.save(path, quality=90)
    elif source.name == "photo-16":
        measured.picture(source.name, source.side, path)
    else:
        measured.picture(source.name.split("-")[0], source.side, path)
    return path


def run(tool, path):
    """Runs a tool. Returns the folder with its files, and the figures of the run."""
    folder = measured.fresh(tools.WORK / "out")
    return folder, measured.run(tool.command(path, folder), tool.environment, tool.is_pinned)


def checked(tool, path):
    """Runs a tool and checks its files. Returns their {"bytes", "pixels"}, and the run's wall time."""
    folder, took = run(tool, path)
    tool.check(folder)
    return {"bytes": sum(file.stat().st_size for file in folder.rglob("*") if file.is_file()),
            "pixels": (tool.pixels(folder) if tool is tools.TAURI else
                       sum(icon["side"] ** 2 for icon in catalogue.plan()))}, took["wall"]


def measure(source, path, runs):
    """{tool: {"wall", "cpu", "peak", "bytes", "pixels"}}. The tools take turns, so whatever disturbs the machine for
    a while disturbs them all. Some machines drop files from memory that were not read for a minute: before each short
    run the same tool runs once without being counted."""
    chosen = tools.all_for(source)
    written, expected = {}, {}
    for tool in chosen:
        written[tool], expected[tool] = checked(tool, path)
    figures = {tool: [] for tool in chosen}
    for turn in range(runs):
        for tool in chosen:
            if expected[tool] < SHORT:
                run(tool, path)
            figures[tool].append(run(tool, path)[1])
        print(f"compare: {source.name}, run {turn + 1} of {runs}", file=sys.stderr)
    shutil.rmtree(tools.WORK / "out")
    return {tool: measured.median(figures[tool]) | written[tool] for tool in chosen}


def figures_table(results):
    ours = results[tools.OURS]
    rows = []
    for tool, took in results.items():
        per_pixel = took["wall"] / took["pixels"]
        rows.append([tool.name, milliseconds(took["wall"]), milliseconds(took["cpu"]),
                     f"{took['peak'] / MEGABYTE:,.0f}", f"{took['bytes']:,}", f"{1000 * per_pixel * 1e6:,.1f}",
                     f"{ours['wall'] / took['wall']:.3f}", f"{ours['cpu'] / took['cpu']:.3f}",
                     f"{ours['peak'] / took['peak']:.2f}", f"{ours['bytes'] / took['bytes']:.2f}"])
        if tool is tools.TAURI:
            # tauri icon writes another set of files.
            rows[-1][6:] = [f"{ours['wall'] / ours['pixels'] / per_pixel:.3f} per pixel", "", rows[-1][8], ""]
    return table(["", "wall ms", "CPU ms", "peak MB", "bytes written", "ms per million pixels", "ours ÷ theirs: wall",
                  "CPU", "peak", "bytes"], rows)


def bounds(source, results):
    ours = results[tools.OURS]
    if tools.RESVG in results:
        return [at_most("CPU time ÷ resvg's", ours["cpu"] / results[tools.RESVG]["cpu"], 1.05)]
    sharp, vips = results[tools.SHARP], results[tools.VIPS]
    cleverest = min((tool for tool in results if isinstance(tool, tools.Sharp) and tool.is_pinned),
                    key=lambda tool: results[tool]["wall"])
    found = [
        at_most("wall ÷ sharp's", ours["wall"] / sharp["wall"], source.wall),
        at_most(f"wall ÷ the fastest script's for sharp on one core, {cleverest.name}",
                ours["wall"] / results[cleverest]["wall"], 1),
        at_most("CPU time ÷ the C program's", ours["cpu"] / vips["cpu"], source.cpu),
        at_most("bytes ÷ sharp's", ours["bytes"] / sharp["bytes"], 1),
        at_most("peak memory", ours["peak"] / MEGABYTE, 48, " MB")]
    if source.is_for_all:
        imagemagick, tauri = results[tools.IMAGEMAGICK], results[tools.TAURI]
        found += [at_least("times as fast as tauri icon, per output pixel",
                           tauri["wall"] / tauri["pixels"] / (ours["wall"] / ours["pixels"]), 10),
                  at_least("times as fast as ImageMagick", imagemagick["wall"] / ours["wall"], 20)]
    if source.side <= 1024:
        found.append(at_most("peak memory ÷ sharp's", ours["peak"] / sharp["peak"], 0.6))
    return found


def limit_sentence(results, stages):
    """How long a run takes beside the work that no program can leave out."""
    if not stages:
        return "This build of tobrimax-cli does not tell its stages' times (`--timings`)."
    wall, floor = results[tools.OURS]["wall"], stages["decode"] + stages["compress"]
    told = ", ".join(f"{name} {milliseconds(seconds)}" for name, seconds in stages.items())
    return wrapped(f"Decoding the source and compressing the filtered bytes alone take {milliseconds(floor)} ms. The whole "
                   f"run takes {wall / floor:.2f} times that. Stages in ms: {told}.")


def reduced(tool, path, target):
    """`path`, a picture of quality.SIDE, reduced to `target` by a tool. The tool reduces it as it does for icons."""
    folder = measured.fresh(tools.WORK / "quality")
    if tool is tools.TAURI:
        command, name = [*tool.command(path, folder), "--png", str(target)], f"{target}x{target}.png"
    else:
        command = tool.command(path, folder)
        name = next(icon["file"] for icon in catalogue.png_icons() if icon["side"] == target)
    measured.run(command, tool.environment)
    with Image.open(folder / name) as result:
        result.load()
    shutil.rmtree(folder)
    return result


def quality_figures(chosen):
    """{tool: {target: {"alias", "loss", "overshoot"}}}"""
    def saved(name, picture):
        path = tools.WORK / "sources" / f"{name}.png"
        picture.save(path)
        return path

    zone, edge = saved("zone", quality.zone_plate()), saved("edge", quality.edge())
    slow = {target: saved(f"zone-{target}", quality.zone_plate(target)) for target in quality.TARGETS}
    return {tool: {target: {"alias": quality.alias(reduced(tool, zone, target)),
                            "loss": quality.loss(reduced(tool, slow[target], target)),
                            "overshoot": quality.overshoot(reduced(tool, edge, target))} for target in quality.TARGETS}
            for tool in chosen}


def quality_table(figures):
    head = [""] + [f"{name} at {target}" for target in quality.TARGETS for name in ("alias", "loss", "overshoot")]
    rows = [[tool.name] + [f"{found[target][name]:.2f}" if name != "overshoot" else f"{found[target][name]}"
                           for target in quality.TARGETS for name in ("alias", "loss", "overshoot")]
            for tool, found in figures.items()]
    return table(head, rows)


def quality_bounds(figures):
    ours, sharp = figures[tools.OURS], figures[tools.SHARP]
    return [at_most(f"{name} at {target}, levels, at most sharp's", ours[target][name], sharp[target][name])
            for target in quality.TARGETS for name in ("alias", "overshoot")]


INTRODUCTION = """# Performance

`bench/compare` writes this page.

## Question

How long does the full set of icons take, and how much memory, with tobrimax-cli and with the programs that people use
for it? The set is {pngs} PNG files and the {icns} images of Application.icns.

## Method

**Figures.** Whole processes are measured from start to exit, each pinned to one core. A figure is the median of {runs}
runs; the programs take turns. CPU is user and system time. Peak is the largest resident memory. Each program's first
run is not counted: its icons were opened and have the right sizes. Before each run of less than a second there is one
more that is not counted. It reads the program from the disk, since some machines drop files from memory within a
minute. Each run writes into an empty folder. The stages are told by further runs, which replace the files of the one
before: some file systems take longer for that.

**Sources.** They are made from fixed seeds: a logo (flat shapes, gradients, antialiased edges, transparent surround;
PNG) and a picture as a camera takes it (PNG; at 4096 pixels JPEG of quality 90). Further sources have the rows of fewer
programs: the project's sample as PNG and as SVG, the photograph in other formats, and pictures of the kinds that
`bench/bytes` draws.

**Programs.** tobrimax-cli draws each of its icons anew.

- sharp is scripted as its users do ([script](../bench/peers/sharp-icons.mjs)): one decode to raw pixels, then one
  resize (Lanczos 3) and one PNG with default options for each icon; `sharp.concurrency(1)`, `UV_THREADPOOL_SIZE=1`,
  `sharp.cache(false)`. It has no icns: the {icns} images are PNG files. Its other rows are what a script could also
  do:
  - (a) Each of the {distinct} distinct sizes is made once, and copied for the other files.
  - (b) One reduction to 1024 pixels comes before all others.
  - (c) The source's file is opened again for each icon, so that a JPEG may be decoded at a part of its size.
  - (d) All icons are made at once on all cores, with as many threads as sharp takes by itself.
  - (e) Each size is made once, from the smallest of several halved copies that suffices; (f) with libpng's choice of a
    filter for each row, too.
- libvips, C is a program in C on Debian's libvips ([source](../bench/peers/vips-icons.c)): one decode, halved copies,
  each size reduced and compressed once, copies for the other files.
- Skia's canvas (npm's `@napi-rs/canvas`) draws each size once from the decoded source, with
  `imageSmoothingQuality = "high"` ([script](../bench/peers/skia-icons.mjs)); the other files are copies.
- resvg (npm's `@resvg/resvg-js`) draws each size of a drawing once ([script](../bench/peers/resvg-icons.mjs)); the
  other files are copies.
- ImageMagick is one process for all sizes, `convert SOURCE ( +clone -resize WxH! -write FILE +delete ) … null:`, on one
  thread, with its default filter.
- tauri icon (npm's `@tauri-apps/cli`) writes another set of files, so it is compared per output pixel. It reads no
  JPEG, so it gets the same picture as a PNG file.

**Machine.** {machine}.{load}

**Versions.** {versions}."""

LIMITS = """## Limits

- The figures are those of one machine and of the versions above. Another machine has other milliseconds, and its
  ratios may differ too.
- tauri icon and tobrimax-cli make different files. Milliseconds per pixel are the nearest that can be compared.
- Some programs write fewer bytes of some sources: sharp (f) and ImageMagick of photographs, Skia's canvas of graphics,
  tauri icon of all. They compress more, and take longer for it.
- Ten pictures are not all. What compresses worse takes longer, with each of the programs.
- The quality figures tell how a filter treats frequencies and edges. They do not tell which icon looks best."""


def wrapped(text, indent=""):
    """`text` as lines of the document; all but the first begin with `indent`."""
    return textwrap.fill(text, 120, subsequent_indent=indent, break_long_words=False, break_on_hyphens=False)


def document(arguments, sections, load):
    introduction = INTRODUCTION.format(
        pngs=len(catalogue.png_icons()), icns=len(catalogue.icns_sides()), runs=arguments.runs,
        distinct=len({icon["side"] for icon in catalogue.plan()}), machine=measured.machine(), load=load and " " + load,
        versions=", ".join(f"{name} {version}" for name, version in tools.versions()))
    introduction = "\n".join(wrapped(line) if line.startswith("**") else line for line in introduction.split("\n"))
    return "\n\n".join([introduction, "## Results", *sections, LIMITS]) + "\n"


# The sources whose shortest files are compared with those that optimisers leave.
SHORTEST = ("two-colours", "logo-1024", "photo-1024", "sample")

SHORTEST_TEXT = """`--compress best` tries ten ways to filter each icon, in each kind of samples that holds its pixels exactly,
and compresses the two most promising as densely as libdeflate can. The bytes are those of the {pngs} PNG files; the seconds
are processor time. Two optimisers get the files of the default: oxipng (npm's `@jsquash/oxipng`) at level 4, whose
WebAssembly is no measure for its time, and the lossless pass of `@napi-rs/image` ([script](../bench/peers/shorten.mjs))."""


def shortest(path):
    """What the PNG files of a full set take: {"fast", "best", "oxipng", "napi"} with {"bytes", "cpu"} each."""
    def files(*options):
        folder = measured.fresh(tools.WORK / "shortest")
        took = measured.run([*tools.OURS.command(path, folder), *options])
        found = sorted(folder.rglob("*.png"))
        return found, {"bytes": sum(file.stat().st_size for file in found), "cpu": took["cpu"]}

    _, best = files("--compress", "best")
    fast_files, fast = files()
    return {"fast": fast, "best": best, **{way: tools.shortened(way, fast_files) for way in ("oxipng", "napi")}}


def shortest_section(results):
    rows = [[source.title, f"{took['fast']['bytes']:,}", f"{took['best']['bytes']:,}",
             f"{100 * (1 - took['best']['bytes'] / took['fast']['bytes']):.0f} %", f"{took['oxipng']['bytes']:,}",
             f"{took['napi']['bytes']:,}", f"{took['best']['cpu']:.1f}", f"{took['napi']['cpu']:.1f}"]
            for source, took in results.items()]
    head = ["picture", "fast, bytes", "best, bytes", "saved", "oxipng, bytes", "@napi-rs/image, bytes", "best, s",
            "@napi-rs/image, s"]
    return "\n\n".join(["### The shortest files", wrapped(" ".join(SHORTEST_TEXT.format(
        pngs=len(catalogue.png_icons())).split())), table(head, rows)])


def shortest_bounds(took):
    return [at_most("bytes of --compress best ÷ oxipng's", took["best"]["bytes"] / took["oxipng"]["bytes"], 1.002),
            at_most("CPU time of --compress best ÷ @napi-rs/image's", took["best"]["cpu"] / took["napi"]["cpu"], 4)]


def quality_section(figures):
    paragraphs = [" ".join(paragraph.split()) for paragraph in quality.__doc__.split("\n\n")]
    explanation = [wrapped(paragraphs[0]), *(wrapped("- " + text, "  ") for text in paragraphs[1:])]
    return "\n\n".join(["### Quality", *explanation, quality_table(figures)])


def section(source, results, stages):
    pixels = f"{source.side} × {source.side}"
    return "\n\n".join([f"### {source.title}, {pixels}, {pathlib.Path(source.file).suffix[1:].upper()}",
                        figures_table(results), limit_sentence(results, stages)])


def main():
    parser = argparse.ArgumentParser(prog="bench/compare", description="Measures tobrimax-cli beside its peers.")
    parser.add_argument("--runs", type=int, default=FEWEST_RUNS, help=f"of each program on each source ({FEWEST_RUNS})")
    parser.add_argument("--source", action="append", choices=[source.name for source in SOURCES],
                        help="only this one; may be given several times")
    parser.add_argument("--write", type=pathlib.Path, metavar="FILE",
                        help=f"the Markdown file to write; by default docs/{DOCUMENT.name} where all sources are "
                        f"measured {FEWEST_RUNS} times or more, otherwise no file")
    arguments = parser.parse_args()
    load = measured.load()
    if load:
        print(f"compare: warning: {load}", file=sys.stderr)
    tools.install()
    chosen = [source for source in SOURCES if not arguments.source or source.name in arguments.source]
    if any(tools.VIPS in tools.all_for(source) for source in chosen):
        tools.build_vips()
    pictures = {source: picture(source) for source in chosen}

    sections, kept = [], []
    for source in chosen:
        results = measure(source, pictures[source], arguments.runs)
        stages = stage_times(pictures[source], measured.fresh(tools.WORK / "stages"), arguments.runs)
        kept += bounds(source, results)
        sections.append(section(source, results, stages))
    shorter = {source: shortest(pictures[source]) for source in chosen if source.name in SHORTEST}
    if shorter:
        sections.append(shortest_section(shorter))
        kept += [bound for took in shorter.values() for bound in shortest_bounds(took)]
    figures = quality_figures([tools.OURS, tools.SHARP, tools.IMAGEMAGICK, tools.TAURI])
    kept += quality_bounds(figures)
    sections.append(quality_section(figures))
    text = document(arguments, sections, load)
    print(text, end="")
    is_whole = len(chosen) == len(SOURCES) and arguments.runs >= FEWEST_RUNS
    path = arguments.write or (DOCUMENT if is_whole else None)
    if path is not None:
        path.write_text(text)
        print(f"compare: written to {os.path.relpath(path)}", file=sys.stderr)
    missed = [bound for bound in kept if not bound.is_kept]
    for bound in missed:
        print(f"compare: {bound.what}: {bound.figure}, bound {bound.limit}", file=sys.stderr)
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
