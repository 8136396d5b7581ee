"""A whole MATE session."""

from harness.processes import wait_until

from .holders import SESSION_MANAGER, LoginManager, SessionManager
from .x11 import X11Environment


class Mate(X11Environment):
    name = "mate"
    title = "MATE"
    version_of = "mate-session-manager"
    needs = {
        "mate-session": "mate-session-manager", "mate-panel": "mate-panel", "marco": "marco",
        "mate-power-manager": "mate-power-manager", "mate-screensaver": "mate-screensaver",
        "mate-settings-daemon": "mate-settings-daemon",
    }
    variables = {
        "XDG_CURRENT_DESKTOP": "MATE", "XDG_SESSION_DESKTOP": "mate", "DESKTOP_SESSION": "mate",
        "XDG_MENU_PREFIX": "mate-",
    }
    session = ["mate-session"]
    desktops = ("mate",)
    autostart = ("mate-settings-daemon", "mate-power-manager", "mate-screensaver", "at-spi-dbus-bus")

    def wait_for_session(self):
        for name in (SESSION_MANAGER, "org.kde.StatusNotifierWatcher", "org.mate.PowerManager", "org.mate.ScreenSaver"):
            wait_until(lambda name=name: self.is_owned(name), name, 120)

    def holders(self):
        return [SessionManager(self, "mate-session"), LoginManager(self)]

    def status_item(self):
        return self.hosted_item("mate-panel")

    def startup_settings(self):
        return self.settings_that_show_it("mate-session-properties")

    def system_lock(self):
        if self.lockers():
            raise AssertionError("a second locker was started")
        saver = self.interface("org.mate.ScreenSaver", "/org/mate/ScreenSaver", "org.mate.ScreenSaver")
        return "mate-screensaver" if saver.GetActive() else None
