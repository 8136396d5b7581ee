"""openbox with trayer, and the sessions that have even less."""

from harness.processes import PATIENCE, wait_until

from .findings import lacks
from .holders import LoginManager
from .x11 import X11Environment

# The lines of the main menu that can be chosen, from the top.
MENU = ("showAbout", "showWindow", "toggleProtection", "agentLock", "appleLock", "openLockSettings",
        "toggleLaunchAtLogin", "quitApp")


class Openbox(X11Environment):
    name = "openbox"
    title = "openbox, trayer"
    version_of = "openbox"
    needs = {
        "openbox-session": "openbox", "trayer": "trayer", "xsecurelock": "xsecurelock",
        "/usr/lib/python3/dist-packages/xdg/__init__.py": "python3-xdg",
    }
    session = ["openbox-session"]

    def settle_in(self):
        super().settle_in()
        self.room.write(
            ".config/openbox/autostart", "trayer --edge top --align right --widthtype request --height 26 &\n"
        )

    def wait_for_session(self):
        wait_until(lambda: {"openbox", "trayer"} <= self.room.programs(), "openbox and the tray")

    def holders(self):
        return [LoginManager(self)]

    def status_item(self):
        return self.embedded_item("trayer")


class NoSessionBus(Openbox):
    name = "no-session-bus"
    title = "openbox, trayer, no session bus"
    has_session_bus = False

    def act(self, action):
        """By the status item and the keyboard."""
        self.press_embedded_item()
        wait_until(self.windows, "the window")
        self.settle()
        self.key("F10")
        self.settle()
        self.key("Home", *["Down"] * MENU.index(action), "Return")


class BareX(X11Environment):
    name = "bare-x"
    title = "X server alone"
    version_of = "xserver-xorg-core"
    needs = {"/usr/lib/xorg/Xorg": "xserver-xorg-core", "xsecurelock": "xsecurelock"}
    starts_entries = False
    no_start_words = "nothing reads the autostart folder; a line in `~/.xinitrc` does it"

    def holders(self):
        return [LoginManager(self)]

    def status_item(self):
        if self.is_owned("org.kde.StatusNotifierWatcher"):
            raise AssertionError("there is somebody who hosts status items")
        # Somebody who starts it again gets the window.
        self.close_window()
        self.room.start(self.vigilo).wait(PATIENCE)
        wait_until(self.windows, "the window")
        return lacks("none, as nothing shows one; the window, its menu and a second start reach everything")


class NoTray(BareX):
    name = "no-tray"
    title = "openbox, no tray"
    version_of = "openbox"
    needs = BareX.needs | {"openbox": "openbox"}
    session = ["openbox"]
    no_start_words = "`openbox` alone reads no autostart folder; `openbox-session` does"

    def wait_for_session(self):
        wait_until(lambda: "openbox" in self.room.programs(), "openbox")
