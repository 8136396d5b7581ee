#!/usr/bin/python3
"""Where things are on the lock screen and what colour they have, at three scales, against the numbers
of its design. Usage: agent_lock_look_test.py VIGILO"""

import os
import signal
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
WIDTH, HEIGHT = 1440, 900

# Colours of flat or smooth places: (x, y) in points, then red, green, blue.
GROUND = {
    (30, 150): (5, 11, 22), (200, 100): (6, 20, 39), (390, 200): (7, 26, 52), (500, 300): (7, 23, 46),
    (600, 60): (6, 18, 34), (1000, 100): (6, 8, 15), (1400, 200): (6, 8, 15), (1300, 700): (20, 14, 32),
    (1100, 740): (29, 19, 44), (1000, 620): (24, 16, 36), (900, 860): (18, 13, 30), (100, 860): (6, 8, 15),
    (720, 850): (8, 8, 17), (1420, 880): (10, 9, 20), (445, 500): (16, 24, 37), (995, 500): (26, 22, 36),
}
EMPTY = GROUND | {(580, 600): (10, 132, 255), (865, 600): (10, 132, 255)}
AGENTS = GROUND | {(577, 690): (10, 132, 255)}
# The design's own picture rounds down in each of its layers, which shows most where there are three.
ROWS = {(580, 600): (12, 14, 21), (865, 600): (20, 18, 28)}
OUTLINE = {(440.5, 500): (34, 42, 54), (999.5, 500): (43, 40, 54)}
SHADOW = {(680, 200): (19, 19, 45), (760, 284): (29, 19, 48)}
# The grounds of the state and of the icons.
BADGE = {(632, 407): (21.6, 28.1, 39.9), (806, 407): (23, 23.6, 32.8)}
TILES = {(474, 427): (53, 45, 33), (504, 427): (53, 44, 32), (504, 493): (28, 46, 66), (504, 559): (53, 40, 23)}

# Colours of texts and signs, by the names of their boxes. Only at scale 2 have all strokes a pixel of their own.
WHITE, GREEN, ORANGE, BLUE = (255, 255, 255), (48, 209, 88), (255, 159, 10), (102, 184, 255)
INK = {
    "title": WHITE, "subtitle": (142, 148, 157), "badge dot": GREEN, "badge": WHITE, "header": (147, 152, 160),
    "remaining": (140, 189, 255), "unlock": WHITE, "Apple Lock": (128, 184, 255), "closing": (82, 76, 92),
}
EMPTY_INK = INK | {"card symbol": (122, 124, 130), "card title": WHITE, "card detail": (145, 148, 152)}
AGENTS_INK = INK | {
    "icon 1": ORANGE, "icon 2": BLUE, "icon 3": ORANGE, "dot 1": GREEN, "dot 2": GREEN, "dot 3": (110, 108, 115),
    "footnote": (149, 149, 154),
} | {
    "%s %d" % (name, row): colour for row in (1, 2, 3) for name, colour in (
        ("name", WHITE), ("project", (145, 148, 153)), ("status", WHITE), ("runtime", (79, 77, 86)))
}

# Name: area looked at (left, top, right, bottom), least brightness of what counts, its box. A side
# without a number is where a text begins whose length is not always the same.
EMPTY_BOXES = {
    "emblem": ((650, 180, 790, 300), 90, (674, 194.5, 766, 286.5)),
    "title": ((560, 300, 880, 350), 150, (626.5, 313.5, 814, 346)),
    "subtitle": ((500, 350, 940, 380), 90, (554.5, 356.5, 884.5, 371)),
    "badge dot": ((630, 396, 654, 420), 150, (639.5, 403, 647.5, 411)),
    "badge": ((650, 396, 810, 420), 150, (656, 403, 799, 410.5)),
    "header": ((450, 450, 700, 475), 90, (456, 461, 540.5, 468)),
    "remaining": ((800, 450, 990, 475), 120, (901.5, 459.5, 983.5, 470.5)),
    "card symbol": ((460, 490, 496, 530), 90, (470.5, 502.5, 491.5, 516)),
    "card title": ((500, 490, 900, 510), 150, (504.5, 495.5, 739, 508)),
    "card detail": ((500, 511, 950, 530), 90, (504.5, 513.5, 808, 524.5)),
    "footnote": ((450, 540, 950, 566), 90, (457, 549, 794.5, 558.5)),
    "unlock": ((540, 580, 900, 650), 200, (570, 595, 870, 638)),
    "Apple Lock": ((600, 654, 840, 680), 150, (652.5, 660.5, 787.5, 671.5)),
    "closing": ((440, 685, 1000, 710), 50, (472.5, 694, 968, 705)),
}
AGENTS_BOXES = {
    "emblem": ((650, 111, 790, 231), 90, (674, 125, 766, 217)),
    "title": ((560, 231, 880, 281), 150, (626.5, 244, 814, 276.5)),
    "subtitle": ((500, 281, 940, 311), 90, (554.5, 287.5, 884.5, 302)),
    "badge dot": ((630, 327, 654, 351), 150, (639.5, 334, 647.5, 342)),
    "badge": ((650, 327, 810, 351), 150, (656, 334, 799, 341.5)),
    "header": ((450, 381, 700, 406), 90, (456.5, 392, 573.5, 399)),
    "remaining": ((800, 381, 990, 406), 120, (905, 390.5, 983.5, 401.5)),
    "icon 1": ((470, 422, 508, 464), 150, (482, 435.5, 496.5, 450)),
    "name 1": ((515, 422, 800, 443), 150, (520.5, 430, 600.5, 439.5)),
    "project 1": ((515, 444, 800, 464), 90, (520.5, 448, 561.5, 458.5)),
    "dot 1": ((870, 422, 892, 443), 100, (881.5, 432.5, 887.5, 438.5)),
    "status 1": ((892, 422, 980, 443), 150, (894.5, 431.5, 969, 439)),
    "runtime 1": ((880, 443, 980, 464), 50, (None, 446.5, 969.5, 454)),
    "icon 2": ((470, 488, 508, 530), 150, (481, 502, 497, 516)),
    "name 2": ((515, 488, 800, 509), 150, (520.5, 496, 560, 505.5)),
    "project 2": ((515, 510, 800, 530), 90, (520.5, 513.5, 641, 524.5)),
    "dot 2": ((870, 488, 892, 509), 100, (881.5, 498.5, 887.5, 504.5)),
    "status 2": ((892, 488, 980, 509), 150, (894.5, 497.5, 969, 505)),
    "runtime 2": ((880, 509, 980, 530), 50, (None, 512.5, 969, 520)),
    "icon 3": ((470, 554, 508, 596), 150, (482, 567.5, 496.5, 582)),
    "name 3": ((515, 554, 800, 575), 150, (520.5, 562, 600.5, 571.5)),
    "project 3": ((515, 576, 800, 596), 90, (521, 579.5, 590.5, 588)),
    "dot 3": ((890, 554, 907, 575), 100, (898, 564.5, 904, 570.5)),
    "status 3": ((907, 554, 980, 575), 150, (910.5, 563.5, 968.5, 571)),
    "runtime 3": ((880, 575, 980, 596), 50, (None, 578.5, 969, 586.5)),
    "footnote": ((450, 609, 950, 635), 90, (457, 618, 794.5, 627.5)),
    "unlock": ((540, 649, 900, 719), 200, (570, 664, 870, 707)),
    "Apple Lock": ((600, 723, 840, 749), 150, (652.5, 729.5, 787.5, 740.5)),
    "closing": ((440, 754, 1000, 779), 50, (472.5, 763, 968, 774)),
}
RUNNING = [
    ("claude", "webapp", True, 1), ("codex", "compiler", True, 4), ("claude", None, False, 1),
]


class AgentLockLook(unittest.TestCase):
    def check_colours(self, picture, colours, tolerance=2):
        for (x, y), expected in colours.items():
            colour = picture.surface_colour(x, y)
            difference = max(abs(a - b) for a, b in zip(colour, expected))
            self.assertLessEqual(difference, tolerance, "colour at %s, %s: %s" % (x, y, colour))

    def check_boxes(self, picture, boxes):
        for name, (area, brightness, expected) in boxes.items():
            box = picture.ink(*area, brightness)
            self.assertIsNotNone(box, name)
            difference = max(abs(a - b) for a, b in zip(box, expected) if b is not None)
            self.assertLessEqual(difference, 2, "%s: %s" % (name, box))

    def check_ink(self, picture, boxes, colours):
        for name, expected in colours.items():
            colour = picture.strongest(*boxes[name][0])
            difference = max(abs(a - b) for a, b in zip(colour, expected))
            self.assertLessEqual(difference, 4, "ink of %s: %s" % (name, colour))

    @staticmethod
    def shows_two_busy(picture):
        """Whether the first two rows are busy, and not the third, which seems so when it has only just started."""
        return [picture.colour(884, y)[1] > 150 for y in (435, 501, 567)] == [True, True, False]

    def locked(self, scale, running, duration_row=None):
        """A picture of the lock screen with these agents, the session's duration chosen from its menu."""
        display = self.enterContext(VirtualDisplay("%dx%dx24" % (WIDTH * scale, HEIGHT * scale)))
        bus = self.enterContext(SessionBus())
        processes = self.enterContext(Processes())
        agents = self.enterContext(Agents(*running))
        variables = environment(DISPLAY=display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=bus.address)
        processes.serve("fake_power_service.py", "plasma", "grant", env=variables)
        vigilo = processes.start(
            Agents.apart(*agents.command(VIGILO)),
            env=variables | {
                "QT_SCALE_FACTOR": str(scale),
                "FONTCONFIG_FILE": os.path.join(HERE, "../harness/inter.conf"),
            },
        )
        window = wait_until(lambda: windows_named(display.name, "Vigilo"), "the window")[0]
        display.settle()
        if duration_row is not None:
            display.click(window, 300 * scale, 329 * scale)
            display.settle()
            display.key("Home", *["Down"] * duration_row, "Return")
            display.settle()
        display.click(window, 360 * scale, 399 * scale)
        display.move_pointer(0, 0)
        unlock = (577, 690) if running else (580, 600)
        wait_until(
            lambda: Picture(display.picture(), scale).colour(*unlock) == (10, 132, 255), "the lock screen"
        )
        if running:
            wait_until(lambda: self.shows_two_busy(Picture(display.picture(), scale)), "the busy ones")
        display.settle(quiet=0.2)
        picture = Picture(display.picture(), scale)
        os.kill(Agents.first(vigilo), signal.SIGKILL)
        vigilo.wait()
        return picture

    def test_without_agents(self):
        for scale in (1, 1.5, 2):
            with self.subTest(scale=scale):
                picture = self.locked(scale, [])
                self.check_colours(picture, EMPTY)
                self.check_colours(picture, OUTLINE | SHADOW, tolerance=4)
                self.check_boxes(picture, EMPTY_BOXES)
                self.check_colours(picture, BADGE)
                if scale == 2:
                    self.check_ink(picture, EMPTY_BOXES, EMPTY_INK)

    def test_with_agents(self):
        for scale in (1, 1.5, 2):
            with self.subTest(scale=scale):
                # "1 hour" is the second row.
                picture = self.locked(scale, RUNNING, duration_row=1)
                self.check_colours(picture, AGENTS)
                self.check_colours(picture, ROWS, tolerance=3)
                self.check_colours(picture, OUTLINE, tolerance=4)
                self.check_boxes(picture, AGENTS_BOXES)
                self.check_colours(picture, TILES)
                if scale == 2:
                    self.check_ink(picture, AGENTS_BOXES, AGENTS_INK)


if __name__ == "__main__":
    reason = Agents.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
