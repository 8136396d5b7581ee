#!/usr/bin/python3
"""The main window as a person uses it: by keyboard, by pointer and through the screen reader's
interface. Usage: main_window_test.py VIGILO"""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.actions import perform
from harness.agents import Agents
from harness.display import VirtualDisplay, windows_named
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)


class MainWindow(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.display = self.enterContext(VirtualDisplay())
        self.processes = self.enterContext(Processes())
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.processes.start(Agents.alone(VIGILO), env=environment(DISPLAY=self.display.name, WAYLAND_DISPLAY=None))
        self.window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.desktop.wait_for("push button", "Start Awake Session")
        wait_until(lambda: self.focused() == "Start Awake Session", "the focus")

    def focused(self):
        """The name of the innermost thing that has the keyboard."""
        names = [node.name for node in self.desktop.nodes() if "focused" in node.states]
        return names[-1] if names else None

    def press(self, *keys, then_focused):
        self.display.key(*keys)
        wait_until(lambda: self.focused() == then_focused, "the focus on " + then_focused)

    def menu_rows(self):
        return [
            (node.name, "checked" in node.states)
            for node in self.desktop.nodes()
            if "menu item" in node.role and "showing" in node.states
        ]

    def value(self, menu):
        return self.desktop.find("push button", menu).description

    def test_the_screen_reader_reads_it_in_order(self):
        shown = [
            (node.role, node.name) for node in self.desktop.nodes()[2:] if "showing" in node.states
        ]
        self.assertEqual(
            shown,
            [
                ("label", "Vigilo, Your work keeps moving"),
                ("label", "NORMAL SLEEP"),
                ("heading", "Keep this Mac awake"),
                ("label", "Watching for Claude Code and Codex"),
                ("panel", "For Until stopped using Agent Lock"),
                ("push button", "Awake duration"),
                ("push button", "Screen mode"),
                ("push button", "Start Awake Session"),
                ("label", "Closed-lid use requires Apple’s external display and power setup."),
                ("push button", "Main menu"),
                ("push button", "Minimise"),
                ("push button", "Close"),
            ],
        )
        self.assertEqual(self.value("Awake duration"), "Until stopped")
        self.assertEqual(self.value("Screen mode"), "Agent Lock")

    def test_tab_goes_round_every_control(self):
        for name in ("Main menu", "Minimise", "Close", "Awake duration", "Screen mode", "Start Awake Session"):
            self.press("Tab", then_focused=name)
        for name in ("Screen mode", "Awake duration", "Close"):
            self.press("shift+Tab", then_focused=name)

    def test_a_menu_is_used_with_arrows_letters_and_enter(self):
        self.press("shift+Tab", "shift+Tab", then_focused="Awake duration")
        self.press("space", then_focused="Until stopped")
        self.assertEqual(
            self.menu_rows(),
            [
                ("30 minutes", False), ("1 hour", False), ("2 hours", False), ("4 hours", False),
                ("8 hours", False), ("Until stopped", True),
            ],
        )
        self.assertIsNotNone(self.desktop.find("popup menu", "Awake duration"))
        self.press("Home", then_focused="30 minutes")
        self.press("Down", then_focused="1 hour")
        self.press("8", then_focused="8 hours")
        self.press("Up", then_focused="4 hours")
        self.press("End", then_focused="Until stopped")
        self.press("3", then_focused="30 minutes")
        self.press("Return", then_focused="Awake duration")
        self.assertEqual(self.value("Awake duration"), "30 min")
        self.press("Down", then_focused="30 minutes")
        self.assertEqual([name for name, is_checked in self.menu_rows() if is_checked], ["30 minutes"])

    def test_escape_closes_a_menu_and_changes_nothing(self):
        self.press("shift+Tab", then_focused="Screen mode")
        self.press("Return", then_focused="Agent Lock")
        self.press("Down", then_focused="Apple Lock")
        self.press("Escape", then_focused="Screen mode")
        self.assertEqual(self.value("Screen mode"), "Agent Lock")

    def test_choosing_the_current_row_leaves_it_checked(self):
        self.press("shift+Tab", then_focused="Screen mode")
        for _ in range(2):
            self.press("Return", then_focused="Agent Lock")
            self.assertEqual([name for name, is_checked in self.menu_rows() if is_checked], ["Agent Lock"])
            self.press("Return", then_focused="Screen mode")

    def test_a_click_outside_closes_a_menu(self):
        self.display.click(self.window, 300, 329)
        wait_until(self.menu_rows, "the menu")
        self.display.click(self.window, 60, 480)
        wait_until(lambda: not self.menu_rows(), "the menu to close")
        self.assertEqual(self.value("Awake duration"), "Until stopped")

    def test_an_open_menu_goes_when_a_session_begins_elsewhere(self):
        self.press("shift+Tab", then_focused="Screen mode")
        self.press("Return", then_focused="Agent Lock")
        perform(self.desktop, "toggleProtection")
        self.desktop.wait_for("heading", "This Mac is staying awake")
        wait_until(lambda: not self.menu_rows(), "the menu to close")
        wait_until(lambda: self.focused() == "End Awake Session", "the focus on the button")

    def test_a_session_is_run_through_the_screen_readers_interface_alone(self):
        self.desktop.wait_for("push button", "Screen mode").press()
        self.desktop.wait_for("menu item", "Stay Visible").press()
        wait_until(lambda: self.value("Screen mode") == "Stay Visible", "the choice")
        self.desktop.find("push button", "Start Awake Session").press()
        self.desktop.wait_for("heading", "This Mac is staying awake")
        self.desktop.wait_for("label", "KEEPING AWAKE")
        self.desktop.wait_for("label", "Until you stop it")
        self.desktop.wait_for("label", "Stay Visible")
        self.assertIsNone(self.desktop.find("push button", "Awake duration"))
        self.desktop.find("push button", "End Awake Session").press()
        self.desktop.wait_for("heading", "Keep this Mac awake")


if __name__ == "__main__":
    unittest.main(verbosity=2)
