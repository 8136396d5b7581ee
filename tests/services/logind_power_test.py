#!/usr/bin/python3
"""Power assertions against a real logind. Usage: logind_power_test.py POWER_DRIVER"""

import errno
import os
import signal
import subprocess
import sys
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.power import PowerDriver
from harness.processes import Processes, end, environment, wait_until
from harness.system_bus import SystemBus

DRIVER = sys.argv.pop(1)
SERVICE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "fake_power_service.py")


class LogindPower(unittest.TestCase):
    def setUp(self):
        self.bus = SystemBus()
        self.addCleanup(self.bus.stop)

    def driver(self, **options):
        driver = PowerDriver(DRIVER, system_bus=self.bus, **options)
        self.addCleanup(driver.__exit__)
        return driver

    def test_a_lock_blocks_idling_and_nothing_else(self):
        driver = self.driver()
        status, number = driver.create()
        self.assertEqual(status, 0)
        locks = self.bus.inhibitors()
        self.assertEqual([lock[:4] for lock in locks], [("idle", "Vigilo", "Keeping the test awake", "block")])
        driver.release(number)
        wait_until(lambda: not self.bus.inhibitors(), "the release")

    @staticmethod
    def create_by_policy(driver, bus):
        """An assertion of an ordinary user, which polkit decides on; asked for again when it stood still."""
        result = driver.create()
        if result[0] == errno.ETIMEDOUT and not bus.polkit_answers():
            wait_until(bus.polkit_answers, "polkit")
            result = driver.create()
        return result

    def test_an_ordinary_user_may_hold_one(self):
        driver = self.driver(user=65534)
        self.assertEqual(self.create_by_policy(driver, self.bus)[0], 0)
        self.assertEqual(len(self.bus.inhibitors()), 1)

    def test_a_policy_that_forbids_it_is_respected(self):
        forbid = """polkit.addRule(function(action, subject) {
            if (action.id == "org.freedesktop.login1.inhibit-block-idle") { return polkit.Result.NO; }
        });"""
        with SystemBus(polkit_rule=forbid) as bus, PowerDriver(DRIVER, system_bus=bus, user=65534) as driver:
            self.assertEqual(self.create_by_policy(driver, bus), (errno.EACCES, 0))
            self.assertEqual(bus.inhibitors(), [])

    def test_the_lock_is_taken_anew_when_the_machine_wakes(self):
        driver = self.driver()
        driver.create()
        before = driver.locks_of_logind()
        self.bus.announce_sleep(False)
        wait_until(lambda: driver.locks_of_logind() not in (before, set()), "the new lock")
        wait_until(lambda: len(self.bus.inhibitors()) == 1, "the old lock to go")

    def test_a_session_bus_that_appears_later_is_noticed(self):
        with SessionBus() as session_bus, Processes() as processes:
            end(session_bus.daemon)
            driver = self.driver(session_bus=session_bus)
            self.assertEqual(driver.create()[0], 0)
            session_bus.restart()
            service = processes.start(
                ["/usr/bin/python3", SERVICE, "power-manager", "grant"],
                env=environment(DBUS_SESSION_BUS_ADDRESS=session_bus.address),
                stdout=subprocess.PIPE,
                text=True,
            )
            self.addCleanup(service.stdout.close)
            self.assertEqual(service.stdout.readline(), "ready\n")
            self.assertEqual(service.stdout.readline(), "Inhibit Vigilo -> 0\n")

    def hold_beside_a_session_bus(self):
        """A driver that holds an assertion, its number, the desktop's service, and the session bus of both."""
        session_bus = self.enterContext(SessionBus())
        processes = self.enterContext(Processes())
        variables = environment(DBUS_SESSION_BUS_ADDRESS=session_bus.address)
        service = processes.serve("fake_power_service.py", "power-manager", "grant", env=variables)
        driver = self.driver(session_bus=session_bus)
        status, number = driver.create()
        self.assertEqual(status, 0)
        self.assertEqual(service.stdout.readline(), "Inhibit Vigilo -> 0\n")
        return driver, number, service, session_bus.daemon

    def test_who_lets_go_waits_for_no_bus_that_hangs(self):
        driver, number, service, daemon = self.hold_beside_a_session_bus()
        daemon.send_signal(signal.SIGSTOP)
        self.addCleanup(daemon.send_signal, signal.SIGCONT)
        before = driver.threads()
        # What is held is taken anew, which has to wait.
        self.bus.announce_sleep(False)
        wait_until(lambda: driver.threads() > before, "the request")
        time.sleep(0.5)
        given_up = threading.Timer(60, daemon.send_signal, [signal.SIGCONT])
        self.addCleanup(given_up.cancel)
        given_up.start()
        driver.release(number)
        self.assertTrue(given_up.is_alive(), "it waited for the bus")
        daemon.send_signal(signal.SIGCONT)
        self.assertEqual(service.stdout.readline(), "release 0\n")

    def test_somebody_who_says_again_and_again_that_the_machine_woke_makes_few_requests(self):
        import dbus.lowlevel  # only where there is such a bus

        driver, _, service, daemon = self.hold_beside_a_session_bus()
        before = driver.threads()
        daemon.send_signal(signal.SIGSTOP)
        self.addCleanup(daemon.send_signal, signal.SIGCONT)
        stranger = dbus.bus.BusConnection(self.bus.address)
        self.addCleanup(stranger.close)
        for _ in range(200):
            signal_of_waking = dbus.lowlevel.SignalMessage(
                "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep"
            )
            signal_of_waking.append(False, signature="b")
            stranger.send_message(signal_of_waking)
        stranger.flush()
        wait_until(lambda: driver.threads() > before + 2, "the requests")
        time.sleep(1)
        self.assertLess(driver.threads(), before + 20)
        daemon.send_signal(signal.SIGCONT)
        self.assertEqual(service.stdout.readline(), "Inhibit Vigilo -> 1\n")

    def test_an_idle_machine_is_put_off_only_after_the_release(self):
        # Off rather than to sleep, since not every kernel can sleep; who is asked for it is a
        # stand-in for the service manager.
        action = "StartUnit poweroff.target"
        with SystemBus(logind_settings="IdleAction=poweroff\nIdleActionSec=4\n") as bus:
            with PowerDriver(DRIVER, system_bus=bus) as driver:
                _, number = driver.create()
                bus.set_idle(True)

                def is_put_off():
                    # logind may let a due action wait for half a minute, but not past a question.
                    bus.inhibitors()
                    return action in bus.manager_calls()

                held_until = time.monotonic() + 8
                while time.monotonic() < held_until:
                    self.assertFalse(is_put_off())
                    time.sleep(0.2)
                driver.release(number)
                wait_until(is_put_off, "the idle action")

    def test_the_lock_goes_with_a_killed_holder(self):
        driver = self.driver()
        driver.create()
        driver.start_child()
        driver.kill()
        # A child that inherited the descriptor would keep it.
        wait_until(lambda: not self.bus.inhibitors(), "the lock to go")

    def test_the_lock_stands_after_a_restart_of_logind(self):
        driver = self.driver()
        _, number = driver.create()
        end(self.bus.logind)
        self.bus.start_logind()
        wait_until(self.bus.inhibitors, "the lock after the restart")
        driver.release(number)
        wait_until(lambda: not self.bus.inhibitors(), "the release")

    def test_a_lock_beside_a_desktops_own_stands_while_logind_is_away(self):
        with SessionBus() as session_bus, Processes() as processes:
            service = processes.start(
                ["/usr/bin/python3", SERVICE, "power-manager", "grant"],
                env=environment(DBUS_SESSION_BUS_ADDRESS=session_bus.address),
                stdout=subprocess.PIPE,
                text=True,
            )
            self.addCleanup(service.stdout.close)
            self.assertEqual(service.stdout.readline(), "ready\n")
            driver = self.driver(session_bus=session_bus)
            self.assertEqual(driver.create()[0], 0)
            self.assertEqual(service.stdout.readline(), "Inhibit Vigilo -> 0\n")
            end(self.bus.logind)
            # The desktop grants anew and the cookie from before is given back; logind cannot.
            self.assertEqual(service.stdout.readline(), "Inhibit Vigilo -> 1\n")
            self.assertEqual(service.stdout.readline(), "release 0\n")
            self.assertTrue(driver.locks_of_logind())
            self.bus.start_logind()
            wait_until(self.bus.inhibitors, "the lock after the restart")

    def test_an_assertion_taken_before_logind_is_there_is_refused(self):
        end(self.bus.logind)
        self.assertEqual(self.driver().create(), (errno.ENOSYS, 0))


if __name__ == "__main__":
    reason = SystemBus.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
