#!/usr/bin/python3
"""The Agent Lock on X11, with openbox and without any window manager: what it hides, what it withstands
and how its owner lifts it. Usage: agent_lock_test.py VIGILO HOSTILE_WINDOW"""

import os
import re
import shutil
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.focus import focused_window, lock_has_keyboard
from harness.owner import PASSWORD, UID, Owner
from harness.pictures import DESKTOP, Picture
from harness.processes import Processes, end, environment, wait_until

VIGILO = sys.argv.pop(1)
HOSTILE = sys.argv.pop(1)
# Size in pixels and millimetres, and place.
LEFT, RIGHT, WHOLE = "800/200x900/200+0+0", "800/200x900/200+800+0", "1600/400x900/200+0+0"


class AgentLock(unittest.TestCase):
    window_manager = None

    def setUp(self):
        self.display = self.enterContext(VirtualDisplay("1600x900x24"))
        self.bus = self.enterContext(SessionBus())
        self.owner = self.enterContext(Owner())
        self.processes = self.enterContext(Processes())
        # The locker that goes before all others notes that it was started.
        programs = os.path.join(self.owner.folder, "bin")
        os.mkdir(programs)
        locker = os.path.join(programs, "xsecurelock")
        with open(locker, "w", encoding="utf-8") as file:
            file.write('#!/bin/sh\n: > "$HOME/locked"\n')
        os.chmod(locker, 0o755)
        self.variables = environment(
            PATH=programs + ":" + os.environ["PATH"],
            DISPLAY=self.display.name,
            WAYLAND_DISPLAY=None,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            HOME=self.owner.home,
            XDG_RUNTIME_DIR=self.owner.home,
            XAUTHORITY=None,
        )
        subprocess.run(["xsetroot", "-solid", "#ff00ff"], env=self.variables, check=True)
        # Two monitors on the one screen that there is.
        self.xrandr("--setmonitor", "left", LEFT, "screen")
        self.xrandr("--setmonitor", "right", RIGHT, "none")
        if self.window_manager:
            self.processes.start([self.window_manager], env=self.variables)
            self.display.wait_for_window_manager()
        self.service = self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        self.start()

    def start(self, stderr=subprocess.DEVNULL, **variables):
        """The program, with its lock up."""
        self.vigilo = self.processes.start(
            self.owner.command(VIGILO), env=self.variables | variables, stderr=stderr
        )
        self.window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.display.settle()
        # The proposed mode is the Agent Lock.
        self.display.click(self.window, 360, 399)
        wait_until(self.is_covered, "the lock")
        # The guard and the keyboard come after the picture; what is typed sooner goes to the window below.
        wait_until(lambda: self.running("vigilo-guard"), "the guard")
        wait_until(lambda: lock_has_keyboard(self.display.name), "the keyboard")

    def xrandr(self, *arguments):
        subprocess.run(["xrandr", *arguments], env=self.variables, check=True, stdout=subprocess.DEVNULL)

    def is_covered(self):
        """Whether not one pixel of the desktop below shows."""
        return not Picture(self.display.picture()).has(DESKTOP)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--delay", "20", text], env=self.variables, check=True)

    def be_refused(self, password):
        """Types what is not the password, and waits until it is asked for again."""
        self.type(password)
        told = wait_until(self.asking, "the helper that asks")
        self.display.key("Return")
        wait_until(lambda: set(self.asking()) - set(told), "the next one")

    def unlock(self):
        self.type(PASSWORD)
        self.display.key("Return")
        wait_until(lambda: not self.is_covered(), "the lock to go")

    def test_windows_that_come_later_do_not_show(self):
        for kind in ("unmanaged", "above", "full-screen"):
            with self.subTest(kind=kind):
                hostile = self.processes.start([HOSTILE, kind], env=self.variables, stdout=subprocess.PIPE, text=True)
                self.addCleanup(hostile.stdout.close)
                self.assertEqual(hostile.stdout.readline(), "shown\n")
                wait_until(self.is_covered, "the lock to come back above it")
                time.sleep(0.5)
                self.assertTrue(self.is_covered())
                end(hostile)

    def test_nobody_closes_it_from_outside(self):
        for keys in ("alt+F4", "Escape", "ctrl+q", "ctrl+w", "super+d", "ctrl+alt+Right"):
            self.display.key(keys)
            time.sleep(0.1)
        self.assertTrue(self.is_covered())
        self.assertIsNone(self.vigilo.poll())

    def test_the_owner_lifts_it_by_typing_and_the_session_goes_on(self):
        self.unlock()
        self.assertIsNone(self.vigilo.poll())
        end(self.service)
        self.assertNotIn("release", self.service.stdout.read())

    def test_a_wrong_password_leaves_it_up_and_the_right_one_still_counts(self):
        self.be_refused("wrong")
        self.assertTrue(self.is_covered())
        self.unlock()

    def test_the_password_is_nowhere_in_memory_afterwards(self):
        secret = b"unmistakable-4711-secret"
        self.be_refused(secret.decode())
        (pid,) = self.running("vigilo")
        # So that nothing of it goes while it is read.
        self.addCleanup(os.kill, pid, signal.SIGCONT)
        os.kill(pid, signal.SIGSTOP)
        wait_until(lambda: self.is_stopped(pid), "the program to stop")
        with open("/proc/%d/maps" % pid, encoding="utf-8") as file:
            maps = file.readlines()
        for line in maps:
            area, rights = line.split()[:2]
            first, last = (int(part, 16) for part in area.split("-"))
            if "w" in rights:
                with open("/proc/%d/mem" % pid, "rb", buffering=0) as memory:
                    memory.seek(first)
                    self.assertNotIn(secret, memory.read(last - first), line)

    @staticmethod
    def is_stopped(pid):
        """Whether all threads are."""
        def state(thread):
            with open("/proc/%d/task/%s/stat" % (pid, thread), encoding="utf-8") as file:
                return file.read().rsplit(")", 1)[1].split()[0]

        try:
            return all(state(thread) == "T" for thread in os.listdir("/proc/%d/task" % pid))
        except (FileNotFoundError, ProcessLookupError):
            return False  # one has just ended

    def test_an_escaped_prompt_leaves_it_up(self):
        self.type("abc")
        self.display.key("Escape")
        time.sleep(0.5)
        self.assertTrue(self.is_covered())
        self.unlock()

    def asking(self):
        """Process ids of the helpers that ask for the password; the other one waits for a finger."""
        return self.running("vigilo-authenticate$", by="-f")

    def running(self, name, by="-x"):
        """Process ids of the owner's programs of this name, or by the end of their command line."""
        found = subprocess.run(
            ["pgrep", by, "-u", str(UID), name], check=False, stdout=subprocess.PIPE, text=True
        ).stdout
        return [int(pid) for pid in found.split() if self.is_on_this_display(pid)]

    def is_on_this_display(self, pid):
        try:
            with open("/proc/%s/environ" % pid, "rb") as file:
                return b"DISPLAY=" + self.display.name.encode() in file.read().split(b"\0")
        except (FileNotFoundError, ProcessLookupError):
            return False  # it has just ended

    def test_its_guard_is_replaced_when_killed_and_ends_with_the_lock(self):
        (first,) = wait_until(lambda: self.running("vigilo-guard"), "the guard")
        os.kill(first, signal.SIGKILL)
        wait_until(lambda: self.running("vigilo-guard") not in ([], [first]), "a new guard")
        self.unlock()
        wait_until(lambda: not self.running("vigilo-guard"), "the guard to end")

    def test_its_guard_is_replaced_in_order_with_the_toolkits_own_event_loop(self):
        end(self.vigilo)
        path = os.path.join(self.owner.folder, "warnings")
        with open(path, "w", encoding="utf-8") as warnings:
            self.start(stderr=warnings, QT_NO_GLIB="1")
        (guard,) = wait_until(lambda: self.running("vigilo-guard"), "the guard")
        # From then on one that ends is replaced at once.
        time.sleep(1.5)
        os.kill(guard, signal.SIGKILL)
        wait_until(lambda: self.running("vigilo-guard") not in ([], [guard]), "a new guard")
        end(self.vigilo)
        with open(path, encoding="utf-8") as warnings:
            self.assertEqual(warnings.read(), "")

    def test_the_systems_lock_takes_over_when_the_program_is_killed(self):
        note = os.path.join(self.owner.home, "locked")
        (program,) = self.running("vigilo")
        os.kill(program, signal.SIGKILL)
        wait_until(lambda: os.path.exists(note), "the locker")
        wait_until(lambda: not self.running("vigilo-guard"), "the guard to end")

    def test_no_lock_takes_over_when_the_program_is_ended(self):
        (program,) = self.running("vigilo")
        os.kill(program, signal.SIGTERM)
        wait_until(lambda: not self.running("vigilo-guard"), "the guard to end")
        time.sleep(3)
        self.assertFalse(os.path.exists(os.path.join(self.owner.home, "locked")))

    def test_monitors_come_and_go_and_stay_covered(self):
        for _ in range(10):
            self.xrandr("--delmonitor", "right")
            self.xrandr("--delmonitor", "left")
            self.xrandr("--setmonitor", "left", WHOLE, "screen")
            wait_until(self.is_covered, "the cover to grow")
            self.xrandr("--delmonitor", "left")
            self.xrandr("--setmonitor", "left", LEFT, "screen")
            self.xrandr("--setmonitor", "right", RIGHT, "none")
            wait_until(self.is_covered, "the second cover")
        # What is typed while the covers change goes to one that is about to go.
        self.display.settle(quiet=1)
        self.unlock()

    def stacked_covers(self):
        """Those that are shown, the topmost first."""
        children = subprocess.run(
            ["xwininfo", "-root", "-children"], env=self.variables, check=True, stdout=subprocess.PIPE, text=True
        ).stdout
        shown = {int(window) for window in windows_named(self.display.name, "Agent Lock")}
        order = [int(number, 16) for number in re.findall(r"^ +(0x[0-9a-f]+) ", children, re.MULTILINE)]
        return [window for window in order if window in shown]

    def test_of_two_monitors_that_show_the_same_one_has_the_cover_on_top(self):
        self.xrandr("--delmonitor", "right")
        self.xrandr("--setmonitor", "right", LEFT, "none")
        wait_until(lambda: len(self.stacked_covers()) == 2, "the covers")
        self.display.settle(quiet=1)
        orders = []
        for _ in range(40):
            orders.append(self.stacked_covers())
            time.sleep(0.013)
        self.assertEqual([orders[0]] * 40, orders)
        self.assertEqual(focused_window(self.display.name), str(orders[0][0]))
        self.unlock()

    def test_windows_that_move_do_not_wake_the_program_once_it_is_lifted(self):
        self.unlock()
        self.processes.start(["xev", "-event", "button"], env=self.variables)
        window = wait_until(lambda: windows_named(self.display.name, "Event Tester"), "the window")[0]
        self.display.settle(quiet=1)
        moves, before = 300, self.wakes()
        # Beside the program's own window, which would have to be drawn again.
        places = (str(1000 + step % 50) for step in range(moves))
        path = [word for place in places for word in ("windowmove", "--sync", window, place, "100", "sleep", "0.002")]
        subprocess.run(["xdotool", *path], env=self.variables, check=True)
        # It counts the seconds meanwhile.
        self.assertLess(self.wakes() - before, moves)

    def wakes(self):
        """How often the program's main thread has waited for something."""
        (program,) = self.running("vigilo")
        with open("/proc/%d/status" % program, encoding="utf-8") as file:
            return int(re.search(r"^voluntary_ctxt_switches:\s*(\d+)", file.read(), re.MULTILINE)[1])


class WithOpenbox(AgentLock):
    window_manager = "openbox"


if __name__ == "__main__":
    reason = Owner.missing() or (None if shutil.which("openbox") else "openbox is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
