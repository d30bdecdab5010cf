"""Pictures of every window of the application, on a light and on a dark desktop, at scale 1, 1.5 and 2, in a font of 18
points, and from right to left.

usage: take_screenshots.py TOBRIMAX DRAG_SOURCE SAMPLE FOLDER
"""

import pathlib
import subprocess
import sys

from desktop import PROGRAMS, Desktop, wait_for

DARK = {"View": "27,30,32", "Window": "42,46,50", "Button": "49,54,59", "Tooltip": "49,54,59", "Selection": "61,174,233"}


def make_desktop(desktop, look):
    """A dark desktop, or one with a large font, in the only settings that Qt reads without a plugin."""
    settings = desktop.folder / "home" / ".config"
    settings.mkdir(exist_ok=True)
    text = "\n".join(f"[Colors:{name}]\nBackgroundNormal={ground}\nForegroundNormal=239,240,241\n"
                     for name, ground in DARK.items()) if "dark" in look else ""
    size = 18 if "18pt" in look else 9
    (settings / "kdeglobals").write_text(f"{text}[General]\nfont=DejaVu Sans,{size},-1,5,50,0,0,0,0,0\n")
    return {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}


def mirror(desktop):
    """Has the program start from right to left."""
    mirrored = desktop.folder / "bin" / "mirrored"
    mirrored.write_text(f'#!/bin/sh\nexec "{PROGRAMS["tobrimax"]}" -reverse\n')
    mirrored.chmod(0o755)
    PROGRAMS["tobrimax"] = str(mirrored)
    # The well is on the right side of the window.
    desktop.well_part = 3 / 4


def start(desktop, look, active="Tobrimax"):
    environment = make_desktop(desktop, look) if "dark" in look or "18pt" in look else {}
    if "scale" in look:
        environment["QT_SCALE_FACTOR"] = look.rpartition("-")[2]
    if "mirrored" in look:
        mirror(desktop)
    desktop.start_application(active, **environment)


def take_main_window(desktop, look):
    start(desktop, look)
    desktop.drag_onto_well(sample)
    desktop.key("alt+r")
    desktop.key("alt+a", *["Right"] * 44)
    desktop.key("alt+b")
    if "dark" in look:
        # A light border can be seen on a dark desktop.
        desktop.key("alt+c")
        desktop.wait_for_window("Select Color")
        desktop.screenshot("colour-panel")
        desktop.key("alt+h", "ctrl+a")
        desktop.type("#f0f0f2")
        desktop.key("Return")
        desktop.wait_until_gone("Select Color")
    desktop.run("xdotool", "mousemove", "1", "1")
    wait_for(lambda: (box := desktop.element("Border", "check box")) and desktop.is_checked(box), "the border")
    desktop.screenshot("window")


def take_other_windows(desktop, look):
    settings = desktop.folder / "home" / ".config" / "Varnholt"
    settings.mkdir(parents=True)
    (settings / "Tobrimax.conf").write_text("[General]\nappOpenedCount=6\n")
    start(desktop, look, active="Rate Us")
    desktop.screenshot("rate-prompt")
    desktop.key("Tab", "space")
    desktop.wait_until_gone("Rate Us")
    for keys, title, name in ((("alt+h", "a"), "About Tobrimax", "about"), (("alt+h", "m"), "More from Varnholt", "promotion")):
        desktop.run("xdotool", "windowactivate", "--sync", desktop.window)
        desktop.key(*keys)
        desktop.wait_for_window(title)
        desktop.screenshot(name)
        desktop.key("Escape")
        desktop.wait_until_gone(title)
    text = desktop.folder / "words.txt"
    text.write_text("no picture")
    desktop.drag_onto_well(text)
    desktop.key("alt+g")
    desktop.wait_for_window("Icon File Error")
    desktop.screenshot("alert")


def take(what, look):
    with Desktop(pathlib.Path(folder) / look / what) as desktop:
        take_main_window(desktop, look) if what == "main" else take_other_windows(desktop, look)


if __name__ == "__main__":
    PROGRAMS["tobrimax"], PROGRAMS["drag_source"] = sys.argv[1:3]
    sample, folder = sys.argv[3:5]
    if len(sys.argv) > 5:
        take(*sys.argv[5:7])
    else:
        # Each desktop has a process of its own, because a process can read the accessibility tree of one desktop only.
        for look in ("light", "dark", "light-scale-1.5", "light-scale-2", "dark-scale-2", "light-18pt", "dark-18pt", "light-mirrored",
                     "dark-mirrored"):
            for what in ("main", "others"):
                subprocess.run([sys.executable, __file__, *sys.argv[1:5], what, look], check=True)
