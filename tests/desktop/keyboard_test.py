#!/usr/bin/python3
"""A day with the program without a pointer: the keyboard reaches everything, one sees where it is, and every way
leads back. Usage: keyboard_test.py VIGILO MODULE"""

import os
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.agents import Agents
from harness.display import VirtualDisplay, windows_named
from harness.lock_screen import APPLE_LOCK, UNLOCK, LockScreen
from harness.pam import OddPam
from harness.pictures import Picture
from harness.processes import PATIENCE, Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
# The colour of the ring around what has the keyboard, and of the line of a menu that has it.
RING = (158, 199, 255)
LINE = (10, 111, 224)


class Keyboard(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.display = VirtualDisplay()
        self.addCleanup(self.display.stop)
        self.processes = Processes()
        self.addCleanup(self.processes.stop)
        self.display.move_pointer(0, 0)
        # Without one nobody would give the keyboard to another window when one closes.
        self.processes.start(["openbox"], env=environment(DISPLAY=self.display.name))
        wait_until(self.is_managed, "the window manager")

    def is_managed(self):
        answer = subprocess.run(
            ["xprop", "-display", self.display.name, "-root", "_NET_SUPPORTING_WM_CHECK"],
            check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
        )
        return "window id" in answer.stdout

    def start(self):
        self.config = os.path.join(self.desktop.folder, self.id())
        self.tools = os.path.join(self.config, "tools")
        os.makedirs(self.tools)
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.vigilo = self.processes.start(
            [VIGILO],
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, XDG_CONFIG_HOME=self.config,
                XDG_CURRENT_DESKTOP="XFCE", DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
                PATH=self.tools + ":/usr/bin:/bin",
            ),
        )
        wait_until(lambda: self.focused() == "Start Awake Session", "the focus")

    def focused(self):
        names = [node.name for node in self.desktop.nodes() if {"focused", "showing"} <= node.states]
        return names[-1] if names else None

    def press(self, *keys, then_focused):
        self.display.key(*keys)
        wait_until(lambda: self.focused() == then_focused, "the focus on " + then_focused)

    def check_ring(self, colour=RING):
        """That what has the keyboard can be seen: its colour is around it, and nowhere else."""
        node = [node for node in self.desktop.nodes() if {"focused", "showing"} <= node.states][-1]
        left, top, right, bottom = node.box()
        wait_until(lambda: self.has(colour, left - 6, top - 6, right + 6, bottom + 6), "the ring of " + node.name)

    def has(self, colour, left, top, right, bottom):
        picture = Picture(self.display.picture())
        return any(
            max(abs(a - b) for a, b in zip(picture.colour(x, y), colour)) <= 3
            for y in range(int(top), int(bottom)) for x in range(int(left), int(right))
        )

    def rows(self):
        return [node.name for node in self.desktop.nodes() if node.role == "menu item" and "showing" in node.states]

    def test_every_control_shows_that_it_has_the_keyboard(self):
        self.start()
        for name in ("Main menu", "Minimise", "Close", "Awake duration", "Screen mode", "Start Awake Session"):
            self.press("Tab", then_focused=name)
            self.check_ring()
        self.press("shift+Tab", then_focused="Screen mode")
        self.press("space", then_focused="Agent Lock")
        self.check_ring(LINE)
        self.press("Down", then_focused="Apple Lock")
        self.check_ring(LINE)
        self.press("Escape", then_focused="Screen mode")
        self.check_ring()

    def test_the_main_menu_opens_by_its_keys_and_leaves_the_focus_where_it_was(self):
        self.start()
        self.press("Tab", "Tab", then_focused="Minimise")
        for key in ("F10", "shift+F10", "Menu"):
            self.press(key, then_focused="Vigilo")
            self.press("Down", then_focused="About Vigilo")
            self.check_ring(LINE)
            self.press("Up", then_focused="Quit Vigilo")
            self.press("Tab", then_focused="About Vigilo")
            self.press("shift+Tab", then_focused="Quit Vigilo")
            self.press("Escape", then_focused="Minimise")
            self.check_ring()
        self.press("shift+Tab", then_focused="Main menu")
        self.press("Return", then_focused="Vigilo")
        self.press("Escape", then_focused="Main menu")

    def test_a_session_is_chosen_begun_and_ended(self):
        self.start()
        self.press("shift+Tab", "shift+Tab", then_focused="Awake duration")
        self.press("Down", then_focused="Until stopped")
        self.press("Home", then_focused="30 minutes")
        self.press("Return", then_focused="Awake duration")
        self.press("Tab", then_focused="Screen mode")
        self.press("Return", then_focused="Agent Lock")
        self.press("Up", then_focused="Stay Visible")
        self.press("Return", then_focused="Screen mode")
        self.press("Tab", then_focused="Start Awake Session")
        self.press("Return", then_focused="End Awake Session")
        self.check_ring()
        wait_until(lambda: any(node.name.endswith("remaining") for node in self.desktop.nodes()), "the time left")
        for name in ("Main menu", "Minimise", "Close", "End Awake Session"):
            self.press("Tab", then_focused=name)
        self.press("space", then_focused="Start Awake Session")
        # What goes with a session's beginning does not keep the keyboard.
        self.press("shift+Tab", then_focused="Screen mode")
        self.press("ctrl+k", then_focused="End Awake Session")
        self.check_ring()
        self.press("ctrl+k", then_focused="Start Awake Session")

    def test_panels_are_opened_and_closed(self):
        self.start()
        for key in ("Escape", "Return", "space"):
            self.press("F10", then_focused="Vigilo")
            self.press("Down", "Return", then_focused="Close")
            self.display.settle(quiet=0.2)
            self.press("Tab", then_focused="https://vigilo.github.io")
            self.check_ring()
            self.press("Tab", then_focused="Close")
            self.check_ring()
            self.display.key(key)
            wait_until(lambda: not windows_named(self.display.name, "About Vigilo"), "the panel to close")
            wait_until(lambda: self.focused() == "Start Awake Session", "the focus")

    def test_a_failure_is_read_and_dismissed(self):
        self.start()
        os.makedirs(os.path.join(self.config, "autostart/io.github.vigilo.Vigilo.desktop"))
        for key in ("Escape", "Return", "space"):
            self.press("F10", then_focused="Vigilo")
            self.press("End", "Up", then_focused="Launch at Login")
            self.press("Return", then_focused="OK")
            self.display.settle(quiet=0.2)
            self.display.key(key)
            wait_until(lambda: self.focused() == "Start Awake Session", "the focus")

    def test_the_window_is_closed_and_the_program_ended(self):
        self.start()
        self.press("shift+Tab", "shift+Tab", "shift+Tab", then_focused="Close")
        self.display.key("Return")
        wait_until(lambda: not windows_named(self.display.name, "Vigilo"), "the window to close")
        again = self.processes.start([VIGILO], env=environment(DISPLAY=self.display.name, WAYLAND_DISPLAY=None))
        self.assertEqual(again.wait(PATIENCE), 0)
        wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")
        wait_until(lambda: self.focused() == "Close", "the focus")
        self.display.key("ctrl+k")
        self.desktop.wait_for("heading", "This Mac is staying awake")
        self.display.key("ctrl+q")
        self.assertEqual(self.vigilo.wait(PATIENCE), 0)

    def test_the_lock_is_opened_left_closed_and_left_to_the_system(self):
        lock = LockScreen(self, self.desktop, self.display, self.processes, VIGILO, MODULE)
        wait_until(lambda: self.focused() == UNLOCK, "the focus")
        self.press("Tab", then_focused=APPLE_LOCK)
        self.check_ring()
        self.press("Tab", then_focused=UNLOCK)
        self.check_ring()
        self.press("Return", then_focused="")
        self.check_ring()
        self.press("Tab", then_focused="Stay Locked")
        self.check_ring()
        self.press("Return", then_focused=UNLOCK)
        self.display.key("space", *"right", "Return")
        wait_until(lambda: not lock.shown(), "the lock to go")
        wait_until(lambda: self.focused() == "End Awake Session", "the focus")
        self.press("ctrl+l", then_focused=UNLOCK)
        self.press("shift+Tab", then_focused=APPLE_LOCK)
        self.display.key("Return")
        wait_until(lambda: not lock.shown(), "the lock to go")
        wait_until(lambda: self.focused() == "End Awake Session", "the focus")


if __name__ == "__main__":
    reason = OddPam.missing() or Agents.missing() or (None if shutil.which("openbox") else "openbox is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
