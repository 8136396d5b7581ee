#!/usr/bin/python3
"""Somebody who is not the owner, in front of the lock screen on two displays of sway, with a keyboard, a
pointer, and hands on the displays' plugs: nothing uncovers the desktop or ends the program.
Usage: hostile_user_wayland_test.py VIGILO MODULE COVERED_WAYLAND SWITCHED_OUTPUTS_SHIM"""

import os
import random
import shutil
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import perform
from harness.buses import SessionBus
from harness.pam import OddPam
from harness.processes import Processes, end, environment, wait_until
from harness.sway import Sway

VIGILO, MODULE, WATCH, SHIM = sys.argv.pop(1), sys.argv.pop(1), sys.argv.pop(1), sys.argv.pop(1)
SEED = 4711

MODIFIERS = ("shift", "ctrl", "alt", "logo", "altgr")
# All but the keys that go to the other button and press it: Apple Lock is a way out for everybody.
KEYS = (
    *"aeqwxz059", *("F%d" % number for number in range(1, 13)), "Escape", "Delete", "BackSpace", "Home", "End",
    "Prior", "Next", "Left", "Right", "Up", "Down", "Insert", "Menu", "Print", "Pause", "Super_L", "Num_Lock",
    "Return", "KP_Enter", "XF86AudioRaiseVolume", "XF86Sleep", "XF86ScreenSaver", "XF86Switch_VT_2",
    "adiaeresis", "dead_acute", "Multi_key", "space",
)
BINDINGS = """
bindsym Mod4+q kill
bindsym Mod4+w workspace 7
bindsym F11 fullscreen
"""


class HostileUser(unittest.TestCase):
    def setUp(self):
        self.sway = self.enterContext(Sway(outputs=2, settings=BINDINGS, shim=SHIM))
        self.bus = self.enterContext(SessionBus())
        self.pam = self.enterContext(OddPam(MODULE))
        self.pam.does("ask", "Password:")
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            **self.sway.environment,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            QT_QPA_PLATFORM="wayland",
        )
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        # A keyboard that is there before the first key: clients take note of one only after a while.
        self.processes.start(["wtype", "-s", "600000", "-k", "Shift_L"], env=self.variables)
        self.vigilo = self.processes.start(self.pam.command(VIGILO), env=self.variables)
        wait_until(self.acts("toggleProtection"), "the program")
        self.lock()

    def acts(self, action):
        def act():
            try:
                perform(self.bus, action)
            except subprocess.CalledProcessError:
                return False
            return True

        return act

    def lock(self):
        self.acts("agentLock")()
        wait_until(self.is_covered, "the lock")

    def wtype(self, *arguments):
        subprocess.run(["wtype", *arguments], env=self.variables, check=True)

    def is_covered(self):
        return self.sway.is_covered(may_sleep=True)

    def helpers(self):
        """Process ids of the programs that ask for the password."""
        found = subprocess.run(
            ["pgrep", "--parent", str(self.vigilo.pid), "-x", "vigilo-authenti"],
            check=False, stdout=subprocess.PIPE, text=True,
        ).stdout
        return [int(pid) for pid in found.split()]

    def open_prompt(self):
        def is_open():
            self.wtype("x")
            return self.helpers()

        return wait_until(is_open, "the prompt")

    def open_lasting_prompt(self):
        """Covers that are made anew take the prompt with them."""
        def lasts():
            helpers = self.open_prompt()
            for _ in range(5):
                time.sleep(0.05)
                if self.helpers() != helpers:
                    return False
            return True

        wait_until(lasts, "a prompt that stays")

    def leave_prompt(self):
        def is_left():
            self.wtype("-k", "Escape")
            return not self.helpers()

        wait_until(is_left, "the prompt to go")

    def watch(self):
        """Looks at every picture of the first output from now on."""
        watch = self.processes.start([WATCH, "forever"], env=self.variables, stdout=subprocess.PIPE)
        self.addCleanup(watch.stdout.close)
        watch.stdout.readline()
        os.set_blocking(watch.stdout.fileno(), False)
        return watch

    def check(self, watch=None):
        """Nothing was seen, nothing has ended, and the owner still gets in."""
        if watch:
            self.assertIsNone(watch.poll())
            self.assertIsNone(watch.stdout.read())
            end(watch)
        wait_until(self.is_covered, "the covers")
        self.unlock()

    def unlock(self):
        self.assertIsNone(self.vigilo.poll())
        self.leave_prompt()
        self.open_lasting_prompt()
        # What opened it is there, too: all of it goes.
        self.wtype("-M", "ctrl", "-k", "BackSpace", "-m", "ctrl", "right", "-k", "Return")
        wait_until(lambda: not self.is_covered(), "the lock to go")
        self.assertIsNone(self.vigilo.poll())

    def test_every_key_with_every_modifier(self):
        watch = self.watch()
        for modifier in ("", *MODIFIERS):
            held = ["-M", modifier] if modifier else []
            self.wtype(*held, *(word for key in KEYS for word in ("-k", key)))
            self.assertIsNone(self.vigilo.poll())
        self.check(watch)

    def test_keys_mashed(self):
        chance = random.Random(SEED)
        watch = self.watch()
        for _ in range(20):
            words = []
            for _ in range(50):
                held = chance.sample(MODIFIERS, chance.randrange(3))
                words += [word for modifier in held for word in ("-M", modifier)] + ["-k", chance.choice(KEYS)]
                words += [word for modifier in held for word in ("-m", modifier)]
            self.wtype(*words)
        self.check(watch)

    def test_the_pointer_everywhere(self):
        chance = random.Random(SEED)
        watch = self.watch()
        for _ in range(20):
            commands = []
            for _ in range(20):
                # Both displays, but not the links to Apple Lock.
                x, y = chance.randrange(2560), chance.choice((0, 719, chance.randrange(550)))
                action = "%s button%d" % (chance.choice(("press", "release")), chance.choice((1, 1, 2, 3, 4, 5, 8, 9)))
                commands += ["cursor set %d %d" % (x, y), "cursor " + action]
            self.sway.message("; ".join("seat seat0 " + command for command in commands))
        self.sway.message("; ".join("seat seat0 cursor release button%d" % button for button in (1, 2, 3, 4, 5, 8, 9)))
        self.check(watch)

    def test_a_megabyte_pasted(self):
        watch = self.watch()
        for text in (b"x" * 1_000_000, b"\n" * 1_000_000, "é€😀".encode() * 100_000):
            subprocess.run(
                ["wl-copy", "--type", "text/plain;charset=utf-8"], env=self.variables, input=text, check=True,
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            )
            self.open_prompt()
            self.wtype("-M", "ctrl", "-k", "v", "-k", "v", "-m", "ctrl", "-M", "shift", "-k", "Insert", "-m", "shift")
            self.leave_prompt()
        self.check(watch)

    def test_the_helper_killed(self):
        watch = self.watch()
        for _ in range(5):
            for helper in self.open_prompt():
                # The one that would ask for a finger may just have ended.
                subprocess.run(["kill", "-KILL", str(helper)], check=False, stderr=subprocess.DEVNULL)
            # A key that comes only now begins anew.
            self.leave_prompt()
        self.check(watch)

    def test_displays_change_under_the_prompt(self):
        first, second = (output["name"] for output in self.sway.outputs())
        for name in (second, first):
            for on in (False, True):
                self.open_prompt()
                self.sway.switch(name, on)
                wait_until(self.is_covered, "the covers")
        for name, before, after in (
            (first, "scale 2", "scale 1"), (second, "transform 90", "transform normal"),
            (first, "mode 800x1280", "mode 1280x720"), (first, "dpms off", "dpms on"), (second, "dpms off", "dpms on"),
        ):
            for change in (before, after):
                self.open_prompt()
                self.sway.message("output " + name + " " + change)
                wait_until(self.is_covered, "the covers after this: " + change)
        self.open_prompt()
        for on in (False, True):
            for name in (first, second):
                self.sway.switch(name, on)
            time.sleep(0.2)
        self.check()

    def test_locked_and_unlocked_again_and_again(self):
        for _ in range(10):
            self.unlock()
            self.lock()
        self.check()


if __name__ == "__main__":
    reason = OddPam.missing() or Sway.missing()
    missing = next((name for name in ("grim", "wtype", "wl-copy") if not shutil.which(name)), None)
    reason = reason or (missing and missing + " is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
