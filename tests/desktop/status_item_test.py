#!/usr/bin/python3
"""The status item and the dock menu over the bus: read and used as panels do it, and sent only as far as they
differ. Usage: status_item_test.py VIGILO"""

import os
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import dbus

from harness.display import windows_named
from harness.panel_test import AWAKE, IDLE, PanelTest
from harness.panels import ExportedMenu, XfcePanel
from harness.processes import PATIENCE, environment, wait_until


class WithXfcePanel(PanelTest):
    def setUp(self):
        super().setUp()
        self.panel = XfcePanel(self.processes, self.display, self.bus)

    def test_a_panel_reads_what_the_item_is(self):
        self.panel.start()
        self.start()
        item = self.item.properties()
        self.assertEqual(item["Id"], "vigilo")
        self.assertEqual(item["Title"], "Vigilo")
        self.assertEqual(item["Status"], "Active")
        self.assertEqual(item["IconName"], "vigilo-off-symbolic")
        self.assertEqual(item["IconAccessibleDesc"], "Vigilo protection off")
        self.assertEqual(item["ToolTip"][2], "Vigilo — Normal sleep")
        self.assertFalse(item["ItemIsMenu"])
        for width, height, pixels in item["IconPixmap"]:
            self.assertEqual((width, len(pixels)), (height, width * height * 4))
            self.assertGreater(len(set(pixels)), 2)
        self.assertEqual({int(width) for width, _, _ in item["IconPixmap"]}, {16, 22, 24, 32, 36, 44, 48, 64})

    def test_a_panel_gets_pixels_alone_where_the_icons_are_not_installed(self):
        self.panel.start()
        self.start(XDG_DATA_DIRS="/usr/share")
        item = self.item.properties()
        self.assertEqual(item["IconName"], "")
        self.assertEqual(len(item["IconPixmap"]), 8)

    def test_the_panel_shows_it_and_its_menu(self):
        self.panel.start()
        self.start()
        self.item.wait_for()
        wait_until(lambda: self.colours(0, 0, 28, 28) > 8, "an icon at the panel's corner")
        self.display.settle()
        before = self.colours(40, 40, 200, 150)
        subprocess.run(
            ["xdotool", "mousemove", "14", "14", "click", "3"],
            check=True, env=os.environ | {"DISPLAY": self.display.name},
        )
        wait_until(lambda: self.colours(40, 40, 200, 150) > before, "the menu below it")

    def colours(self, x, y, width, height):
        """How many colours a part of the screen has."""
        answer = subprocess.run(
            ["/usr/bin/convert", "-", "-crop", "%dx%d+%d+%d" % (width, height, x, y), "-format", "%k", "info:"],
            input=self.display.picture(), stdout=subprocess.PIPE, check=True,
        )
        return int(answer.stdout)

    def test_the_menu_is_read_and_chosen_from_over_the_bus(self):
        self.panel.start()
        self.start()
        menu = self.item.menu()
        self.assertEqual(menu.titles(), IDLE)
        lines = dict(zip(IDLE, (line for _, line in menu.lines())))
        self.assertFalse(lines["Mac can sleep normally"]["enabled"])
        self.assertEqual(lines["-"], {"type": "separator"})
        self.assertEqual(lines["Open Vigilo…"]["shortcut"], [["Control", "O"]])
        self.assertEqual(lines["Launch at Login"]["toggle-type"], "checkmark")
        self.assertEqual(lines["Launch at Login"]["toggle-state"], 0)
        self.assertNotIn("shortcut", lines["Start with Apple Lock"])
        menu.click("Keep Mac Awake")
        self.wait_for_titles(menu, AWAKE)
        wait_until(lambda: self.item.properties()["IconName"] == "vigilo-on-symbolic", "the filled icon")
        item = self.item.properties()
        self.assertEqual(item["IconAccessibleDesc"], "Vigilo protection on")
        self.assertEqual(item["ToolTip"][2], "Vigilo — Mac is staying awake")
        menu.click("Stop Keeping Awake")
        self.wait_for_titles(menu, IDLE)

    def test_the_whole_day_is_run_from_the_menu(self):
        self.panel.start()
        program = self.start(DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus")
        menu = self.item.menu()
        # The close button.
        self.display.click(self.windows()[0], 704, 16)
        wait_until(lambda: not self.windows(), "the window to go")
        menu.click("Open Vigilo…")
        wait_until(self.windows, "the window")
        menu.click("Keep Mac Awake")
        self.wait_for_titles(menu, AWAKE)
        for agent_lock in ("Show Agent Lock", "Start Agent Lock"):
            menu.click(agent_lock)
            wait_until(lambda: windows_named(self.display.name, "Agent Lock"), "the lock")
            self.wait_for_titles(menu, AWAKE)
            menu.click("Stop Keeping Awake")
            wait_until(lambda: not windows_named(self.display.name, "Agent Lock"), "the lock to go")
            self.wait_for_titles(menu, IDLE)
        menu.click("Start with Apple Lock")
        self.wait_for_titles(menu, AWAKE)
        menu.click("Switch to Apple Lock")
        menu.click("Stop Keeping Awake")
        self.wait_for_titles(menu, IDLE)
        menu.click("Launch at Login")
        entry = os.path.join(self.config, "autostart/io.github.vigilo.Vigilo.desktop")
        wait_until(lambda: os.path.exists(entry), "the entry")
        wait_until(lambda: dict(menu.lines())[menu.number("Launch at Login")]["toggle-state"] == 1, "the mark")
        with open(entry, "a", encoding="utf-8") as file:
            file.write("Hidden=true\n")
        self.assertTrue(menu.about_to_show())
        line = dict(menu.lines())[menu.number("Launch at Login — Approval Required")]
        self.assertEqual(line["toggle-state"], -1)
        menu.click("Quit Vigilo")
        self.assertEqual(program.wait(PATIENCE), 0)

    def test_pressing_it_shows_the_window(self):
        self.panel.start()
        self.start()
        # The close button.
        self.display.click(self.windows()[0], 704, 16)
        wait_until(lambda: not self.windows(), "the window to go")
        self.item.activate()
        wait_until(self.windows, "the window")

    def test_nonsense_from_the_bus_changes_nothing(self):
        self.panel.start()
        self.start()
        menu = self.item.menu()
        for method, arguments in {
            "GetLayout": (dbus.Int32(99), dbus.Int32(-1), dbus.Array([], signature="s")),
            "GetProperty": (dbus.Int32(99), "label"),
            "Event": (dbus.Int32(99), "clicked", dbus.String("", variant_level=1), dbus.UInt32(0)),
            "AboutToShow": (dbus.Int32(-1),),
        }.items():
            with self.assertRaises(dbus.DBusException) as error:
                menu.call(method, *arguments)
            self.assertEqual(error.exception.get_dbus_name(), "org.freedesktop.DBus.Error.InvalidArgs", method)
        # A line that only informs, a separator and an event that is no click.
        for number, event in ((1, "clicked"), (3, "clicked"), (menu.number("Quit Vigilo"), "hovered")):
            menu.happen(number, event)
        self.assertEqual(menu.titles(), IDLE)
        errors = menu.call("EventGroup", dbus.Array([], signature="(isvu)"))
        self.assertEqual(list(errors), [])
        several = menu.call("GetGroupProperties", dbus.Array([4], signature="i"), ["label"])
        self.assertEqual([(int(number), dict(line)) for number, line in several], [(4, {"label": "Open Vigilo…"})])


class Watched:
    """What one program sends over the bus, written down by dbus-monitor."""

    def __init__(self, test, sender):
        self.file = os.path.join(test.bus.folder, "watched")
        with open(self.file, "w", encoding="utf-8") as out:
            self.monitor = test.processes.start(
                ["dbus-monitor", "--address", test.bus.address, "sender='%s'" % sender],
                stdout=out, env=environment(),
            )
        wait_until(lambda: os.path.getsize(self.file), "the monitor")

    def members(self):
        with open(self.file, encoding="utf-8") as file:
            lines = file.read().splitlines()
        words = [line.split("member=")[1] for line in lines if line.startswith(("signal", "method call"))]
        return [word for word in words if word not in ("NameAcquired", "NameLost")]


class Traffic(PanelTest):
    def setUp(self):
        super().setUp()
        XfcePanel(self.processes, self.display, self.bus).start()
        self.start()
        self.menu = self.item.menu()

    def watch(self):
        return Watched(self, self.item.wait_for().split("/", 1)[0])

    def test_an_unchanged_minute_of_a_timed_session_sends_nothing(self):
        # "30 minutes", "Stay Visible".
        self.display.key("shift+Tab", "shift+Tab", "space", "Home", "Return", "Tab", "space", "Home", "Return")
        self.display.key("Tab", "Return")
        wait_until(lambda: self.menu.titles()[1] != IDLE[1], "the session")
        # The text changes with a minute, counted from the start.
        time.sleep(2)
        text = self.menu.titles()[1]
        watched = self.watch()
        before = watched.members()
        time.sleep(30)
        self.assertEqual(self.menu.titles()[1], text)
        self.assertEqual(watched.members(), before)
        self.menu.click("Stop Keeping Awake")
        wait_until(lambda: watched.members() != before, "the monitor to see the change")

    def test_a_change_tells_what_differs_only_and_lines_keep_their_numbers(self):
        before = {line.get("label", number): number for number, line in self.menu.lines()}
        watched = self.watch()
        self.menu.click("Keep Mac Awake")
        self.wait_for_titles(self.menu, AWAKE)
        after = {line.get("label", number): number for number, line in self.menu.lines()}
        for title in ("Open Vigilo…", "Start with Apple Lock", "Launch at Login", "Quit Vigilo"):
            now = title.replace("Start with", "Switch to")
            self.assertEqual(after[now], before[title], title)

        def news():
            return sorted(name for name in watched.members() if name.startswith(("Items", "Layout", "New")))

        # Once for the status menu and once for the dock's, which keeps its layout.
        expected = ["ItemsPropertiesUpdated", "ItemsPropertiesUpdated", "LayoutUpdated", "NewIcon", "NewToolTip"]
        wait_until(lambda: len(news()) >= len(expected), "the news")
        # Whatever else is sent comes before this answer.
        self.menu.titles()
        self.assertEqual(news(), expected)


class Dock(PanelTest):
    def test_a_dock_reads_the_live_menu(self):
        self.start()
        bus = self.item.bus
        entry = dbus.Interface(
            bus.get_object("io.github.vigilo.Vigilo", "/io/github/vigilo/Vigilo/LauncherEntry", introspect=False),
            "com.canonical.Unity.LauncherEntry",
        )
        application, properties = entry.Query()
        self.assertEqual(application, "application://io.github.vigilo.Vigilo.desktop")
        menu = ExportedMenu(bus, "io.github.vigilo.Vigilo", str(properties["quicklist"]))
        self.assertEqual(menu.titles(), ["Open Vigilo", "Keep Mac Awake", "Start Agent Lock"])
        menu.click("Keep Mac Awake")
        wait_until(
            lambda: menu.titles() == ["Open Vigilo", "Stop Keeping Awake", "Show Agent Lock"], "the live titles"
        )


if __name__ == "__main__":
    PanelTest.vigilo = sys.argv.pop(1)
    unittest.main(verbosity=2)
