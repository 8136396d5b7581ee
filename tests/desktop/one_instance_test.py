#!/usr/bin/python3
"""One instance on a session bus, and what others may ask of it. Usage: one_instance_test.py VIGILO"""

import os
import shutil
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import ID, perform
from harness.buses import SessionBus, owned_names
from harness.display import VirtualDisplay, windows_named
from harness.processes import PATIENCE, Processes, environment, wait_until

VIGILO = sys.argv.pop(1)


class OneInstance(unittest.TestCase):
    def setUp(self):
        self.display = self.enterContext(VirtualDisplay())
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            DISPLAY=self.display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
        )
        self.power = self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        self.first = self.processes.start([VIGILO], env=self.variables)
        self.window = wait_until(self.windows, "the window")[0]

    def windows(self):
        return windows_named(self.display.name, "Vigilo")

    def start_again(self):
        return subprocess.run(
            [VIGILO], env=self.variables, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=PATIENCE,
            check=False,
        )

    def test_a_second_start_brings_the_hidden_window_back_and_ends(self):
        self.display.settle()
        self.display.click(self.window, 704, 16)
        wait_until(lambda: not self.windows(), "the window to hide")
        second = self.start_again()
        self.assertEqual((second.returncode, second.stdout, second.stderr), (0, "", ""))
        wait_until(self.windows, "the window")
        self.assertIsNone(self.first.poll())

    def test_the_desktop_hears_that_a_second_start_is_over(self):
        log = os.path.join(self.bus.folder, "events")
        with open(log, "w", encoding="utf-8") as out:
            self.processes.start(["stdbuf", "-oL", "xev", "-root", "-event", "property"], env=self.variables, stdout=out)

        def heard(word):
            with open(log, encoding="utf-8") as file:
                return file.read().count(word)

        def listens():
            subprocess.run(["xprop", "-root", "-f", "PING", "8s", "-set", "PING", ""], env=self.variables, check=True)
            return heard("PING")

        wait_until(listens, "somebody who listens")
        self.variables["DESKTOP_STARTUP_ID"] = "desktop-1-a \"test\"_TIME1"
        self.assertEqual(self.start_again().returncode, 0)
        # Forty bytes, the zero at the end among them, in pieces of twenty.
        wait_until(lambda: heard("(_NET_STARTUP_INFO") == 2, "the message")

    @unittest.skipUnless(shutil.which("openbox"), "openbox is not installed")
    def test_a_second_start_brings_a_window_behind_others_to_the_front(self):
        self.processes.start(["openbox"], env=self.variables)
        self.display.wait_for_window_manager()
        # Another program's window: one of ours that is on a bus of its own, which is none.
        nowhere = self.variables | {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus"}
        self.processes.start([VIGILO], env=nowhere)
        wait_until(lambda: self.active_window() not in (None, self.window), "the other window")
        self.assertEqual(self.start_again().returncode, 0)
        wait_until(lambda: self.active_window() == self.window, "the window in front")

    def active_window(self):
        answer = subprocess.run(
            ["xdotool", "getactivewindow"],
            env=self.variables, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
        ).stdout.strip()
        return answer if answer in self.windows() else None

    def test_one_that_does_not_answer_holds_the_second_up_for_a_moment_only(self):
        self.first.send_signal(signal.SIGSTOP)
        self.addCleanup(self.first.send_signal, signal.SIGCONT)
        second = self.start_again()
        self.assertEqual(second.returncode, 1)
        self.assertEqual(second.stderr, "vigilo: it is running already but does not answer.\n")

    def test_its_actions_are_reached_over_the_bus(self):
        perform(self.bus, "toggleProtection")
        self.assertEqual(self.power.stdout.readline(), "AddInhibition 1 Vigilo -> 0\n")
        perform(self.bus, "nonsense")
        perform(self.bus, "toggleProtection")
        self.assertEqual(self.power.stdout.readline(), "release 0\n")
        perform(self.bus, "quitApp")
        self.assertEqual(self.first.wait(PATIENCE), 0)

    def test_it_is_found_on_the_bus_that_replaces_another(self):
        for _ in range(2):
            self.bus.restart()
            wait_until(self.is_on_the_bus, "its name on the new bus")
            perform(self.bus, "nonsense")
            second = self.start_again()
            self.assertEqual((second.returncode, second.stderr), (0, ""))
        perform(self.bus, "quitApp")
        self.assertEqual(self.first.wait(PATIENCE), 0)

    def is_on_the_bus(self):
        return ID in owned_names(self.bus.address)

    def test_an_action_starts_the_program_and_is_carried_out(self):
        perform(self.bus, "quitApp")
        self.assertEqual(self.first.wait(PATIENCE), 0)
        self.bus.offer(
            ID, VIGILO,
            {
                "DISPLAY": self.display.name, "DBUS_SESSION_BUS_ADDRESS": self.bus.address, "WAYLAND_DISPLAY": "",
                "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus",
            },
        )
        perform(self.bus, "toggleProtection")
        self.assertEqual(self.power.stdout.readline(), "AddInhibition 1 Vigilo -> 0\n")
        wait_until(self.windows, "the window")
        perform(self.bus, "quitApp")
        self.assertEqual(self.power.stdout.readline(), "release 0\n")

    def test_the_place_is_free_when_it_has_ended(self):
        self.first.terminate()
        self.first.wait(PATIENCE)
        self.processes.start([VIGILO], env=self.variables)
        wait_until(self.windows, "the window")


if __name__ == "__main__":
    unittest.main(verbosity=2)
