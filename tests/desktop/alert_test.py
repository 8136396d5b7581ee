#!/usr/bin/python3
"""What fails again and again while a warning is shown. Usage: alert_test.py VIGILO"""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import ID, perform
from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.processes import PATIENCE, Processes, environment, wait_until

VIGILO = sys.argv.pop(1)


class Alerts(unittest.TestCase):
    """Without a power service a session is refused."""

    def setUp(self):
        self.display = self.enterContext(VirtualDisplay())
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        config = os.path.join(self.bus.folder, "config")
        # So that the start at login cannot be switched either.
        os.makedirs(os.path.join(config, "autostart/%s.desktop" % ID))
        self.program = self.processes.start(
            [VIGILO],
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=self.bus.address,
                DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus", XDG_CONFIG_HOME=config,
            ),
        )
        wait_until(lambda: len(self.windows()) == 1, "the window")
        self.display.settle()

    def windows(self):
        return windows_named(self.display.name, "Vigilo")

    def perform(self, *actions):
        for action in actions:
            perform(self.bus, action)

    def dismiss(self):
        self.display.settle()
        self.display.key("Return")

    def test_the_same_warning_is_shown_once(self):
        self.perform("toggleProtection")
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        self.perform(*["toggleProtection", "agentLock", "appleLock"] * 20)
        self.display.settle()
        self.assertEqual(len(self.windows()), 2)
        self.dismiss()
        wait_until(lambda: len(self.windows()) == 1, "the alert to go")
        self.perform("toggleProtection")
        wait_until(lambda: len(self.windows()) == 2, "the alert, since it fails anew")
        self.program.terminate()
        self.assertEqual(self.program.wait(PATIENCE), 0)

    def test_another_warning_waits_its_turn(self):
        self.perform("toggleProtection")
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        first = set(self.windows())
        self.perform("toggleLaunchAtLogin")
        self.display.settle()
        self.assertEqual(set(self.windows()), first)
        self.dismiss()
        wait_until(lambda: len(self.windows()) == 2 and set(self.windows()) != first, "the other alert")
        self.dismiss()
        wait_until(lambda: len(self.windows()) == 1, "it to go")


if __name__ == "__main__":
    unittest.main(verbosity=2)
