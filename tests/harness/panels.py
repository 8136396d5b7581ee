"""Real panels that show status items, and what can be read of an item over the session bus."""

import os
import shutil
import subprocess
import time

import dbus

from .desktop_services import start_xfconfd
from .processes import environment, wait_until

HERE = os.path.dirname(os.path.abspath(__file__))
WATCHER = "org.kde.StatusNotifierWatcher"
PROPERTIES = "org.freedesktop.DBus.Properties"
ICONS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../packaging/icons")

XFCE_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
"""


def icon_theme(folder):
    """Installs the program's icons for panels in a folder, and returns what XDG_DATA_DIRS has to be."""
    icons = os.path.join(folder, "icons/hicolor/symbolic/apps")
    os.makedirs(icons)
    for state in ("on", "off"):
        shutil.copy(os.path.join(ICONS, "vigilo-%s-symbolic.svg" % state), icons)
    return folder + ":/usr/local/share:/usr/share"


class XfcePanel:
    """xfce4-panel with nothing but its place for status items, at the top of a display."""

    def __init__(self, processes, display, bus):
        self._processes = processes
        home = os.path.join(bus.folder, "xfce")
        channels = os.path.join(home, "xfce4/xfconf/xfce-perchannel-xml")
        os.makedirs(channels)
        with open(os.path.join(channels, "xfce4-panel.xml"), "w", encoding="utf-8") as file:
            file.write(XFCE_PANEL)
        self._environment = environment(
            DISPLAY=display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=bus.address,
            HOME=home, XDG_CONFIG_HOME=home, XDG_CACHE_HOME=home, XDG_RUNTIME_DIR=home, SESSION_MANAGER=None,
        )
        os.chmod(home, 0o700)
        start_xfconfd(processes, self._environment)

    def start(self):
        return self._processes.start(["xfce4-panel", "--disable-wm-check"], env=self._environment)


class Watcher:
    """A watcher for status items without a panel of its own."""

    def __init__(self, processes, bus):
        self._log_path = os.path.join(bus.folder, "watcher-%d" % time.monotonic_ns())
        with open(self._log_path, "w", encoding="utf-8") as log:
            self.process = processes.start(
                ["/usr/bin/python3", os.path.join(HERE, "status_watcher.py")],
                env=environment(DBUS_SESSION_BUS_ADDRESS=bus.address), stdin=subprocess.PIPE, stdout=log,
            )
        wait_until(lambda: self.lines("ready"), "the watcher")

    def lines(self, beginning):
        """What it has said so far that begins so."""
        with open(self._log_path, encoding="utf-8") as log:
            # Whole lines only: the last one may be half written.
            return [line for line in log.read().rpartition("\n")[0].splitlines() if line.startswith(beginning)]

    def say(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def kill(self):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()


class EmbeddedItem:
    """The status item in the tray of a panel that speaks the X11 protocol; it is named for its tooltip."""

    def __init__(self, display):
        self._environment = environment(DISPLAY=display.name)

    def _xdotool(self, *words):
        return subprocess.run(
            ["xdotool", *words], env=self._environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            text=True, check=False,
        ).stdout.split()

    def box(self, words):
        """Left, top, width and height of the one whose tooltip contains these words; None without one."""
        for number in self._xdotool("search", "--onlyvisible", "--name", words):
            values = dict(line.split("=") for line in self._xdotool("getwindowgeometry", "--shell", number))
            if values:
                return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))
        return None


class StatusItem:
    """The one status item that a panel of a session bus hosts, as the panel sees it."""

    def __init__(self, address):
        self.bus = dbus.bus.BusConnection(address)

    def _object(self, name, path, interface):
        return dbus.Interface(self.bus.get_object(name, path, introspect=False), interface)

    def registered(self):
        """The names of the items that the panel hosts; empty without a panel."""
        if not self.bus.name_has_owner(WATCHER):
            return []
        try:
            properties = self._object(WATCHER, "/StatusNotifierWatcher", PROPERTIES)
            items = properties.Get(WATCHER, "RegisteredStatusNotifierItems")
            # One watcher writes an @ between the name and the path, which others do without.
            return [str(item).replace("@/", "/") for item in items]
        except dbus.DBusException:
            return []  # it has just ended

    def is_hosted(self):
        """Whether any panel is there to show it."""
        properties = self._object(WATCHER, "/StatusNotifierWatcher", PROPERTIES)
        return bool(properties.Get(WATCHER, "IsStatusNotifierHostRegistered"))

    def wait_for(self):
        return wait_until(self.registered, "the status item")[0]

    def properties(self):
        name, path = self.wait_for().split("/", 1)
        return self._object(name, "/" + path, PROPERTIES).GetAll("org.kde.StatusNotifierItem")

    def activate(self):
        name, path = self.wait_for().split("/", 1)
        self._object(name, "/" + path, "org.kde.StatusNotifierItem").Activate(0, 0)

    def menu(self):
        return ExportedMenu(self.bus, self.wait_for().split("/", 1)[0], str(self.properties()["Menu"]))


class ExportedMenu:
    """A menu on the bus."""

    def __init__(self, bus, name, path):
        self._menu = dbus.Interface(bus.get_object(name, path, introspect=False), "com.canonical.dbusmenu")

    def lines(self):
        """Each line's number and properties, as the panel reads them."""
        _, root = self._menu.GetLayout(0, -1, dbus.Array([], signature="s"))
        return [(int(line[0]), dict(line[1])) for line in root[2]]

    def titles(self):
        return [str(line.get("label", "-")) for _, line in self.lines()]

    def number(self, title):
        return next(number for number, line in self.lines() if line.get("label") == title)

    def about_to_show(self):
        return bool(self._menu.AboutToShow(0))

    def click(self, title):
        self.happen(self.number(title), "clicked")

    def happen(self, number, event):
        self._menu.Event(dbus.Int32(number), event, dbus.String("", variant_level=1), dbus.UInt32(0))

    def call(self, method, *arguments):
        return getattr(self._menu, method)(*arguments)
