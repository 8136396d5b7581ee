#!/usr/bin/python3
"""The status item where no panel hosts such items: in the tray of an X11 panel, and nowhere.
Usage: tray_icon_test.py VIGILO"""

import os
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.actions import perform
from harness.focus import focused_window
from harness.panel_test import PanelTest
from harness.panels import Watcher
from harness.pictures import Picture, brightness
from harness.processes import PATIENCE, end, wait_until


class WithTrayer(PanelTest):
    """The tray of a panel that knows the X11 protocol alone."""

    def start_trayer(self, **changes):
        return self.processes.start(
            ["trayer", "--edge", "top", "--align", "left", "--widthtype", "request", "--height", "26"],
            env=self.environment(**changes),
        )

    def icon(self, words="Normal sleep"):
        """The size of the icon's window, which is named for its tooltip, in the tray; None without one."""
        environment_ = os.environ | {"DISPLAY": self.display.name}
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", words],
            env=environment_, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
        ).stdout.split()
        for number in found:
            answer = subprocess.run(
                ["xdotool", "getwindowgeometry", "--shell", number],
                env=environment_, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
            ).stdout
            values = dict(line.split("=") for line in answer.split())
            return (int(values["WIDTH"]), int(values["HEIGHT"])) if values else None
        return None

    def press(self, button):
        subprocess.run(
            ["xdotool", "mousemove", "12", "13", "click", str(button)],
            check=True, env=os.environ | {"DISPLAY": self.display.name},
        )

    def test_it_is_shown_pressed_and_used(self):
        self.start_trayer()
        self.start()
        width, height = wait_until(self.icon, "the icon")
        self.assertTrue(16 <= width <= 32 and 16 <= height <= 32, (width, height))
        self.display.settle()
        self.display.click(self.windows()[0], 704, 16)
        wait_until(lambda: not self.windows(), "the window to go")
        self.press(1)
        (window,) = wait_until(self.windows, "the window")
        self.press(3)
        # Its window has the same title as the other one.
        wait_until(lambda: len(self.windows()) == 2, "the menu")
        wait_until(lambda: focused_window(self.display.name) in set(self.windows()) - {window}, "the menu's keyboard")
        self.display.key("k", "Return")
        wait_until(lambda: self.icon("Mac is staying awake"), "the other tooltip")
        wait_until(lambda: len(self.windows()) == 1, "the menu to close")

    def shades(self):
        """The darkest and the lightest grey of the icon, from 0 to 255."""
        picture = Picture(self.display.picture())
        greys = [sum(picture.colour(x, y)) // 3 for x in range(3, 21) for y in range(3, 23)]
        return min(greys), max(greys)

    def test_it_is_dark_on_a_light_tray_and_light_on_a_dark_one(self):
        style = os.path.join(self.bus.folder, "dark")
        with open(style, "w", encoding="utf-8") as file:
            file.write('style "dark" { bg[NORMAL] = "#101018" }\nclass "GtkWidget" style "dark"\n')
        tray = self.start_trayer(GTK2_RC_FILES="/dev/null")
        self.start()
        wait_until(self.icon, "the icon")
        wait_until(lambda: self.shades()[0] < 60, "dark lines on the light tray")
        end(tray)
        wait_until(lambda: self.icon() is None, "the tray's end")
        self.start_trayer(GTK2_RC_FILES=style)
        wait_until(lambda: self.shades()[1] > 220, "light lines on the dark tray")
        # What the tray says counts for more than what it looks like, also when it says it later.
        tray = wait_until(lambda: self.display.selection_owner("_NET_SYSTEM_TRAY_S0"), "the tray")
        black = ",".join(["0"] * 12)
        subprocess.run(
            ["xprop", "-id", str(tray), "-f", "_NET_SYSTEM_TRAY_COLORS", "32c", "-set", "_NET_SYSTEM_TRAY_COLORS", black],
            check=True, env=self.environment(),
        )
        wait_until(lambda: self.shades()[1] < 200, "the dark lines that the tray asks for")

    def start_with_menu_open(self):
        self.start_trayer()
        self.start()
        wait_until(self.icon, "the icon")
        self.display.settle()
        self.press(3)
        wait_until(lambda: len(self.windows()) == 2, "the menu")

    def test_a_press_beside_the_menu_closes_it(self):
        self.start_with_menu_open()
        self.display.settle()
        subprocess.run(
            ["xdotool", "mousemove", "1200", "750", "click", "1"],
            check=True, env=os.environ | {"DISPLAY": self.display.name},
        )
        wait_until(lambda: len(self.windows()) == 1, "the menu to close")

    def test_a_lock_that_comes_closes_the_menu_and_has_the_pointer(self):
        self.start_with_menu_open()
        perform(self.bus, "agentLock")
        wait_until(lambda: len(self.windows()) == 1, "the menu to close")
        self.display.settle()
        light = brightness(self.display.picture())
        # Somewhere in the middle is the button that opens the prompt, which makes all around it darker.
        places = iter(range(0, 800, 20))

        def is_prompt_open():
            self.display.click_at(640, next(places))
            return brightness(self.display.picture()) < 0.7 * light

        wait_until(is_prompt_open, "the prompt")

    def test_it_is_there_with_every_tray_that_comes(self):
        self.start()
        for _ in range(3):
            self.assertIsNone(self.icon())
            tray = self.start_trayer()
            wait_until(self.icon, "the icon")
            end(tray)
            wait_until(lambda: self.icon() is None, "the tray's end")

    def test_it_takes_the_place_of_a_panel_that_goes(self):
        self.start_trayer()
        watcher = Watcher(self.processes, self.bus)
        self.addCleanup(watcher.kill)
        watcher.say("host")
        self.start()
        wait_until(lambda: watcher.lines("item"), "the item")
        wait_until(lambda: self.icon() is None, "the tray to be left to others")
        watcher.say("no host")
        wait_until(self.icon, "the icon")
        watcher.say("host")
        wait_until(lambda: self.icon() is None, "the tray to be left again")

    def test_it_is_there_without_a_session_bus(self):
        self.start_trayer()
        self.start(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus")
        wait_until(self.icon, "the icon")


class WithoutPanel(PanelTest):
    def test_the_program_is_used_without_a_panel_and_outlives_the_bus(self):
        program = self.start()
        wait_until(lambda: [focused_window(self.display.name)] == self.windows(), "the keyboard")
        self.display.key("ctrl+k")
        self.assertEqual(self.power.stdout.readline(), "AddInhibition 1 Vigilo -> 0\n")
        self.bus.processes.stop()
        self.display.click(self.windows()[0], 704, 16)
        wait_until(lambda: not self.windows(), "the window to go")
        self.assertIsNone(program.poll())
        os.kill(self.pid, signal.SIGTERM)
        self.assertEqual(program.wait(PATIENCE), 0)


if __name__ == "__main__":
    PanelTest.vigilo = sys.argv.pop(1)
    unittest.main(verbosity=2)
