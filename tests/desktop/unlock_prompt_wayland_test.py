#!/usr/bin/python3
"""The prompt of the lock screen under sway, with the keyboard of a Wayland compositor.
Usage: unlock_prompt_wayland_test.py VIGILO MODULE"""

import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.lock_screen import UNLOCK
from harness.pam import OddPam
from harness.processes import Processes, end, environment, wait_until
from harness.sway import Sway

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)


class UnlockPromptOnWayland(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def lock(self, has_keyboard=True):
        self.sway = self.enterContext(Sway())
        self.pam = self.enterContext(OddPam(MODULE))
        self.processes = self.enterContext(Processes())
        self.pam.does("ask", "Password:")
        # Its socket and that of the accessibility bus are in different folders.
        socket = os.path.join(self.sway.environment["XDG_RUNTIME_DIR"], self.sway.environment["WAYLAND_DISPLAY"])
        self.variables = environment(
            WAYLAND_DISPLAY=socket,
            DISPLAY=None,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            QT_QPA_PLATFORM="wayland",
        )
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        if has_keyboard:
            # There before the first key: clients take note of one only after a while.
            self.processes.start(["wtype", "-s", "600000", "-k", "Shift_L"], env=self.variables)
        self.vigilo = self.processes.start(self.pam.command(VIGILO), env=self.variables)
        self.desktop.wait_for("push button", "Start Awake Session").press()
        self.desktop.wait_for("push button", UNLOCK).press()
        wait_until(lambda: self.hint() == "Password", "the prompt")

    def hint(self):
        """What is told with the password field; None without one."""
        for node in self.desktop.nodes():
            if node.role == "password text" and "showing" in node.states:
                return node.description
        return None

    def wtype(self, *arguments):
        subprocess.run(["wtype", *arguments], env=self.variables, check=True)

    def test_caps_lock_is_told_as_long_as_it_is_on(self):
        self.lock()
        keyboard = self.processes.start(["wtype", "-M", "capslock", "-s", "600000"], env=self.variables)
        wait_until(lambda: self.hint() == "Password. Caps Lock is on.", "the warning")
        end(keyboard)
        # The next keyboard has none.
        self.wtype("-k", "Shift_L")
        wait_until(lambda: self.hint() == "Password", "the end of the warning")

    def test_it_is_left_and_passed_by_keyboard(self):
        self.lock()
        self.wtype("-k", "Escape")
        wait_until(lambda: self.hint() is None, "the prompt to go")
        self.wtype("right", "-k", "Return")
        self.desktop.wait_for("push button", "End Awake Session")
        wait_until(lambda: not self.desktop.find("push button", UNLOCK), "the lock to go")

    def test_a_seat_that_has_never_had_a_keyboard_is_survived(self):
        self.lock(has_keyboard=False)
        self.desktop.wait_for("push button", "Stay Locked").press()
        wait_until(lambda: self.hint() is None, "the prompt to go")
        self.assertTrue(self.sway.is_covered())
        self.assertIsNone(self.vigilo.poll())


if __name__ == "__main__":
    reason = OddPam.missing() or Sway.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
