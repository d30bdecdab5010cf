"""A desktop of its own for each process: an X server without a screen, a window manager, a message bus with the
accessibility service, and a program on the PATH that records what is opened.
"""

import contextlib
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")

PROGRAMS = {}  # name: path, set by the test's command line


def wait_for(condition, what, seconds=30):
    """The first true value of `condition()`."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s for {what}")
        time.sleep(0.05)


class Desktop:
    def __init__(self, artefacts, scale=1):
        self.artefacts = pathlib.Path(artefacts)
        shutil.rmtree(self.artefacts, ignore_errors=True)
        self.artefacts.mkdir(parents=True)
        self.scale = scale
        self.well_part = 1 / 4  # of the window's width
        self._stack = contextlib.ExitStack()

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tobrimax-e2e-"))
        self._stack.callback(shutil.rmtree, self.folder, ignore_errors=True)
        try:
            self._start()
        except BaseException:
            self._stack.close()
            raise
        return self

    def __exit__(self, kind, value, trace):
        if kind is not None:
            self.screenshot("failure")
            print(self.application_log(), file=sys.stderr)
        self._stack.close()

    def _start(self):
        for name in ("home", "runtime", "bin"):
            (self.folder / name).mkdir(mode=0o700)
        self.opened_file = self.folder / "opened"
        self.use_opener("exit 0")
        kept = {name: os.environ[name] for name in ("LANG", "TMPDIR", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")
                if name in os.environ}
        home = self.folder / "home"
        self.environment = kept | {
            "PATH": f"{self.folder}/bin:{os.environ['PATH']}",
            "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / ".config"),
            "XDG_DATA_HOME": str(home / ".local/share"),
            "XDG_CACHE_HOME": str(home / ".cache"),
            "XDG_RUNTIME_DIR": str(self.folder / "runtime"),
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }
        self.environment["DISPLAY"] = self._start_display()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus()
        self.start_program("openbox", "--sm-disable", stderr=subprocess.DEVNULL)
        wait_for(lambda: b"window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "the window manager")
        # This process reads the accessibility tree of this desktop.
        os.environ.update(self.environment)
        from gi.repository import Atspi

        self.atspi = Atspi
        Atspi.init()

    def start_program(self, *command, environment=None, **options):
        process = subprocess.Popen(command, env=environment or self.environment, start_new_session=True, **options)
        self._stack.callback(self.stop, process)
        return process

    @staticmethod
    def stop(process):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGTERM)
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
        if process.stdout is not None:
            process.stdout.close()

    def _start_display(self):
        reading, writing = os.pipe()
        self.start_program("Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24", "-nolisten", "tcp", "-noreset",
                            pass_fds=(writing,), stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            return f":{pipe.readline().strip()}"

    def _start_bus(self):
        bus = self.start_program("dbus-daemon", "--session", "--nofork", "--print-address=1",
                                  stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return bus.stdout.readline().decode().strip()

    def run(self, *command):
        return subprocess.run(command, env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              check=False, timeout=60).stdout

    # The application

    def start_application(self, active="Tobrimax", **environment):
        """Starts the application and waits until its window with the title `active` has the keyboard."""
        self._log = open(self.folder / "log", "ab")
        self._stack.callback(self._log.close)
        self.application = self.start_program(PROGRAMS["tobrimax"], stderr=self._log,
                                               environment=self.environment | environment)
        self.wait_for_window(active)
        self.window = self.windows("Tobrimax")[-1]
        return self.application

    def application_log(self):
        log = self.folder / "log"
        return log.read_text() if log.exists() else ""

    def settings(self):
        """What the application keeps."""
        path = self.folder / "home" / ".config" / "Varnholt" / "Tobrimax.conf"
        text = path.read_text() if path.exists() else ""
        return dict(line.split("=") for line in text.split() if "=" in line)

    def use_opener(self, ending):
        """Has the desktop open addresses with a program that notes them and then does `ending`, a line of shell."""
        opener = self.folder / "bin" / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho $$ > "{self.folder}/opener"\n'
                          f'printf "%s\\n" "$1" >> "{self.opened_file}"\n{ending}\n')
        opener.chmod(0o755)

    def opener_process(self):
        """The number of the process that has opened the last address."""
        return int((self.folder / "opener").read_text())

    def opened(self):
        return self.opened_file.read_text().split("\n")[:-1] if self.opened_file.exists() else []

    # Windows

    def windows(self, title):
        return self.run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").decode().split()

    def wait_for_window(self, title):
        window = wait_for(lambda: self.windows(title), f"the window {title!r}")[-1]
        wait_for(lambda: self.run("xdotool", "getactivewindow").decode().strip() == window
                 or self.run("xdotool", "windowactivate", window) is None, f"{title!r} to become active")
        return window

    def wait_until_gone(self, title):
        wait_for(lambda: not self.windows(title), f"the window {title!r} to go")

    def geometry(self, window):
        text = self.run("xdotool", "getwindowgeometry", "--shell", window).decode()
        values = dict(line.split("=") for line in text.split())
        return int(values["X"]), int(values["Y"]), int(values["WIDTH"]), int(values["HEIGHT"])

    def key(self, *keys):
        for key in keys:
            self.run("xdotool", "key", "--clearmodifiers", key)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "5", text)

    def color(self, x, y):
        """The colour of a pixel of the screen, as #RRGGBB."""
        text = self.run("import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "txt:-").decode()
        return text.split("#")[-1][:6].join(("#", "")) if "#" in text else None

    def screenshot(self, name):
        self.run("import", "-window", "root", str(self.artefacts / f"{name}.png"))

    # Assistive technology

    def elements(self, role=None):
        """The accessible elements of the application: all of them, or those with the role `role`."""
        # A role's number is the same in all versions; the name of "push button" is "button" in newer ones.
        wanted = role and getattr(self.atspi.Role, role.replace(" ", "_").upper())

        def below(element):
            for i in range(element.get_child_count()):
                child = element.get_child_at_index(i)
                if child is not None:
                    yield child
                    yield from below(child)

        desktop = self.atspi.get_desktop(0)
        found = []
        for i in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(i)
            if application is None or application.get_name() != "Tobrimax":
                continue
            for element in below(application):
                with contextlib.suppress(Exception):  # the element may be gone by now
                    element.clear_cache()
                    if role is None or element.get_role() == wanted:
                        found.append(element)
        return found

    def element(self, name, role=None):
        for element in self.elements(role):
            with contextlib.suppress(Exception):
                if element.get_name() == name:
                    return element
        return None

    def extents(self, element):
        """Left, top, width and height of an element on the screen, in pixels."""
        extents = element.get_component_iface().get_extents(self.atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    def has_state(self, element, name):
        return element.get_state_set().contains(getattr(self.atspi.StateType, name))

    def is_enabled(self, element):
        element.clear_cache()
        return element.get_state_set().contains(self.atspi.StateType.ENABLED)

    def is_checked(self, element):
        element.clear_cache()
        return element.get_state_set().contains(self.atspi.StateType.CHECKED)

    def well_element(self):
        """The image well, while it is empty."""
        return next((element for element in self.elements("push button")
                     if "Drop a picture" in (element.get_description() or "")), None)

    def well(self):
        """A place in the image well: the upper left part of the window's content."""
        x, y, width, height = self.geometry(self.window)
        return x + int(width * self.well_part), y + height * 2 // 5

    # Dragging

    def drag_over_well(self, *paths):
        """Drags the files from a window of another process over the image well, with the mouse. Returns the process."""
        source = self.start_program(PROGRAMS["drag_source"], *map(str, paths), stdout=subprocess.PIPE)
        wait_for(lambda: self.windows("DragSource"), "the source of the drag")
        target = self.well()
        self.run("xdotool", "mousemove", "30", "30", "mousedown", "1")
        steps = 12
        for i in range(1, steps + 1):
            self.run("xdotool", "mousemove", str(30 + (target[0] - 30) * i // steps),
                     str(30 + (target[1] - 30) * i // steps))
            time.sleep(0.03)
        time.sleep(0.3)
        return source

    def drag_onto_well(self, *paths, screenshot=None):
        """Drags the files onto the image well. Returns what the source was answered."""
        source = self.drag_over_well(*paths)
        if screenshot is not None:
            self.screenshot(screenshot)
        self.run("xdotool", "mouseup", "1")
        answer = source.stdout.readline().decode().strip()
        # The source serves the data after the mouse button is released.
        time.sleep(0.5)
        self.stop(source)
        return answer
