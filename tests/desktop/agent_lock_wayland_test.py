#!/usr/bin/python3
"""The Agent Lock under sway: what it hides on several outputs that come, go and change.
Usage: agent_lock_wayland_test.py VIGILO COVERED_WAYLAND SWITCHED_OUTPUTS_SHIM"""

import os
import random
import shutil
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.pictures import Picture
from harness.processes import Processes, environment, wait_until
from harness.sway import Sway

VIGILO, WATCH, SHIM = sys.argv.pop(1), sys.argv.pop(1), sys.argv.pop(1)
# The larger of the lock screen.
BUTTON = bytes((10, 132, 255))


class AgentLockOnWayland(unittest.TestCase):
    def setUp(self):
        self.sway = self.enterContext(Sway(outputs=2, shim=SHIM))
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            **self.sway.environment,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            QT_QPA_PLATFORM="wayland",
        )
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        # A keyboard that is there before the first key: clients take note of one only after a while.
        self.processes.start(["wtype", "-s", "600000", "-k", "Shift_L"], env=self.variables)
        self.vigilo = self.processes.start([VIGILO], env=self.variables)
        wait_until(lambda: any(node["focused"] for node in self.sway.windows()), "the window")
        time.sleep(1)
        # The large button has the keyboard, and the proposed mode is the Agent Lock.
        self.press("Return")
        wait_until(self.sway.is_covered, "the lock")

    def shows(self, colour):
        picture = subprocess.run(["grim", "-t", "ppm", "-"], env=self.variables, check=True, stdout=subprocess.PIPE)
        return Picture(picture.stdout).has(colour)

    def press(self, key):
        subprocess.run(["wtype", "-k", key], env=self.variables, check=True)

    def test_no_output_shows_the_desktop_and_no_window_comes_above(self):
        # An ordinary window of a program that knows nothing of the other.
        alone = self.variables | {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus"}
        other = self.processes.start([VIGILO], env=alone)
        wait_until(lambda: any(node["pid"] == other.pid for node in self.sway.windows()), "its window")
        time.sleep(0.5)
        self.assertTrue(self.sway.is_covered())
        self.assertIsNone(other.poll())

    def test_the_compositors_own_shortcuts_uncover_nothing(self):
        for command in ("workspace 5", "kill", "fullscreen toggle", "workspace prev"):
            self.sway.message(command)
            time.sleep(0.2)
            self.assertTrue(self.sway.is_covered(), command)
        self.assertIsNone(self.vigilo.poll())

    def test_outputs_change_a_hundred_times_and_stay_covered(self):
        chance = random.Random(7)
        for step in range(100):
            outputs = self.sway.outputs()
            name = chance.choice(outputs)["name"]
            change = chance.choice(
                ["create", "disable", "enable", "mode 1024x600", "mode 800x1280", "scale 2", "scale 1",
                 "transform 90", "transform normal"]
            )
            if change == "create" and len(outputs) < 5:
                self.sway.message("create_output")
            elif change in ("disable", "enable"):
                self.sway.switch(name, change == "enable")
            elif change != "create":
                self.sway.message("output " + name + " " + change)
            if step % 5 == 4:
                wait_until(self.sway.is_covered, "the covers after " + change)
                self.assertIsNone(self.vigilo.poll())

    def test_a_change_of_one_output_uncovers_no_other_for_a_moment(self):
        # So many pictures a second that none is missed.
        self.sway.message("output * mode --custom 1280x720@1000Hz")
        time.sleep(1)
        watch = self.processes.start([WATCH, "forever"], env=self.variables, stdout=subprocess.PIPE, text=True)
        self.addCleanup(watch.stdout.close)
        self.assertEqual("watching\n", watch.stdout.readline())
        second = self.sway.outputs()[1]["name"]
        for change in ("scale 2", "scale 1", "transform 90", "transform normal"):
            self.sway.message("output " + second + " " + change)
            time.sleep(0.3)
        for on in (False, True):
            self.sway.switch(second, on)
            time.sleep(0.3)
        wait_until(self.sway.is_covered, "the covers")
        self.assertIsNone(watch.poll())
        before = time.clock_gettime(time.CLOCK_MONOTONIC)
        # Not by a key: one that comes while covers change is lost.
        self.vigilo.terminate()
        # Now that the lock is gone.
        self.assertLess(before, float(watch.stdout.readline()))

    def has_keyboard(self):
        """Whether no ordinary window has it."""
        return self.sway.message("-t", "get_seats")[0]["focus"] == 0

    def test_no_output_at_all_is_survived(self):
        names = [output["name"] for output in self.sway.outputs()]
        # Also such that the last to go comes back first, and so to the place where it was alone.
        for going, coming in ((names, names), (names, names[::-1]), (names[::-1], names)):
            for name in going:
                self.sway.switch(name, False)
                time.sleep(0.5)
            self.assertIsNone(self.vigilo.poll())
            for name in coming:
                self.sway.switch(name, True)
                wait_until(self.sway.is_covered, "the covers")
                wait_until(self.has_keyboard, "the keyboard of the lock")
            self.assertIsNone(self.vigilo.poll())

    def test_the_keyboard_reaches_the_lock_screen(self):
        # Until its buttons are there, and no ordinary window has the keyboard.
        wait_until(lambda: self.shows(BUTTON), "the buttons")
        wait_until(self.has_keyboard, "the keyboard of the lock")
        # Tab goes to the other button, which leaves the screen to the system's own lock.
        self.press("Tab")
        self.press("Return")
        wait_until(lambda: not self.sway.is_covered(), "the lock to go")
        self.assertIsNone(self.vigilo.poll())


if __name__ == "__main__":
    missing = next((name for name in ("grim", "wtype") if not shutil.which(name)), None)
    reason = Sway.missing() or (missing and missing + " is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
