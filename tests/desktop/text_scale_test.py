#!/usr/bin/python3
"""Texts at twice their size, as a desktop asks for them, on displays that have room for that and on
displays that have not: everything stays inside its frame, and nothing lies over its neighbour.
Usage: text_scale_test.py VIGILO MODULE"""

import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.agents import Agents
from harness.display import VirtualDisplay, windows_named
from harness.lock_screen import UNLOCK, LockScreen
from harness.pam import OddPam
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
SIZES = ((1920, 1080), (1366, 768), (1024, 600), (768, 1366))
SCALE = 2
# What others lie in.
HOLDERS = ("panel", "dialog", "list", "alert")
# In pixels; a line of text is higher than its letters.
TOLERANCE = 2 * SCALE


def overlap(first, second):
    across = min(first[2], second[2]) - max(first[0], second[0])
    down = min(first[3], second[3]) - max(first[1], second[1])
    return across > TOLERANCE and down > TOLERANCE


def inside(box, frame):
    return frame[0] <= box[0] and frame[1] <= box[1] and box[2] <= frame[2] and box[3] <= frame[3]


class TextScale(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def begin(self, width, height):
        self.width, self.height = width, height
        self.display = VirtualDisplay("%dx%dx24" % (width, height))
        self.addCleanup(self.display.stop)
        self.processes = Processes()
        self.addCleanup(self.processes.stop)

    def start(self, **variables):
        """The program on its own, with the text scale in the way that the variables or the display tell it."""
        config = os.path.join(self.desktop.folder, "config-%s-%d" % (self.id(), self.width))
        # A directory in the place of a file: starting at login cannot be switched on.
        os.makedirs(os.path.join(config, "autostart/io.github.vigilo.Vigilo.desktop"), exist_ok=True)
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.vigilo = self.processes.start(
            [VIGILO],
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, XDG_CONFIG_HOME=config, **variables
            ),
        )
        self.window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.desktop.wait_for("push button", "Start Awake Session")
        self.display.settle()

    def frame(self, title):
        """The window's box in pixels of the screen."""
        window = wait_until(lambda: windows_named(self.display.name, title), title)[-1]
        left, top = self.display.position(window)
        width, height = self.display.size(window)
        self.assertTrue(
            0 <= left and 0 <= top and left + width <= self.width and top + height <= self.height,
            "%s at %d, %d, %d × %d" % (title, left, top, width, height),
        )
        return left, top, left + width, top + height

    def check(self, nodes, frame):
        """That all of them are inside, and none lies over another."""
        shown = [node for node in nodes if "showing" in node.states and node.role not in HOLDERS]
        self.assertGreater(len(shown), 2)
        boxes = [(node.name, [edge * SCALE for edge in node.box()]) for node in shown]
        for name, (left, top, right, bottom) in boxes:
            self.assertTrue(
                frame[0] - 1 <= left < right <= frame[2] + 1 and frame[1] - 1 <= top < bottom <= frame[3] + 1,
                "%s at %s in %s" % (name, (left, top, right, bottom), frame),
            )
        for index, (name, box) in enumerate(boxes):
            for other, other_box in boxes[index + 1 :]:
                self.assertFalse(overlap(box, other_box), "%s %s, %s %s" % (name, box, other, other_box))

    def check_window(self, title):
        self.display.settle()
        self.check(self.inside(self.desktop.nodes(), title), self.frame(title))

    def inside(self, nodes, title):
        """The nodes of the last window with this title."""
        starts = [index for index, node in enumerate(nodes) if node.role == "frame"]
        start = [index for index in starts if nodes[index].name == title][-1]
        end = min([index for index in starts if index > start], default=len(nodes))
        return nodes[start + 1 : end]

    def check_menu(self, name):
        """The menu that is open over the window: as much as there is room for, the rest to scroll to."""
        self.display.settle()
        frame = self.frame("Vigilo")
        rows = [node for node in self.desktop.nodes() if node.role == "menu item" and "showing" in node.states]
        boxes = [[edge * SCALE for edge in node.box()] for node in rows]
        self.assertTrue(all(frame[0] <= box[0] < box[2] <= frame[2] for box in boxes), boxes)
        for key, index in (("Home", 0), ("End", -1)):
            self.display.key(key)
            wait_until(lambda i=index: "focused" in self.rows()[i].states, "the focus")
            box = [edge * SCALE for edge in self.rows()[index].box()]
            self.assertTrue(frame[1] <= box[1] < box[3] <= frame[3], box)
        self.display.key("Escape")
        wait_until(lambda: not self.rows(), name + " to close")

    def rows(self):
        return [node for node in self.desktop.nodes() if node.role == "menu item" and "showing" in node.states]

    def open(self, name):
        self.desktop.wait_for("push button", name).press()
        wait_until(self.rows, "the rows")

    def at_every_size(self, check):
        for width, height in SIZES:
            with self.subTest(width=width, height=height):
                try:
                    self.begin(width, height)
                    check()
                finally:
                    self.doCleanups()

    def check_everything_but_the_lock(self):
        self.start(QT_FONT_DPI="192")
        self.check_window("Vigilo")
        for menu in ("Awake duration", "Screen mode", "Main menu"):
            self.open(menu)
            self.check_menu(menu)
        self.open("Main menu")
        self.desktop.find("menu item", "About Vigilo").press()
        self.desktop.wait_for("push button", "Close")
        self.check_window("About Vigilo")
        self.display.key("Escape")
        wait_until(lambda: not windows_named(self.display.name, "About Vigilo"), "the panel to close")
        self.open("Main menu")
        self.desktop.find("menu item", "Launch at Login").press()
        self.desktop.wait_for("push button", "OK")
        self.check_window("Vigilo")
        self.desktop.find("push button", "OK").press()
        wait_until(lambda: not self.desktop.find("push button", "OK"), "the alert to go")
        self.desktop.find("push button", "Screen mode").press()
        self.desktop.wait_for("menu item", "Stay Visible").press()
        self.desktop.find("push button", "Start Awake Session").press()
        self.desktop.wait_for("heading", "This Mac is staying awake")
        self.check_window("Vigilo")

    def test_the_resource_of_an_x_server_counts_as_well(self):
        self.begin(1920, 1080)
        subprocess.run(
            ["xrdb", "-merge"], input=b"Xft.dpi: 192\n", env=environment(DISPLAY=self.display.name), check=True
        )
        self.start()
        self.assertEqual(self.display.size(self.window), (1440, 1008))
        self.check_window("Vigilo")

    def test_windows_menus_and_panels(self):
        self.at_every_size(self.check_everything_but_the_lock)

    def check_lock_and_prompt(self):
        agents = [("claude", "project-%02d" % number, False, 1) for number in range(5)]
        lock = LockScreen(
            self, self.desktop, self.display, self.processes, VIGILO, MODULE, agents, QT_FONT_DPI="192"
        )
        self.display.settle()
        screen = (0, 0, self.width, self.height)
        nodes = lock.shown()
        (rows,) = [node.box() for node in nodes if node.role == "list"]
        # Others are scrolled away.
        seen = [node for node in nodes if node.role == "list item" and inside(node.box(), rows)]
        self.assertGreater(len(seen), 0)
        self.check([node for node in nodes if node.role != "list item"] + seen, screen)
        wait_until(lambda: lock.focused() == ("push button", UNLOCK), "the focus")
        lock.pam.does("shout", "ask", "Password:")
        lock.pam.finger_does("say", "Place_your_finger_on_the_reader_and_then_" + "again_" * 20, "hang")
        self.display.key("Return")
        wait_until(lambda: any("more" in node.name for node in lock.prompt()), "the prompt with its message")
        wait_until(lambda: any("finger" in node.name for node in lock.prompt()), "the reader's message")
        self.display.settle()
        self.check(lock.prompt(), screen)

    def test_the_lock_screen_and_its_prompt(self):
        self.at_every_size(self.check_lock_and_prompt)


if __name__ == "__main__":
    reason = OddPam.missing() or Agents.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
