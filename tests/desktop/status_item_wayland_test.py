#!/usr/bin/python3
"""The status item in waybar under sway. Usage: status_item_wayland_test.py VIGILO"""

import json
import os
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.panels import StatusItem
from harness.processes import Processes, environment, wait_until
from harness.sway import Sway

VIGILO = sys.argv.pop(1)
# A bar with nothing but the tray, on a ground that tells it from an icon.
BAR = {"layer": "top", "height": 32, "modules-left": ["tray"], "tray": {"icon-size": 24}}
STYLE = "* { background: #202020; border: none; }"


class StatusItemOnWayland(unittest.TestCase):
    def setUp(self):
        reason = Sway.missing() or (None if shutil.which("waybar") else "waybar is not installed")
        if reason:
            self.skipTest(reason)
        self.sway = self.enterContext(Sway())
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            **self.sway.environment,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            QT_QPA_PLATFORM="wayland",
            XDG_CONFIG_HOME=os.path.join(self.bus.folder, "config"),
        )
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        self.item = StatusItem(self.bus.address)
        for name, text in (("bar.json", json.dumps(BAR)), ("bar.css", STYLE)):
            with open(os.path.join(self.bus.folder, name), "w", encoding="utf-8") as file:
                file.write(text)

    def start_bar(self):
        folder = self.bus.folder
        return self.processes.start(
            ["waybar", "-c", os.path.join(folder, "bar.json"), "-s", os.path.join(folder, "bar.css")],
            env=self.variables,
        )

    def brightest(self):
        """The brightest value in the bar's first icon, 0 to 255."""
        file = os.path.join(self.bus.folder, "screen.png")
        self.sway.screenshot(file)
        answer = subprocess.run(
            ["/usr/bin/convert", file, "-crop", "40x32+0+0", "-colorspace", "gray", "-depth", "8", "-format",
             "%[fx:int(255*maxima)]", "info:"],
            stdout=subprocess.PIPE, check=True,
        )
        return int(answer.stdout)

    def test_it_is_shown_read_and_used_and_there_with_the_next_bar(self):
        bar = self.start_bar()
        self.processes.start([VIGILO], env=self.variables)
        self.item.wait_for()
        wait_until(lambda: self.brightest() > 200, "the icon in the bar")
        menu = self.item.menu()
        menu.click("Keep Mac Awake")
        wait_until(lambda: menu.titles()[0] == "Mac is staying awake", "the session")
        self.assertEqual(self.item.properties()["IconAccessibleDesc"], "Vigilo protection on")
        bar.kill()
        bar.wait()
        wait_until(lambda: not self.item.registered(), "the bar's end")
        self.start_bar()
        self.assertEqual(self.item.menu().titles()[0], "Mac is staying awake")


if __name__ == "__main__":
    unittest.main(verbosity=2)
