#!/usr/bin/python3
"""What the desktop's settings say of text scale and movement: on Wayland everything grows with the text, the lock
still covers and opens; on X11, where it has come another way, nothing grows twice; nonsense and silence from
the settings leave everything as usual. Usage: desktop_appearance_test.py VIGILO MODULE"""

import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.agents import Agents
from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.pam import OddPam
from harness.pictures import Picture
from harness.processes import Processes, environment, wait_until
from harness.sway import Sway

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
NOWHERE = "unix:path=/nonexistent/bus"
MAGENTA = (255, 0, 255)
UNLOCK_BLUE = (10, 132, 255)


def text_scale(scale):
    return {"org.gnome.desktop.interface": {"text-scaling-factor": scale}}


def animations(are_on):
    return {"org.gnome.desktop.interface": {"enable-animations": are_on}}


class Appearance(unittest.TestCase):
    def setUp(self):
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.pam = self.enterContext(OddPam(MODULE))
        self.pam.does("ask", "Password:")

    def start(self, settings, **variables):
        self.variables = environment(
            DBUS_SESSION_BUS_ADDRESS=self.bus.address, DBUS_SYSTEM_BUS_ADDRESS=NOWHERE, **variables
        )
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        self.processes.serve("fake_settings_portal.py", json.dumps(settings), env=self.variables)
        self.vigilo = self.processes.start(Agents.alone(*self.pam.command(VIGILO)), env=self.variables)

    def start_on_wayland(self, settings, **variables):
        self.sway = self.enterContext(Sway())
        self.sway.message("output * resolution 1920x1200")
        self.start(settings, **self.sway.environment, QT_QPA_PLATFORM="wayland", **variables)
        # A keyboard that is there before the first key: clients take note of one only after a while.
        self.processes.start(["wtype", "-s", "600000", "-k", "Shift_L"], env=self.variables)
        return wait_until(self.window, "the window")

    def start_on_x11(self, settings):
        self.display = self.enterContext(VirtualDisplay("800x640x24"))
        self.start(settings, DISPLAY=self.display.name, WAYLAND_DISPLAY=None)
        window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.display.settle()
        return self.display.size(window)

    def window(self):
        """The width and the height of the program's window under sway."""
        boxes = [window["rect"] for window in self.sway.windows() if window.get("app_id")]
        return next(((box["width"], box["height"]) for box in boxes), None)

    def picture(self):
        with tempfile.NamedTemporaryFile(suffix=".png") as file:
            self.sway.screenshot(file.name)
            return Picture.read(file.name)

    def wtype(self, *arguments):
        subprocess.run(["wtype", *arguments], env=self.variables, check=True)

    def check_lock(self, scale):
        """That it covers the display, is of this scale, and opens."""
        blue = (960 - int(145 * scale), 600)

        def is_up():
            picture = self.picture()
            self.column = [
                y for y in range(0, 1200) if all(abs(a - b) <= 2 for a, b in zip(picture.colour(blue[0], y), UNLOCK_BLUE))
            ]
            corners = [picture.colour(x, y) for x in (0, 1919) for y in (0, 1199)]
            return self.column and MAGENTA not in corners

        wait_until(is_up, "the lock screen")
        height = max(self.column) - min(self.column) + 1
        self.assertLessEqual(abs(height - 43 * scale), 12 * scale)
        picture = self.picture()
        self.assertFalse(
            any(picture.colour(x, y) == MAGENTA for x in range(0, 1920, 3) for y in range(0, 1200, 3)), "a gap"
        )
        self.wtype("right", "-k", "Return")
        wait_until(lambda: self.picture().colour(0, 0) == MAGENTA, "the lock to go")

    def test_everything_grows_on_wayland(self):
        for scale in (2.0, 1.25):
            with self.subTest(scale=scale):
                size = self.start_on_wayland(text_scale(scale))
                self.assertEqual(size, (720 * scale, 560 * scale))
                time.sleep(1)
                self.wtype("-k", "Return")
                self.check_lock(scale)
                self.doCleanups()
                self.setUp()

    def test_a_scale_that_is_chosen_is_left(self):
        self.assertEqual(self.start_on_wayland(text_scale(2.0), QT_SCALE_FACTOR="1.5"), (1080, 840))

    def test_nothing_grows_twice_on_x11(self):
        self.assertEqual(self.start_on_x11(text_scale(2.0)), (720, 560))

    def test_nonsense_and_silence_change_nothing(self):
        for settings in (text_scale("large"), text_scale(float("nan")), {}, "hang"):
            with self.subTest(settings=settings):
                self.assertEqual(self.start_on_wayland(settings), (720, 560))
                self.doCleanups()
                self.setUp()

    def go_to_the_button(self):
        """Brings the focus to the button that starts and ends a session that keeps the screen as it is."""
        for key in ("shift+Tab", "Return", "Home", "Return", "Tab"):
            self.display.key(key)
            self.display.settle(quiet=1)

    def test_nothing_moves_where_nothing_is_to_move(self):
        self.start_on_x11(animations(False))
        self.go_to_the_button()
        for _ in range(2):
            self.assertEqual(self.display.pictures_after("Return"), 2)

    def test_the_state_glides_otherwise(self):
        self.start_on_x11(animations(True))
        self.go_to_the_button()
        # A busy machine may draw nothing between the beginning and the end of one glide.
        wait_until(lambda: self.display.pictures_after("Return") > 2, "a glide")


if __name__ == "__main__":
    reason = OddPam.missing() or Sway.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
