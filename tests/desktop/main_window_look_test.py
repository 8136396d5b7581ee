#!/usr/bin/python3
"""Where things are in the main window and what colour they have, at three scales, against the
numbers of its design. Usage: main_window_look_test.py VIGILO"""

import math
import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.agents import Agents
from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.pictures import Picture
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
HERE = os.path.dirname(os.path.abspath(__file__))

# Colours of flat or smooth places: (x, y) in points of the window, then red, green, blue.
GROUND = {
    (5, 5): (13, 27, 54), (20, 60): (14, 30, 60), (60, 200): (13, 27, 55), (150, 120): (14, 30, 60),
    (200, 300): (10, 16, 30), (360, 30): (9, 13, 24), (600, 100): (9, 11, 19), (700, 300): (15, 14, 31),
    (700, 540): (22, 17, 48), (650, 480): (24, 18, 51), (560, 520): (20, 16, 43), (360, 540): (9, 11, 20),
    (40, 540): (9, 11, 19), (300, 500): (9, 11, 19), (50, 36): (44, 124, 252), (76, 60): (163, 96, 243),
}
IDLE = GROUND | {(240, 400): (10, 132, 255), (470, 400): (10, 132, 255)}
# The hairlines around the state and around the sentence, each over its own ground.
IDLE_OUTLINES = {(600, 33.5): (40, 42, 48), (350, 301.5): (36, 39, 46)}
# The grounds of the state, the sentence and its two menus, and the dot of the state.
IDLE_SURFACES = {
    (668, 47): (23, 25, 32), (176, 329): (21, 25, 38), (405, 329): (21, 22, 32), (219, 329): (41, 44, 54),
    (535, 329): (44, 44, 59), (567, 47): (93, 94, 99),
}
ACTIVE_SURFACES = {(670, 47): (23, 24, 32)}
# The dot glows, and only then.
ACTIVE_GLOW = {(557, 47): (26, 46, 38)}
ACTIVE = GROUND | {(561.5, 47): (48, 209, 88)}
# The design's own picture rounds down in each of its layers, which shows most below the translucent
# button.
ACTIVE_BUTTON = {(260, 375): (33, 35, 43), (470, 385): (37, 36, 51)}

# Name: area looked at (left, top, right, bottom), least brightness of what counts, its box.
HEADER = {
    "emblem": ((40, 20, 86, 70), 90, (44, 28, 82, 66)),
    "name": ((90, 30, 200, 46), 150, (93.5, 34, 135, 46)),
    "tagline": ((90, 47, 300, 66), 90, (93, 47, 216.5, 63.5)),
    "footer": ((160, 512, 570, 534), 90, (179.5, 520, 541, 531)),
}
IDLE_BOXES = HEADER | {
    "state": ((573, 40, 670, 56), 150, (577.5, 43.5, 662.5, 50.5)),
    "symbol": ((330, 150, 390, 200), 90, (344.5, 167, 376.5, 196.5)),
    "headline": ((150, 205, 570, 250), 128, (211, 217, 510, 245.5)),
    "status": ((150, 252, 570, 275), 90, (247.5, 258.5, 472.5, 270.5)),
    "duration": ((240, 315, 356, 340), 150, (245.5, 323, 342, 335)),
    "mode": ((415, 315, 530, 340), 150, (423.5, 322.5, 525.5, 335)),
    "button": ((200, 370, 520, 430), 200, (236, 376.5, 484, 422.5)),
}
ACTIVE_BOXES = HEADER | {
    "symbol": ((330, 180, 390, 221), 60, (343, 183.5, 377, 217.5)),
    "headline": ((150, 225, 570, 268), 128, (174.5, 236, 545, 264.5)),
    "status": ((150, 272, 570, 295), 90, (307.5, 277.5, 411.5, 289.5)),
    "button title": ((280, 365, 440, 395), 150, (293.5, 376, 428, 385.5)),
}

# Colours of texts and signs: area looked at, then red, green, blue. Only at scale 2 have all strokes a pixel of
# their own.
INK = {
    (90, 30, 140, 43): (255, 255, 255), (150, 47, 300, 66): (146, 153, 167), (160, 512, 570, 534): (148, 147, 158),
}
IDLE_INK = INK | {
    (330, 150, 390, 200): (122, 173, 255), (150, 205, 570, 250): (255, 255, 255),
    (150, 252, 570, 275): (144, 147, 154),
    (576, 40, 664, 56): (255, 255, 255), (180, 320, 206, 340): (148, 150, 156), (363, 320, 404, 340): (148, 149, 153),
    (223, 320, 330, 340): (255, 255, 255), (330, 320, 348, 338): (179, 180, 183), (415, 320, 515, 340): (255, 255, 255),
    (285, 390, 440, 408): (255, 255, 255),
}
ACTIVE_INK = INK | {
    (330, 180, 390, 221): (48, 209, 88), (150, 225, 570, 268): (255, 255, 255), (150, 272, 570, 295): (144, 146, 151),
    (571, 40, 664, 56): (255, 255, 255), (300, 318, 420, 340): (158, 199, 255), (285, 365, 440, 395): (255, 255, 255),
}


def distance(found, expected):
    """How far a colour or a box is from another at most; infinitely where there is none."""
    return max(abs(a - b) for a, b in zip(found, expected)) if found else math.inf


class MainWindowLook(unittest.TestCase):
    def check_colours(self, picture, colours, tolerance=2):
        for (x, y), expected in colours.items():
            difference = distance(picture.colour(x, y), expected)
            self.assertLessEqual(difference, tolerance, "colour at %s, %s: %s" % (x, y, picture.colour(x, y)))

    def check_boxes(self, picture, boxes):
        for name, (area, brightness, expected) in boxes.items():
            box = picture.ink(*area, brightness)
            self.assertIsNotNone(box, name)
            self.assertLessEqual(distance(box, expected), 2, "%s: %s" % (name, box))

    def check_ink(self, picture, colours):
        for area, expected in colours.items():
            colour = picture.strongest(*area)
            difference = distance(colour, expected)
            self.assertLessEqual(difference, 3, "ink in %s: %s" % (area, colour))

    def test_both_states_look_like_their_design_at_every_scale(self):
        for scale in (1, 1.5, 2):
            with self.subTest(scale=scale), VirtualDisplay("1600x1240x24") as display, \
                    SessionBus() as bus, Processes() as processes:
                variables = environment(DISPLAY=display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=bus.address)
                processes.serve("fake_power_service.py", "plasma", "grant", env=variables)
                processes.start(
                    Agents.alone(VIGILO),
                    env=variables | {
                        "QT_SCALE_FACTOR": str(scale),
                        "FONTCONFIG_FILE": os.path.join(HERE, "../harness/inter.conf"),
                    },
                )
                window = wait_until(lambda: windows_named(display.name, "Vigilo"), "the window")[0]
                origin = display.position(window)
                wait_until(
                    lambda: Picture(display.picture(), scale, origin).colour(5, 5) != (0, 0, 0), "the content"
                )
                display.settle()
                idle = Picture(display.picture(), scale, origin)
                self.check_colours(idle, IDLE)
                self.check_colours(idle, IDLE_OUTLINES, tolerance=4)
                self.check_colours(idle, IDLE_SURFACES)
                self.check_boxes(idle, IDLE_BOXES)
                if scale == 2:
                    self.check_ink(idle, IDLE_INK)
                # "2 hours" is the third row of its menu, "Stay Visible" the first.
                for x, y, row in ((300, 329, 2), (470, 329, 0)):
                    display.click(window, x * scale, y * scale)
                    display.settle()
                    display.key("Home", *["Down"] * row, "Return")
                    display.settle()
                display.click(window, 360 * scale, 385 * scale)
                display.move_pointer(0, 0)
                area, brightness, place = ACTIVE_BOXES["symbol"]
                wait_until(
                    lambda: distance(Picture(display.picture(), scale, origin).ink(*area, brightness), place) <= 2,
                    "the symbol to have glided to its place",
                )
                display.settle(quiet=1)
                active = Picture(display.picture(), scale, origin)
                self.check_colours(active, ACTIVE)
                self.check_colours(active, ACTIVE_BUTTON, tolerance=3)
                self.check_boxes(active, ACTIVE_BOXES)
                self.check_colours(active, ACTIVE_SURFACES)
                self.check_colours(active, ACTIVE_GLOW, tolerance=4)
                if scale == 2:
                    self.check_ink(active, ACTIVE_INK)


if __name__ == "__main__":
    unittest.main(verbosity=2)
