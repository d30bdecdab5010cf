"""Uses the built application as a person does: with mouse, keyboard and a real drag from another process.

usage: test_application.py TOBRIMAX TOBRIMAX_CLI DRAG_SOURCE PLAIN_WINDOW SAMPLE ARTEFACTS [TEST…]
"""

import filecmp
import itertools
import os
import pathlib
import re
import signal
import struct
import subprocess
import sys
import time
import unittest

from desktop import PROGRAMS, Desktop, wait_for

SAMPLE = ARTEFACTS = None


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in pathlib.Path(folder).rglob("*") if path.is_file())


def icns_elements(path):
    """The types of an icns file's elements, in the file's order. Each has the width of its PNG picture, or None."""
    data = path.read_bytes()
    elements = []
    position = 8
    while position < len(data):
        kind, length = struct.unpack(">4sI", data[position:position + 8])
        content = data[position + 8:position + length]
        is_png = content.startswith(b"\x89PNG")
        elements.append((kind.decode(), struct.unpack(">I", content[16:20])[0] if is_png else None))
        position += length
    return elements


class ApplicationTest(unittest.TestCase):
    def artefacts(self):
        return ARTEFACTS / self.id().split(".")[-1].removeprefix("test_")

    def assert_same_tree(self, made, expected):
        self.assertEqual(files_below(made), files_below(expected))
        for name in files_below(expected):
            self.assertTrue(filecmp.cmp(pathlib.Path(made) / name, pathlib.Path(expected) / name, shallow=False),
                            f"{name} differs")

    def cli(self, out, *options):
        subprocess.run([PROGRAMS["tobrimax-cli"], "generate", str(SAMPLE), "--quiet", f"--out={out}", *options],
                       check=True, timeout=120)

    def choose_platform(self, desktop, downs):
        desktop.key("alt+p")
        desktop.key(*["Down"] * downs)

    def generate_into(self, desktop, folder):
        folder.mkdir()
        desktop.key("alt+g")
        desktop.wait_for_window("Find Directory")
        desktop.type(str(folder))
        desktop.screenshot(f"chooser-{folder.name}")
        desktop.key("Return")
        desktop.wait_until_gone("Find Directory")

    def close_and_expect_status_0(self, desktop):
        desktop.key("alt+F4")
        self.assertEqual(desktop.application.wait(20), 0)
        self.assertIn("closing Window Class QMainWindow", desktop.application_log())

    def test_a_window_belongs_to_the_desktop_entry(self):
        entry = pathlib.Path(__file__).parents[2] / "packaging" / "tobrimax.desktop"
        wanted = re.search("^StartupWMClass=(.*)$", entry.read_text(), re.MULTILINE)[1]
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()
            said = desktop.run("xprop", "-id", desktop.window, "WM_CLASS").decode()
            self.assertEqual(said, f'WM_CLASS(STRING) = "{entry.stem}", "{wanted}"\n')

    def test_from_drop_to_finished_set(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()
            desktop.screenshot("1-empty")
            button = wait_for(lambda: desktop.element("Generate", "push button"), "the button")
            self.assertFalse(desktop.is_enabled(button))
            self.expect_hover(desktop, button)
            self.assertEqual(desktop.drag_onto_well(SAMPLE, screenshot="2-dragging"), "copied")
            wait_for(lambda: desktop.is_enabled(button), "the button to be enabled")
            desktop.screenshot("3-dropped")

            desktop.key("alt+r")
            desktop.key("alt+a", *["Right"] * 47)
            desktop.key("alt+b")
            desktop.key("alt+d", "Right", "Left", "Right")
            for name in ("Rounded corner", "Border"):
                wait_for(lambda: desktop.is_checked(desktop.element(name, "check box")), f"{name} to be ticked")
            desktop.screenshot("4-decorated")

            out = desktop.folder / "out"
            self.generate_into(desktop, out)
            wait_for(desktop.opened, "the folder to be opened")
            expected = desktop.folder / "expected"
            style = ["--round-corner=0.235", "--border=0.0525", "--border-color=#828286"]
            self.cli(expected, "--platform=iphone", *style)
            self.assert_same_tree(out, expected)
            self.assertEqual(desktop.opened(), [f"file://{out}"])

            # iPhone and iPad: two folders are written, and the output folder is opened twice.
            self.choose_platform(desktop, 2)
            out = desktop.folder / "universal"
            self.generate_into(desktop, out)
            wait_for(lambda: len(desktop.opened()) == 3, "the folder to be opened twice")
            expected = desktop.folder / "expected-universal"
            self.cli(expected, "--platform=universal", *style)
            self.assert_same_tree(out, expected)

            # The Mac, with Application.icns. This file is written after the folder was opened.
            self.choose_platform(desktop, 2)
            out = desktop.folder / "mac-set"
            self.generate_into(desktop, out)
            wait_for((out / "mac" / "Application.icns").exists, "the icns file")
            expected = desktop.folder / "expected-mac"
            self.cli(expected, "--platform=mac", *style)
            self.assert_same_tree(out, expected)
            desktop.screenshot("5-generated")

            self.assertIn("platform selected index:4", desktop.application_log())
            self.close_and_expect_status_0(desktop)
            # The program keeps only the count of launches. Qt's file dialog keeps settings of its own.
            left = [name for name in files_below(desktop.folder / "home") if "QtProject" not in name
                    and "/.cache/" not in f"/{name}"]
            self.assertEqual(left, [".config/Varnholt/Tobrimax.conf"])
            self.assertEqual((desktop.folder / "home" / left[0]).read_text().split(), ["[General]", "appOpenedCount=1"])

    def test_a_text_file_is_refused_with_an_alert(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()
            words = desktop.folder / "words.txt"
            words.write_text("no picture")
            well = wait_for(desktop.well_element, "the well")
            self.assertEqual(desktop.drag_onto_well(words), "copied")
            button = wait_for(lambda: desktop.element("Generate", "push button"), "the button")
            wait_for(lambda: desktop.is_enabled(button), "the button to be enabled")
            desktop.key("alt+g")
            desktop.wait_for_window("Icon File Error")
            for text in ("Icon File Error", "Please drag and drop icon file first!"):
                wait_for(lambda: desktop.element(text, "label"), f"the words {text!r}")
            buttons = [element.get_name() for element in desktop.elements("push button")]
            self.assertIn("Ok", buttons)
            desktop.screenshot("6-alert")
            # No window manager puts buttons on the sheet.
            alert = desktop.windows("Icon File Error")[-1]
            extents = desktop.run("xprop", "-id", alert, "_NET_FRAME_EXTENTS").decode().split("=")[-1]
            self.assertLessEqual(max(map(int, extents.split(","))), 2, "no title bar")
            # Closing the sheet does nothing. The sheet's window is blocked.
            desktop.key("alt+F4")
            left, top, width, height = desktop.extents(well)
            at = (left + width // 4, top + 20)
            self.assertLess(at[1], desktop.geometry(alert)[1], "above the sheet")
            desktop.run("xdotool", "mousemove", *map(str, at), "click", "1")
            time.sleep(1)
            self.assertTrue(desktop.windows("Icon File Error"))
            self.assertFalse(desktop.windows("Open"))
            desktop.run("xdotool", "windowactivate", "--sync", desktop.windows("Icon File Error")[-1])
            desktop.key("Return")
            desktop.wait_until_gone("Icon File Error")
            wait_for(lambda: "closing Window Class Alert" in desktop.application_log(), "the log line")
            self.assertEqual(desktop.application_log().count("closing Window Class Alert"), 1)
            # Escape presses the only button too.
            desktop.wait_for_window("Tobrimax")
            desktop.key("alt+g")
            desktop.wait_for_window("Icon File Error")
            desktop.key("Escape")
            desktop.wait_until_gone("Icon File Error")
            desktop.wait_for_window("Tobrimax")
            self.assertEqual(desktop.opened(), [])
            self.close_and_expect_status_0(desktop)

    def test_a_sheet_is_moved_by_dragging_its_background_and_not_by_a_click(self):
        with Desktop(self.artefacts()) as desktop:
            self.launch_until_asked(desktop)
            prompt = desktop.wait_for_window("Rate Us")
            x, y, _, height = desktop.geometry(prompt)
            at = (x + 6, y + height - 6)
            desktop.run("xdotool", "mousemove", *map(str, at), "click", "1")
            time.sleep(0.5)
            desktop.run("xdotool", "mousemove", str(at[0] - 90), str(at[1] + 120))
            time.sleep(0.5)
            self.assertEqual(desktop.geometry(prompt)[:2], (x, y), "the mouse is up")
            desktop.run("xdotool", "mousemove", *map(str, at), "mousedown", "1")
            # The mouse goes to and fro, since the window manager takes its time.
            ways = itertools.cycle(range(0, 150, 5))

            def has_moved():
                way = next(ways)
                desktop.run("xdotool", "mousemove", str(at[0] - way), str(at[1] + way))
                left, top, _, _ = desktop.geometry(prompt)
                return left < x - 30 and top > y + 30
            wait_for(has_moved, "the move")
            desktop.run("xdotool", "mouseup", "1")
            desktop.key("Return")
            desktop.wait_until_gone("Rate Us")

    def test_the_well_lights_up_for_a_file_that_can_be_copied(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()
            well = wait_for(desktop.well_element, "the well")
            x, y, width, height = desktop.extents(well)
            at = (x + 20, y + height - 20)
            unlit = desktop.color(*at)
            for dragged in (("--move", SAMPLE), ("http://localhost/a.png",)):
                source = desktop.drag_over_well(*dragged)
                self.assertEqual(desktop.color(*at), unlit, dragged)
                desktop.run("xdotool", "mousemove", "30", "30", "mouseup", "1")
                desktop.stop(source)
            source = desktop.drag_over_well(SAMPLE)
            wait_for(lambda: desktop.color(*at) != unlit, "the highlight")
            time.sleep(1.5)
            self.assertNotEqual(desktop.color(*at), unlit, "lit while the drag rests")
            desktop.screenshot("lit")
            # A source that dies sends nothing more, and the mouse does not move.
            source.kill()
            wait_for(lambda: desktop.color(*at) == unlit, "the highlight to go out", 5)
            desktop.run("xdotool", "mouseup", "1")

    def test_a_display_of_scale_2_changes_no_pixel_size(self):
        with Desktop(self.artefacts(), scale=2) as desktop:
            desktop.start_application(QT_SCALE_FACTOR="2")
            self.assertEqual(desktop.drag_onto_well(SAMPLE), "copied")
            button = wait_for(lambda: desktop.element("Generate", "push button"), "the button")
            wait_for(lambda: desktop.is_enabled(button), "the button to be enabled")
            self.choose_platform(desktop, 4)
            desktop.screenshot("7-scale-2")
            out = desktop.folder / "out"
            self.generate_into(desktop, out)
            wait_for((out / "mac" / "Application.icns").exists, "the icns file")
            expected = desktop.folder / "expected"
            self.cli(expected, "--platform=mac")
            self.assertEqual(files_below(out), files_below(expected))
            for name in files_below(expected):
                if not name.endswith(".png"):
                    continue
                sizes = [subprocess.run(["identify", "-format", "%wx%h", folder / name], check=True,
                                        stdout=subprocess.PIPE).stdout for folder in (out, expected)]
                self.assertEqual(sizes[0], sizes[1], name)
            # The seven renders are twice as large: 32 to 2048. The last one has no element.
            self.assertEqual(icns_elements(out / "mac" / "Application.icns"),
                             [("ic10", 1024), ("ic09", 512), ("ic08", 256), ("ic07", 128), ("ic12", 64), ("il32", None),
                              ("l8mk", None)])
            self.close_and_expect_status_0(desktop)

    def expect_hover(self, desktop, button):
        """The Generate button changes under the mouse, also while it is disabled."""
        x, y, width, height = desktop.extents(button)
        # A place in the button's left part, beside the title.
        at = (x + 20, y + height // 2)
        disabled = desktop.color(*at)
        self.assertNotEqual(disabled, "#39393A", "weaker than an enabled one")
        for place, color in (((x + width // 2, at[1]), "#434344"), ((at[0], at[1] - 60), disabled)):
            desktop.run("xdotool", "mousemove", *map(str, place))
            wait_for(lambda: desktop.color(*at) == color, f"the colour {color}")

    def quit(self, desktop):
        desktop.key("ctrl+q")
        self.assertEqual(desktop.application.wait(20), 0)

    def test_every_seventh_of_fifteen_launches_asks_to_be_rated(self):
        with Desktop(self.artefacts()) as desktop:
            for launch in range(1, 16):
                desktop.start_application(active="Rate Us" if launch % 7 == 0 else "Tobrimax")
                wait_for(lambda: desktop.settings().get("appOpenedCount") == str(launch % 7), "the count")
                if launch % 7 == 0:
                    # Without an answer the same build asks again.
                    desktop.application.terminate()
                    desktop.application.wait(20)
                else:
                    time.sleep(0.4)
                    self.assertFalse(desktop.windows("Rate Us"), launch)
                    self.quit(desktop)
            self.assertEqual(desktop.settings(), {"appOpenedCount": "1"})

    def launch_until_asked(self, desktop):
        path = desktop.folder / "home" / ".config" / "Varnholt" / "Tobrimax.conf"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text("[General]\nappOpenedCount=6\n")
        desktop.start_application(active="Rate Us")

    def test_the_answers_to_the_rate_prompt_are_kept(self):
        with Desktop(self.artefacts()) as desktop:
            self.launch_until_asked(desktop)
            for text in ("Rate Us", "If you enjoy using our app, would you like to rate us on app store?"):
                wait_for(lambda: desktop.element(text, "label"), f"the words {text!r}")
            desktop.screenshot("rate-prompt")
            desktop.key("Tab", "space")  # NO
            desktop.wait_until_gone("Rate Us")
            self.quit(desktop)
            build = desktop.settings()["appVersion"]
            self.assertTrue(build)
            self.assertEqual(desktop.opened(), [])

            self.launch_until_asked(desktop)
            desktop.key("Return")  # YES
            desktop.wait_until_gone("Rate Us")
            wait_for(desktop.opened, "the store page")
            self.assertRegex(desktop.opened()[0], r"^macappstore://.*\?ls=1&mt=8$")
            self.quit(desktop)
            self.assertEqual(desktop.settings(), {"appOpenedCount": "0", "appVersion": build})

    def test_a_store_page_that_does_not_open_is_asked_for_again(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.use_opener("exit 3")
            self.launch_until_asked(desktop)
            desktop.key("Return")  # YES
            desktop.wait_until_gone("Rate Us")
            wait_for(desktop.opened, "the store page")
            time.sleep(0.5)
            self.quit(desktop)
            self.assertEqual(desktop.settings(), {"appOpenedCount": "0"})

    def test_quitting_does_not_end_what_opens_the_store_page(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.use_opener("exec sleep 60")
            self.launch_until_asked(desktop)
            desktop.key("Return")  # YES
            desktop.wait_until_gone("Rate Us")
            wait_for(desktop.opened, "the store page")
            self.quit(desktop)
            self.assertIn("appVersion", desktop.settings())
            os.kill(desktop.opener_process(), signal.SIGKILL)  # it is still there

    def test_the_plain_window_has_a_name_but_no_title(self):
        with Desktop(self.artefacts()) as desktop:
            window = desktop.start_program(PROGRAMS["plain_window"])
            frame = wait_for(lambda: desktop.element("Tobrimax", "frame"), "the window")
            self.assertTrue(desktop.extents(frame)[2] > 100)
            ids = wait_for(lambda: desktop.run("xdotool", "search", "--onlyvisible", "--pid", str(window.pid)).decode().split(),
                           "the window")
            titles = [desktop.run("xprop", "-id", identifier, "_NET_WM_NAME", "WM_NAME").decode() for identifier in ids]
            self.assertNotIn("Tobrimax", "".join(titles))
            desktop.screenshot("plain")

    def open_promotion(self, desktop):
        desktop.key("alt+h")
        desktop.key("m")
        desktop.wait_for_window("More from Varnholt")

    def test_the_promotion_window_is_browsed_hidden_and_quit(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()
            self.assertFalse(desktop.windows("More from Varnholt"), "hidden at launch")
            self.open_promotion(desktop)
            wait_for(lambda: desktop.element("Lumenfold", "label"), "the first suggestion")
            desktop.screenshot("promotion")
            # The mouse picks the third dot. The dots lie in the middle, 50 points above the bottom edge.
            x, y, width, height = desktop.geometry(desktop.windows("More from Varnholt")[-1])
            row = 8 * 25 + 7 * 5
            at = (x + (width - row) // 2 + 2 * 30 + 12, y + height - 50 - 12)
            desktop.run("xdotool", "mousemove", str(at[0]), str(at[1]), "click", "1")
            wait_for(lambda: desktop.element("Tidemark", "label"), "the third suggestion")
            self.assertRegex(desktop.application_log(), r"<BFPageControl: 0x[0-9a-f]+>: Selected page at index: 2")
            # The keyboard picks the next dot.
            desktop.key("Right")
            wait_for(lambda: desktop.element("Patchbay", "label"), "the fourth suggestion")
            desktop.screenshot("promotion-focused")
            desktop.key("alt+o")
            wait_for(desktop.opened, "its store page")
            self.assertTrue(desktop.opened()[0].startswith("macappstore://"))
            # Its corners show what is behind it: there is no compositing manager here.
            corners = [(x + 1, y + 1), (x + width - 2, y + 1), (x + 1, y + height - 2), (x + width - 2, y + height - 2)]
            colors = [desktop.color(*corner) for corner in corners]
            desktop.key("Escape")
            desktop.wait_until_gone("More from Varnholt")
            wait_for(lambda: [desktop.color(*corner) for corner in corners] == colors, "the same colours")
            self.assertIsNone(desktop.application.poll())
            self.assertNotIn("closing Window", desktop.application_log())
            self.open_promotion(desktop)
            desktop.key("alt+d", "alt+q")
            self.assertEqual(desktop.application.wait(20), 0)
            self.assertEqual(desktop.settings()["notShowPromotionWindow"], "true")

    def test_closing_the_promotion_window_ends_the_program(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()
            self.open_promotion(desktop)
            desktop.key("alt+F4")
            self.assertEqual(desktop.application.wait(20), 0)
            self.assertIn("closing Window Class ELGRoundWindow", desktop.application_log())
            self.assertNotIn("notShowPromotionWindow", desktop.settings())

    def test_the_menus_quit_is_a_way_out(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()
            desktop.key("ctrl+q")
            self.assertEqual(desktop.application.wait(20), 0)


if __name__ == "__main__":
    PROGRAMS.update(zip(("tobrimax", "tobrimax-cli", "drag_source", "plain_window"), sys.argv[1:5]))
    SAMPLE, ARTEFACTS = (pathlib.Path(argument) for argument in sys.argv[5:7])
    unittest.main(argv=sys.argv[:1] + sys.argv[7:], verbosity=2)
