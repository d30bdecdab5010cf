"""The running application as a screen reader reads it, in the language of the desktop, and used by its keyboard alone.

usage: test_screen_reader.py TOBRIMAX DRAG_SOURCE SAMPLE ARTEFACTS CASE
"""

import contextlib
import pathlib
import sys
import unittest

from desktop import PROGRAMS, Desktop, wait_for

# The controls of the window, in the order of the Tab key.
ENGLISH = [("Source picture", "push button"), ("Rounded corner", "check box"), ("Corner radius", "slider"),
           ("Border", "check box"), ("Border width", "slider"), ("Border colour", "push button"),
           ("Generate", "push button")]
GERMAN = [("Ausgangsbild", "push button"), ("Abgerundete Ecken", "check box"), ("Eckenradius", "slider"),
          ("Rahmen", "check box"), ("Rahmenbreite", "slider"), ("Rahmenfarbe", "push button"),
          ("Icons erzeugen", "push button")]
PROJECT_SHEET = [("Layouts", "tree"), ("Padding", "slider"), ("Background", "push button"),
                 ("Dark picture", "push button"), ("Tinted picture", "push button"),
                 ("Foreground picture", "push button"), ("Monochrome picture", "push button"), ("Project folder", "text"),
                 ("Choose…", "push button"), ("Proof", "filler"), ("Cancel", "push button")]
JAPANESE = [("元の画像", "push button"), ("角の半径", "slider"), ("枠線の太さ", "slider"), ("枠線の色", "push button")]


class ScreenReaderTest(unittest.TestCase):
    def artefacts(self):
        return ARTEFACTS / self.id().split(".")[-1].removeprefix("test_")

    def assert_reads(self, controls, **environment):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application(**environment)
            for name, role in controls:
                element = desktop.element(name, role)
                self.assertIsNotNone(element, f"{name}, {role}")
                self.assertTrue(desktop.has_state(element, "FOCUSABLE"), name)
                # Only the well can be used before there is a picture.
                self.assertEqual(desktop.is_enabled(element), name == controls[0][0], name)

    def test_english_is_read_where_the_desktop_wants_it_first(self):
        self.assert_reads(ENGLISH, LC_ALL="en_GB.UTF-8", LANGUAGE="en_GB:de")

    def test_german_is_read_where_the_locale_is_german(self):
        self.assert_reads(GERMAN, LC_ALL="de_AT.UTF-8")

    def test_japanese_is_read_where_it_is_the_first_known_language(self):
        self.assert_reads(JAPANESE, LC_ALL="ja_JP.UTF-8", LANGUAGE="tlh:ja:de")

    def test_the_keyboard_alone_opens_a_picture_and_decorates_it(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application()

            # A list has a current item of its own, which some versions of Qt call focused too.
            def is_focused(name):
                for element in desktop.elements():
                    with contextlib.suppress(Exception):  # it may have gone meanwhile
                        if element.get_name() == name and desktop.has_state(element, "FOCUSED"):
                            return True
                return False

            desktop.key("Tab")
            wait_for(lambda: is_focused("Source picture"), "the well")
            desktop.key("Return")
            desktop.wait_for_window("Open")
            desktop.key("Escape")
            desktop.wait_until_gone("Open")
            desktop.key("space")
            desktop.wait_for_window("Open")
            desktop.type(str(SAMPLE))
            desktop.key("Return")
            desktop.wait_until_gone("Open")
            wait_for(lambda: desktop.is_enabled(desktop.element("Generate", "push button")), "the controls")
            desktop.key("Tab", "Tab", "space")
            wait_for(lambda: desktop.is_checked(desktop.element("Rounded corner", "check box")), "the box")
            wait_for(lambda: is_focused("Corner radius"), "the slider")
            desktop.key("Right", "Right")
            value = desktop.element("Corner radius", "slider").get_value_iface()
            wait_for(lambda: value.get_current_value() > 0, "the radius")

    def test_a_screen_reader_finds_all_of_the_sheet_for_a_project(self):
        with Desktop(self.artefacts()) as desktop:
            desktop.start_application(LC_ALL="en_GB.UTF-8")
            desktop.drag_onto_well(SAMPLE)
            desktop.key("ctrl+shift+g")
            desktop.wait_for_window("Generate for a Project")
            for name, role in PROJECT_SHEET:
                element = desktop.element(name, role)
                self.assertIsNotNone(element, f"{name}, {role}")
                self.assertTrue(desktop.has_state(element, "FOCUSABLE"), name)
            # Some versions of Qt call a list by its current item.
            self.assertIn(desktop.elements("combo box")[-1].get_name(), ("Fit", "Stretch to the square"))
            android = desktop.element("android, Android: launcher icons below res/, and Google Play's picture")
            self.assertFalse(desktop.is_checked(android))
            desktop.key("space")
            wait_for(lambda: desktop.is_checked(desktop.element(android.get_name())), "the tick")
            desktop.key("alt+e")
            desktop.type(str(desktop.folder))
            wait_for(lambda: any(desktop.is_enabled(button) for button in desktop.elements("push button")
                                 if button.get_name() == "Generate"), "Generate")
            desktop.key("Return")
            wait_for(lambda: desktop.element("Done", "push button"), "what was written")
            self.assertIsNotNone(desktop.element("Open Folder", "push button"))
            self.assertTrue((desktop.folder / "res" / "mipmap-mdpi" / "ic_launcher.png").exists())
            desktop.key("Escape")
            desktop.wait_until_gone("Generate for a Project")


if __name__ == "__main__":
    PROGRAMS.update(zip(("tobrimax", "drag_source"), sys.argv[1:3]))
    SAMPLE, ARTEFACTS = (pathlib.Path(argument) for argument in sys.argv[3:5])
    unittest.main(argv=sys.argv[:1] + sys.argv[5:], verbosity=2)
