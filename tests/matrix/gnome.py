"""A whole GNOME session on X11, with the extension that shows status items."""

from harness.processes import wait_until

from .holders import SESSION_MANAGER, LoginManager, SessionManager
from .x11 import X11Environment

EXTENSION = "ubuntu-appindicators@ubuntu.com"


class Gnome(X11Environment):
    name = "gnome"
    title = "GNOME, AppIndicator extension"
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
