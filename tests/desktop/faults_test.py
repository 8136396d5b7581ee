#!/usr/bin/python3
"""The program while what it stands on fails, and often: its session stays true, its window answers, and
nothing is left behind. Usage: faults_test.py VIGILO CLOCK_SHIM HUNG_SCAN_SHIM"""

import os
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.fault_test import FaultTest
from harness.processes import PATIENCE, wait_until

FaultTest.vigilo, CLOCK_SHIM, HUNG_SCAN_SHIM = sys.argv[1:4]
del sys.argv[1:4]
DAY = 24 * 60 * 60
RESTARTS, SESSIONS = 100, 10000
# How many of each the allocators need until they have most of what they keep for themselves.
RESTARTS_BEFORE, SESSIONS_BEFORE = 10, 500
# How many between two looks at the memory; a part of all the others.
SESSIONS_BETWEEN = 500
# Within how many sessions the window's engine collects its garbage at least once.
SESSIONS_TO_COLLECTION = 5000
# What they may still add after that, in KiB, however many follow.
MEMORY_ALLOWANCE = 256
# With an arena for each thread that finds the others' taken, what is kept would grow with the machine's load.
ONE_ARENA = {"MALLOC_ARENA_MAX": "1"}
NOBODY = "65534"


class SessionRefused(Exception):
    """A busy machine has kept the power service from answering in time, one request of very many. The alert
    that tells it needs memory of its own."""


class Faults(FaultTest):
    def is_at_rest(self):
        """Whether what it has stays the same for a moment."""
        before = self.has()
        time.sleep(1)
        return self.has() == before

    def memory(self):
        """What only the program uses, in KiB."""
        with open("/proc/%d/smaps_rollup" % self.pid, encoding="utf-8") as file:
            return next(int(line.split()[1]) for line in file if line.startswith("Private_Dirty:"))

    def test_a_power_service_killed_a_hundred_times_leaves_the_session_and_nothing_behind(self):
        service = self.power_service()
        self.start_alone(**ONE_ARENA)
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

    def memory_of_sessions(self, service):
        """What the program uses each time that so many sessions more have gone."""

        def run_sessions(number):
            before = service.takes()
            for _ in range(number):
                self.act("toggleProtection")
                self.act("toggleProtection")

            def are_over():
                if len(self.windows()) > 1:
                    raise SessionRefused
                return service.takes() == before + number and not service.held()

            wait_until(are_over, "the sessions")

        run_sessions(10)
        wait_until(self.is_at_rest, "the requests to end")
        before = self.has()

        memory = []
        for _ in range((SESSIONS_BEFORE + SESSIONS) // SESSIONS_BETWEEN):
            for _ in range(SESSIONS_BETWEEN // 50):
                run_sessions(50)
                # The bus bears only so many connections at a time.
                self.wait_until_as_before(before)
            memory.append(self.memory())
        return memory

    def test_ten_thousand_sessions_leave_nothing_behind(self):
        service = self.power_service()
        for _ in range(3):
            self.start_alone(**ONE_ARENA)
            try:
                memory = self.memory_of_sessions(service)
                break
            except SessionRefused:
                print("a session was refused")
                self.end_in_order()
                # It may still count as held what it granted too late.
                service.restart()
        else:
            self.fail("a session was refused each time")
        # What is left when garbage has just been collected.
        lasting = SESSIONS_TO_COLLECTION // SESSIONS_BETWEEN
        self.assertLess(min(memory[-lasting:]) - min(memory[:lasting]), MEMORY_ALLOWANCE)
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

    def test_a_start_while_it_ends_takes_its_place(self):
        mark = os.path.join(self.folder, "hangs")
        # So that the end takes a moment.
        self.start(shims=[HUNG_SCAN_SHIM], HUNG_SCAN_MARK=mark)
        wait_until(lambda: os.path.exists(mark), "the scan to hang")
        first = self.program
        first.terminate()
        second = self.processes.start([self.vigilo], env=self.variables)
        self.assertEqual(first.wait(PATIENCE), 0)
        wait_until(lambda: self.instance() == second.pid or second.poll() is not None, "the second one")
        self.assertIsNone(second.poll())
        self.program, self.pid = second, second.pid
        self.window = wait_until(self.windows, "the window")[0]
        self.display.settle()
        self.begin_session(self.power_service())
        self.end_in_order()

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
