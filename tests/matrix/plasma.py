"""A whole Plasma session on X11."""

from harness.processes import wait_until

from .holders import PolicyAgent
from .x11 import X11Environment


class Plasma(X11Environment):
    name = "plasma"
    title = "Plasma"
    version_of = "plasma-workspace"
    needs = {
        "startplasma-x11": "plasma-workspace", "kwin_x11": "kwin-x11",
        "/usr/lib/x86_64-linux-gnu/libexec/org_kde_powerdevil": "powerdevil",
        "/usr/lib/x86_64-linux-gnu/libexec/kscreenlocker_greet": "libkscreenlocker5",
        "/usr/share/plasma/plasmoids/org.kde.plasma.taskmanager": "plasma-desktop", "kcmshell5": "kde-cli-tools",
    }
    variables = {"XDG_CURRENT_DESKTOP": "KDE", "XDG_SESSION_DESKTOP": "KDE", "DESKTOP_SESSION": "plasma"}
    session = ["startplasma-x11"]
    desktops = ("kde",)
    autostart = ("org.kde.plasmashell", "powerdevil", "xembedsniproxy", "at-spi-dbus-bus")

    def wait_for_session(self):
        for name in (
            "org.kde.StatusNotifierWatcher", "org.kde.plasmashell", "org.freedesktop.ScreenSaver",
            "org.kde.Solid.PowerManagement.PolicyAgent",
        ):
            wait_until(lambda name=name: self.is_owned(name), name, 120)
        self.settle(quiet=3, limit=40)

    def holders(self):
        return [PolicyAgent(self)]

    def status_item(self):
        return self.hosted_item("plasmashell")

    def startup_settings(self):
        return self.settings_that_show_it("kcmshell5", "kcm_autostart")

    def system_lock(self):
        if self.lockers():
            raise AssertionError("a second locker was started")
        saver = self.interface("org.freedesktop.ScreenSaver", "/ScreenSaver", "org.freedesktop.ScreenSaver")
        return "Plasma's own lock screen" if saver.GetActive() else None
