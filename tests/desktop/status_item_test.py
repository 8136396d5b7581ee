#!/usr/bin/python3
"""The status item in real panels: read and used over the bus as panels do it, seen in the panel, there
again with every panel that comes. Usage: status_item_test.py VIGILO"""

import ctypes
import os
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import dbus

from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.panels import ExportedMenu, StatusItem, Watcher, XfcePanel
from harness.pictures import Picture
from harness.processes import Processes, end, environment, wait_until

VIGILO = sys.argv.pop(1)
SERVICE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../services/fake_power_service.py")

IDLE = [
    "Mac can sleep normally", "No agent processes detected", "-", "Open Vigilo…", "Keep Mac Awake",
    "Start Agent Lock", "Start with Apple Lock", "-", "Launch at Login", "-", "Quit Vigilo",
]
AWAKE = [
    "Mac is staying awake", "Until you stop it", "No agent processes detected", "-", "Open Vigilo…",
    "Stop Keeping Awake", "Show Agent Lock", "Switch to Apple Lock", "-", "Launch at Login", "-", "Quit Vigilo",
]


class Desktop(unittest.TestCase):
    def setUp(self):
        self.display = self.enter(VirtualDisplay())
        self.bus = self.enter(SessionBus())
        self.processes = self.enter(Processes())
        self.config = os.path.join(self.bus.folder, "config")
        self.item = StatusItem(self.bus.address)
        self.start_power_service()

    def enter(self, manager):
        value = manager.__enter__()
        self.addCleanup(manager.__exit__, None, None, None)
        return value

    def environment(self, **changes):
        variables = {
            "DISPLAY": self.display.name, "WAYLAND_DISPLAY": None, "DBUS_SESSION_BUS_ADDRESS": self.bus.address,
            "XDG_CONFIG_HOME": self.config,
        }
        return environment(**(variables | changes))

    def start_power_service(self):
        service = self.processes.start(
            ["/usr/bin/python3", SERVICE, "plasma", "grant"], env=self.environment(), stdout=subprocess.PIPE
        )
        self.addCleanup(service.stdout.close)
        service.stdout.readline()

    def start(self, **changes):
        program = self.processes.start([VIGILO], env=self.environment(**changes))
        wait_until(self.windows, "the window")
        self.display.settle()
        return program

    def windows(self):
        return windows_named(self.display.name, "Vigilo")

    def wait_for_titles(self, menu, titles):
        wait_until(lambda: menu.titles() == titles, "the menu: " + ", ".join(titles[:2]))


class WithXfcePanel(Desktop):
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

    def test_the_panel_shows_it_and_its_menu(self):
        self.panel.start()
        self.start()
        self.item.wait_for()
        self.display.settle()
        self.assertGreater(self.colours(0, 0, 28, 28), 8, "an icon at the panel's corner")
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
        program = self.start()
        menu = self.item.menu()
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
        self.assertEqual(program.wait(20), 0)

    def test_pressing_it_shows_the_window(self):
        self.panel.start()
        self.start()
        # The close button.
        self.display.click(self.windows()[0], 704, 16)
        wait_until(lambda: not self.windows(), "the window to go")
        self.item.activate()
        wait_until(self.windows, "the window")

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


def selection_owner(display, name):
    """The number of the window that owns a selection of an X server."""
    library = ctypes.CDLL("libX11.so.6")
    library.XOpenDisplay.restype = ctypes.c_void_p
    library.XInternAtom.restype = library.XGetSelectionOwner.restype = ctypes.c_ulong
    server = ctypes.c_void_p(library.XOpenDisplay(display.encode()))
    try:
        atom = ctypes.c_ulong(library.XInternAtom(server, name.encode(), 0))
        return library.XGetSelectionOwner(server, atom)
    finally:
        library.XCloseDisplay(server)


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


class Traffic(Desktop):
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
        wait_until(lambda: "LayoutUpdated" in watched.members() and "NewToolTip" in watched.members(), "the news")
        # Once for the status menu and once for the dock's, which keeps its layout.
        self.assertEqual(
            sorted(name for name in watched.members() if name.startswith(("Items", "Layout", "New"))),
            ["ItemsPropertiesUpdated", "ItemsPropertiesUpdated", "LayoutUpdated", "NewIcon", "NewToolTip"],
        )


class Dock(Desktop):
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


class WithTrayer(Desktop):
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
        wait_until(self.windows, "the window")
        self.press(3)
        # Its window has the same title as the other one.
        wait_until(lambda: len(self.windows()) == 2, "the menu")
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
        self.start_trayer(GTK2_RC_FILES=style)
        wait_until(lambda: self.shades()[1] > 220, "light lines on the dark tray")
        # What the tray says counts for more than what it looks like, also when it says it later.
        tray = selection_owner(self.display.name, "_NET_SYSTEM_TRAY_S0")
        black = ",".join(["0"] * 12)
        subprocess.run(
            ["xprop", "-id", str(tray), "-f", "_NET_SYSTEM_TRAY_COLORS", "32c", "-set", "_NET_SYSTEM_TRAY_COLORS", black],
            check=True, env=self.environment(),
        )
        wait_until(lambda: self.shades()[1] < 200, "the dark lines that the tray asks for")

    def test_a_press_beside_the_menu_closes_it(self):
        self.start_trayer()
        self.start()
        wait_until(self.icon, "the icon")
        self.display.settle()
        self.press(3)
        wait_until(lambda: len(self.windows()) == 2, "the menu")
        self.display.settle()
        subprocess.run(
            ["xdotool", "mousemove", "1200", "750", "click", "1"],
            check=True, env=os.environ | {"DISPLAY": self.display.name},
        )
        wait_until(lambda: len(self.windows()) == 1, "the menu to close")

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


class WithWatcher(Desktop):
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


class WithoutPanel(Desktop):
    def test_the_program_is_used_without_a_panel_and_outlives_the_bus(self):
        program = self.start()
        self.display.key("ctrl+k")
        self.bus.processes.stop()
        self.display.click(self.windows()[0], 704, 16)
        wait_until(lambda: not self.windows(), "the window to go")
        self.assertIsNone(program.poll())
        program.send_signal(signal.SIGTERM)
        self.assertEqual(program.wait(20), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
