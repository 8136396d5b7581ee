#!/usr/bin/python3
"""The Agent Lock on Wayland compositors other than sway: what it hides on two outputs, who gets the keys,
what comes above it, and what becomes of it when they change.
Usage: agent_lock_compositors_test.py
       COMPOSITOR VIGILO OTHER_WINDOW VIRTUAL_KEYBOARD KWIN_OUTPUTS SLOW_FRAMES_SHIM"""

import os
import re
import socket
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import ID, perform
from harness.applies import applies_where
from harness.compositors import HEIGHT, SIDE_BY_SIDE, WIDTH, GnomeShell, KWin, Mutter, Place, Weston
from harness.pictures import DESKTOP, has_colour
from harness.preload import preload
from harness.processes import PATIENCE, Processes, end, environment, wait_until

COMPOSITOR = {"kwin": KWin, "mutter": Mutter, "gnome_shell": GnomeShell, "weston": Weston}[sys.argv.pop(1)]
VIGILO, OTHER, KEYBOARD, OUTPUTS, SLOW_FRAMES = (sys.argv.pop(1) for _ in range(5))
# The edges of a cover are somewhere between these, the desktops below are not: magenta, blue, or nothing at all.
DARKEST, LIGHTEST = (1, 1, 1), (0x20, 0x20, 0x40)
PANEL_BUTTON = b"\x0a\x6f\xe0"
# What becomes of the two outputs, each time from what was before.
ARRANGEMENTS = {
    "the second goes": [Place(0, 0, 0)],
    "the second comes": SIDE_BY_SIDE,
    "the first goes": [Place(1, 0, 0)],
    "the first comes as the second": [Place(1, 0, 0), Place(0, WIDTH, 0)],
    "both change places, one its scale": [Place(0, 0, 0), Place(1, WIDTH, 0, scale=2)],
    "only the scaled one is left": [Place(1, 0, 0, scale=2)],
    "the other comes, turned": [Place(0, 0, 0, is_turned=True), Place(1, HEIGHT, 0)],
    "one is above the other": [Place(1, 0, 0), Place(0, 0, HEIGHT)],
}


class OtherProgram:
    """Magenta windows on every output, of a program that wants to be seen and typed to."""

    def __init__(self, case, kind, platform):
        self.process = case.processes.start(
            [*case.compositor.own(OTHER), kind], env=case.variables | {"QT_QPA_PLATFORM": platform}, stdout=subprocess.PIPE
        )
        case.addCleanup(self.process.stdout.close)
        os.set_blocking(self.process.stdout.fileno(), False)
        self._text = b""

    def lines(self):
        self._text += self.process.stdout.read() or b""
        return self._text.decode().splitlines()

    def is_shown(self):
        """Whether all its windows are; those of several outputs come one after another."""
        return self.lines().count("shown") >= len(SIDE_BY_SIDE)

    def has_had_keyboard(self):
        return "entered" in self.lines()

    def has_keyboard(self):
        """Whether one of its windows has it, as far as the program knows."""
        return [line for line in self.lines() if line in ("entered", "left")][-1:] == ["entered"]

    def keys(self):
        return [line for line in self.lines() if line.startswith("key")]


class AgentLock(unittest.TestCase):
    def setUp(self):
        self.compositor = COMPOSITOR(KEYBOARD, OUTPUTS) if COMPOSITOR is KWin else COMPOSITOR()
        self.addCleanup(self.compositor.stop)
        self.processes = Processes()
        self.addCleanup(self.processes.stop)
        self.variables = environment(**self.compositor.environment)
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.variables)
        self.below = OtherProgram(self, "full-screen", "wayland")
        wait_until(lambda: self.share() > 0.9, "the desktop below")
        wait_until(lambda: self.gets_keys(self.below), "the keyboard of the desktop below")

    def gets_keys(self, other):
        self.compositor.key("a")
        return other.keys()

    def wait_for_keyboard(self, *others):
        """Until neither the desktop below nor these have it. A busy toolkit may miss that it has lost it; what is
        pressed then shows who has."""
        deadline = time.monotonic() + 10
        while any(other.has_keyboard() for other in (self.below, *others)) and time.monotonic() < deadline:
            time.sleep(0.1)

    def lock(self, **changes):
        variables = environment(**(self.compositor.environment | changes))
        self.vigilo = self.processes.start([VIGILO], env=variables)
        wait_until(lambda: self.acts("toggleProtection"), "the program")
        self.acts("agentLock")
        wait_until(self.is_covered, "the lock")
        # Until what was pressed goes to the lock.
        time.sleep(1)
        self.wait_for_keyboard()
        self.keys_before = len(self.below.keys())

    def show_another(self, kind, platform):
        """A program whose windows have been shown."""
        other = OtherProgram(self, kind, platform)
        wait_until(other.is_shown, "the windows")
        return other

    def acts(self, action):
        try:
            perform(self.compositor.bus, action)
        except subprocess.CalledProcessError:
            return False
        return True

    def share(self):
        """How much of both outputs shows other programs: 0 to 1."""
        pixels = self.compositor.pixels()
        return sum(pixels[start : start + 3] == DESKTOP for start in range(0, len(pixels), 21)) / len(pixels) * 21

    def is_covered(self):
        """Whether not one pixel of other programs shows."""
        return not has_colour(self.compositor.pixels(), DESKTOP)

    def stays_covered(self):
        """Whether it is for a moment, which has some looks however long they take."""
        deadline, looks = time.monotonic() + 1.5, 0
        while time.monotonic() < deadline or looks < 5:
            if not self.is_covered():
                return False
            looks += 1
        return True

    def expect_the_keyboard(self, all_along=True):
        """Escape leaves the prompt if there is one; Tab goes to the button that leaves the screen to the
        system's own lock. `all_along`: and the desktop below has had no key since the lock came."""

        def is_left():
            self.compositor.key("Escape", "Tab", "Return")
            # What is pressed again too soon would go to the desktop below.
            deadline = time.monotonic() + 30
            while self.is_covered() and time.monotonic() < deadline:
                time.sleep(0.2)
            return not self.is_covered()

        self.wait_for_keyboard()
        # Without the desktop below nothing would show that the lock is gone.
        self.assertIsNone(self.below.process.poll())
        # A busy machine may take a while to give the keyboard back; what is pressed meanwhile is lost.
        wait_until(is_left, "the lock to go")
        self.assertIsNone(self.vigilo.poll())
        if all_along:
            self.assertEqual(self.keys_before, len(self.below.keys()))

    def expect_platform(self, name):
        """Which plugin of the toolkit the program runs on."""
        with open("/proc/%d/maps" % self.vigilo.pid, encoding="utf-8") as file:
            self.assertEqual({name}, set(re.findall(r"libq(xcb|wayland)(?:-generic)?\.so", file.read())))


# Weston has no means for them.
@applies_where(COMPOSITOR is not Weston)
class CoversThatHold(AgentLock):
    def test_it_runs_where_covers_hold(self):
        self.lock()
        self.expect_platform("wayland" if COMPOSITOR is KWin else "xcb")
        self.expect_the_keyboard()

    def test_windows_that_come_later_neither_show_nor_get_keys(self):
        self.lock()
        for kind in ("normal", "full-screen"):
            for platform in ("wayland", "xcb"):
                with self.subTest(kind=kind, platform=platform):
                    other = self.show_another(kind, platform)
                    for _ in range(10):
                        self.assertTrue(self.is_covered())
                    time.sleep(1)
                    self.wait_for_keyboard(other)
                    self.compositor.key("b", "Escape")
                    time.sleep(0.3)
                    self.assertEqual([], other.keys())
                    end(other.process)
        self.expect_the_keyboard()

    def expect_to_stay_covered(self):
        """That the covers come back and stay. A busy compositor puts each window on top long after its program has
        drawn or moved it."""
        for _ in SIDE_BY_SIDE:
            wait_until(self.is_covered, "the lock")
            if self.stays_covered():
                return
        wait_until(self.is_covered, "the lock")
        self.assertTrue(self.stays_covered())

    def test_unmanaged_windows_that_come_later_neither_stay_to_be_seen_nor_get_keys(self):
        self.lock()
        for _ in range(5):
            other = self.show_another("unmanaged", "xcb")
            self.expect_to_stay_covered()
            self.wait_for_keyboard(other)
            self.compositor.key("b", "Escape")
            time.sleep(0.3)
            self.assertEqual([], other.keys())
            end(other.process)
        self.expect_the_keyboard()

    # It puts all of them on top then.
    @applies_where(COMPOSITOR is KWin)
    def test_unmanaged_windows_that_were_there_before_stay_below_when_they_move(self):
        self.show_another("unmanaged", "xcb")
        self.lock()
        windows = ("xdotool", "search", "--onlyvisible", "--class", "other_window")
        for change in (("windowmove", "%@", "50", "60"), ("windowsize", "%@", "500", "400"), ("windowraise", "%1")):
            with self.subTest(change=change):
                subprocess.run([*windows, *change], env=self.variables, check=True)
                time.sleep(0.3)
                self.expect_to_stay_covered()
        self.expect_the_keyboard()

    def test_the_compositors_own_shortcuts_neither_uncover_it_nor_take_the_keyboard(self):
        self.lock()
        for keys in ("alt+F4", "super", "super+d", "ctrl+alt+Right", "ctrl+alt+Left"):
            self.compositor.key(keys)
            time.sleep(1)
            # GNOME's overview shows the desktop until it is ended.
            wait_until(self.is_covered, "the end of what these keys do: " + keys)
        # GNOME's shell gives it to the desktop below until the lock has asked for it, which takes a moment.
        self.expect_the_keyboard(all_along=COMPOSITOR is not GnomeShell)

    # Elsewhere covers are no windows that it could close, or ignore that.
    @applies_where(COMPOSITOR is KWin)
    def test_they_stay_when_the_compositor_passes_on_a_wish_to_close_them(self):
        self.lock()
        self.compositor.close_windows()
        time.sleep(1)
        self.assertTrue(self.stays_covered())
        self.expect_the_keyboard()

    @applies_where(COMPOSITOR is GnomeShell)
    def test_the_overview_ends_at_once_and_gives_the_keyboard_back(self):
        self.lock()
        for _ in range(3):
            self.compositor.show_overview(True)
            wait_until(lambda: not self.compositor.has_overview() and self.is_covered(), "the end of the overview")
        time.sleep(1)
        self.expect_the_keyboard()


# A gesture or a corner of the display opens them.
@applies_where(COMPOSITOR is KWin)
class EffectsThatShowAllWindows(AgentLock):
    ALL = ("overview", "desktopgrid", "windowview")

    def loaded(self):
        effects = self.compositor.effects()
        return tuple(name for name in self.ALL if '"%s"' % name in effects)

    def are_there(self):
        return self.loaded() == self.ALL

    def lock(self, **changes):
        self.assertTrue(self.are_there())
        super().lock(**changes)
        wait_until(lambda: not self.loaded(), "KWin to have unloaded them")

    def test_they_are_out_of_reach_until_the_lock_ends(self):
        self.lock()
        self.compositor.arrange(*ARRANGEMENTS["the first goes"])
        wait_until(self.is_covered, "the covers")
        time.sleep(1)
        self.assertEqual((), self.loaded())
        self.expect_the_keyboard()
        wait_until(self.are_there, "the effects")

    def test_they_come_back_when_the_program_ends(self):
        self.lock()
        end(self.vigilo)
        wait_until(self.are_there, "the effects")

    def test_they_come_back_when_the_program_is_killed(self):
        self.lock()
        self.vigilo.kill()
        wait_until(self.are_there, "the effects")


# Elsewhere the lock is on the X server itself, or has no use for it.
@applies_where(COMPOSITOR is KWin)
class XServerThatHangs(AgentLock):
    def test_it_holds_nothing_up(self):
        with socket.socket(socket.AF_UNIX) as server:
            server.bind("\0/tmp/.X11-unix/X%d" % os.getpid())
            server.listen()
            self.lock(DISPLAY=":%d" % os.getpid())
            server.settimeout(PATIENCE)
            with server.accept()[0]:
                self.expect_the_keyboard()


@applies_where(COMPOSITOR is not KWin)
class FullScreenWindows(AgentLock):
    """All that is left on Weston, and on the others without an X server. Windows that come later
    show for a moment."""

    def lock(self, **changes):
        super().lock(**(changes if COMPOSITOR is Weston else changes | {"DISPLAY": None}))

    def keep_out(self, other):
        """Whether another program's windows stay below the covers and get no keys."""
        keys = len(other.keys())
        self.compositor.key("b", "Escape")
        return self.stays_covered() and len(other.keys()) == keys

    def test_they_hide_the_desktop_have_the_keyboard_and_withstand_shortcuts(self):
        self.lock()
        self.expect_platform("wayland")
        for keys in ("alt+F4", "super", "super+d", "ctrl+alt+Right", "ctrl+alt+Left"):
            self.compositor.key(keys)
            time.sleep(0.5)
            wait_until(self.is_covered, "the end of what these keys do: " + keys)
        time.sleep(1)
        self.expect_the_keyboard()

    def test_they_come_back_above_windows_that_come_later_and_get_the_keyboard_back(self):
        self.lock()
        for kind in ("full-screen", "normal"):
            other = OtherProgram(self, kind, "wayland")
            # A busy compositor puts them on top long after the program has drawn them, one after another.
            wait_until(other.has_had_keyboard, "the windows on top")
            wait_until(lambda: self.keep_out(other), "covers that stay, with the keyboard: " + kind)
            self.assertIsNone(other.process.poll())
            end(other.process)
            wait_until(self.is_covered, "the covers after that")
        self.expect_the_keyboard()

    def test_they_are_there_and_have_the_keyboard_when_a_later_window_has_gone(self):
        self.lock()
        other = self.show_another("full-screen", "wayland")
        time.sleep(0.5)
        end(other.process)
        wait_until(self.is_covered, "the covers")
        time.sleep(1)
        self.expect_the_keyboard()

    # Elsewhere they stay the windows that they are.
    @applies_where(COMPOSITOR is Weston)
    def test_they_become_new_windows_while_the_toolkit_hears_late_of_the_last_pictures(self):
        self.lock(**preload(self.compositor.folder, SLOW_FRAMES))
        for _ in range(5):
            other = self.show_another("full-screen", "wayland")
            wait_until(self.stays_covered, "covers that stay")
            self.assertIsNone(self.vigilo.poll())
            end(other.process)
        self.expect_the_keyboard()

    @applies_where(COMPOSITOR is Weston)
    def test_a_lock_can_end_while_its_covers_become_new_windows(self):
        self.lock(**preload(self.compositor.folder, SLOW_FRAMES))
        for step in range(5):
            other = self.show_another("full-screen", "wayland")
            time.sleep(0.2 * step)
            self.acts("toggleProtection")
            wait_until(lambda: not self.is_covered(), "the end of the lock")
            end(other.process)
            self.acts("agentLock")
            wait_until(self.stays_covered, "the lock")
            self.assertIsNone(self.vigilo.poll())
        self.expect_the_keyboard(all_along=False)

    def test_a_warning_of_the_programs_own_leaves_them_the_keyboard(self):
        with tempfile.TemporaryDirectory() as config:
            # So that the start at login cannot be switched.
            os.makedirs(os.path.join(config, "autostart/%s.desktop" % ID))
            self.lock(XDG_CONFIG_HOME=config)
            self.assertTrue(self.acts("toggleLaunchAtLogin"))
            time.sleep(1)
            wait_until(self.stays_covered, "covers that stay")
            self.expect_the_keyboard()
        wait_until(lambda: has_colour(self.compositor.pixels(), PANEL_BUTTON), "the warning's button")


# GNOME's shell does as its compositor alone, which starts sooner. Weston's outputs stay as they are.
@applies_where(COMPOSITOR in (KWin, Mutter))
class ChangingOutputs(AgentLock):
    def covers(self):
        """Whether a cover is what shows at the edges of an output, for each of them."""
        width, _ = self.compositor.size()
        pixels = self.compositor.pixels()

        def is_dark(x, y):
            colour = pixels[3 * (y * width + x) :][:3]
            return all(low <= value <= high for low, value, high in zip(DARKEST, colour, LIGHTEST))

        for x, y, across, down in self.compositor.frames():
            points = [(x + i * (across - 1) // 16, y + j) for i in range(17) for j in (0, down - 1)]
            points += [(x + i, y + j * (down - 1) // 16) for i in (0, across - 1) for j in range(17)]
            yield all(is_dark(*point) for point in points)

    def is_hidden(self):
        return self.is_covered() and all(self.covers())

    def test_every_output_stays_covered_and_the_keyboard_with_the_lock(self):
        for name, places in ARRANGEMENTS.items():
            self.compositor.arrange(*places)
            self.assertFalse(any(self.covers()), "without the lock: " + name)
        self.compositor.arrange(*SIDE_BY_SIDE)
        self.lock()
        for name, places in ARRANGEMENTS.items():
            self.compositor.arrange(*places)
            wait_until(self.is_hidden, "the covers after this: " + name)
            # The desktop below takes its time to follow, which the covers may be made anew for, at first in black.
            time.sleep(0.3)
            self.assertTrue(self.is_covered(), name)
            wait_until(self.is_hidden, "the covers to stay after this: " + name)
        # Now with the prompt.
        self.compositor.key("x")
        time.sleep(0.5)
        for name in ("the first goes", "the first comes as the second"):
            self.compositor.arrange(*ARRANGEMENTS[name])
            wait_until(self.is_hidden, "the covers and the prompt after this: " + name)
        # A window that has just come with an output may have got keys; no more.
        time.sleep(1)
        self.wait_for_keyboard()
        self.keys_before = len(self.below.keys())
        self.expect_the_keyboard()


# One is enough.
@applies_where(COMPOSITOR is Mutter)
class Choice(AgentLock):
    def test_the_users_own_choice_of_a_platform_counts(self):
        self.lock(QT_QPA_PLATFORM="wayland")
        self.expect_platform("wayland")

    def test_an_x_server_that_cannot_be_reached_is_done_without(self):
        self.lock(DISPLAY=":4711")
        with open("/proc/%d/maps" % self.vigilo.pid, encoding="utf-8") as file:
            self.assertIn("libqwayland", file.read())
        self.expect_the_keyboard()


if __name__ == "__main__":
    reason = COMPOSITOR.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
