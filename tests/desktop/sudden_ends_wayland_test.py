#!/usr/bin/python3
"""The compositor dies, the program dies, or no descriptors are left, on Wayland: no lock is left open and
nothing is left behind. Usage: sudden_ends_wayland_test.py VIGILO"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import dbus

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import ID, perform
from harness.buses import SessionBus
from harness.limits import Limits, descriptors
from harness.power_service import PowerService
from harness.processes import PATIENCE, Processes, environment, wait_until
from harness.sway import Sway

VIGILO = sys.argv.pop(1)
MOST_LEFT = 12


class SuddenEndsOnWayland(unittest.TestCase):
    def start(self, state):
        self.sway = self.enterContext(Sway(outputs=2))
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.folder = self.enterContext(tempfile.TemporaryDirectory(prefix="vigilo-ends-"))
        # The locker that goes before all others notes that it was started.
        self.note = os.path.join(self.folder, "locked")
        with open(os.path.join(self.folder, "swaylock"), "w", encoding="utf-8") as file:
            file.write('#!/bin/sh\n: > "%s"\n' % self.note)
        os.chmod(os.path.join(self.folder, "swaylock"), 0o755)
        self.variables = environment(
            **self.sway.environment,
            PATH=self.folder + ":" + os.environ["PATH"],
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            QT_QPA_PLATFORM="wayland",
        )
        self.service = self.enterContext(PowerService(self.folder, self.processes, self.variables))
        # A keyboard that is there before the first key: clients take note of one only after a while.
        self.processes.start(["wtype", "-s", "600000", "-k", "Shift_L"], env=self.variables)
        self.warnings = os.path.join(self.folder, "warnings")
        with open(self.warnings, "w", encoding="utf-8") as warnings:
            self.program = self.processes.start([VIGILO], env=self.variables, stderr=warnings)
        wait_until(self.is_on_the_bus, "the program")
        wait_until(lambda: any(window["name"] == "Vigilo" for window in self.sway.windows()), "the window")
        if state != "idle":
            self.act("toggleProtection")
            self.service.wait_until_held()
        if state == "lock":
            self.lock()
            wait_until(lambda: self.children("vigilo-guard"), "the guard")

    def is_on_the_bus(self):
        connection = dbus.bus.BusConnection(self.bus.address)
        try:
            return connection.name_has_owner(ID)
        finally:
            connection.close()

    def act(self, action):
        perform(self.bus, action)

    def lock(self):
        self.act("agentLock")
        wait_until(self.sway.is_covered, "the lock")

    def children(self, name):
        """Process ids of the programs of this name that are ours."""
        found = subprocess.run(
            ["pgrep", "-x", name[:15]], check=False, stdout=subprocess.PIPE, text=True
        ).stdout.split()
        return [pid for pid in found if self.is_ours(pid)]

    def is_ours(self, pid):
        try:
            with open("/proc/%s/environ" % pid, "rb") as file:
                return b"DBUS_SESSION_BUS_ADDRESS=" + self.bus.address.encode() in file.read().split(b"\0")
        except OSError:
            return False  # it has just ended

    def in_each_state(self, check):
        for state in ("idle", "session", "lock"):
            with self.subTest(state=state):
                self.start(state)
                check(state)
                self.doCleanups()

    def test_its_compositor_dies(self):
        def check(state):
            gone = self.service.holders_gone()
            self.sway.processes.stop()
            self.assertEqual(self.program.wait(PATIENCE), 1)
            with open(self.warnings, encoding="utf-8") as warnings:
                self.assertEqual(warnings.read(), "vigilo: the connection to the display broke.\n")
            if state != "idle":
                wait_until(lambda: self.service.holders_gone() > gone, "the inhibition to go")
            wait_until(lambda: not self.children("vigilo-guard") + self.children("vigilo-lock"), "the helpers to end")

        self.in_each_state(check)

    def test_killed_it_leaves_no_lock_open_and_nothing_behind(self):
        def check(state):
            gone = self.service.holders_gone()
            self.program.kill()
            if state != "idle":
                wait_until(lambda: self.service.holders_gone() > gone, "the inhibition to go")
            if state == "lock":
                wait_until(lambda: os.path.exists(self.note), "the locker")
            wait_until(lambda: not self.children("vigilo-guard") + self.children("vigilo-lock"), "the helpers to end")
            self.assertEqual(os.path.exists(self.note), state == "lock")

        self.in_each_state(check)

    def test_few_or_no_descriptors_left(self):
        self.start("session")
        limits = Limits(self.program.pid, os.geteuid())
        kept = len(descriptors(self.program.pid))
        for count in range(MOST_LEFT):
            wait_until(lambda: len(descriptors(self.program.pid)) >= kept, "the reserve")
            limits.leave_descriptors(count)
            self.act("agentLock")
            wait_until(self.sway.is_covered, "the lock with %d left" % count)
            wait_until(lambda: self.children("vigilo-guard"), "the guard with %d left" % count)
            # The lock goes with the session.
            self.act("toggleProtection")
            self.service.wait_until_released()
            wait_until(lambda: not self.sway.is_covered(), "the end of the session with %d left" % count)
            limits.lift("nofile")
            self.act("toggleProtection")
            self.service.wait_until_held()
        self.assertIsNone(self.program.poll())


if __name__ == "__main__":
    missing = next((name for name in ("grim", "wtype") if not shutil.which(name)), None)
    reason = Sway.missing() or (missing and missing + " is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
