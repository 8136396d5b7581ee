#!/usr/bin/python3
"""The Agent Lock under a window manager of X11, on two displays: nothing that it or other programs do
uncovers a pixel or takes the keyboard.
Usage: agent_lock_window_managers_test.py WINDOW_MANAGER VIGILO HOSTILE_WINDOW DPMS_SHIM"""

import os
import re
import select
import shutil
import subprocess
import sys
import time
import unittest
from contextlib import contextmanager

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import perform
from harness.applies import applies_where
from harness.buses import SessionBus
from harness.display import windows_named
from harness.owner import PASSWORD, Owner
from harness.pictures import DESKTOP, brightness, has_colour
from harness.processes import Processes, end, environment, wait_until
from harness.xorg import DummyXorg

NAME, VIGILO, HOSTILE, SHIM = (sys.argv.pop(1) for _ in range(4))

# The command, what it needs in its environment, and whether it draws the windows itself.
WINDOW_MANAGERS = {
    "none": ((), {}, False),
    "openbox": (("openbox",), {}, False),
    "xfwm4": (("xfwm4", "--compositor=off"), {}, False),
    "xfwm4-compositing": (("xfwm4", "--compositor=on", "--vblank=off"), {}, True),
    "metacity": (("metacity", "--no-composite"), {}, False),
    "metacity-compositing": (("metacity", "--composite"), {}, True),
    "marco": (("marco", "--no-composite"), {}, False),
    "marco-compositing": (("marco", "--composite"), {}, True),
    "kwin": (("kwin_x11",), {"KWIN_COMPOSE": "N"}, False),
    "kwin-compositing": (("kwin_x11",), {"KWIN_COMPOSE": "O2"}, True),
    "mutter": (("mutter", "--x11"), {}, True),
}
COMMAND, SETTINGS, IS_COMPOSITING = WINDOW_MANAGERS[NAME]


class AgentLock(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(DummyXorg(SHIM))
        cls.bus = cls.enterClassContext(SessionBus())
        cls.owner = cls.enterClassContext(Owner())
        cls.processes = cls.enterClassContext(Processes())
        cls.variables = environment(
            DISPLAY=cls.display.name,
            WAYLAND_DISPLAY=None,
            DBUS_SESSION_BUS_ADDRESS=cls.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            GSETTINGS_BACKEND="memory",
            HOME=cls.owner.home,
            XDG_RUNTIME_DIR=cls.owner.home,
            XAUTHORITY=None,
        )
        # A high one, as of a display that is turned, and one that has yet to be attached.
        cls.run_quietly("xrandr", "--newmode", "high", "60", "768", "800", "900", "1000", "1024", "1030", "1040", "1060")
        for output in ("DUMMY1", "DUMMY2"):
            for mode in ("1024x768", "high"):
                cls.run_quietly("xrandr", "--addmode", output, mode)
        cls.run_quietly("xrandr", "--output", "DUMMY1", "--mode", "1024x768", "--right-of", "DUMMY0")
        cls.run_quietly("xsetroot", "-solid", "#ff00ff")
        cls.start_window_manager()
        cls.run_quietly("wmctrl", "-n", "2")
        cls.show_desktop()
        cls.processes.serve("fake_power_service.py", "plasma", "grant", env=cls.variables)
        cls.vigilo = cls.processes.start(cls.owner.command(VIGILO), env=cls.variables)
        wait_until(lambda: windows_named(cls.display.name, "Vigilo"), "the window")
        wait_until(lambda: not cls.is_covered(), "the desktop")

    @classmethod
    def run_quietly(cls, *command):
        return subprocess.run(
            command, env=cls.variables, check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True
        )

    @classmethod
    def start_window_manager(cls):
        if COMMAND:
            cls.manager = cls.processes.start(COMMAND, env=cls.variables | SETTINGS)
            wait_until(lambda: cls.run_quietly("wmctrl", "-m").returncode == 0, COMMAND[0])
            wait_until(lambda: cls.display.is_composited() == IS_COMPOSITING, "what draws the windows")

    @classmethod
    def show(cls, kind):
        """Maps a window that wants to be seen, and waits until the window manager has let it."""
        def start():
            window = cls.processes.start([HOSTILE, kind], env=cls.variables, stdout=subprocess.PIPE, text=True)
            cls.addClassCleanup(window.stdout.close)
            return window

        window = start()
        while not select.select([window.stdout], [], [], 10)[0]:
            # openbox loses a window that comes just as it begins.
            end(window)
            window = start()
        answer = window.stdout.readline()
        assert answer == "shown\n", answer
        return window

    @classmethod
    def displays(cls):
        """(width, height, x, y) of each, in pixels."""
        text = cls.run_quietly("xrandr", "--listactivemonitors").stdout
        return [tuple(map(int, found)) for found in re.findall(r" (\d+)/\d+x(\d+)/\d+\+(\d+)\+(\d+)", text)]

    @classmethod
    def is_covered(cls):
        """Whether not one pixel of the desktop below shows on a display."""
        picture = cls.display.picture()
        size = re.match(rb"P6\s(\d+) (\d+)\s255\n", picture)
        pixels, line = picture[size.end() :], 3 * int(size[1])
        for width, height, x, y in cls.displays():
            for row in range(y, y + height):
                part = pixels[row * line + 3 * x : row * line + 3 * (x + width)]
                if has_colour(part, DESKTOP):
                    return False
        return True

    def setUp(self):
        self.hostile = []
        self.lock()
        wait_until(self.is_covered, "the lock")

    def lock(self):
        perform(self.bus, "agentLock")

    def show_above(self, kind):
        self.hostile.append(self.show(kind))

    @classmethod
    def show_desktop(cls):
        cls.desktop = cls.show("desktop")

    def close_windows(self):
        def windows():
            return [line.split()[0] for line in self.run_quietly("wmctrl", "-l").stdout.splitlines()]

        wait_until(lambda: len(windows()) == 1, "the desktop to go")
        self.run_quietly("wmctrl", "-i", "-c", windows()[0])
        wait_until(lambda: not windows(), "the window to close")

    @contextmanager
    def keys_all_the_while(self, *keys):
        typing = self.processes.start(["xdotool", "key", "--delay", "10", *(keys * (300 // len(keys)))], env=self.variables)
        yield
        typing.wait()
        self.display.key("Escape")

    def covers(self):
        """(width, height, x, y) of each cover, in pixels, by the identifier of its window."""
        tree = self.run_quietly("xwininfo", "-root", "-children").stdout
        found = re.findall(
            r"(0x[0-9a-f]+) \"Agent Lock.* (\d+)x(\d+)\+-?\d+\+-?\d+ +\+(-?\d+)\+(-?\d+)$", tree, re.MULTILINE
        )
        return {window: tuple(map(int, numbers)) for window, *numbers in found}

    def workspace(self):
        return self.run_quietly("xdotool", "get_desktop").stdout.strip()

    def assert_covered(self):
        """Once the servers have put things in order, and from then on, the animations of some included."""
        time.sleep(0.1)
        # One look may come before what draws the windows has drawn a new one, which the covers go above later.
        wait_until(lambda: all(self.is_covered() for _ in range(5)), "the covers")
        time.sleep(0.2)
        self.assertTrue(self.is_covered())

    def tearDown(self):
        """What is typed goes to the lock alone, which only the password lifts, and the session goes on."""
        self.assert_covered()
        subprocess.run(["xdotool", "type", "--delay", "5", PASSWORD], env=self.variables, check=True)
        self.display.key("Return")
        wait_until(lambda: not self.is_covered(), "the lock to go")
        for window in self.hostile:
            end(window)
            self.assertNotIn("key", window.stdout.read(), "a window below the lock heard of a key")
        # The covers of the displays go one after another.
        wait_until(lambda: not self.covers(), "all covers to go")

    def test_windows_that_come_later(self):
        for kind in ("unmanaged", "returning", "insistent", "above", "full-screen"):
            with self.subTest(kind=kind):
                self.show_above(kind)
                self.assert_covered()

    @applies_where(COMMAND)
    def test_windows_that_come_later_on_an_empty_desktop(self):
        end(self.desktop)
        self.close_windows()
        with self.keys_all_the_while("a"):
            for kind in ("unmanaged", "returning", "insistent"):
                with self.subTest(kind=kind):
                    self.show_above(kind)
                    self.assert_covered()
        self.show_desktop()
        self.run_quietly(VIGILO)

    def test_what_the_window_manager_offers(self):
        self.show_above("above")
        for command in (
            ("wmctrl", "-k", "on"),
            ("wmctrl", "-k", "off"),
            ("wmctrl", "-s", "1"),
            ("wmctrl", "-s", "0"),
            ("wmctrl", "-a", "Vigilo"),
            ("wmctrl", "-r", "Agent Lock", "-e", "0,50,50,100,100"),
            ("wmctrl", "-c", "Agent Lock"),
            ("xdotool", "key", "alt+F4", "alt+Tab", "alt+Escape"),
            ("xdotool", "key", "super", "super+d", "ctrl+alt+d", "ctrl+alt+Right", "ctrl+F8"),
        ):
            with self.subTest(command=command):
                self.run_quietly(*command)
                if NAME == "mutter" and "-s" in command:
                    # On its own it draws the managed windows above all others while workspaces slide.
                    wait_until(lambda there=command[-1]: self.workspace() == there, "the workspace")
                    time.sleep(0.8)
                self.assert_covered()
        # Some keys were typed, too.
        self.display.key("Escape")

    def test_somebody_activates_the_window_below(self):
        """Some window managers give it the keyboard then, and the toolkit believes that it has it. In it a space or
        the key of the menu ends the session, and the lock with it."""
        self.display.settle()
        light = brightness(self.display.picture())
        (window,) = windows_named(self.display.name, "Vigilo")
        (root,) = re.findall("(0x[0-9a-f]+) \\(the root", self.run_quietly("xwininfo", "-root").stdout)
        with self.keys_all_the_while("space", "ctrl+k"):
            for _ in range(30):
                self.run_quietly("wmctrl", "-i", "-a", window)
                time.sleep(0.1)
                # The toolkit takes a while to believe that its window has lost it again.
                self.run_quietly("wmctrl", "-i", "-a", window)
                self.run_quietly("xdotool", "windowfocus", root)
                time.sleep(0.05)
        self.assert_covered()

        def is_prompt_left():
            self.display.key("Escape")
            return brightness(self.display.picture()) > 0.9 * light

        # What the window manager has yet to deal with may take the keyboard once more.
        for _ in range(2):
            wait_until(is_prompt_left, "the prompt to go")
            time.sleep(1)

    def test_requests_to_close_it(self):
        self.assertEqual(self.run_quietly(HOSTILE, "close").stdout, "%d\n" % len(self.displays()))
        self.assert_covered()
        self.assertEqual(len(self.covers()), len(self.displays()))

    def test_somebody_moves_its_windows(self):
        for cover in self.covers():
            for action in (("windowmove", cover, "300", "300"), ("windowsize", cover, "99", "99"),
                           ("windowlower", cover), ("windowunmap", cover)):
                with self.subTest(action=action):
                    self.run_quietly("xdotool", *action)
                    wait_until(self.is_covered, "the cover to return")

    def test_the_pointer_at_the_edges(self):
        for place in ((0, 0), (1279, 799), (2303, 0), (1280, 767), (0, 799), (0, 400), (2303, 400)):
            self.run_quietly("xdotool", "mousemove", *(str(value) for value in place))
            # Some window managers want to be pushed at for a while.
            for _ in range(8):
                self.run_quietly("xdotool", "mousemove_relative", "--", "1", "1", "mousemove_relative", "--", "-1", "-1")
            self.run_quietly("xdotool", "mousemove", *(str(value) for value in place))
            self.assert_covered()

    def test_a_menu_has_the_keyboard(self):
        self.tearDown()
        menu = self.show("menu")
        self.lock()
        wait_until(self.is_covered, "the lock")
        self.display.click_at(600, 20)
        self.assertEqual(menu.stdout.readline(), "closed\n")
        time.sleep(0.3)

    def test_displays_come_and_go_and_change(self):
        for options in (
            ("--output", "DUMMY2", "--mode", "1024x768", "--right-of", "DUMMY1"),
            ("--output", "DUMMY1", "--mode", "high"),
            ("--output", "DUMMY0", "--mode", "1024x768"),
            ("--output", "DUMMY1", "--off"),
            ("--output", "DUMMY1", "--mode", "1024x768", "--left-of", "DUMMY0"),
            ("--output", "DUMMY2", "--off", "--output", "DUMMY0", "--mode", "1280x800", "--pos", "0x0",
             "--output", "DUMMY1", "--mode", "1024x768", "--pos", "1280x0"),
        ):
            with self.subTest(options=options):
                self.assertEqual(self.run_quietly("xrandr", *options).returncode, 0)
                wait_until(lambda: sorted(self.covers().values()) == sorted(self.displays()), "a cover for each")
                self.assert_covered()

    @applies_where(COMMAND)
    def test_the_window_manager_ends_and_starts_again(self):
        self.show_above("above")
        with self.keys_all_the_while("a"):
            end(self.manager)
            self.assert_covered()
            self.start_window_manager()
            self.assert_covered()

    def test_another_locker(self):
        locker = self.processes.start(["i3lock", "-n", "-c", "ff00ff"], env=self.variables)
        # It tries for long.
        wait_until(lambda: locker.poll() is not None, "the locker to find the keyboard taken", timeout=180)
        self.assertNotEqual(locker.returncode, 0)


if __name__ == "__main__":
    programs = (*COMMAND[:1], "wmctrl", "xdotool", "xrandr", "xwininfo", "i3lock")
    missing = next((name for name in programs if not shutil.which(name)), None)
    reason = Owner.missing() or DummyXorg.missing() or (missing and missing + " is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
