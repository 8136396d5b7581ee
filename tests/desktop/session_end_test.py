#!/usr/bin/python3
"""The end of a real Xfce session: its session manager ends the program, which was started by an
autostart entry, in order. Usage: session_end_test.py VIGILO"""

import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.desktop_services import start_xfconfd
from harness.display import VirtualDisplay, windows_named
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
SESSION_MANAGER = "/usr/bin/xfce4-session"

# A shell around it writes down how it ended.
ENTRY = """[Desktop Entry]
Type=Application
Name=Vigilo
Exec=sh -c "'%s'; echo $? > %s"
"""


class SessionEnd(unittest.TestCase):
    def test_the_end_of_the_session_ends_the_program_in_order(self):
        with VirtualDisplay() as display, SessionBus() as bus, Processes() as processes:
            home = os.path.join(bus.folder, "home")
            os.makedirs(home + "/autostart")
            os.chmod(home, 0o700)
            status = os.path.join(home, "status")
            with open(home + "/autostart/vigilo.desktop", "w", encoding="utf-8") as file:
                file.write(ENTRY % (VIGILO, status))
            variables = environment(
                DISPLAY=display.name,
                WAYLAND_DISPLAY=None,
                SESSION_MANAGER=None,
                DBUS_SESSION_BUS_ADDRESS=bus.address,
                DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
                HOME=home,
                XDG_CONFIG_HOME=home,
                XDG_CACHE_HOME=home,
                XDG_RUNTIME_DIR=home,
                XDG_CURRENT_DESKTOP="XFCE",
            )
            start_xfconfd(processes, variables)
            processes.start([SESSION_MANAGER], env=variables)
            wait_until(lambda: windows_named(display.name, "Vigilo"), "the window")
            subprocess.run(
                ["xfce4-session-logout", "--logout", "--fast"],
                env=variables, check=True, stderr=subprocess.DEVNULL,
            )
            wait_until(lambda: os.path.exists(status) and os.path.getsize(status), "the end of the program")
            with open(status, encoding="utf-8") as file:
                self.assertEqual(file.read(), "0\n")


if __name__ == "__main__":
    if not os.path.exists(SESSION_MANAGER):
        print("skipped: " + SESSION_MANAGER + " is not installed")
        sys.exit(77)
    unittest.main(verbosity=2)
