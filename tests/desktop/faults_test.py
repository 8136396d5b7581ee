#!/usr/bin/python3
"""The program while what it stands on fails: its session stays true, its window answers, and nothing is
left behind. Usage: faults_test.py VIGILO CLOCK_SHIM HUNG_SCAN_SHIM"""

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import dbus

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.hold_ups import HoldUps
from harness.limits import Limits
from harness.pictures import Picture
from harness.power_service import PowerService
from harness.processes import Processes, environment, wait_until

VIGILO, CLOCK_SHIM, HUNG_SCAN_SHIM = sys.argv[1:4]
del sys.argv[1:4]
SERVICES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../services")
DAY = 24 * 60 * 60
ID = "io.github.vigilo.Vigilo"
RESTARTS, SESSIONS = 100, 10000
# How many of each the allocators need until they have most of what they keep for themselves.
RESTARTS_BEFORE, SESSIONS_BEFORE = 10, 500
# What they may still add after that, in KiB: half of one for a session.
MEMORY_ALLOWANCE = 512
NOBODY = "65534"


class Faults(unittest.TestCase):
    def setUp(self):
        self.folder = self.enter(tempfile.TemporaryDirectory(prefix="vigilo-faults-"))
        self.display = self.enter(VirtualDisplay())
        self.bus = self.enter(SessionBus())
        self.processes = self.enter(Processes())
        self.hold_ups = HoldUps(self.folder)
        self.addCleanup(self.hold_ups.end, self.id())
        self.variables = environment(
            DISPLAY=self.display.name,
            WAYLAND_DISPLAY=None,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            XDG_RUNTIME_DIR=self.folder,
        )

    def enter(self, manager):
        value = manager.__enter__()
        self.addCleanup(manager.__exit__, None, None, None)
        return manager if value is None else value

    def power_service(self):
        service = PowerService(self.folder, self.processes, self.variables)
        self.addCleanup(service.stop)
        return service

    def start(self, command=(), shims=(), **variables):
        """The program with its window shown, behind another command where there is one."""
        self.program = self.processes.start(
            [*command, VIGILO], env=self.variables | self.hold_ups.variables(*shims) | variables
        )
        self.window = wait_until(self.windows, "the window")[0]
        self.display.settle()
        self.hold_ups.begin()

    def windows(self):
        return windows_named(self.display.name, "Vigilo")

    def act(self, action):
        """Calls an action of the program over the bus."""
        connection = dbus.bus.BusConnection(self.bus.address)
        try:
            connection.call_blocking(
                ID, "/io/github/vigilo/Vigilo", "org.freedesktop.Application", "ActivateAction", "sava{sv}",
                (action, [], {}),
            )
        finally:
            connection.close()

    def shows_a_session(self):
        """Whether the point before the window's state is green."""
        left, top = self.display.position(self.window)
        red, green, blue = Picture(self.display.picture(), origin=(left, top)).colour(561, 46)
        return green > 150 and red < 100 and blue < 150

    def begin_session(self, service):
        self.assertFalse(self.shows_a_session())
        self.act("toggleProtection")
        service.wait_until_held()
        wait_until(self.shows_a_session, "the session in the window")

    def press_the_button(self):
        self.display.click(self.window, 360, 379)

    def end_in_order(self):
        self.program.terminate()
        self.assertEqual(self.program.wait(20), 0)

    def has(self):
        """How many descriptors, threads and children the program has."""
        folder = "/proc/%d" % self.program.pid
        children = 0
        threads = os.listdir(folder + "/task")
        for thread in threads:
            try:
                with open("%s/task/%s/children" % (folder, thread), encoding="utf-8") as file:
                    children += len(file.read().split())
            except FileNotFoundError:
                pass  # ended meanwhile
        return len(os.listdir(folder + "/fd")), len(threads), children

    def is_at_rest(self):
        """Whether what it has stays the same for a moment."""
        before = self.has()
        time.sleep(1)
        return self.has() == before

    def memory(self):
        """What only the program uses, in KiB."""
        with open("/proc/%d/smaps_rollup" % self.program.pid, encoding="utf-8") as file:
            return next(int(line.split()[1]) for line in file if line.startswith("Private_Dirty:"))

    def wait_until_as_before(self, before):
        """Connections and threads end behind the back of whoever needs them no more."""
        wait_until(lambda: all(now <= then for now, then in zip(self.has(), before)), "what is left to go")

    def test_a_power_service_killed_a_hundred_times_leaves_the_session_and_nothing_behind(self):
        service = self.power_service()
        self.start()
        self.begin_session(service)

        def restart(times):
            for _ in range(times):
                service.restart()
                service.wait_until_held()

        restart(RESTARTS_BEFORE)
        wait_until(self.is_at_rest, "the requests to end")
        before, memory = self.has(), self.memory()
        restart(RESTARTS)
        self.wait_until_as_before(before)
        self.assertLess(self.memory() - memory, MEMORY_ALLOWANCE)
        self.assertTrue(self.shows_a_session())
        self.act("toggleProtection")
        service.wait_until_released()
        self.end_in_order()

    def test_ten_thousand_sessions_leave_nothing_behind(self):
        service = self.power_service()
        self.start()

        def run_sessions(number):
            before = service.takes()
            for _ in range(number):
                self.act("toggleProtection")
                self.act("toggleProtection")
            wait_until(lambda: service.takes() == before + number, "the sessions", timeout=30)
            service.wait_until_released()

        run_sessions(10)
        wait_until(self.is_at_rest, "the requests to end")
        before = self.has()

        def run_many_sessions(number):
            for _ in range(number // 50):
                run_sessions(50)
                # The bus bears only so many connections at a time.
                self.wait_until_as_before(before)

        run_many_sessions(SESSIONS_BEFORE)
        memory = self.memory()
        run_many_sessions(SESSIONS)
        self.assertLess(self.memory() - memory, MEMORY_ALLOWANCE)
        wait_until(lambda: not self.shows_a_session(), "the end of the last session in the window")
        self.end_in_order()

    def test_it_ends_in_order_while_a_scan_hangs(self):
        service = self.power_service()
        mark = os.path.join(self.folder, "hangs")
        self.start(shims=[HUNG_SCAN_SHIM], HUNG_SCAN_MARK=mark)
        wait_until(lambda: os.path.exists(mark), "the scan to hang")
        self.begin_session(service)
        self.end_in_order()
        service.wait_until_released()

    def test_it_ends_in_order_while_an_alert_is_shown(self):
        self.start()
        self.act("toggleProtection")
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        self.assertFalse(self.shows_a_session())
        self.end_in_order()

    def test_a_session_that_began_behind_an_alert_ends_in_order(self):
        self.start()
        self.act("toggleProtection")
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        service = self.power_service()
        self.begin_session(service)
        self.assertEqual(len(self.windows()), 2)
        self.end_in_order()
        service.wait_until_released()

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
        nonsense = self.processes.start(
            ["/usr/bin/python3", SERVICES + "/nonsense_power_service.py"],
            env=self.variables, stdout=subprocess.PIPE, text=True,
        )
        self.addCleanup(nonsense.stdout.close)
        self.assertEqual(nonsense.stdout.readline(), "ready\n")
        self.start()
        self.act("toggleProtection")
        self.assertEqual(nonsense.stdout.readline(), "answered AddInhibition\n")
        wait_until(lambda: len(self.windows()) == 2, "the alert")
        self.assertFalse(self.shows_a_session())
        self.end_in_order()

    def test_a_timed_session_goes_by_the_clock_of_the_day_however_it_jumps(self):
        def set_clock(seconds):
            with open(new, "w", encoding="utf-8") as file:
                file.write(str(seconds))
            os.replace(new, offset)

        offset, new = os.path.join(self.folder, "offset"), os.path.join(self.folder, "new")
        service = self.power_service()
        self.start(shims=[CLOCK_SHIM], CLOCK_OFFSET=offset)
        for menu in (250, 470):
            # The shortest time, and "Stay Visible".
            self.display.click(self.window, menu, 329)
            self.display.settle()
            self.display.key("Home", "Return")
            self.display.settle()
        self.display.click(self.window, 360, 399)
        service.wait_until_held()
        wait_until(self.shows_a_session, "the session in the window")
        set_clock(-DAY)
        time.sleep(3)
        self.assertEqual(len(service.held()), 1)
        self.assertTrue(self.shows_a_session())
        set_clock(DAY)
        service.wait_until_released()
        wait_until(lambda: not self.shows_a_session(), "the end of the session in the window")
        self.end_in_order()

    @unittest.skipIf(os.geteuid() != 0, "a process table of its own needs root")
    def test_it_runs_where_it_may_not_see_processes(self):
        tables = {"others hidden": "-t proc -o hidepid=2 proc", "nothing there": "-t tmpfs none"}
        service = self.power_service()
        os.chmod(self.folder, 0o777)
        for name, table in tables.items():
            with self.subTest(name):
                script = """set -e
                    mount --make-rprivate /
                    mount %s /proc
                    exec setpriv --reuid %s --regid %s --clear-groups "$@" """ % (table, NOBODY, NOBODY)
                self.start(["unshare", "-m", "bash", "-c", script, "bash"], HOME=self.folder)
                self.begin_session(service)
                self.end_in_order()
                service.wait_until_released()


if __name__ == "__main__":
    unittest.main(verbosity=2)
