#!/usr/bin/python3
"""The lock screen and its prompt as a screen reader reads and presses them, and by keyboard alone.
Usage: agent_lock_accessibility_test.py VIGILO MODULE"""

import os
import re
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.agents import Agents
from harness.display import VirtualDisplay
from harness.lock_screen import APPLE_LOCK, UNLOCK, LockScreen
from harness.pam import OddPam
from harness.processes import Processes, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
UNLOCK_BUTTON, APPLE_LOCK_BUTTON = ("push button", UNLOCK), ("push button", APPLE_LOCK)
STAY_BUTTON = ("push button", "Stay Locked")
# The toolkit tells no name of a password field.
FIELD = ("password text", "")
RUNNING = [("claude", "webapp", True, 1), ("codex", "compiler", False, 4), ("claude", None, False, 1)]

ROWS = [
    ("list item", "Claude Code, webapp, BUSY SIGNAL"),
    ("list item", "Claude Code, Local session, DETECTED"),
    ("list item", "Codex, compiler • 4 processes, DETECTED"),
]


class AgentLockAccessibility(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def start(self, agents=()):
        self.display = VirtualDisplay()
        self.addCleanup(self.display.stop)
        processes = Processes()
        self.addCleanup(processes.stop)
        self.lock = LockScreen(self, self.desktop, self.display, processes, VIGILO, MODULE, agents)
        self.wait_for_focus(UNLOCK_BUTTON)

    def wait_for_focus(self, node):
        wait_until(lambda: self.lock.focused() == node, "the focus on %s %s" % node)

    def read(self, nodes):
        return [(node.role, node.name) for node in nodes]

    def rows(self):
        """What is read, without how long the agents have run."""
        return [(role, re.sub(r", \d+m?s?$", "", name)) for role, name in self.read(self.lock.shown())]

    def press(self, name):
        (node,) = [node for node in self.lock.shown() if (node.role, node.name) == ("push button", name)]
        node.press()

    def wait_for_prompt(self):
        self.wait_for_focus(FIELD)

    def described(self):
        """What is told with the password field."""
        return "".join(node.description for node in self.lock.prompt() if node.role == FIELD[0])

    def wait_for_layout(self, name):
        wait_until(lambda: ("label", "Keyboard layout " + name) in self.read(self.lock.prompt()), "layout " + name)

    def wait_for_no_prompt(self):
        wait_until(lambda: not self.lock.prompt(), "the prompt to go")

    def wait_for_no_lock(self):
        wait_until(lambda: not self.lock.shown(), "the lock to go")
        self.assertIsNotNone(self.desktop.wait_for("push button", "End Awake Session"))

    def test_it_is_read_in_order(self):
        self.start(RUNNING)
        # What programs have spent on their own start counts in their first moments.
        wait_until(lambda: [row for row in self.rows() if row[0] == "list item"] == ROWS, "the order of the rows")
        nodes = self.rows()
        self.assertEqual(
            nodes,
            [
                ("heading", "Agent Lock"),
                ("label", "Your screen is private. Your work stays awake."),
                ("label", "MAC IS STAYING AWAKE"),
                ("heading", "3 AGENTS DETECTED"),
                ("label", "Until you stop it"),
                ("list", "3 AGENTS DETECTED"),
                *ROWS,
                ("label", "Local process signal only • Busy is a CPU hint • prompts are never read"),
                UNLOCK_BUTTON,
                APPLE_LOCK_BUTTON,
                (
                    "label",
                    "Keeping awake prevents sleep; Agent Lock adds privacy. Apple Lock provides system security.",
                ),
            ],
        )

    def test_no_agents_are_read_as_such(self):
        self.start()
        nodes = self.read(self.lock.shown())
        start = nodes.index(("heading", "AGENT STATUS"))
        self.assertEqual(
            nodes[start : start + 4],
            [
                ("heading", "AGENT STATUS"),
                ("label", "Until you stop it"),
                (
                    "label",
                    "Watching for Claude Code and Codex. Your Mac remains awake even when no agent is detected.",
                ),
                ("label", "Local process signal only • Busy is a CPU hint • prompts are never read"),
            ],
        )

    def test_the_prompt_is_read_and_pressed(self):
        self.start()
        self.press(UNLOCK)
        self.wait_for_prompt()
        prompt = self.lock.prompt()
        self.assertEqual(
            self.read(prompt),
            [
                ("dialog", "Unlock Vigilo"),
                ("label", "Keyboard layout US"),
                ("heading", "Unlock Vigilo"),
                FIELD,
                STAY_BUTTON,
            ],
        )
        self.assertEqual(self.described(), "Password")
        self.display.key(*"wrong", "Return")
        # What was said is told with the field, and stands below it.
        wait_until(lambda: self.described() == "Password. That password is not right.", "the refusal")
        self.assertEqual(self.read(self.lock.prompt())[4], ("label", "That password is not right."))
        self.press("Stay Locked")
        self.wait_for_no_prompt()
        self.wait_for_focus(UNLOCK_BUTTON)
        self.press(UNLOCK)
        self.wait_for_prompt()
        self.display.key(*"right", "Return")
        self.wait_for_no_lock()

    def test_caps_lock_and_the_layout_are_told(self):
        self.start()
        self.display.key("Caps_Lock", "Return")
        self.wait_for_prompt()
        wait_until(lambda: self.described() == "Password. Caps Lock is on.", "the warning")
        self.display.key("Caps_Lock")
        wait_until(lambda: self.described() == "Password", "the end of the warning")
        self.wait_for_layout("US")
        self.display.use_layouts("fr,de", ",neo")
        self.wait_for_layout("FR")
        self.display.choose_layout(1)
        self.wait_for_layout("DE (neo)")
        self.display.choose_layout(0)
        self.wait_for_layout("FR")
        self.display.key("Escape")
        self.wait_for_no_prompt()

    def test_what_is_typed_is_told_to_nobody(self):
        self.start()
        self.display.key(*"secret")
        self.wait_for_prompt()
        self.display.settle(quiet=0.2)
        for node in self.desktop.nodes():
            for text in (node.name, node.description, node.text()):
                self.assertNotIn("secret", text)

    def test_the_keyboard_reaches_and_presses_everything(self):
        self.start()
        # One with all the keys that follow: xdotool would have to add a key that is missing, in a hurry.
        self.display.use_layouts("de", "")
        for key, button in (
            ("Tab", APPLE_LOCK_BUTTON), ("Tab", UNLOCK_BUTTON), ("shift+Tab", APPLE_LOCK_BUTTON),
            ("shift+Tab", UNLOCK_BUTTON),
        ):
            self.display.key(key)
            self.wait_for_focus(button)
        for key in ("Return", "KP_Enter", "space", "x", "adiaeresis"):
            with self.subTest(key=key):
                self.display.key(key)
                self.wait_for_prompt()
                self.display.key("Escape")
                self.wait_for_no_prompt()
                self.wait_for_focus(UNLOCK_BUTTON)
        self.display.key("x")
        self.wait_for_prompt()
        for key, node in (
            ("Tab", STAY_BUTTON), ("Tab", FIELD), ("shift+Tab", STAY_BUTTON), ("shift+Tab", FIELD), ("Tab", STAY_BUTTON),
        ):
            self.display.key(key)
            self.wait_for_focus(node)
        for press in ("Return", "space", "Escape"):
            with self.subTest(press=press):
                self.display.key(press)
                self.wait_for_no_prompt()
                self.wait_for_focus(UNLOCK_BUTTON)
                self.display.key("x")
                self.wait_for_prompt()
                self.display.key("Tab")
                self.wait_for_focus(STAY_BUTTON)

    def test_the_first_character_counts(self):
        self.start()
        self.display.key(*"right", "Return")
        self.wait_for_no_lock()


if __name__ == "__main__":
    reason = OddPam.missing() or Agents.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
