"""A whole LXQt session."""

from harness.processes import wait_until

from .holders import LoginManager
from .x11 import X11Environment


class Lxqt(X11Environment):
    name = "lxqt"
    title = "LXQt"
    version_of = "lxqt-session"
    needs = {
        "lxqt-session": "lxqt-session", "lxqt-panel": "lxqt-panel", "lxqt-powermanagement": "lxqt-powermanagement",
        "lxqt-config-session": "lxqt-session", "openbox": "openbox", "xscreensaver": "xscreensaver",
    }
    variables = {"XDG_CURRENT_DESKTOP": "LXQt", "XDG_SESSION_DESKTOP": "lxqt", "DESKTOP_SESSION": "lxqt"}
    session = ["startlxqt"]
    desktops = ("lxqt",)
    autostart = ("lxqt-panel", "lxqt-powermanagement", "lxqt-xscreensaver-autostart", "at-spi-dbus-bus")

    def settle_in(self):
        super().settle_in()
        # It asks for one at the first login.
        self.room.write(".config/lxqt/session.conf", "[General]\n__userfile__=true\nwindow_manager=openbox\n")

    def wait_for_session(self):
        for name in ("org.kde.StatusNotifierWatcher", "org.lxqt.lxqt-powermanagement", "org.freedesktop.ScreenSaver"):
            wait_until(lambda name=name: self.is_owned(name), name, 90)

    def holders(self):
        return [LoginManager(self)]

    def status_item(self):
        return self.hosted_item("lxqt-panel")

    def startup_settings(self):
        return self.settings_that_show_it("lxqt-config-session", page="Autostart")

    def system_lock(self):
        if "locked" in self.room.run("xscreensaver-command", "-time"):
            return "xscreensaver"
        return super().system_lock()

    def end_system_lock(self):
        super().end_system_lock()
        # The parts of XScreenSaver; they restart each other.
        for name in ("xscreensaver", "xscreensaver-gfx", "xscreensaver-auth"):
            for pid in self.room.pids(name):
                self.room.run("kill", "-KILL", str(pid))
