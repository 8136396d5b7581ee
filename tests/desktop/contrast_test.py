#!/usr/bin/python3
"""How every text stands out from what it is written on, as designed and where the desktop asks for more,
measured on pictures of the running program, in which the screen reader's interface tells where the texts
are. Usage: contrast_test.py VIGILO MODULE"""

import json
import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.agents import Agents
from harness.display import VirtualDisplay, windows_named
from harness.lock_screen import UNLOCK, LockScreen
from harness.pam import OddPam
from harness.pictures import Picture, contrast
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
SCALE = 2  # so that even a thin stroke has a pixel of its full colour
LEAST_OF_EDGES = 3

# Colour of the design, and dimmer: a part of the text's name, and its contrast.
FIXED = {
    # White on the blue of the two large buttons, which the design names.
    "Start Awake Session": 3.6,
    UNLOCK: 3.6,
    # The design's third rank of text, a quarter white: a remark that nobody needs, and the running time
    # of an agent, which comes after its state.
    "Keeping awake prevents sleep": 2.4,
    "DETECTED, ": 2.2,
    "BUSY SIGNAL, ": 2.2,
    # The sign beside the text, white at 45 %.
    "remains awake even when": 4.5,
}
# What is chosen from the main menu, and the button of the panel that comes then.
PANELS = (("About Vigilo", "Close"), ("Launch at Login", "OK"))
ROUND = ("push button", "menu item", "panel")
CORNER = 5
FRAMES = ("application", "frame", "dialog", "list", "popup menu", "alert", "separator")


def setUpModule():
    # One for all: the library that reads the tree keeps its first connection.
    Contrast.desktop = AccessibleDesktop()
    unittest.addModuleCleanup(Contrast.desktop.stop)


class Contrast(unittest.TestCase):
    desktop = None
    least = 4.5
    fixed = FIXED

    def setUp(self):
        self.display = VirtualDisplay("%dx%dx24" % (1440 * SCALE, 900 * SCALE))
        self.addCleanup(self.display.stop)
        self.processes = Processes()
        self.addCleanup(self.processes.stop)

    def start(self):
        config = os.path.join(self.desktop.folder, self.id())
        # A directory in the place of a file: starting at login cannot be switched on.
        os.makedirs(os.path.join(config, "autostart/io.github.vigilo.Vigilo.desktop"))
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.processes.start(
            [VIGILO],
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, XDG_CONFIG_HOME=config, QT_SCALE_FACTOR=str(SCALE)
            ),
        )
        self.window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.desktop.wait_for("push button", "Start Awake Session")
        self.display.move_pointer(0, 0)

    def check(self, nodes):
        """Measures the texts of these nodes; returns how many there were."""
        self.display.settle()
        picture = Picture(self.display.picture())
        count = 0
        for node in nodes:
            if node.role in FRAMES or "showing" not in node.states:
                continue
            left, top, right, bottom = [edge * SCALE for edge in node.box()]
            # What round corners leave of the box is no writing.
            corner = CORNER * SCALE if node.role in ROUND and bottom - top >= 4 * CORNER * SCALE else 0
            box = left + corner, top + corner, right - corner, bottom - corner
            contrasts = [value for _, value in picture.texts(box, SCALE)]
            fixed = [value for name, value in self.fixed.items() if name in node.name]
            with self.subTest(text=node.name):
                if fixed:
                    self.assertAlmostEqual(min(contrasts), fixed[0], delta=0.3)
                others = [value for value in contrasts if not fixed or abs(value - fixed[0]) > 0.3]
                self.assertTrue(all(value >= self.least for value in others), contrasts)
            count += len(contrasts)
        return count

    def last_window(self):
        nodes = self.desktop.nodes()
        return nodes[[index for index, node in enumerate(nodes) if node.role == "frame"][-1] :]

    def is_shown(self, button):
        """Whether the last window is a panel with this button, and has come up."""
        nodes = self.last_window()
        # One that goes just now may have lost its parts.
        return (
            len(nodes) > 1 and nodes[1].role in ("alert", "dialog")
            and nodes[-1].name == button and "showing" in nodes[-1].states
        )

    def open_panel(self, item, button):
        self.desktop.find("push button", "Main menu").press()
        self.desktop.wait_for("menu item", item).press()
        self.desktop.wait_for("push button", button)
        wait_until(lambda: self.is_shown(button), "the panel")

    def close_panel(self, button):
        self.display.key("Escape")
        wait_until(lambda: not self.is_shown(button), "the panel to close")

    def menu(self):
        return [node for node in self.desktop.nodes() if node.role == "menu item" and "showing" in node.states]

    def test_main_window(self):
        self.start()
        self.assertGreaterEqual(self.check(self.desktop.nodes()), 10)
        for menu, rows in (("Awake duration", 6), ("Screen mode", 3), ("Main menu", 8)):
            self.desktop.find("push button", menu).press()
            wait_until(self.menu, "the menu")
            self.display.key("Home")
            self.assertGreaterEqual(self.check(self.menu()), rows)
            self.display.key("Escape")
            wait_until(lambda: not self.menu(), "the menu to close")
        self.desktop.find("push button", "Screen mode").press()
        self.desktop.wait_for("menu item", "Stay Visible").press()
        self.desktop.find("push button", "Start Awake Session").press()
        self.desktop.wait_for("heading", "This Mac is staying awake")
        self.assertGreaterEqual(self.check(self.desktop.nodes()), 8)

    def test_panels(self):
        self.start()
        for item, button in PANELS:
            self.open_panel(item, button)
            self.assertGreaterEqual(self.check(self.last_window()), 3)
            self.close_panel(button)

    def lock(self, agents):
        return LockScreen(
            self, self.desktop, self.display, self.processes, VIGILO, MODULE, agents, QT_SCALE_FACTOR=str(SCALE)
        )

    def test_lock_screen_and_prompt(self):
        lock = self.lock([("claude", "webapp", True, 1), ("codex", "compiler", False, 4)])
        self.display.move_pointer(0, 0)
        wait_until(lambda: any("BUSY" in node.name for node in lock.shown()), "the busy one")
        self.assertGreaterEqual(self.check(lock.shown()), 16)
        lock.pam.finger_does("say", "Place_your_finger", "hang")
        wait_until(lambda: lock.focused() == ("push button", UNLOCK), "the focus")
        self.display.key("Return")
        wait_until(lambda: any("finger" in node.name for node in lock.prompt()), "the prompt")
        self.assertGreaterEqual(self.check(lock.prompt()), 5)
        self.display.key(*"wrong", "Caps_Lock", "Return")
        self.addCleanup(self.display.key, "Caps_Lock")
        wait_until(lambda: any("not right" in node.name for node in lock.prompt()), "the refusal")
        self.display.key("Tab")
        self.assertGreaterEqual(self.check(lock.prompt()), 5)

    def test_lock_screen_without_agents(self):
        lock = self.lock([])
        self.display.move_pointer(0, 0)
        self.assertGreaterEqual(self.check(lock.shown()), 9)


class HighContrast(Contrast):
    """Where the desktop asks for it: no colour of the design is dimmer then."""

    least = 7
    fixed = {}

    def setUp(self):
        super().setUp()
        settings = json.dumps({"org.freedesktop.appearance": {"contrast": 1}})
        self.processes.serve("fake_settings_portal.py", settings, env=environment())

    def test_edges(self):
        self.start()
        self.display.settle()
        picture = Picture(self.display.picture(), SCALE, self.display.position(self.window))
        # Of the state, the sentence, a menu in it and the large button: on the edge, and outside.
        for edge, outside in (((600, 33), (600, 31)), ((350, 301), (350, 299)), ((285, 311), (285, 308)),
                              ((300, 376.6), (300, 374))):
            with self.subTest(edge=edge):
                self.assertGreaterEqual(contrast(picture.colour(*edge), picture.colour(*outside)), LEAST_OF_EDGES)

    def check_edge(self):
        """That the last window has an edge on every side."""
        self.display.settle()
        picture = Picture(self.display.picture())
        left, top, right, bottom = [edge * SCALE for edge in self.last_window()[0].box()]
        x, y, depth = (left + right) // 2, (top + bottom) // 2, 3 * SCALE
        for edge, inside in (((left, y), (left + depth, y)), ((right - 1, y), (right - 1 - depth, y)),
                             ((x, top), (x, top + depth)), ((x, bottom - 1), (x, bottom - 1 - depth))):
            with self.subTest(edge=edge):
                self.assertGreaterEqual(contrast(picture.colour(*edge), picture.colour(*inside)), LEAST_OF_EDGES)

    def test_edges_of_windows(self):
        self.start()
        self.check_edge()
        for item, button in PANELS:
            self.open_panel(item, button)
            self.check_edge()
            self.close_panel(button)


if __name__ == "__main__":
    reason = OddPam.missing() or Agents.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
