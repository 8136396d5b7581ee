#!/usr/bin/python3
"""What an X11 desktop without a portal says of the look, by its settings daemon: high contrast comes and goes with
the theme, the daemon and its successor; nothing moves where nothing is to; texts grow once. Usage:
x_settings_test.py VIGILO"""

import os
import shutil
import signal
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.agents import Agents
from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.pictures import Picture, contrast
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
NOWHERE = "unix:path=/nonexistent/bus"
HIGH, ORDINARY = {"Net/ThemeName": '"HighContrast"'}, {"Net/ThemeName": '"Adwaita"'}


class XSettings(unittest.TestCase):
    def setUp(self):
        self.bus = self.enterContext(SessionBus())
        self.display = self.enterContext(VirtualDisplay("1600x1200x24"))
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            DBUS_SESSION_BUS_ADDRESS=self.bus.address, DBUS_SYSTEM_BUS_ADDRESS=NOWHERE,
            DISPLAY=self.display.name, WAYLAND_DISPLAY=None,
        )
        self.file = os.path.join(self.bus.folder, "xsettingsd.conf")

    def say(self, settings):
        with open(self.file, "w", encoding="utf-8") as file:
            file.writelines("%s %s\n" % setting for setting in settings.items())

    def daemon(self, settings):
        """The desktop's settings daemon, with these to hand out."""
        self.say(settings)
        daemon = self.processes.start(["xsettingsd", "-c", self.file], env=self.variables)
        wait_until(lambda: self.display.selection_owner("_XSETTINGS_S0"), "the daemon")
        return daemon

    def start(self):
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        self.processes.start(Agents.alone(VIGILO), env=self.variables)
        self.window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.display.move_pointer(0, 0)
        self.display.settle()

    def has_edge(self):
        """Whether the window has an edge that stands out, as it has in high contrast."""
        x, y = self.display.position(self.window)
        picture = Picture(self.display.picture())
        return contrast(picture.colour(x, y + 280), picture.colour(x + 4, y + 280)) >= 3

    def wait_for_edge(self, is_there):
        wait_until(lambda: self.has_edge() == is_there, "the edge to %s" % ("come" if is_there else "go"))

    def test_high_contrast_is_there_from_the_start(self):
        self.daemon(HIGH)
        self.start()
        self.assertTrue(self.has_edge())

    def test_high_contrast_follows_the_theme_and_the_daemon(self):
        self.start()
        self.assertFalse(self.has_edge())
        daemon = self.daemon(HIGH)
        self.wait_for_edge(True)
        self.say(ORDINARY)
        daemon.send_signal(signal.SIGHUP)
        self.wait_for_edge(False)
        self.say(HIGH)
        daemon.send_signal(signal.SIGHUP)
        self.wait_for_edge(True)
        daemon.terminate()
        daemon.wait()
        self.wait_for_edge(False)
        self.daemon(HIGH)
        self.wait_for_edge(True)

    def test_nothing_moves_where_nothing_is_to(self):
        self.daemon({"Gtk/EnableAnimations": 0})
        self.start()
        # A session that keeps the screen as it is, with the focus where it stays.
        for key in ("shift+Tab", "Return", "Home", "Return", "Tab"):
            self.display.key(key)
            self.display.settle(quiet=1)
        self.assertEqual(self.display.pictures_after("Return"), 2)

    def test_texts_grow_once(self):
        self.daemon({"Xft/DPI": 192 * 1024})
        self.start()
        self.assertEqual(self.display.size(self.window), (1440, 1120))


if __name__ == "__main__":
    if shutil.which("xsettingsd") is None:
        print("skipped: there is no xsettingsd")
        sys.exit(77)
    unittest.main(verbosity=2)
