#!/usr/bin/python3
"""A day with the program under a Wayland compositor without a pointer.
Usage: keyboard_wayland_test.py VIGILO MODULE"""

import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.lock_screen import APPLE_LOCK, UNLOCK
from harness.pam import OddPam
from harness.pictures import Picture
from harness.processes import PATIENCE, Processes, environment, wait_until
from harness.sway import Sway

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
# The colour of the ring around what has the keyboard.
RING = bytes((158, 199, 255))


class KeyboardOnWayland(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.sway = self.enterContext(Sway())
        pam = self.enterContext(OddPam(MODULE))
        processes = self.enterContext(Processes())
        pam.does("ask", "Password:")
        # Its socket and that of the accessibility bus are in different folders.
        socket = os.path.join(self.sway.environment["XDG_RUNTIME_DIR"], self.sway.environment["WAYLAND_DISPLAY"])
        self.variables = environment(
            WAYLAND_DISPLAY=socket,
            DISPLAY=None,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            QT_QPA_PLATFORM="wayland",
            XDG_CONFIG_HOME=os.path.join(self.desktop.folder, "config"),
        )
        processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        # A keyboard that is there before the first key: clients take note of one only after a while.
        processes.start(["wtype", "-s", "600000", "-k", "Shift_L"], env=self.variables)
        self.vigilo = processes.start(pam.command(VIGILO), env=self.variables)
        self.wait_for_focus("Start Awake Session")

    def focused(self):
        names = [node.name for node in self.desktop.nodes() if {"focused", "showing"} <= node.states]
        return names[-1] if names else None

    def wait_for_focus(self, name):
        wait_until(lambda: self.focused() == name, "the focus on " + name)

    def press(self, *words, then_focused):
        subprocess.run(["wtype", *words], env=self.variables, check=True)
        self.wait_for_focus(then_focused)

    def wait_for_ring(self):
        def is_shown():
            with tempfile.NamedTemporaryFile(suffix=".png") as file:
                self.sway.screenshot(file.name)
                return Picture.read(file.name).has(RING)

        wait_until(is_shown, "the ring")

    def test_every_place_is_reached_and_left(self):
        for name in ("Main menu", "Minimise", "Close", "Awake duration", "Screen mode"):
            self.press("-k", "Tab", then_focused=name)
            self.wait_for_ring()
        self.press("-k", "Return", then_focused="Agent Lock")
        self.press("-k", "Up", then_focused="Stay Visible")
        self.press("-k", "Escape", then_focused="Screen mode")
        for key in ("-k", "F10"), ("-M", "shift", "-k", "F10", "-m", "shift"), ("-k", "Menu"):
            self.press(*key, then_focused="Vigilo")
            self.press("-k", "End", then_focused="Quit Vigilo")
            self.press("-k", "Home", then_focused="About Vigilo")
            self.press("-k", "Escape", then_focused="Screen mode")
        self.press("-k", "F10", then_focused="Vigilo")
        self.press("-k", "Home", then_focused="About Vigilo")
        self.press("-k", "Return", then_focused="Close")
        self.press("-k", "Escape", then_focused="Screen mode")

    def test_a_session_is_begun_locked_unlocked_and_ended(self):
        self.press("-M", "ctrl", "k", "-m", "ctrl", then_focused="End Awake Session")
        self.press("-M", "ctrl", "l", "-m", "ctrl", then_focused=UNLOCK)
        self.press("-k", "Tab", then_focused=APPLE_LOCK)
        self.wait_for_ring()
        self.press("-k", "Tab", then_focused=UNLOCK)
        self.press("-k", "Return", then_focused="")
        self.press("-k", "Tab", then_focused="Stay Locked")
        self.press("-k", "Return", then_focused=UNLOCK)
        self.press("right", "-k", "Return", then_focused="End Awake Session")
        self.press("-M", "ctrl", "k", "-m", "ctrl", then_focused="Start Awake Session")
        subprocess.run(["wtype", "-M", "ctrl", "q", "-m", "ctrl"], env=self.variables, check=True)
        self.assertEqual(self.vigilo.wait(PATIENCE), 0)


if __name__ == "__main__":
    reason = OddPam.missing() or Sway.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
