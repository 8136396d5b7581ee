#!/usr/bin/python3
"""The program when the system gives it no descriptors, no processes and no memory: what it has stays, what
it cannot do it says, and all of it works again when there is enough. Usage: shortages_test.py VIGILO"""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.display import windows_named
from harness.focus import focused_window
from harness.limits import Limits
from harness.owner import UID, Owner
from harness.owners_program import OwnersProgram
from harness.processes import wait_until

VIGILO = sys.argv.pop(1)
NOT_NOW = "The password cannot be checked now. Try again or use Apple Lock."
# A desktop's settings for its lock; the environment says that this desktop is there.
PREFERENCES = "mate-screensaver-preferences"
# More than what any one action needs.
MOST_LEFT = 12


class Shortages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop(user=UID)
        cls.addClassCleanup(cls.desktop.stop)

    def program(self, state):
        program = OwnersProgram(self.desktop, VIGILO, state)
        self.addCleanup(program.__exit__)
        self.addCleanup(program.hold_ups.end, self.id())
        self.limits = Limits(program.program.pid, UID)
        return program

    def alerts(self, program):
        return [window for window in windows_named(program.display.name, "Vigilo") if window != self.window]

    def test_no_process_and_no_thread_to_be_had(self):
        it = self.program("session")
        (self.window,) = windows_named(it.display.name, "Vigilo")
        # It counts all of the user's, so that there is none left.
        self.limits.set("nproc", 1)
        for action in ("appleLock", "openLockSettings", "agentLock"):
            it.act(action)
        wait_until(it.is_covered, "the lock")
        it.open_prompt()
        wait_until(lambda: it.says(NOT_NOW), "what is said")
        it.close_prompt()
        self.assertTrue(it.is_covered())
        self.assertFalse(self.alerts(it))
        # The session that is held needs nobody's help.
        it.act("toggleProtection")
        it.service.wait_until_released()
        wait_until(lambda: not it.is_covered(), "the lock to go with the session")
        it.act("toggleProtection")
        wait_until(lambda: self.alerts(it), "the alert")
        self.assertFalse(it.service.held())
        self.assertFalse(it.running("vigilo-guard") + it.running("vigilo-lock"))
        self.limits.lift("nproc")
        self.assertFalse(it.was_started("xsecurelock") or it.was_started(PREFERENCES))
        it.act("openLockSettings")
        wait_until(lambda: it.was_started(PREFERENCES), "the settings")
        self.assertTrue(it.works())
        it.begin_session()
        it.act("appleLock")
        wait_until(lambda: it.was_started("xsecurelock"), "the locker")

    def test_a_guard_that_could_not_be_had_comes_later(self):
        it = self.program("session")
        self.limits.set("nproc", 1)
        it.act("agentLock")
        wait_until(it.is_covered, "the lock")
        self.assertFalse(it.running("vigilo-guard"))
        self.limits.lift("nproc")
        it.lock_is_up()
        it.program.kill()
        wait_until(lambda: it.was_started("xsecurelock"), "the locker")

    def test_few_or_no_descriptors_left(self):
        it = self.program("session")
        (self.window,) = windows_named(it.display.name, "Vigilo")
        for count in range(MOST_LEFT):
            self.limits.leave_descriptors(count)
            it.act("agentLock")
            wait_until(it.is_covered, "the lock with %d left" % count)
            it.open_prompt()
            wait_until(lambda: it.says(NOT_NOW) or it.helpers(), "the prompt with %d left" % count)
            if it.helpers():
                it.unlock()
            else:
                it.close_prompt()
                self.assertTrue(it.is_covered())
            for action in ("appleLock", "openLockSettings", "agentLock"):
                it.act(action)
            wait_until(it.is_covered, "the second lock with %d left" % count)
            # The lock goes with the session.
            it.end_session()
            wait_until(lambda: not it.is_covered(), "the end of the session with %d left" % count)
            it.act("toggleProtection")
            wait_until(lambda: self.alerts(it) or it.service.held(), "a session or an alert with %d left" % count)
            self.assertTrue(it.is_alive())
            self.limits.lift("nofile")
            if self.alerts(it):
                wait_until(lambda: focused_window(it.display.name) in self.alerts(it), "the alert to have the keyboard")
                it.display.key("Return")
                wait_until(lambda: not self.alerts(it), "the alert to go")
                it.begin_session()
        it.end_session()
        self.assertTrue(it.works())

    def test_the_power_service_restarts_while_no_descriptor_is_left(self):
        it = self.program("session")
        self.limits.leave_descriptors(0)
        it.service.restart()
        it.button("End Awake Session")
        self.limits.lift("nofile")
        it.service.wait_until_held()
        it.end_session()
        self.assertTrue(it.works())

    def test_without_memory_the_desktop_does_not_lie_open(self):
        it = self.program("lock")
        self.limits.set("as", 1)
        # Whatever it needs for these it cannot have.
        for _ in range(50):
            it.display.key("Return", "a", "b", "Escape")
            if not it.is_alive():
                break
        wait_until(lambda: it.is_covered() or it.was_started("xsecurelock"), "a lock")
        if it.is_alive():
            self.limits.lift("as")
            it.open_prompt()
            it.unlock()
            it.end_session()
            self.assertTrue(it.works())
        else:
            wait_until(lambda: it.was_started("xsecurelock"), "the locker")
            wait_until(lambda: not it.processes_left(), "the helpers to end")


if __name__ == "__main__":
    if Owner.missing():
        print("skipped: " + Owner.missing())
        sys.exit(77)
    unittest.main(verbosity=2)
