#!/usr/bin/python3
"""The main menu in the window's title area: by keyboard, by pointer, by its key equivalents and through
the screen reader's interface; the panels it opens. Usage: main_menu_test.py VIGILO"""

import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.display import VirtualDisplay, windows_named
from harness.focus import focused_window
from harness.processes import PATIENCE, Processes, environment, wait_until

VIGILO = sys.argv.pop(1)

CHOICES = [
    "About Vigilo", "Show Vigilo", "Keep Mac Awake", "Start Agent Lock", "Start with Apple Lock",
    "Lock Screen Settings…", "Launch at Login", "Quit Vigilo",
]


class MainMenu(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.display = self.enterContext(VirtualDisplay())
        self.processes = self.enterContext(Processes())
        self.config = os.path.join(self.desktop.folder, self.id())
        self.tools = os.path.join(self.config, "tools")
        os.makedirs(self.tools)
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.vigilo = self.processes.start(
            [VIGILO],
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, XDG_CONFIG_HOME=self.config,
                XDG_CURRENT_DESKTOP="XFCE", PATH=self.tools + ":/usr/bin:/bin",
            ),
        )
        self.window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.desktop.wait_for("push button", "Start Awake Session")
        wait_until(lambda: focused_window(self.display.name) == self.window, "the keyboard")

    def rows(self):
        """The lines of the menu that can be chosen."""
        return [node for node in self.desktop.nodes() if node.role == "menu item" and "showing" in node.states]

    def names(self):
        return [node.name for node in self.rows()]

    def focused(self):
        names = [node.name for node in self.rows() if "focused" in node.states]
        return names[-1] if names else None

    def open(self, *keys):
        self.display.key(*(keys or ("F10",)))
        wait_until(self.rows, "the menu")

    def press(self, *keys, then_focused):
        self.display.key(*keys)
        wait_until(lambda: self.focused() == then_focused, "the focus on " + then_focused)

    def wait_until_closed(self):
        wait_until(lambda: not self.rows(), "the menu to close")

    def test_its_keys_and_its_button_open_it(self):
        for key in ("F10", "shift+F10", "Menu"):
            self.open(key)
            self.assertEqual(self.names(), CHOICES)
            self.assertIsNotNone(self.desktop.find("popup menu", "Vigilo"))
            self.display.key("Escape")
            self.wait_until_closed()
        self.display.click(self.window, 660, 16)
        wait_until(self.rows, "the menu")
        self.display.click(self.window, 60, 480)
        self.wait_until_closed()

    def test_arrows_ends_and_letters_choose_a_line(self):
        self.open()
        self.press("Down", then_focused="About Vigilo")
        self.press("Down", then_focused="Show Vigilo")
        self.press("Up", "Up", then_focused="Quit Vigilo")
        self.press("Home", then_focused="About Vigilo")
        self.press("End", then_focused="Quit Vigilo")
        self.press("l", then_focused="Lock Screen Settings…")
        self.press("l", then_focused="Launch at Login")
        self.press("k", then_focused="Keep Mac Awake")
        self.display.key("Return")
        self.desktop.wait_for("heading", "This Mac is staying awake")
        self.wait_until_closed()

    def test_a_menu_that_is_open_follows_the_state(self):
        self.open()
        self.press("Down", then_focused="About Vigilo")
        subprocess.run(
            ["gapplication", "action", "io.github.vigilo.Vigilo", "toggleProtection"], env=environment(), check=True
        )
        wait_until(lambda: "Stop Keeping Awake" in self.names(), "the title")
        self.assertEqual(self.focused(), "About Vigilo")

    def test_key_equivalents_work_without_it(self):
        self.display.key("ctrl+k")
        self.desktop.wait_for("heading", "This Mac is staying awake")
        self.display.key("ctrl+k")
        self.desktop.wait_for("heading", "Keep this Mac awake")
        script = os.path.join(self.tools, "xfce4-screensaver-preferences")
        with open(script, "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\n: >%s.opened\n" % script)
        os.chmod(script, 0o755)
        self.display.key("ctrl+comma")
        wait_until(lambda: os.path.exists(script + ".opened"), "the settings")
        self.display.key("ctrl+q")
        self.assertEqual(self.vigilo.wait(PATIENCE), 0)

    def test_key_equivalents_do_nothing_behind_the_lock(self):
        self.display.key("ctrl+l")
        self.desktop.wait_for("push button", "Unlock Agent Lock with Touch ID or password")
        self.display.settle()
        self.display.key("ctrl+k", "ctrl+q", "F10", "Menu")
        self.display.settle()
        self.assertIsNone(self.vigilo.poll())
        self.assertEqual(self.rows(), [])
        self.assertIsNotNone(self.desktop.find("push button", "Unlock Agent Lock with Touch ID or password"))

    def test_the_start_at_login_is_switched_and_shown(self):
        self.open("F10")
        row = self.desktop.wait_for("menu item", "Launch at Login")
        self.assertNotIn("checked", row.states)
        row.press()
        entry = os.path.join(self.config, "autostart/io.github.vigilo.Vigilo.desktop")
        wait_until(lambda: os.path.exists(entry), "the entry")
        self.wait_until_closed()
        self.open("F10")
        self.assertIn("checked", self.desktop.wait_for("menu item", "Launch at Login").states)
        narrow = self.width()
        self.display.key("Escape")
        self.wait_until_closed()
        with open(entry, "a", encoding="utf-8") as file:
            file.write("Hidden=true\n")
        self.open("F10")
        row = self.desktop.wait_for("menu item", "Launch at Login — Approval Required")
        self.assertNotIn("checked", row.states)
        self.assertGreater(self.width(), narrow)

    def width(self):
        """Of a line of the menu, in pixels."""
        left, _, right, _ = self.rows()[0].box()
        return right - left

    def test_a_failure_to_switch_it_is_shown_in_an_alert_and_dismissed(self):
        os.makedirs(os.path.join(self.config, "autostart/io.github.vigilo.Vigilo.desktop"))
        self.open("F10")
        self.desktop.wait_for("menu item", "Launch at Login").press()
        self.desktop.wait_for("heading", "Couldn’t update Launch at Login")
        text = next(node.name for node in self.desktop.nodes() if node.name.endswith("Is a directory"))
        self.assertIn("autostart", text)
        self.display.settle()
        self.desktop.find("push button", "OK").press()
        wait_until(lambda: not self.desktop.find("push button", "OK"), "the alert to go")
        self.display.key("ctrl+k")
        self.desktop.wait_for("heading", "This Mac is staying awake")

    def test_about_says_what_the_program_is(self):
        self.open("F10")
        self.desktop.wait_for("menu item", "About Vigilo").press()
        wait_until(lambda: windows_named(self.display.name, "About Vigilo"), "the panel")
        version = subprocess.run([VIGILO, "--version"], stdout=subprocess.PIPE, text=True, check=True).stdout
        self.desktop.wait_for("label", "Version " + version.split()[1])
        self.assertIsNotNone(self.desktop.find("label", "Free software under the MIT licence"))
        self.desktop.find("push button", "Close")
        self.display.settle()
        self.display.key("Escape")
        wait_until(lambda: not windows_named(self.display.name, "About Vigilo"), "the panel to close")

    def test_quitting_from_the_menu_ends_the_program_in_order(self):
        self.open("F10")
        self.press("End", then_focused="Quit Vigilo")
        self.display.key("space")
        self.assertEqual(self.vigilo.wait(PATIENCE), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
