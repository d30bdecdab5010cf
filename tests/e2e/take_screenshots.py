"""Pictures of the application in use, on a light and on a dark desktop.

usage: take_screenshots.py TOBRIMAX DRAG_SOURCE SAMPLE FOLDER
"""

import pathlib
import subprocess
import sys

from desktop import PROGRAMS, Desktop, wait_for

DARK = {"View": "27,30,32", "Window": "42,46,50", "Button": "49,54,59", "Tooltip": "49,54,59", "Selection": "61,174,233"}


def make_dark(desktop):
    """A dark desktop, in the only settings that Qt reads without a plugin."""
    settings = desktop.folder / "home" / ".config"
    settings.mkdir()
    text = "\n".join(f"[Colors:{name}]\nBackgroundNormal={ground}\nForegroundNormal=239,240,241\n"
                     for name, ground in DARK.items())
    (settings / "kdeglobals").write_text(text + "[General]\nfont=DejaVu Sans,9,-1,5,50,0,0,0,0,0\n")
    return {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}


def take(name):
    with Desktop(pathlib.Path(folder) / name) as desktop:
        environment = make_dark(desktop) if name.endswith("dark") else {}
        desktop.start_application(**environment)
        desktop.drag_onto_well(sample)
        desktop.key("alt+r")
        desktop.key("alt+a", "Right", "Left")
        desktop.key("alt+b")
        if environment:
            # A border that can be seen on a dark desktop.
            desktop.key("alt+c")
            desktop.wait_for_window("Select Color")
            desktop.key("alt+h", "ctrl+a")
            desktop.type("#f0f0f2")
            desktop.key("Return")
            desktop.wait_until_gone("Select Color")
        desktop.run("xdotool", "mousemove", "1", "1")
        checked = lambda: (box := desktop.element("Border", "check box")) and desktop.is_checked(box)
        wait_for(checked, "the border")
        desktop.screenshot(name)


if __name__ == "__main__":
    PROGRAMS["tobrimax"], PROGRAMS["drag_source"] = sys.argv[1:3]
    sample, folder = sys.argv[3:5]
    if len(sys.argv) > 5:
        take(sys.argv[5])
    else:
        # One process for each: a process can read one desktop's accessibility tree.
        for wanted in ("window", "window-dark"):
            subprocess.run([sys.executable, __file__, *sys.argv[1:5], wanted], check=True)
