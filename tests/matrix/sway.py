"""sway with swayidle and waybar."""

import json
import subprocess

from harness.processes import environment, wait_until
from harness.sway import Sway

from .environment import Environment
from .holders import LoginManager

BAR = {"layer": "top", "height": 32, "modules-left": ["tray"], "modules-right": ["clock"], "tray": {"icon-size": 24}}
STYLE = "* { background: #202020; color: #dddddd; border: none; }"
PATTERN, GROUND = "#ff00ff", "#28405c"


class SwayEnvironment(Environment):
    name = "sway"
    title = "sway, swayidle, waybar"
    version_of = "sway"
    needs = {
        "sway": "sway", "swaybg": "swaybg", "swayidle": "swayidle", "swaylock": "swaylock", "waybar": "waybar",
        "grim": "grim", "wtype": "wtype",
    }
    variables = {"XDG_CURRENT_DESKTOP": "sway"}
    session_type = "wayland"
    starts_entries = False
    no_start_words = "sway reads no autostart folder; `exec vigilo` in its configuration does it"
    dark_words = "outputs off (wlr-output-power-management)"

    def start_display(self):
        """The display comes with the login."""

    def log_in(self):
        self.room.start_bus()
        self.sway = self.enter(Sway(room=self.room, settings="output * bg %s solid_color\n" % GROUND))
        self.room.environment |= {"SWAYSOCK": self.sway.environment["SWAYSOCK"],
                                  "WAYLAND_DISPLAY": self.sway.socket}
        self.room.start("swayidle", "-w", "lock", "swaylock -f -c 101820")
        self.room.start(
            "waybar", "-c", self.room.write("bar.json", json.dumps(BAR)), "-s", self.room.write("bar.css", STYLE)
        )
        # A keyboard that is there before the first key: clients take note of one only after a while.
        self.room.start("wtype", "-s", "1800000", "-k", "Shift_L")
        wait_until(lambda: self.is_owned("org.kde.StatusNotifierWatcher"), "waybar", 60)

    def holders(self):
        return [LoginManager(self)]

    def windows(self):
        return [window for window in self.sway.windows() if window["name"] == "Vigilo"]

    def ppm(self):
        return subprocess.run(
            ["grim", "-t", "ppm", "-"], env=environment(**self.sway.environment), check=True, stdout=subprocess.PIPE
        ).stdout

    def show_pattern(self):
        self.sway.message("output * bg %s solid_color" % PATTERN)
        wait_until(self.shows_pattern, "the test pattern")

    def hide_pattern(self):
        self.sway.message("output * bg %s solid_color" % GROUND)

    def type(self, text):
        self.room.run("wtype", "-d", "60", text)

    def key(self, *keys):
        for key in keys:
            self.room.run("wtype", "-k", key)

    def close_window(self):
        self.sway.message('[title="^Vigilo$"] kill')
        wait_until(lambda: not self.windows(), "the window to go")

    def status_item(self):
        return self.hosted_item("waybar")

    def is_dark(self):
        return self.sway.is_asked_to_sleep()

    def system_lock(self):
        return "swaylock, which swayidle starts at logind's request" if self.lockers() == {"swaylock"} else None
