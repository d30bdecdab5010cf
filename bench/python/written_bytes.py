"""Compares the bytes of our PNG files with those that sharp writes for the same pixels: see bench/bytes."""

import argparse
import json
import pathlib
import random
import shutil
import subprocess

from PIL import Image, ImageDraw, ImageFont

import measured
import tools

SIDE = 1024
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"


def color(chance):
    return tuple(chance.randrange(256) for _ in range(3)) + (255,)


def smooth(picture, side=SIDE):
    return picture.resize((side, side), Image.Resampling.LANCZOS)


def circle(chance, side):
    x, y = chance.randrange(side), chance.randrange(side)
    radius = chance.randrange(side // 20, side // 4)
    return x - radius, y - radius, x + radius, y + radius


def two_colours(chance):
    """Flat shapes of one colour on another."""
    side = 2 * SIDE
    picture = Image.new("RGBA", (side, side), color(chance))
    draw = ImageDraw.Draw(picture)
    ink = color(chance)
    for _ in range(3):
        draw.ellipse(circle(chance, side), fill=ink)
        draw.polygon([(chance.randrange(side), chance.randrange(side)) for _ in range(3)], fill=ink)
    return smooth(picture)


def small_graphic(chance):
    """Circles with outlines on a rounded square, in 256 pixels: it is enlarged."""
    picture = Image.new("RGBA", (SIDE, SIDE))
    draw = ImageDraw.Draw(picture)
    draw.rounded_rectangle((60, 60, SIDE - 60, SIDE - 60), 200, fill=color(chance))
    for _ in range(8):
        draw.ellipse(circle(chance, SIDE), fill=color(chance), outline=color(chance), width=chance.randrange(4, 30))
    return smooth(picture, 256)


def screenshot(chance):
    """A window with lines of text."""
    picture = Image.new("RGB", (SIDE, SIDE), (250, 250, 250))
    draw = ImageDraw.Draw(picture)
    font = ImageFont.truetype(FONT, 22)
    draw.rectangle((0, 0, SIDE, 60), fill=color(chance))
    for y in range(80, SIDE - 30, 32):
        words = ("".join(chance.choices("etaoinshrdlucmfw", k=chance.randrange(2, 10))) for _ in range(12))
        draw.text((40, y), " ".join(words), fill=(30, 30, 30), font=font)
    return picture


def gradient(chance):
    """Shapes on a gradient from top to bottom."""
    column = Image.linear_gradient("L").resize((SIDE, SIDE))
    picture = Image.composite(Image.new("RGBA", (SIDE, SIDE), color(chance)),
                              Image.new("RGBA", (SIDE, SIDE), color(chance)), column)
    draw = ImageDraw.Draw(picture)
    for _ in range(3):
        draw.ellipse(circle(chance, SIDE), fill=color(chance))
    return picture


def noise(chance):
    """Soft clouds under a grain, as a camera's picture has it."""
    def layer(side, deviation):
        values = bytes(max(0, min(255, round(chance.gauss(128, deviation)))) for _ in range(side * side))
        return Image.frombytes("L", (side, side), values).resize((SIDE, SIDE), Image.Resampling.BICUBIC)
    grain = layer(SIDE, 8)
    return Image.merge("RGB", [Image.blend(layer(12, 60), grain, 0.3) for _ in range(3)])


def sources(folder, seed):
    """[(name, path)]: the project's sample, and pictures from the seed."""
    made = [("sample", measured.ROOT / "resources" / "sample" / "tobrimax-sample.png")]
    for draw in (two_colours, small_graphic, screenshot, gradient, noise):
        path = folder / f"{draw.__name__}.png"
        draw(random.Random(f"{seed} {draw.__name__}")).save(path)
        made.append((draw.__name__.replace("_", " "), path))
    return made


def compared(path, script, folder):
    subprocess.run([tools.CLI, "generate", path, "--out", measured.fresh(folder), "--quiet"], check=True,
                   stderr=subprocess.DEVNULL)
    files = sorted(folder.rglob("*.png"))
    told = subprocess.run(["node", script, *files], check=True, stdout=subprocess.PIPE).stdout
    return json.loads(told)


def main():
    parser = argparse.ArgumentParser(prog="bytes")
    parser.add_argument("--seed", type=int, default=random.randrange(10**6))
    seed = parser.parse_args().seed
    tools.install()
    script = pathlib.Path(shutil.copy(tools.PEERS / "sharp-again.mjs", tools.WORK))
    pictures = measured.fresh(tools.WORK / "bytes")
    print(f"seed {seed}")
    print(f"{'source':<16}{'our bytes':>12}{'÷ sharp':>10}{'÷ sharp, adaptive':>20}")
    for name, path in sources(pictures, seed):
        sums = compared(path, script, tools.WORK / "out")
        print(f"{name:<16}{sums['files']:>12,}{sums['files'] / sums['usual']:>10.2f}"
              f"{sums['files'] / sums['adaptive']:>20.2f}", flush=True)


if __name__ == "__main__":
    main()
