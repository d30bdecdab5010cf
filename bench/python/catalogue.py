"""The icons that the built-in catalogue asks for."""

import plistlib
import re

from measured import ROOT

PLATFORMS = ("iphone", "ipad", "watch", "mac", "android")
MAC = PLATFORMS.index("mac")


def _side(entry):
    width, height = (int(side) for side in re.fullmatch(r"\{(\d+), *(\d+)\}", entry["Dimensions"]).groups())
    assert width == height, entry
    return width


def catalogue():
    with open(ROOT / "resources" / "ImageSizeFile.plist", "rb") as file:
        return plistlib.load(file)


def png_icons():
    """[{"file", "side"}] of the PNG files of all platforms, at the paths where tobrimax-cli puts them."""
    icons = []
    for platform, entries in zip(PLATFORMS, catalogue(), strict=True):
        folder = "icons" if platform == "android" else "AppIcon.appiconset"
        icons += [{"file": f"{platform}/{folder}/{entry['Name']}.png", "side": _side(entry)}
                  for entry in entries.values()]
    return icons


def icns_sides():
    """The sides of the images of Application.icns: each size that the Mac's icons have, once."""
    return sorted({_side(entry) for entry in catalogue()[MAC].values()}, reverse=True)


def plan():
    """The icons that a program without icns writes: it also writes a PNG file for each image of Application.icns."""
    return png_icons() + [{"file": f"mac/Application/{side}.png", "side": side} for side in icns_sides()]
