"""A whole GNOME session, with the extension that shows status items."""

import time

import dbus

from harness.compositors import DISPLAYS
from harness.pictures import ppm
from harness.processes import wait_until

from .environment import Environment
from .holders import SESSION_MANAGER, LoginManager, SessionManager
from .wayland import WaylandEnvironment
from .x11 import X11Environment

EXTENSION = "ubuntu-appindicators@ubuntu.com"
SHELL = """[Desktop Entry]
Type=Application
Name=GNOME Shell
Exec=gnome-shell --wayland --headless --virtual-monitor 1280x800 --unsafe-mode
OnlyShowIn=GNOME;
NoDisplay=true
X-GNOME-Autostart-Phase=DisplayServer
X-GNOME-Provides=panel;windowmanager;
X-GNOME-Autostart-Notify=true
X-GNOME-AutoRestart=false
"""
# By X's numbers.
KEYS = {"Return": 0xFF0D, "Escape": 0xFF1B, "F4": 0xFFC1, "alt": 0xFFE9}
OFF = 3  # of Mutter's modes to save power


class GnomeSession(Environment):
    """Whatever it is shown on."""

    version_of = "gnome-shell"
    needs = {
        "gnome-session": "gnome-session-bin", "gnome-shell": "gnome-shell", "/usr/libexec/gsd-power": "gnome-settings-daemon",
        "/usr/share/gnome-shell/extensions/" + EXTENSION: "gnome-shell-extension-appindicator",
        "gnome-tweaks": "gnome-tweaks", "gsettings": "libglib2.0-bin",
    }
    variables = {
        "XDG_CURRENT_DESKTOP": "GNOME", "XDG_SESSION_DESKTOP": "gnome", "DESKTOP_SESSION": "gnome",
        "XDG_MENU_PREFIX": "gnome-",
    }
    session = ["gnome-session", "--builtin", "--disable-acceleration-check"]
    desktops = ("gnome",)
    autostart = ("at-spi-dbus-bus", "org.gnome.SettingsDaemon.Power", "org.gnome.SettingsDaemon.ScreensaverProxy",
                 "org.gnome.SettingsDaemon.XSettings", "org.gnome.SettingsDaemon.MediaKeys",
                 "org.gnome.SettingsDaemon.Keyboard", "org.gnome.SettingsDaemon.A11ySettings")

    def settle_in(self):
        super().settle_in()
        self.system_bus.start_display_manager()

    def wait_for_session(self):
        for name in (SESSION_MANAGER, "org.gnome.Shell", "org.gnome.SettingsDaemon.Power"):
            wait_until(lambda name=name: self.is_owned(name), name, 120)
        self.settle(quiet=3, limit=60)
        # It starts with an overview of no windows.
        self.key("Escape")
        self.settle(quiet=2)

    def holders(self):
        return [SessionManager(self, "gnome-session"), LoginManager(self)]

    def status_item(self):
        if self.is_owned("org.kde.StatusNotifierWatcher"):
            raise AssertionError("status items are hosted without the extension")
        self.room.run("gsettings", "set", "org.gnome.shell", "disable-user-extensions", "false")
        self.room.run("gsettings", "set", "org.gnome.shell", "enabled-extensions", "['%s']" % EXTENSION)
        wait_until(lambda: self.is_owned("org.kde.StatusNotifierWatcher"), "the extension", 30)
        return self.hosted_item("the AppIndicator extension; nothing shows it without")

    def startup_settings(self):
        return self.settings_that_show_it("gnome-tweaks", page="Startup Applications")

    def system_lock(self):
        if self.lockers():
            raise AssertionError("a second locker was started")
        return "gnome-shell" if self.system_bus.is_locked() else None


class Gnome(X11Environment, GnomeSession):
    name = "gnome"
    title = "GNOME on X11, AppIndicator extension"


class GnomeWayland(WaylandEnvironment, GnomeSession):
    name = "gnome-wayland"
    title = "GNOME on Wayland, AppIndicator extension"
    needs = GnomeSession.needs | {"Xwayland": "xwayland"}
    compositor, guest = "gnome-shell", "gsd-power"
    dark_words = "displays off (Mutter's own switch)"

    def settle_in(self):
        super().settle_in()
        # As the session starts it, but for a display without hardware, and so that any program may take pictures.
        self.room.write(".local/share/applications/org.gnome.Shell.desktop", SHELL)

    def log_in(self):
        self._keyboard = None
        super().log_in()

    def status_item(self):
        found = super().status_item()
        # The panel shows that somebody has a keyboard elsewhere.
        self._keyboard.Stop()
        self._keyboard = None
        return found

    def ppm(self):
        path = self.room.path("screen.png")
        shell = self.interface("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot")
        is_taken, _ = shell.Screenshot(False, False, path)
        if not is_taken:
            raise RuntimeError("there is no picture of the screen")
        return ppm(path)

    def windows(self):
        shell = self.interface("org.gnome.Shell.Introspect", "/org/gnome/Shell/Introspect", "org.gnome.Shell.Introspect")
        return [window for window in shell.GetWindows().values() if window.get("title") == "Vigilo"]

    def type(self, text):
        for character in text:
            self._press(ord(character))
            time.sleep(0.06)

    def key(self, *keys):
        for key in keys:
            self._press(*(KEYS[name] for name in key.split("+")))

    def _press(self, *symbols):
        if self._keyboard is None:
            self._keyboard = self._new_keyboard()
        for symbol in symbols:
            self._keyboard.NotifyKeyboardKeysym(dbus.UInt32(symbol), True)
        for symbol in reversed(symbols):
            self._keyboard.NotifyKeyboardKeysym(dbus.UInt32(symbol), False)

    def _new_keyboard(self):
        """One of Mutter's, for people who sit elsewhere."""
        name = "org.gnome.Mutter.RemoteDesktop"
        keyboard = self.interface(
            name, self.interface(name, "/org/gnome/Mutter/RemoteDesktop", name).CreateSession(), name + ".Session"
        )
        keyboard.Start()
        time.sleep(1)  # clients take note of it only after a while
        return keyboard

    def is_dark(self):
        properties = self.interface(DISPLAYS, "/" + DISPLAYS.replace(".", "/"), "org.freedesktop.DBus.Properties")
        return properties.Get(DISPLAYS, "PowerSaveMode") == OFF
