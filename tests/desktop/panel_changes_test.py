#!/usr/bin/python3
"""The status item while panels come, go and hand over to each other, and with the bus that replaces another.
Usage: panel_changes_test.py VIGILO"""

import os
import signal
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import dbus

from harness.panel_test import AWAKE, IDLE, PanelTest
from harness.panels import ExportedMenu, Watcher, XfcePanel
from harness.processes import wait_until


class WithXfcePanel(PanelTest):
    def setUp(self):
        super().setUp()
        self.panel = XfcePanel(self.processes, self.display, self.bus)

    def test_it_is_there_with_every_panel_that_comes(self):
        self.start()
        for _ in range(6):
            self.assertEqual(self.item.registered(), [])
            panel = self.panel.start()
            self.item.wait_for()
            self.assertEqual(self.item.menu().titles(), IDLE)
            panel.send_signal(signal.SIGKILL)
            panel.wait()
            wait_until(lambda: not self.item.registered(), "the panel's end")

    def test_two_panels_show_one_item(self):
        self.panel.start()
        self.start()
        item = self.item.wait_for()
        second = dbus.bus.BusConnection(self.bus.address)
        self.addCleanup(second.close)
        # The second panel comes to the first one's watcher, and everybody hears of it.
        dbus.Interface(
            second.get_object("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", introspect=False),
            "org.kde.StatusNotifierWatcher",
        ).RegisterStatusNotifierHost(second.get_unique_name())
        name = item.split("/", 1)[0]
        menu = ExportedMenu(second, name, str(self.item.properties()["Menu"]))
        menu.click("Keep Mac Awake")
        for each in (menu, self.item.menu()):
            self.wait_for_titles(each, AWAKE)
        self.assertEqual(self.item.registered(), [item])


class WithWatcher(PanelTest):
    """What panels do one after another, step by step."""

    def watcher(self):
        watcher = Watcher(self.processes, self.bus)
        self.addCleanup(watcher.kill)
        return watcher

    def test_a_watcher_without_a_panel_is_waited_with(self):
        watcher = self.watcher()
        self.start()
        wait_until(lambda: watcher.lines("asked"), "the question for a panel")
        self.display.settle()
        self.assertEqual(watcher.lines("item"), [])
        watcher.say("host")
        wait_until(lambda: watcher.lines("item"), "the item")

    def test_of_two_watchers_the_second_has_the_item_when_the_first_ends(self):
        first, second = self.watcher(), self.watcher()
        first.say("host")
        second.say("host")
        self.start()
        wait_until(lambda: first.lines("item"), "the item")
        self.assertEqual(second.lines("item"), [])
        first.kill()
        wait_until(lambda: second.lines("item"), "the item at the second one")

    def test_it_is_there_on_the_bus_that_replaces_another(self):
        watcher = self.watcher()
        watcher.say("host")
        self.start()
        wait_until(lambda: watcher.lines("item"), "the item")
        for _ in range(2):
            self.bus.restart()
            watcher = self.watcher()
            watcher.say("host")
            item = wait_until(lambda: watcher.lines("item"), "the item on the new bus")[-1].split()[1]
            bus = dbus.bus.BusConnection(self.bus.address)
            self.addCleanup(bus.close)
            properties = dbus.Interface(
                bus.get_object(item, "/StatusNotifierItem", introspect=False), dbus.PROPERTIES_IFACE
            ).GetAll("org.kde.StatusNotifierItem")
            self.assertEqual(properties["ToolTip"][2], "Vigilo — Normal sleep")
            self.assertEqual(ExportedMenu(bus, item, str(properties["Menu"])).titles(), IDLE)


if __name__ == "__main__":
    PanelTest.vigilo = sys.argv.pop(1)
    unittest.main(verbosity=2)
