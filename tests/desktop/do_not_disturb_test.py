#!/usr/bin/python3
"""The desktop is asked to show no notifications while the Agent Lock is up.
Usage: do_not_disturb_test.py VIGILO"""

import os
import signal
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import perform
from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.processes import Processes, end, environment, wait_until

VIGILO = sys.argv.pop(1)
SERVICES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../services")
ASKED = "Inhibit io.github.vigilo.Vigilo Agent Lock -> 7"
GIVEN_BACK = "UnInhibit 7"


class DoNotDisturb(unittest.TestCase):
    def setUp(self):
        self.display = self.enterContext(VirtualDisplay())
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            DISPLAY=self.display.name,
            WAYLAND_DISPLAY=None,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
        )
        self.service("fake_power_service.py", "plasma", "grant")
        self.processes.start([VIGILO], env=self.variables)
        wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")

    def service(self, program, *arguments):
        """Starts a service; what it prints is in the file that is returned beside it."""
        path = os.path.join(self.bus.folder, "log-%d" % len(os.listdir(self.bus.folder)))
        with open(path, "wb") as log:
            service = self.processes.start(["/usr/bin/python3", os.path.join(SERVICES, program), *arguments], env=self.variables, stdout=log)
        wait_until(lambda: "ready" in self.lines(path), "the service")
        return service, path

    def notifications(self, answer):
        return self.service("fake_notification_service.py", answer)

    @staticmethod
    def lines(path):
        with open(path, encoding="utf-8") as file:
            return file.read().splitlines()

    def wait_for(self, path, *lines):
        wait_until(lambda: self.lines(path)[-len(lines) :] == list(lines), "%s in %s" % (lines, self.lines(path)))

    def test_silence_lasts_as_long_as_the_lock(self):
        _, log = self.notifications("grant")
        perform(self.bus, "agentLock")
        self.wait_for(log, "ready", ASKED)
        perform(self.bus, "toggleProtection")
        self.wait_for(log, "ready", ASKED, GIVEN_BACK)

    def test_a_lock_that_is_asked_for_again_asks_once(self):
        _, log = self.notifications("grant")
        perform(self.bus, "agentLock")
        self.wait_for(log, ASKED)
        perform(self.bus, "agentLock")
        perform(self.bus, "toggleProtection")
        self.wait_for(log, "ready", ASKED, GIVEN_BACK)

    def test_a_service_that_comes_while_the_lock_is_up_is_asked_too(self):
        perform(self.bus, "agentLock")
        service, log = self.notifications("grant")
        self.wait_for(log, ASKED)
        end(service)
        _, log = self.notifications("grant")
        self.wait_for(log, ASKED)
        perform(self.bus, "toggleProtection")
        self.wait_for(log, ASKED, GIVEN_BACK)

    def test_a_service_that_takes_over_from_another_is_asked_too(self):
        self.notifications("grant")
        perform(self.bus, "agentLock")
        _, log = self.notifications("grant")
        self.wait_for(log, ASKED)
        perform(self.bus, "toggleProtection")
        self.wait_for(log, ASKED, GIVEN_BACK)

    def test_the_service_of_a_bus_that_replaces_another_is_asked_too(self):
        _, log = self.notifications("grant")
        perform(self.bus, "agentLock")
        self.wait_for(log, ASKED)
        self.bus.restart()
        _, log = self.notifications("grant")
        self.wait_for(log, ASKED)

    def test_what_is_granted_after_the_lock_is_given_back(self):
        service, log = self.notifications("slow")
        perform(self.bus, "agentLock")
        self.wait_for(log, ASKED)
        perform(self.bus, "toggleProtection")
        service.send_signal(signal.SIGUSR1)
        self.wait_for(log, ASKED, GIVEN_BACK)

    def test_a_service_that_cannot_is_left_alone(self):
        _, log = self.notifications("unable")
        perform(self.bus, "agentLock")
        wait_until(lambda: windows_named(self.display.name, "Agent Lock"), "the lock")
        perform(self.bus, "toggleProtection")
        wait_until(lambda: not windows_named(self.display.name, "Agent Lock"), "the end of the lock")
        self.assertEqual(self.lines(log), ["ready"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
