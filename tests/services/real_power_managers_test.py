#!/usr/bin/python3
"""Power assertions as the desktops' own power managers see them: Xfce's and Plasma's, each with a
real logind and a display whose power can be switched. Usage: real_power_managers_test.py POWER_DRIVER DPMS_SHIM"""

import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.desktop_services import start_upowerd, start_xfconfd
from harness.libraries import LIBRARIES
from harness.power import PowerDriver
from harness.processes import Processes, end, environment, wait_until
from harness.system_bus import SystemBus
from harness.xorg import DummyXorg

SHIM = sys.argv.pop()
DRIVER = sys.argv.pop()
XFCE = "/usr/bin/xfce4-power-manager"
PLASMA = LIBRARIES + "/libexec/org_kde_powerdevil"


class RealPowerManagers(unittest.TestCase):
    def setUp(self):
        self.system_bus = self.enterContext(SystemBus())
        self.session_bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        home = os.path.join(self.session_bus.folder, "home")
        os.mkdir(home, 0o700)
        self.environment = environment(
            DISPLAY=self.enterContext(DummyXorg(SHIM)).name,
            DBUS_SESSION_BUS_ADDRESS=self.session_bus.address,
            DBUS_SYSTEM_BUS_ADDRESS=self.system_bus.address,
            HOME=home,
            XDG_CONFIG_HOME=home,
            XDG_RUNTIME_DIR=home,
        )
        start_upowerd(self.processes, self.environment)

    def call(self, service, path, interface, method, *arguments):
        result = subprocess.run(
            [
                "busctl", "--address=" + self.session_bus.address, "--timeout=5", "call",
                service, path, interface, method, *arguments,
            ],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
            check=False,
        )
        return result.stdout.strip() if result.returncode == 0 else None

    def is_inhibited(self):
        """What the power manager says of idle sleep."""
        return self.call(
            "org.freedesktop.PowerManagement",
            "/org/freedesktop/PowerManagement/Inhibit",
            "org.freedesktop.PowerManagement.Inhibit",
            "HasInhibit",
        )

    def start(self, *command):
        process = self.processes.start(command, env=self.environment)
        wait_until(lambda: self.is_inhibited() == "b false", "the power manager")
        return process

    def driver(self):
        return self.enterContext(PowerDriver(DRIVER, session_bus=self.session_bus, system_bus=self.system_bus))

    @unittest.skipUnless(os.path.exists(XFCE), XFCE + " is not installed")
    def test_xfce_counts_the_lock_over_a_restart_until_it_is_given_back(self):
        start_xfconfd(self.processes, self.environment)
        manager = self.start(XFCE, "--no-daemon")
        driver = self.driver()
        status, number = driver.create()
        self.assertEqual(status, 0)
        self.assertEqual(self.is_inhibited(), "b true")
        self.assertEqual(len(self.system_bus.inhibitors()), 1)
        end(manager)
        self.processes.start([XFCE, "--no-daemon"], env=self.environment)
        wait_until(lambda: self.is_inhibited() == "b true", "the lock after the restart")
        driver.release(number)
        wait_until(lambda: self.is_inhibited() == "b false", "the release")
        wait_until(lambda: not self.system_bus.inhibitors(), "the release at logind")

    @unittest.skipUnless(os.path.exists(PLASMA), PLASMA + " is not installed")
    def test_plasma_counts_the_lock_and_leaves_the_screen_alone(self):
        def holds(policy):
            return self.call(
                "org.kde.Solid.PowerManagement.PolicyAgent",
                "/org/kde/Solid/PowerManagement/PolicyAgent",
                "org.kde.Solid.PowerManagement.PolicyAgent",
                "HasInhibition", "u", str(policy),
            )

        interrupt_session, change_screen_settings = 1, 4
        self.start(PLASMA)
        driver = self.driver()
        status, number = driver.create()
        self.assertEqual(status, 0)
        # Plasma waits for some seconds before it enforces an inhibition.
        wait_until(lambda: holds(interrupt_session) == "b true", "the lock")
        self.assertEqual(holds(change_screen_settings), "b false")
        # logind's lock would keep the screen on.
        self.assertEqual(self.system_bus.inhibitors(), [])
        driver.release(number)
        wait_until(lambda: holds(interrupt_session) == "b false", "the release")


if __name__ == "__main__":
    reason = SystemBus.missing() or DummyXorg.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
