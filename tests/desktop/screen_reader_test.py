#!/usr/bin/python3
"""A day with the program for somebody who sees nothing of it: everything is found by roles and names, pressed
through the accessibility bus, and what changes is told unasked. Only the password is typed.
Usage: screen_reader_test.py VIGILO MODULE"""

import os
import signal
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop, Announcements
from harness.agents import Agents
from harness.display import VirtualDisplay, windows_named
from harness.lock_screen import APPLE_LOCK, UNLOCK, LockScreen
from harness.pam import OddPam
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
NAME, DESCRIPTION = "object:property-change:accessible-name", "object:property-change:accessible-description"
FOCUSED, SHOWING, CHECKED = "object:state-changed:focused", "object:state-changed:showing", "object:state-changed:checked"


class ScreenReader(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.display = VirtualDisplay()
        self.addCleanup(self.display.stop)
        self.processes = Processes()
        self.addCleanup(self.processes.stop)
        self.news = Announcements()
        self.addCleanup(self.news.stop)
        self.config = os.path.join(self.desktop.folder, self.id())
        self.tools = os.path.join(self.config, "tools")
        os.makedirs(self.tools)

    def start(self):
        """The program alone in its process table, with a shell that starts an agent when it is told to."""
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        script = """trap 'claude 1000 & ' USR1; "$0" & while kill -0 $! 2>/dev/null; do wait $!; done; wait"""
        self.outer = self.processes.start(
            Agents.apart("bash", "-c", script, VIGILO),
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, XDG_CONFIG_HOME=self.config,
                XDG_CURRENT_DESKTOP="XFCE", DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
                PATH=self.tools + ":/usr/bin:/bin",
            ),
        )
        self.desktop.wait_for("push button", "Start Awake Session")

    def tool(self, name):
        """A program of the desktop that leaves a mark when it is started; the mark's path."""
        path = os.path.join(self.tools, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\n: >%s.opened\n" % path)
        os.chmod(path, 0o755)
        return path + ".opened"

    def press(self, role, name):
        self.desktop.wait_for(role, name).press()

    def choose(self, menu, row):
        self.press("push button", menu)
        self.desktop.wait_for("popup menu", "Vigilo" if menu == "Main menu" else menu)
        self.press("menu item", row)
        wait_until(lambda: not self.desktop.find("menu item", row), "the menu to close")

    def focused(self):
        names = [(node.role, node.name) for node in self.desktop.nodes() if "focused" in node.states]
        return names[-1] if names else None

    def test_a_session_is_chosen_begun_and_ended(self):
        self.start()
        # That the window has come may have been told before anybody could be told.
        wait_until(lambda: self.focused() == ("push button", "Start Awake Session"), "the focus")
        for menu, row, value in (("Awake duration", "2 hours", "2 hours"), ("Screen mode", "Stay Visible", "Stay Visible")):
            self.choose(menu, row)
            self.news.wait_for(DESCRIPTION, "push button", menu)
            self.news.wait_for(CHECKED, "menu item", row)
            wait_until(lambda m=menu, v=value: self.desktop.find("push button", m).description == v, value)
        self.desktop.wait_for("panel", "For 2 hours using Stay Visible")
        self.news.forget()
        self.press("push button", "Start Awake Session")
        for role, name in (
            ("push button", "End Awake Session"), ("heading", "This Mac is staying awake"), ("label", "KEEPING AWAKE"),
        ):
            self.news.wait_for(NAME, role, name)
            self.desktop.wait_for(role, name)
        self.news.wait_for(SHOWING, "label", "Stay Visible")
        self.assertTrue(any(node.name.endswith("remaining") for node in self.desktop.nodes()))
        self.news.forget()
        self.press("push button", "End Awake Session")
        for role, name in (
            ("push button", "Start Awake Session"), ("heading", "Keep this Mac awake"), ("label", "NORMAL SLEEP"),
        ):
            self.news.wait_for(NAME, role, name)

    def test_buttons_tell_whether_their_menu_is_open(self):
        self.start()

        def buttons(state):
            return {node.name for node in self.desktop.nodes() if node.role == "push button" and state in node.states}

        self.assertEqual(buttons("expandable"), {"Awake duration", "Screen mode", "Main menu"})
        for menu in ("Awake duration", "Screen mode", "Main menu", "Awake duration"):
            with self.subTest(menu=menu):
                self.assertEqual(buttons("expanded"), set())
                self.press("push button", menu)
                wait_until(lambda m=menu: buttons("expanded") == {m}, "the menu to be told open")
                self.display.key("Escape")
                wait_until(lambda: not buttons("expanded"), "the menu to be told closed")

    def test_an_agent_that_appears_is_told(self):
        self.start()
        os.symlink("/usr/bin/sleep", os.path.join(self.tools, "claude"))
        self.desktop.wait_for("label", "Watching for Claude Code and Codex")
        self.news.forget()
        os.kill(Agents.first(self.outer), signal.SIGUSR1)
        self.news.wait_for(NAME, "label", "1 agent process detected")

    def test_every_line_of_the_main_menu_does_what_it_says(self):
        settings = self.tool("xfce4-screensaver-preferences")
        self.start()
        self.press("push button", "Main menu")
        self.news.wait_for(FOCUSED, "popup menu", "Vigilo")
        lines = [
            (node.name, node.description) for node in self.desktop.nodes()
            if node.role == "menu item" and "showing" in node.states
        ]
        self.assertEqual(
            lines,
            [
                ("About Vigilo", ""), ("Show Vigilo", "Ctrl+O"), ("Keep Mac Awake", "Ctrl+K"),
                ("Start Agent Lock", "Ctrl+L"), ("Start with Apple Lock", ""), ("Lock Screen Settings…", "Ctrl+,"),
                ("Launch at Login", ""), ("Quit Vigilo", "Ctrl+Q"),
            ],
        )
        self.press("menu item", "Show Vigilo")
        self.choose("Main menu", "Lock Screen Settings…")
        wait_until(lambda: os.path.exists(settings), "the settings")
        self.choose("Main menu", "Launch at Login")
        entry = os.path.join(self.config, "autostart/io.github.vigilo.Vigilo.desktop")
        wait_until(lambda: os.path.exists(entry), "the entry")
        self.press("push button", "Main menu")
        self.assertIn("checked", self.desktop.wait_for("menu item", "Launch at Login").states)
        self.press("menu item", "Keep Mac Awake")
        self.news.wait_for(NAME, "heading", "This Mac is staying awake")
        self.choose("Main menu", "Stop Keeping Awake")
        self.news.wait_for(NAME, "heading", "Keep this Mac awake")
        self.choose("Main menu", "Start with Apple Lock")
        self.news.wait_for(NAME, "label", "Apple Lock")
        self.choose("Main menu", "Stop Keeping Awake")
        self.choose("Main menu", "About Vigilo")
        self.news.wait_for("window:activate", "frame", "About Vigilo")
        self.news.wait_for(FOCUSED, "push button", "Close")
        about = self.window("About Vigilo")
        self.assertEqual(about[0], ("dialog", "About Vigilo"))
        self.assertEqual([role for role, _ in about[1:]], ["heading", "label", "label", "link", "push button"])
        next(node for node in reversed(self.desktop.nodes()) if node.name == "Close").press()
        wait_until(lambda: not windows_named(self.display.name, "About Vigilo"), "the panel to close")
        self.choose("Main menu", "Start Agent Lock")
        self.news.wait_for("window:activate", "frame", "Agent Lock")
        self.press("push button", APPLE_LOCK)
        wait_until(lambda: not self.desktop.find("push button", APPLE_LOCK), "the lock to go")
        self.choose("Main menu", "Quit Vigilo")
        wait_until(lambda: not self.desktop.nodes(), "the end of the program")

    def window(self, title):
        """Roles and names of what a window shows."""
        nodes = [node for node in self.desktop.nodes() if "showing" in node.states]
        starts = [index for index, node in enumerate(nodes) if node.role == "frame"] + [len(nodes)]
        start = next(index for index in starts if nodes[index].name == title)
        end = next(index for index in starts if index > start)
        return [(node.role, node.name) for node in nodes[start + 1 : end]]

    def test_a_failure_is_told(self):
        os.makedirs(os.path.join(self.config, "autostart/io.github.vigilo.Vigilo.desktop"))
        self.start()
        self.choose("Main menu", "Launch at Login")
        self.news.wait_for(SHOWING, "alert", "Couldn’t update Launch at Login")
        self.news.wait_for(FOCUSED, "push button", "OK")
        alert = self.desktop.find("alert", "Couldn’t update Launch at Login")
        self.assertIn("Is a directory", alert.description)
        self.press("push button", "OK")
        wait_until(lambda: not self.desktop.find("push button", "OK"), "the alert to go")

    def test_the_lock_is_read_and_opened(self):
        lock = LockScreen(
            self, self.desktop, self.display, self.processes, VIGILO, MODULE, [("claude", "webapp", False, 1)]
        )
        self.news.wait_for("window:activate", "frame", "Agent Lock")
        self.news.wait_for(FOCUSED, "push button", UNLOCK)
        (row,) = [node for node in lock.shown() if node.role == "list item"]
        self.assertRegex(row.name, r"^Claude Code, webapp, (BUSY SIGNAL|DETECTED), \d+[smh]")
        lock.pam.finger_does("say", "Place_your_finger_on_the_reader", "hang")
        self.press("push button", UNLOCK)
        self.news.wait_for(SHOWING, "dialog", "Unlock Vigilo")
        self.news.wait_for(FOCUSED, "password text", "")
        self.desktop.wait_for("label", "Place your finger on the reader")
        self.news.wait_for(NAME, "label", "Place your finger on the reader")
        self.display.key(*"wrong")
        self.assertEqual([node.text() for node in lock.prompt() if "wrong" in node.text()], [])
        self.news.forget()
        self.display.key("Return")
        self.news.wait_for(NAME, "label", "That password is not right.")
        self.news.wait_for(DESCRIPTION, "password text", "")
        self.press("push button", "Stay Locked")
        self.news.wait_for(FOCUSED, "push button", UNLOCK)
        wait_until(lambda: not lock.prompt(), "the prompt to go")
        self.press("push button", UNLOCK)
        wait_until(lambda: lock.focused() == ("password text", ""), "the field")
        self.display.key(*"right", "Return")
        wait_until(lambda: not lock.shown(), "the lock to go")
        self.desktop.wait_for("push button", "End Awake Session")


if __name__ == "__main__":
    reason = OddPam.missing() or Agents.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
