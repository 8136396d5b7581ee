#!/usr/bin/python3
"""The main window under a window manager: where and as what it comes up, that it is moved by its ground and put
away by its own button.
Usage: window_manager_test.py VIGILO"""

import itertools
import os
import shutil
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.display import VirtualDisplay, windows_named
from harness.focus import focused_window
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
NOWHERE = "unix:path=/nonexistent/bus"


class UnderAWindowManager(unittest.TestCase):
    def setUp(self):
        self.display = self.enterContext(VirtualDisplay())
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            DISPLAY=self.display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=NOWHERE,
            DBUS_SYSTEM_BUS_ADDRESS=NOWHERE,
        )
        self.processes.start(["openbox"], env=self.variables)
        self.display.wait_for_window_manager()
        self.vigilo = self.processes.start([VIGILO], env=self.variables)
        self.window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.display.settle()

    def xdotool(self, *words):
        subprocess.run(["xdotool", *words], env=self.variables, check=True)

    def asked(self, *command):
        """What a program prints."""
        return subprocess.run(command, env=self.variables, check=True, stdout=subprocess.PIPE, text=True).stdout

    def test_it_comes_up_in_the_middle_with_the_keyboard(self):
        self.assertEqual(self.display.position(self.window), ((1280 - 720) // 2, (800 - 560) // 2))
        wait_until(lambda: focused_window(self.display.name) == self.window, "the keyboard")

    def test_it_has_the_programs_icon(self):
        icons = self.asked("xprop", "-id", self.window, "_NET_WM_ICON")
        for size in (16, 32, 64):
            self.assertIn("Icon (%d x %d)" % (size, size), icons)

    def test_it_has_its_size_and_keeps_it(self):
        self.xdotool("windowsize", self.window, "900", "700")
        time.sleep(0.5)
        self.assertIn("720x560", self.asked("xdotool", "getwindowgeometry", self.window))

    def test_its_ground_moves_it(self):
        x, y = self.display.position(self.window)
        self.xdotool("mousemove", str(x + 100), str(y + 480), "mousedown", "1")
        steps = itertools.count(1)

        def moves():
            step = next(steps) % 20
            self.xdotool("mousemove", str(x + 100 + 10 * step), str(y + 480 + 5 * step))
            return self.display.position(self.window) != (x, y)

        # The button stays down until then: the program may see the drag late.
        wait_until(moves, "the window to move")
        self.xdotool("mouseup", "1")

    def test_its_button_minimises_it(self):
        self.display.click(self.window, 682, 16)
        wait_until(lambda: not windows_named(self.display.name, "Vigilo"), "the window to go")
        self.assertIsNone(self.vigilo.poll())
        self.xdotool("windowactivate", self.window)
        wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window to come back")

    def test_the_window_manager_hides_it_like_its_own_button(self):
        self.xdotool("windowactivate", "--sync", self.window)
        self.display.key("alt+F4")
        wait_until(lambda: not windows_named(self.display.name, "Vigilo"), "the window to hide")
        time.sleep(0.5)
        self.assertIsNone(self.vigilo.poll())


if __name__ == "__main__":
    if not shutil.which("openbox"):
        print("skipped: openbox is not installed")
        sys.exit(77)
    unittest.main(verbosity=2)
