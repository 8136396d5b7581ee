#!/usr/bin/python3
"""Windows that go while the toolkit's thread that hears that their pictures were shown is late, under sway.
Usage: late_pictures_test.py VIGILO SLOW_FRAMES_SHIM"""

import os
import shutil
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.preload import preload
from harness.processes import PATIENCE, Processes, environment, wait_until
from harness.sway import Sway

VIGILO, SLOW_FRAMES = sys.argv.pop(1), sys.argv.pop(1)


class LatePictures(unittest.TestCase):
    def setUp(self):
        self.sway = self.enterContext(Sway(outputs=2))
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
        late = preload(self.sway.folder, SLOW_FRAMES)
        self.vigilo = self.processes.start([VIGILO], env=self.variables | late)
        self.wait_for_the_window()
        time.sleep(1)

    def wait_for_the_window(self):
        wait_until(lambda: any(node["focused"] for node in self.sway.windows()), "the window")

    def press(self, key):
        subprocess.run(["wtype", "-k", key], env=self.variables, check=True)

    def test_covers_come_and_go(self):
        # The large button has the keyboard, and the proposed mode is the Agent Lock.
        self.press("Return")
        wait_until(self.sway.is_covered, "the lock")
        second = self.sway.outputs()[1]["name"]
        for step in range(30):
            self.sway.message("output " + second + (" scale 1" if step % 2 else " scale 2"))
            # The pictures are drawn at another moment each time.
            time.sleep(0.01 * (step % 10))
        wait_until(self.sway.is_covered, "the covers")
        self.assertIsNone(self.vigilo.poll())

    def test_the_main_window_closes_and_comes_back(self):
        for step in range(10):
            # Draws: the keyboard goes on to the next item.
            self.press("Tab")
            time.sleep(0.01 * step)
            self.sway.message("kill")
            wait_until(lambda: not self.sway.windows(), "the window to go")
            self.assertIsNone(self.vigilo.poll())
            subprocess.run([VIGILO], env=self.variables, check=True, timeout=PATIENCE)
            self.wait_for_the_window()

    def test_the_program_ends_below_covers(self):
        self.press("Return")
        wait_until(self.sway.is_covered, "the lock")
        self.vigilo.terminate()
        self.assertEqual(0, self.vigilo.wait(PATIENCE))


if __name__ == "__main__":
    missing = next((name for name in ("wtype",) if not shutil.which(name)), None)
    reason = Sway.missing() or (missing and missing + " is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
