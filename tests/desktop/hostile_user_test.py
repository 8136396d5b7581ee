#!/usr/bin/python3
"""Somebody who is not the owner, in front of the lock screen with a keyboard, a pointer and a lot of
time: nothing uncovers the desktop or ends the program. Usage: hostile_user_test.py VIGILO"""

import os
import random
import shutil
import signal
import subprocess
import sys
import threading
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.agents import Agents
from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.focus import lock_has_keyboard
from harness.owner import PASSWORD, Owner
from harness.pictures import DESKTOP, Picture
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
SEED = 4711

MODIFIERS = ("", "shift+", "ctrl+", "alt+", "super+", "ctrl+alt+", "ctrl+shift+", "alt+shift+", "super+shift+")
# All but the keys that go to the other button and press it: Apple Lock is a way out for everybody.
KEYS = (
    *"abcdeqvwxyz0159", "F1", "F2", "F4", "F5", "F11", "F12", "Escape", "Delete", "BackSpace", "Home", "End",
    "Prior", "Next", "Left", "Right", "Up", "Down", "Insert", "Menu", "Print", "Pause", "Super_L", "Caps_Lock",
    "Num_Lock", "Return", "KP_Enter", "XF86AudioRaiseVolume", "XF86Sleep", "XF86ScreenSaver", "adiaeresis",
    "dead_acute", "Multi_key", "space",
)
# An odd number of Tabs, and then no key that presses what they lead to.
SHORTCUTS = (
    "alt+F4", "ctrl+q", "ctrl+w", "ctrl+F4", "alt+Tab", "alt+Escape", "super+d", "super+l", "super+e", "super+Tab",
    "ctrl+alt+Right", "ctrl+alt+Down", "ctrl+alt+d", "ctrl+alt+Delete", "ctrl+alt+BackSpace", "ctrl+Escape",
    "alt+F1", "alt+F2", "alt+F7", "alt+F8", "alt+F10", "ctrl+shift+Escape", "Print", "F1", "F10",
    "shift+F10", "Menu", "ctrl+c", "ctrl+a", "ctrl+z", "ctrl+x", "ctrl+o", "ctrl+n", "ctrl+comma",
)


class Watch:
    """Looks at the screen all the time, and keeps how often it was looked at and what was wrong."""

    def __init__(self, display):
        self._display = display
        self._is_over = threading.Event()
        self._thread = threading.Thread(target=self._look)
        self.looks = 0
        self.uncovered = 0

    def _look(self):
        while not self._is_over.is_set():
            self.uncovered += 0 if is_covered(self._display.picture()) else 1
            self.looks += 1

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._thread.join()


def is_covered(picture):
    return not Picture(picture).has(DESKTOP)


class HostileUser(unittest.TestCase):
    def setUp(self):
        self.display = self.enterContext(VirtualDisplay("1280x800x24"))
        self.bus = self.enterContext(SessionBus())
        self.owner = self.enterContext(Owner())
        self.agents = self.enterContext(Agents(*(("claude", "project-%03d" % number, False, 1) for number in range(300))))
        self.processes = self.enterContext(Processes())
        self.variables = environment(
            DISPLAY=self.display.name,
            WAYLAND_DISPLAY=None,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            HOME=self.owner.home,
            XDG_RUNTIME_DIR=self.owner.home,
            XAUTHORITY=None,
        )
        subprocess.run(["xsetroot", "-solid", "#ff00ff"], env=self.variables, check=True)
        self.processes.start(["openbox"], env=self.variables)
        self.display.wait_for_window_manager()
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        vigilo = self.processes.start(
            Agents.apart(*self.owner.command(*self.agents.command(VIGILO))), env=self.variables
        )
        window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.display.settle()
        self.display.click(window, 360, 399)
        wait_until(lambda: is_covered(self.display.picture()), "the lock")
        self.namespace = Agents.first(vigilo)
        self.addCleanup(vigilo.wait)
        self.addCleanup(os.kill, self.namespace, signal.SIGKILL)
        # The guard and the keyboard come after the picture; until it is itself, the guard looks like the program.
        wait_until(lambda: self.running(".*/vigilo-guard"), "the guard")
        wait_until(lambda: lock_has_keyboard(self.display.name), "the keyboard")
        (self.pid,) = self.running(VIGILO)
        self.watch = self.enterContext(Watch(self.display))

    def running(self, command):
        """Process ids of ours with this command line."""
        found = subprocess.run(
            ["pgrep", "--ns", str(self.namespace), "--nslist", "pid", "-xf", command],
            check=False, stdout=subprocess.PIPE, text=True,
        ).stdout
        return [int(pid) for pid in found.split()]

    def helpers(self):
        return self.running(".*/vigilo-authenticate")

    def xdotool(self, *arguments):
        subprocess.run(["xdotool", *arguments], env=self.variables, check=True)

    def helper(self):
        return wait_until(lambda: self.helpers(), "the helper")

    def leave_prompt(self):
        self.display.key("Escape")
        wait_until(lambda: not self.helpers(), "the helper to end")

    def check(self):
        """Nothing was seen, nothing has ended, and the owner still gets in."""
        seen = self.watch.looks
        wait_until(lambda: self.watch.looks > seen + 1, "two more looks")
        self.assertEqual(self.watch.uncovered, 0)
        self.assertEqual(self.running(VIGILO), [self.pid])
        self.watch.__exit__()
        self.xdotool("type", "--delay", "20", PASSWORD)
        self.display.key("Return")
        wait_until(lambda: not is_covered(self.display.picture()), "the lock to go")
        self.assertEqual(self.running(VIGILO), [self.pid])

    def test_wrong_passwords(self):
        self.xdotool("key", "x")
        for number in range(25):
            (before,) = self.helper()
            self.xdotool("type", "guess%d" % number)
            self.display.key("Return")
            wait_until(lambda old=before: self.helpers() not in ([], [old]), "a new helper")
        self.check()

    def test_a_megabyte_pasted(self):
        for text in (b"x" * 1_000_000, b"\n" * 1_000_000, bytes(range(256)) * 4000, "é€😀".encode() * 100_000):
            owner = self.processes.start(
                ["xclip", "-selection", "clipboard", "-target", "UTF8_STRING", "-quiet"],
                env=self.variables, stdin=subprocess.PIPE,
            )
            owner.stdin.write(text)
            owner.stdin.close()
            self.xdotool("key", "a")
            (before,) = self.helper()
            self.display.settle(quiet=0.2)
            self.xdotool("key", "ctrl+v", "shift+Insert", "ctrl+v", "b", "Return")
            wait_until(lambda old=before: self.helpers() not in ([], [old]), "a new helper")
            self.leave_prompt()
            owner.kill()
            owner.wait()
        self.check()

    def test_shortcuts(self):
        for is_prompt_up in (False, True):
            for keys in SHORTCUTS:
                if is_prompt_up:
                    self.xdotool("key", "x")
                self.xdotool("key", keys)
            self.display.settle(quiet=0.2)
        self.leave_prompt()
        self.check()

    def test_keys_mashed(self):
        chance = random.Random(SEED)
        for _ in range(30):
            self.xdotool(
                "key", "--delay", "2", *(chance.choice(MODIFIERS) + chance.choice(KEYS) for _ in range(50))
            )
        # Whatever is locked or held is let go, and what is under way comes to its end.
        self.xdotool("keyup", "shift", "keyup", "ctrl", "keyup", "alt", "keyup", "super")
        state = subprocess.run(["xset", "q"], env=self.variables, stdout=subprocess.PIPE, text=True, check=True).stdout
        if "Caps Lock:   on" in state:
            self.xdotool("key", "Caps_Lock")
        self.display.settle(quiet=0.3)
        self.leave_prompt()
        self.check()

    def test_the_pointer_everywhere(self):
        chance = random.Random(SEED)
        for _ in range(20):
            actions = []
            for _ in range(20):
                # Not on the link to Apple Lock.
                x, y = chance.choice(((0, 0), (1279, 799))) if chance.random() < 0.2 else (
                    chance.randrange(1280), chance.randrange(720)
                )
                actions += ["mousemove", str(x), str(y), chance.choice(("click", "mousedown", "mouseup"))]
                actions.append(str(chance.choice((1, 1, 2, 3, 4, 5, 8, 9))))
            self.xdotool(*actions)
        self.xdotool(*(word for button in (1, 2, 3, 4, 5, 8, 9) for word in ("mouseup", str(button))))
        self.display.settle(quiet=0.3)
        self.leave_prompt()
        self.check()


if __name__ == "__main__":
    reason = Owner.missing() or Agents.missing()
    reason = reason or (None if shutil.which("openbox") else "openbox is not installed")
    reason = reason or (None if shutil.which("xclip") else "xclip is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
