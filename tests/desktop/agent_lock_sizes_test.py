#!/usr/bin/python3
"""The lock screen and its prompt on small and on upright displays, with more agents than fit: the
buttons stay where they can be seen and pressed. Usage: agent_lock_sizes_test.py VIGILO MODULE"""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.agents import Agents
from harness.display import VirtualDisplay
from harness.lock_screen import APPLE_LOCK, UNLOCK, LockScreen
from harness.pam import OddPam
from harness.pictures import Picture
from harness.processes import Processes, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
SIZES = ((1024, 600), (800, 480), (512, 300), (600, 1024), (480, 800), (1080, 1920))
BLUE = (10, 132, 255)


class AgentLockSizes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def box(self, nodes, name):
        (node,) = [node for node in nodes if node.name == name]
        return node.box()

    def check_inside(self, box, width, height):
        left, top, right, bottom = box
        self.assertTrue(0 <= left < right <= width and 0 <= top < bottom <= height, box)

    def check_size(self, width, height, count):
        display = VirtualDisplay("%dx%dx24" % (width, height))
        self.addCleanup(display.stop)
        processes = Processes()
        self.addCleanup(processes.stop)
        agents = [("claude", "project-%02d" % number, False, 1) for number in range(count)]
        lock = LockScreen(self, self.desktop, display, processes, VIGILO, MODULE, agents)
        display.move_pointer(0, 0)
        display.settle()
        nodes = lock.shown()
        unlock, apple_lock = self.box(nodes, UNLOCK), self.box(nodes, APPLE_LOCK)
        self.check_inside(unlock, width, height)
        self.check_inside(apple_lock, width, height)
        self.assertLess(unlock[3], apple_lock[1])
        # In its upper left corner, beside its text and inside its rounding.
        self.assertEqual(Picture(display.picture()).colour(unlock[0] + 14, unlock[1] + 6), BLUE)
        rows = [node.box() for node in nodes if node.role == "list item"]
        for box in rows:
            # Those that are scrolled away may be below, but none is to the side.
            self.assertTrue(0 <= box[0] < box[2] <= width, box)
        self.assertTrue(0 <= rows[0][1] and rows[0][3] <= unlock[1], rows[0])
        before = display.picture()
        display.key("Down")
        wait_until(lambda: display.picture() != before, "the list to scroll")

        lock.pam.does("shout", "ask", "Password:")
        display.click_at((unlock[0] + unlock[2]) // 2, (unlock[1] + unlock[3]) // 2)
        wait_until(lambda: any("more" in node.name for node in lock.prompt()), "the prompt with its message")
        display.settle()
        for node in lock.prompt():
            if node.role in ("push button", "password text", "heading"):
                self.check_inside(node.box(), width, height)

    def test_both_buttons_and_the_prompt_are_on_every_display(self):
        for width, height in SIZES:
            with self.subTest(width=width, height=height):
                self.check_size(width, height, 40)
                self.doCleanups()


if __name__ == "__main__":
    reason = OddPam.missing() or Agents.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
