#!/usr/bin/python3
"""The program, its helpers and its display killed, stopped or put to sleep in each of the program's states:
no lock is left open, nothing is left behind, and whoever goes on does so at once.
Usage: sudden_ends_test.py VIGILO CLOCK_SHIM"""

import os
import signal
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.owner import UID, Owner
from harness.owners_program import STATES, WITH_A_LOCK, OwnersProgram
from harness.processes import PATIENCE, wait_until

VIGILO, CLOCK_SHIM = sys.argv[1:3]
del sys.argv[1:3]
DAY = 24 * 60 * 60
NOT_NOW = "The password cannot be checked now. Try again or use Apple Lock."


class SuddenEnds(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop(user=UID)
        cls.addClassCleanup(cls.desktop.stop)

    def in_each_state(self, check, states=STATES, shims=()):
        """Calls `check` with the state and the program, in one state after the other."""
        for state in states:
            with self.subTest(state=state), OwnersProgram(self.desktop, VIGILO, state, shims) as program:
                check(state, program)
                program.hold_ups.end("%s (%s)" % (self.id(), state))

    def test_killed_it_leaves_no_lock_open_and_nothing_behind(self):
        def check(state, it):
            gone = it.service.holders_gone()
            it.program.kill()
            if state != "idle":
                wait_until(lambda: it.service.holders_gone() > gone, "the inhibition to go")
            if state in WITH_A_LOCK:
                wait_until(lambda: it.was_started("xsecurelock"), "the locker")
            wait_until(lambda: not it.processes_left(), "the helpers to end")
            self.assertEqual(it.was_started("xsecurelock"), state in WITH_A_LOCK)

        self.in_each_state(check)

    def test_its_display_server_dies(self):
        def check(state, it):
            gone = it.service.holders_gone()
            it.display.stop()
            self.assertEqual(it.program.wait(PATIENCE), 1)
            if state != "idle":
                wait_until(lambda: it.service.holders_gone() > gone, "the inhibition to go")
            wait_until(lambda: not it.processes_left(), "the helpers to end")

        self.in_each_state(check)

    def test_stopped_and_continued_it_goes_on(self):
        def check(state, it):
            it.program.send_signal(signal.SIGSTOP)
            time.sleep(2)
            self.assertEqual(it.is_covered(), state in WITH_A_LOCK)
            it.program.send_signal(signal.SIGCONT)
            self.goes_on(state, it)

        self.in_each_state(check)

    def test_time_passes_while_it_is_stopped(self):
        self.sleep(has_slept=False)

    def test_the_machine_sleeps(self):
        self.sleep(has_slept=True)

    def sleep(self, has_slept):
        def check(state, it):
            it.program.send_signal(signal.SIGSTOP)
            it.set_clock(DAY, has_slept)
            it.program.send_signal(signal.SIGCONT)
            if state.startswith("timed"):
                it.service.wait_until_released()
                it.button("Start Awake Session")
                wait_until(lambda: not it.is_covered(), "the lock to go")
                # What lay open now is the system's to lock.
                if state == "timed lock":
                    wait_until(lambda: it.was_started("xsecurelock"), "the locker")
                self.assertEqual(it.was_started("xsecurelock"), state == "timed lock")
                self.assertTrue(it.works())
            else:
                self.goes_on(state, it)

        self.in_each_state(check, shims=[CLOCK_SHIM])

    def goes_on(self, state, it):
        """It is in its state still, and can be used."""
        if state == "prompt":
            self.assertTrue(it.prompt())
            it.unlock()
        elif state in WITH_A_LOCK:
            self.assertTrue(it.is_covered())
            it.open_prompt()
            it.unlock()
        self.assertEqual(len(it.service.held()), 0 if state == "idle" else 1)
        if state != "idle":
            it.end_session()
        self.assertTrue(it.works())
        self.assertFalse(it.was_started("xsecurelock"))

    def test_its_guard_is_killed_or_stopped(self):
        def check(state, it):
            for _ in range(3):
                (guard,) = wait_until(lambda: it.running("vigilo-guard"), "the guard")
                os.kill(guard, signal.SIGKILL)
                wait_until(lambda old=guard: it.running("vigilo-guard") not in ([], [old]), "a new guard")
            self.assertTrue(it.is_covered())
            (guard,) = it.running("vigilo-guard")
            os.kill(guard, signal.SIGSTOP)
            self.goes_on(state, it)

        self.in_each_state(check, WITH_A_LOCK)

    def test_its_authentication_helper_is_killed_or_stopped(self):
        def check(state, it):
            for number in (signal.SIGKILL, signal.SIGABRT):
                for helper in wait_until(it.helpers, "the helper"):
                    os.kill(helper, number)
                wait_until(lambda: it.says(NOT_NOW), "what is said")
                self.assertTrue(it.is_covered())
                it.close_prompt()
                it.open_prompt()
            for helper in wait_until(it.helpers, "the helper"):
                os.kill(helper, signal.SIGSTOP)
            it.type_password()
            it.close_prompt()
            wait_until(lambda: not it.running("vigilo-authenticate"), "the helpers to end")
            self.assertTrue(it.is_covered())
            it.open_prompt()
            self.goes_on(state, it)

        self.in_each_state(check, ["prompt"])


if __name__ == "__main__":
    if Owner.missing():
        print("skipped: " + Owner.missing())
        sys.exit(77)
    unittest.main(verbosity=2)
