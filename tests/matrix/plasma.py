"""A whole Plasma session."""

import os
import shutil

from harness.compositors import kwin_picture
from harness.processes import wait_until

from .environment import Environment
from .holders import PolicyAgent
from .wayland import WaylandEnvironment
from .x11 import X11Environment

COMPOSITOR = """#!/bin/sh
KWIN_SCREENSHOT_NO_PERMISSION_CHECKS=1 exec %s/kwin_wayland --virtual --width 1280 --height 800 "$@"
"""
# KWin takes keys only from programs that are installed as ones that press them.
KEYBOARD = """[Desktop Entry]
Type=Application
Name=Keyboard
Exec=%s/virtual_keyboard
NoDisplay=true
X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input
"""


class PlasmaSession(Environment):
    """Whatever it is shown on."""

    version_of = "plasma-workspace"
    needs = {
        "/usr/lib/x86_64-linux-gnu/libexec/org_kde_powerdevil": "powerdevil",
        "/usr/lib/x86_64-linux-gnu/libexec/kscreenlocker_greet": "libkscreenlocker5",
        "/usr/share/plasma/plasmoids/org.kde.plasma.taskmanager": "plasma-desktop", "kcmshell5": "kde-cli-tools",
    }
    variables = {"XDG_CURRENT_DESKTOP": "KDE", "XDG_SESSION_DESKTOP": "KDE", "DESKTOP_SESSION": "plasma"}
    desktops = ("kde",)
    autostart = ("org.kde.plasmashell", "powerdevil", "xembedsniproxy", "at-spi-dbus-bus")

    def wait_for_session(self):
        for name in (
            "org.kde.StatusNotifierWatcher", "org.kde.plasmashell", "org.freedesktop.ScreenSaver",
            "org.kde.Solid.PowerManagement.PolicyAgent",
        ):
            wait_until(lambda name=name: self.is_owned(name), name, 120)
        # The services are there before what is seen, which takes the keyboard when it comes.
        wait_until(self._is_drawn, "the desktop and the panel", 120)
        self.settle(quiet=3, limit=40)

    def _is_drawn(self):
        picture = self.picture()
        width, height = picture.size
        return all(any(picture.colour(width // 2, y)) for y in (height // 2, height - 1))

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


class Plasma(X11Environment, PlasmaSession):
    name = "plasma"
    title = "Plasma on X11"
    needs = PlasmaSession.needs | {"startplasma-x11": "plasma-workspace", "kwin_x11": "kwin-x11"}
    session = ["startplasma-x11"]


class PlasmaWayland(WaylandEnvironment, PlasmaSession):
    name = "plasma-wayland"
    title = "Plasma on Wayland"
    needs = PlasmaSession.needs | {
        "startplasma-wayland": "plasma-workspace-wayland", "kwin_wayland": "kwin-wayland", "Xwayland": "xwayland",
        "kscreen-doctor": "libkf5screen-bin",
    }
    session = ["startplasma-wayland"]
    compositor, guest = "kwin_wayland_wrapper", "plasmashell"
    dark_words = "KWin asked (`kscreen-doctor`) to switch the outputs off, which only those with hardware do"

    def settle_in(self):
        super().settle_in()
        programs = self.room.folder("programs")
        # A copy has no file capabilities; one that a container does not allow would keep it from starting.
        for program in (shutil.which("kwin_wayland"), os.path.join(self.helpers, "virtual_keyboard")):
            shutil.copy(program, programs)
        self.room.write(".local/share/applications/virtual_keyboard.desktop", KEYBOARD % programs)
        # As the session starts it, but for a display without hardware, and so that any program may take pictures.
        os.chmod(self.room.write("path/kwin_wayland", COMPOSITOR % programs), 0o755)
        self.room.environment["PATH"] = self.room.path("path") + ":" + self.room.environment["PATH"]

    def ppm(self):
        return kwin_picture(self.room.environment["DBUS_SESSION_BUS_ADDRESS"])

    def _runner(self):
        """Finds windows and switches to them."""
        return self.interface("org.kde.KWin", "/WindowsRunner", "org.kde.krunner1")

    def windows(self):
        return [match[0] for match in self._runner().Match("Vigilo") if match[1] == "Vigilo"]

    def activate_window(self):
        self._runner().Run(self.windows()[0], "")

    def type(self, text):
        self.key(*("space" if character == " " else character for character in text))

    def key(self, *keys):
        self.room.run(self.room.path("programs/virtual_keyboard"), *keys)

    def is_dark(self):
        # On outputs without hardware, it waits in vain for KWin to have done it.
        return "kscreen-doctor" in self.room.programs()

    def end_system_lock(self):
        for pid in self.room.pids("kscreen-doctor"):
            self.room.run("kill", str(pid))
        super().end_system_lock()
