#!/usr/bin/python3
"""The program while the session bus and the services on it fail: its session stays true and its window
answers. Usage: bus_faults_test.py VIGILO"""

import os
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.fault_test import FaultTest
from harness.limits import Limits
from harness.processes import wait_until

FaultTest.vigilo = sys.argv.pop(1)



class BusFaults(FaultTest):
    def test_a_session_outlives_the_bus_and_is_kept_by_the_next(self):
        service = self.power_service()
        self.start()
        self.begin_session(service)
        before = self.has()[0]
        self.bus.daemon.kill()
        self.bus.daemon.wait()
        service.stop()
        wait_until(lambda: self.has()[0] < before, "the connections to close")
        self.display.settle()
        self.assertTrue(self.shows_a_session())
        self.bus.restart()
        service = self.power_service()
        service.wait_until_held()
        self.assertTrue(self.shows_a_session())
        self.press_the_button()
        service.wait_until_released()
        wait_until(lambda: not self.shows_a_session(), "the end of the session in the window")
        self.end_in_order()

    def test_a_bus_that_restarts_while_no_descriptor_is_left_has_the_session_afterwards(self):
        service = self.power_service()
        self.start()
        self.begin_session(service)
        limits = Limits(self.program.pid, os.geteuid())
        before = self.has()[0]
        self.bus.daemon.kill()
        self.bus.daemon.wait()
        service.stop()
        wait_until(lambda: self.has()[0] < before, "the connections to close")
        limits.leave_descriptors(0)
        self.bus.restart()
        service = self.power_service()
        self.display.settle()
        self.assertTrue(self.shows_a_session())
        self.assertFalse(service.held())
        limits.lift("nofile")
        service.wait_until_held()
        self.press_the_button()
        service.wait_until_released()
        self.end_in_order()

    def test_a_bus_that_stops_answering_leaves_the_window_alive(self):
        service = self.power_service()
        self.start()
        self.bus.daemon.send_signal(signal.SIGSTOP)
        self.addCleanup(self.bus.daemon.send_signal, signal.SIGCONT)
        self.display.click(self.window, 360, 399)
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        self.assertFalse(self.shows_a_session())
        self.bus.daemon.send_signal(signal.SIGCONT)
        self.begin_session(service)
        self.bus.daemon.send_signal(signal.SIGSTOP)
        self.end_in_order()
        self.bus.daemon.send_signal(signal.SIGCONT)
        service.wait_until_released()

    def test_it_starts_beside_a_bus_that_hangs(self):
        self.bus.daemon.send_signal(signal.SIGSTOP)
        self.addCleanup(self.bus.daemon.send_signal, signal.SIGCONT)
        self.start()
        # Nothing keeps the machine awake then, and it says so.
        self.display.click(self.window, 360, 399)
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        self.assertFalse(self.shows_a_session())
        self.end_in_order()

    def test_a_panel_and_a_power_service_that_hang_leave_the_window_alive(self):
        names = ("org.kde.StatusNotifierWatcher", "org.kde.Solid.PowerManagement.PolicyAgent")
        script = "import dbus, sys, time; bus = dbus.SessionBus(); [bus.request_name(name) for name in sys.argv[1:]]"
        # Nobody there ever looks at what it is asked.
        hanging = self.processes.start(
            ["/usr/bin/python3", "-c", script + "; print(flush=True); time.sleep(600)", *names],
            env=self.variables, stdout=subprocess.PIPE,
        )
        self.addCleanup(hanging.stdout.close)
        hanging.stdout.readline()
        self.start()
        self.act("toggleProtection")
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        self.assertFalse(self.shows_a_session())
        hanging.kill()
        hanging.wait()
        service = self.power_service()
        self.begin_session(service)
        self.end_in_order()
        service.wait_until_released()

    def test_a_service_that_answers_nonsense_begins_no_session(self):
        nonsense = self.processes.serve("nonsense_power_service.py", env=self.variables)
        self.start()
        self.act("toggleProtection")
        self.assertEqual(nonsense.stdout.readline(), "answered AddInhibition\n")
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        self.assertFalse(self.shows_a_session())
        self.end_in_order()


if __name__ == "__main__":
    unittest.main(verbosity=2)
