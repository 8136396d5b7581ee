"""A whole Xfce session."""

from harness.processes import wait_until

from .holders import LoginManager, PowerManager
from .x11 import X11Environment


class Xfce(X11Environment):
    name = "xfce"
    title = "Xfce"
    version_of = "xfce4-session"
    needs = {
        "xfce4-session": "xfce4-session", "xfce4-panel": "xfce4-panel", "xfwm4": "xfwm4",
        "xfsettingsd": "xfce4-settings", "xfce4-power-manager": "xfce4-power-manager", "xsecurelock": "xsecurelock",
    }
    variables = {"XDG_CURRENT_DESKTOP": "XFCE", "XDG_SESSION_DESKTOP": "xfce", "DESKTOP_SESSION": "xfce"}
    session = ["startxfce4"]
    desktops = ("xfce",)
    autostart = ("xfce4-power-manager", "xfsettingsd", "at-spi-dbus-bus")

    def wait_for_session(self):
        for name in ("org.kde.StatusNotifierWatcher", "org.freedesktop.PowerManagement"):
            wait_until(lambda name=name: self.is_owned(name), name, 90)
        # It answers nobody while it starts.
        wait_until(lambda: not PowerManager(self).is_held(), "the power manager")

    def holders(self):
        return [PowerManager(self), LoginManager(self)]

    def status_item(self):
        return self.hosted_item("xfce4-panel")

    def startup_settings(self):
        return self.settings_that_show_it("xfce4-session-settings", page="Application Autostart")
