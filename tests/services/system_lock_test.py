#!/usr/bin/python3
"""The helper that engages the system's own lock: with a real logind, on an X server whose displays
have power states, under sway with swayidle, and on Mutter's bus.
Usage: system_lock_test.py VIGILO_LOCK DPMS_SHIM"""

import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.hanging_bus import HangingBus
from harness.processes import PATIENCE, Processes, die_with_parent, end, environment, wait_until
from harness.sway import Sway
from harness.system_bus import SystemBus
from harness.xorg import DummyXorg

SHIM = sys.argv.pop()
HELPER = sys.argv.pop()
NOWHERE = "unix:path=/nonexistent/bus"
# What a bus that hangs may cost in seconds. It is about one; the library's own limit is a minute and a half.
SOON = 45


class SystemLock(unittest.TestCase):
    def setUp(self):
        self.session_bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        os.chmod(self.folder, 0o777)
        self.variables = {
            "DBUS_SESSION_BUS_ADDRESS": self.session_bus.address,
            "DBUS_SYSTEM_BUS_ADDRESS": NOWHERE,
            "XDG_SESSION_ID": None,
            "XDG_CURRENT_DESKTOP": None,
            "DISPLAY": None,
            "WAYLAND_DISPLAY": None,
            # Only the lockers that a test puts there.
            "PATH": self.folder,
        }

    def locker(self, name):
        """A locker that only notes that it was started; returns the note's path."""
        note = os.path.join(self.folder, name + "-started")
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write('#!/bin/sh\necho "$0 $*" > "%s"\n' % note)
        os.chmod(path, 0o755)
        return note

    def lock(self):
        process = subprocess.Popen(
            [HELPER], env=environment(**self.variables), stdin=subprocess.DEVNULL, preexec_fn=die_with_parent
        )
        self.addCleanup(end, process)
        return process.wait(PATIENCE)

    def lock_soon(self):
        began = time.monotonic()
        self.assertEqual(self.lock(), 0)
        self.assertLess(time.monotonic() - began, SOON)

    def stop(self, process):
        """Has a program hang for the rest of the test."""
        process.send_signal(signal.SIGSTOP)
        self.addCleanup(process.send_signal, signal.SIGCONT)

    def looks(self):
        """How often the helper looked whether somebody has taken the lock, in a run in which nobody did."""
        log_path = os.path.join(self.folder, "looks")
        with open(log_path, "w", encoding="utf-8") as log:
            monitor = self.processes.start(
                [
                    "dbus-monitor", "--address", self.session_bus.address,
                    "type='method_call',member='NameHasOwner'",
                ],
                stdout=log,
            )

        def seen(name):
            with open(log_path, encoding="utf-8") as log:
                return log.read().count('"%s"' % name)

        def ask(name):
            subprocess.run(
                [
                    "busctl", "--address=" + self.session_bus.address, "call", "org.freedesktop.DBus",
                    "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner", "s", name,
                ],
                check=True, stdout=subprocess.DEVNULL,
            )
            return seen(name)

        wait_until(lambda: ask("test.begins"), "the monitor")
        self.assertEqual(self.lock(), 0)
        # What is seen of this comes after all that the helper has asked.
        wait_until(lambda: ask("test.ends"), "the last question")
        end(monitor)
        return seen("org.kde.screensaver")

    def own_name(self, name):
        """Somebody on the session bus who owns a name and does nothing else."""
        self.processes.start(
            [
                "/usr/bin/python3", "-c",
                "import dbus, time; bus = dbus.SessionBus(); bus.request_name('%s'); time.sleep(60)" % name,
            ],
            env=environment(DBUS_SESSION_BUS_ADDRESS=self.session_bus.address),
        )
        wait_until(
            lambda: name in subprocess.run(
                ["busctl", "--address=" + self.session_bus.address, "list"], stdout=subprocess.PIPE, text=True,
                check=False,
            ).stdout,
            name,
        )


class OnXorg(SystemLock):
    def setUp(self):
        super().setUp()
        self.display = self.enterContext(DummyXorg(SHIM))
        self.variables["DISPLAY"] = self.display.name

    def test_the_displays_sleep_and_the_first_locker_is_started_where_nobody_else_locks(self):
        self.locker("slock")
        note = self.locker("i3lock")
        self.assertEqual(self.lock(), 0)
        self.assertEqual(self.display.power_levels(), [3])
        with open(note, encoding="utf-8") as file:
            self.assertEqual(file.read(), os.path.join(self.folder, "i3lock") + " \n")
        self.assertFalse(os.path.exists(os.path.join(self.folder, "slock-started")))

    def test_no_locker_is_started_beside_a_screen_saver(self):
        note = self.locker("i3lock")
        self.own_name("org.freedesktop.ScreenSaver")
        self.assertEqual(self.lock(), 0)
        self.assertEqual(self.display.power_levels(), [3])
        self.assertFalse(os.path.exists(note))

    def test_a_locker_is_started_beside_gnomes_proxy_which_locks_nothing(self):
        note = self.locker("i3lock")
        self.own_name("org.freedesktop.ScreenSaver")
        self.own_name("org.gnome.SettingsDaemon.ScreensaverProxy")
        self.assertEqual(self.lock(), 0)
        self.assertTrue(os.path.exists(note))

    def test_xscreensaver_is_told_by_its_own_command(self):
        fallback, note = self.locker("i3lock"), self.locker("xscreensaver-command")
        self.assertEqual(self.lock(), 0)
        self.assertFalse(os.path.exists(note))
        os.remove(fallback)
        shutil.copy("/usr/bin/sleep", os.path.join(self.folder, "xscreensaver"))
        self.processes.start([os.path.join(self.folder, "xscreensaver"), "60"])
        self.assertEqual(self.lock(), 0)
        with open(note, encoding="utf-8") as file:
            self.assertEqual(file.read(), os.path.join(self.folder, "xscreensaver-command") + " -lock\n")
        self.assertFalse(os.path.exists(fallback))

    def test_the_displays_sleep_even_where_nothing_can_lock(self):
        self.variables["DBUS_SESSION_BUS_ADDRESS"] = NOWHERE
        self.assertEqual(self.lock(), 1)
        self.assertEqual(self.display.power_levels(), [3])

    def test_a_bus_that_never_answers_holds_nothing_up(self):
        hung = os.path.join(self.folder, "hung")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(hung)
            os.chmod(hung, 0o777)
            listener.listen()
            for bus in ("DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"):
                with self.subTest(bus=bus):
                    before = self.variables[bus]
                    self.variables[bus] = "unix:path=" + hung
                    note = self.locker("i3lock")
                    self.lock_soon()
                    self.assertTrue(os.path.exists(note))
                    os.remove(note)
                    self.variables[bus] = before

    def test_a_session_bus_that_hangs_holds_nothing_up(self):
        note = self.locker("i3lock")
        self.stop(self.session_bus.daemon)
        self.lock_soon()
        self.assertEqual(self.display.power_levels(), [3])
        self.assertTrue(os.path.exists(note))

    def test_a_session_bus_that_hangs_does_not_keep_the_request_from_logind(self):
        note = self.locker("i3lock")
        self.stop(self.session_bus.daemon)
        with SystemBus() as bus, bus.locking_desktop() as desktop:
            self.variables |= {"DBUS_SYSTEM_BUS_ADDRESS": bus.address, "XDG_SESSION_ID": bus.session_id}
            self.lock_soon()
            wait_until(lambda: desktop.requests() == 1, "the request")
        self.assertEqual(self.display.power_levels(), [3])
        self.assertFalse(os.path.exists(note))

    def test_a_system_bus_that_hangs_holds_nothing_up(self):
        note = self.locker("i3lock")
        with SystemBus() as bus:
            self.variables |= {"DBUS_SYSTEM_BUS_ADDRESS": bus.address, "XDG_SESSION_ID": bus.session_id}
            self.stop(bus.daemon)
            self.lock_soon()
            bus.daemon.send_signal(signal.SIGCONT)
        self.assertEqual(self.display.power_levels(), [3])
        self.assertTrue(os.path.exists(note))

    def test_a_logind_that_hangs_holds_nothing_up(self):
        note = self.locker("i3lock")
        with SystemBus() as bus:
            self.variables |= {"DBUS_SYSTEM_BUS_ADDRESS": bus.address, "XDG_SESSION_ID": bus.session_id}
            self.stop(bus.logind)
            self.lock_soon()
            bus.logind.send_signal(signal.SIGCONT)
        self.assertEqual(self.display.power_levels(), [3])
        self.assertTrue(os.path.exists(note))

    def test_a_bus_that_hangs_later_holds_nothing_up(self):
        note = self.locker("i3lock")
        with SystemBus(user="nobody") as bus:
            self.variables["XDG_SESSION_ID"] = bus.session_id
            # More to ask about than there is patience for, and none of them the session's owner's.
            self.processes.serve("crowd.py", bus.address, "100", env=environment())
            for variable, address, word in (
                ("DBUS_SYSTEM_BUS_ADDRESS", bus.address, "GetSession"),
                ("DBUS_SYSTEM_BUS_ADDRESS", bus.address, "GetConnectionUnixUser"),
                ("DBUS_SESSION_BUS_ADDRESS", self.session_bus.address, "NameHasOwner"),
            ):
                with self.subTest(word=word), HangingBus(address, word) as hanging:
                    before = self.variables[variable]
                    self.variables[variable] = hanging.address
                    self.lock_soon()
                    self.variables[variable] = before
                    self.assertTrue(hanging.hangs.is_set())
                    self.assertTrue(os.path.exists(note))
                    os.remove(note)
        self.assertEqual(self.display.power_levels(), [3, 3, 3])

    def test_where_nobody_can_take_the_lock_nobody_is_waited_for(self):
        with SystemBus(user="nobody") as bus:
            for address, session in ((NOWHERE, None), (bus.address, "no-such-session"), (bus.address, bus.session_id)):
                with self.subTest(address=address, session=session):
                    self.variables |= {"DBUS_SYSTEM_BUS_ADDRESS": address, "XDG_SESSION_ID": session}
                    note = self.locker("i3lock")
                    self.assertEqual(self.looks(), 1)
                    self.assertTrue(os.path.exists(note))
                    os.remove(note)
            # A program of the session's owner, who may or may not be listening.
            other = self.processes.start(
                [
                    "setpriv", "--reuid", "65534", "--regid", "65534", "--clear-groups", "/usr/bin/python3", "-c",
                    "import dbus, time; bus = dbus.SystemBus(); time.sleep(60)",
                ],
                env=environment(DBUS_SYSTEM_BUS_ADDRESS=bus.address),
            )
            wait_until(lambda: bus.listens(other.pid), "the other program")
            note = self.locker("i3lock")
            self.assertGreater(self.looks(), 1)
            self.assertTrue(os.path.exists(note))

    def test_logind_passes_the_request_on_to_the_session_that_is_meant(self):
        with SystemBus() as bus:
            self.variables["DBUS_SYSTEM_BUS_ADDRESS"] = bus.address
            note = self.locker("i3lock")
            for session in (bus.session_id, None):
                with self.subTest(session=session), bus.locking_desktop() as desktop:
                    self.variables["XDG_SESSION_ID"] = session
                    self.assertEqual(self.lock(), 0)
                    wait_until(lambda: desktop.requests() == 1, "the request")
            # The desktop told logind that it has locked.
            self.assertFalse(os.path.exists(note))


class OnWayland(SystemLock):
    def test_swayidle_locks_and_the_outputs_sleep(self):
        with SystemBus(user="nobody") as bus:
            self.variables["DBUS_SYSTEM_BUS_ADDRESS"] = bus.address
            self.variables["XDG_SESSION_ID"] = bus.session_id
            with Sway(outputs=2) as sway:
                self.variables |= sway.environment
                locked = os.path.join(self.folder, "locked")
                self.processes.start(
                    [
                        "/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
                        # A locker by its name, as swayidle's users start one.
                        "/usr/bin/swayidle", "-w", "lock",
                        "echo > %s; exec -a swaylock sleep 30" % locked,
                    ],
                    env=environment(
                        **(sway.environment | {
                            "DBUS_SYSTEM_BUS_ADDRESS": bus.address, "XDG_SESSION_ID": bus.session_id,
                        })
                    ),
                )
                # It is on the bus before it listens for this.
                wait_until(lambda: "member='Lock'" in self.match_rules(bus), "swayidle")
                self.lock()
                wait_until(lambda: os.path.exists(locked), "swayidle's lock")
                self.assertTrue(sway.is_asked_to_sleep())

    @staticmethod
    def match_rules(bus):
        """What all those on a bus listen for."""
        return subprocess.run(
            [
                "dbus-send", "--bus=" + bus.address, "--print-reply", "--dest=org.freedesktop.DBus",
                "/org/freedesktop/DBus", "org.freedesktop.DBus.Debug.Stats.GetAllMatchRules",
            ],
            check=True, stdout=subprocess.PIPE, text=True,
        ).stdout

    def test_a_bare_compositor_gets_its_locker(self):
        note = self.locker("swaylock")
        with Sway(outputs=2) as sway:
            self.variables |= sway.environment
            self.assertFalse(sway.is_asked_to_sleep())
            self.assertEqual(self.lock(), 0)
            self.assertTrue(os.path.exists(note))
            self.assertTrue(sway.is_asked_to_sleep())


class OnMutter(SystemLock):
    def test_mutters_own_switch_is_used(self):
        mutter = "/usr/bin/mutter"
        if not os.path.exists(mutter):
            self.skipTest("mutter is not installed")
        home = os.path.join(self.folder, "home")
        os.mkdir(home, 0o700)
        with SystemBus() as bus:
            self.processes.start(
                [mutter, "--headless", "--wayland", "--no-x11", "--virtual-monitor", "1280x800"],
                env=environment(
                    DBUS_SESSION_BUS_ADDRESS=self.session_bus.address, DBUS_SYSTEM_BUS_ADDRESS=bus.address,
                    HOME=home, XDG_RUNTIME_DIR=home, DISPLAY=None, WAYLAND_DISPLAY=None,
                ),
            )

            def power_save_mode():
                return subprocess.run(
                    [
                        "busctl", "--address=" + self.session_bus.address, "get-property",
                        "org.gnome.Mutter.DisplayConfig", "/org/gnome/Mutter/DisplayConfig",
                        "org.gnome.Mutter.DisplayConfig", "PowerSaveMode",
                    ],
                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
                ).stdout.strip()

            wait_until(lambda: power_save_mode() == "i 0", "mutter")
            self.variables |= {"WAYLAND_DISPLAY": "wayland-0", "XDG_RUNTIME_DIR": home}
            self.lock()
            self.assertEqual(power_save_mode(), "i 3")


if __name__ == "__main__":
    reason = SystemBus.missing() or DummyXorg.missing() or Sway.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    del SystemLock
    unittest.main(verbosity=2)
