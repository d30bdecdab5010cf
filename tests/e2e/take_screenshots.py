"""Pictures of every window of the application, on a light and on a dark desktop, at scale 1, 1.5 and 2, in a font of 18
points, from right to left, in German and in Japanese.

usage: take_screenshots.py TOBRIMAX DRAG_SOURCE SAMPLE FOLDER
"""

import pathlib
import subprocess
import sys

from desktop import PROGRAMS, Desktop, wait_for

DARK = {"View": "27,30,32", "Window": "42,46,50", "Button": "49,54,59", "Tooltip": "49,54,59", "Selection": "61,174,233"}

# Of each language: its code, the keys of the controls and menu items, the titles of windows and the name of a box.
ENGLISH = {"code": "en", "rounded": "r", "radius": "a", "border": "b", "generate": "g", "about": "a", "more": "m",
           "About": "About Tobrimax", "More": "More from Varnholt", "Border": "Border",
           "Project": "Generate for a Project", "Generate": "Generate", "Done": "Done"}
LANGUAGES = {
    "german": {"code": "de", "rounded": "e", "radius": "u", "border": "m", "generate": "i", "about": "udiaeresis",
               "more": "m", "About": "Über Tobrimax", "More": "Mehr von Varnholt", "Border": "Rahmen",
               "Project": "Für ein Projekt erzeugen", "Generate": "Erzeugen", "Done": "Fertig"},
    "japanese": ENGLISH | {"code": "ja", "About": "Tobrimax について", "More": "Varnholt のほかのアプリ", "Border": "枠線(B)",
                            "Project": "プロジェクト用に生成", "Generate": "生成(G)", "Done": "完了(D)"},
}


def language_of(look):
    return next((language for word, language in LANGUAGES.items() if word in look), ENGLISH)


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
    environment["LANGUAGE"] = language_of(look)["code"]
    desktop.start_application(active, **environment)


def take_main_window(desktop, look):
    start(desktop, look)
    desktop.drag_onto_well(sample)
    words = language_of(look)
    desktop.key("alt+" + words["rounded"])
    desktop.key("alt+" + words["radius"], *["Right"] * 44)
    desktop.key("alt+" + words["border"])
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
    wait_for(lambda: (box := desktop.element(words["Border"], "check box")) and desktop.is_checked(box), "the border")
    desktop.screenshot("window")


def take_other_windows(desktop, look):
    settings = desktop.folder / "home" / ".config" / "Varnholt"
    settings.mkdir(parents=True)
    (settings / "Tobrimax.conf").write_text("[General]\nappOpenedCount=6\n")
    start(desktop, look, active="Rate Us")
    desktop.screenshot("rate-prompt")
    desktop.key("Tab", "space")
    desktop.wait_until_gone("Rate Us")
    words = language_of(look)
    for key, title, name in (("about", "About", "about"), ("more", "More", "promotion")):
        desktop.run("xdotool", "windowactivate", "--sync", desktop.window)
        desktop.key("alt+h", words[key])
        desktop.wait_for_window(words[title])
        desktop.screenshot(name)
        desktop.key("Escape")
        desktop.wait_until_gone(words[title])
    text = desktop.folder / "words.txt"
    text.write_text("no picture")
    desktop.drag_onto_well(text)
    desktop.key("alt+" + words["generate"])
    desktop.wait_for_window("Icon File Error")
    desktop.screenshot("alert")


def take_project_sheet(desktop, look):
    """The sheet before anything is chosen, with all that can be chosen, and what came of it."""
    project = desktop.folder / "project"
    (project / "web").mkdir(parents=True)
    (project / "index.html").write_text("<html></html>\n")
    start(desktop, look)
    desktop.drag_onto_well(sample)
    words = language_of(look)
    desktop.key("alt+" + words["rounded"], "alt+" + words["radius"], *["Right"] * 10)
    desktop.key("ctrl+shift+g")
    desktop.wait_for_window(words["Project"])
    desktop.screenshot("project-empty")
    desktop.key("space", "End", "space", *["Up"] * 6, "space")
    desktop.key("Tab", "Down", "Tab", *["Right"] * 12)
    desktop.key(*["Tab"] * 6)
    desktop.type("/home/anna/weather")
    desktop.run("xdotool", "mousemove", "1", "1")
    wait_for(lambda: (button := desktop.element(words["Generate"], "push button")) and desktop.is_enabled(button), "Generate")
    desktop.screenshot("project-ready")
    desktop.key("ctrl+a")
    desktop.type(str(project))
    desktop.key("Return")
    wait_for(lambda: desktop.element(words["Done"], "push button"), "what was written")
    desktop.screenshot("project-result")


def take(what, look):
    with Desktop(pathlib.Path(folder) / look / what) as desktop:
        {"main": take_main_window, "others": take_other_windows, "project": take_project_sheet}[what](desktop, look)


if __name__ == "__main__":
    PROGRAMS["tobrimax"], PROGRAMS["drag_source"] = sys.argv[1:3]
    sample, folder = sys.argv[3:5]
    if len(sys.argv) > 5:
        take(*sys.argv[5:7])
    else:
        # Each desktop has a process of its own, because a process can read the accessibility tree of one desktop only.
        for look in ("light", "dark", "light-scale-1.5", "light-scale-2", "dark-scale-2", "light-18pt", "dark-18pt", "light-mirrored",
                     "dark-mirrored", "light-german", "light-18pt-german", "light-japanese", "light-18pt-japanese"):
            for what in ("main", "others", "project"):
                subprocess.run([sys.executable, __file__, *sys.argv[1:5], what, look], check=True)
