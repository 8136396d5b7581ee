#!/usr/bin/python3
"""A day with a finger alone: taps on buttons, menus, the lock and its prompt, also beside the middle of small
ones. Usage: touch_test.py VIGILO MODULE SHIM"""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.agents import Agents
from harness.display import VirtualDisplay, windows_named
from harness.lock_screen import APPLE_LOCK, UNLOCK, LockScreen
from harness.pam import OddPam
from harness.preload import preload
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
SHIM = sys.argv.pop(1)
# A finger hits what is at least so wide and high, in pixels.
TARGET = 24
EDGES = [(0, 0)] + [
    (x * (TARGET // 2 - 1), y * (TARGET // 2 - 1)) for x in (-1, 1) for y in (-1, 1)
]


class Touch(unittest.TestCase):
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
        self.pipe = os.path.join(self.desktop.folder, self.id())
        os.mkfifo(self.pipe)
        self.variables = preload(self.desktop.folder, SHIM) | {"TOUCH_PIPE": self.pipe}

    def start(self):
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.processes.start(
            [VIGILO],
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, XDG_CONFIG_HOME=self.pipe + ".config",
                DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus", **self.variables,
            ),
        )
        wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")
        self.desktop.wait_for("push button", "Start Awake Session")
        self.display.settle()

    def tap(self, name, right=0, down=0):
        """So far beside the middle of what has this name."""
        find = lambda: [
            node for node in self.desktop.nodes()
            if node.name == name and "showing" in node.states and node.role in ("push button", "menu item", "link")
        ]
        self.display.settle(quiet=0.2)
        left, top, far, bottom = wait_until(find, name)[-1].box()
        self.tap_at((left + far) // 2 + right, (top + bottom) // 2 + down)

    def tap_at(self, x, y):
        with open(self.pipe, "w", encoding="utf-8") as pipe:
            pipe.write("%d %d\n" % (x, y))

    def rows(self):
        return [node for node in self.desktop.nodes() if node.role == "menu item" and "showing" in node.states]

    def test_a_session_is_chosen_begun_and_ended(self):
        self.start()
        for menu, row, value in (("Awake duration", "2 hours", "2 hours"), ("Screen mode", "Stay Visible", "Stay Visible")):
            for edge in EDGES:
                self.tap(menu, *edge)
                wait_until(self.rows, "the menu")
                self.tap(row, *edge)
                wait_until(lambda: not self.rows(), "the menu to close")
                wait_until(lambda m=menu, v=value: self.desktop.find("push button", m).description == v, value)
        # Beside a menu that is open.
        self.tap("Screen mode")
        wait_until(self.rows, "the menu")
        self.tap_at(300, 600)
        wait_until(lambda: not self.rows(), "the menu to close")
        self.tap("Start Awake Session")
        self.desktop.wait_for("heading", "This Mac is staying awake")
        self.tap("End Awake Session")
        self.desktop.wait_for("heading", "Keep this Mac awake")

    def test_the_buttons_of_the_frame_are_hit(self):
        self.start()
        for edge in EDGES:
            self.tap("Main menu", *edge)
            wait_until(self.rows, "the menu")
            self.tap("Keep Mac Awake", *edge)
            self.desktop.wait_for("heading", "This Mac is staying awake")
            self.tap("Main menu")
            self.tap("Stop Keeping Awake")
            self.desktop.wait_for("heading", "Keep this Mac awake")
        self.tap("Main menu")
        self.tap("About Vigilo")
        wait_until(lambda: windows_named(self.display.name, "About Vigilo"), "the panel")
        self.tap("Close")
        wait_until(lambda: not windows_named(self.display.name, "About Vigilo"), "the panel to close")
        self.tap("Close", -11, 11)
        wait_until(lambda: not windows_named(self.display.name, "Vigilo"), "the window to close")

    def test_the_lock_and_its_prompt(self):
        lock = LockScreen(
            self, self.desktop, self.display, self.processes, VIGILO, MODULE, [], **self.variables
        )
        for edge in EDGES:
            self.tap(UNLOCK, *edge)
            wait_until(lambda: lock.focused() == ("password text", ""), "the prompt")
            self.tap("Stay Locked", *edge)
            wait_until(lambda: not lock.prompt(), "the prompt to go")

    def check_apple_lock(self, right, down):
        lock = LockScreen(
            self, self.desktop, self.display, self.processes, VIGILO, MODULE, [], **self.variables
        )
        self.tap(APPLE_LOCK, right, down)
        wait_until(lambda: not lock.shown(), "the lock to go")

    def test_the_lock_is_left_to_the_system_by_a_tap_at_the_upper_edge_of_the_button(self):
        self.check_apple_lock(*EDGES[1])

    def test_the_lock_is_left_to_the_system_by_a_tap_at_the_lower_edge_of_the_button(self):
        self.check_apple_lock(*EDGES[-1])


if __name__ == "__main__":
    reason = OddPam.missing() or Agents.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
