"""What the environments on Wayland have in common whose own session starts the compositor."""

import glob
import os
import re

from harness.owner import UID
from harness.processes import wait_until

from .environment import Environment

DISPLAYS = ("WAYLAND_DISPLAY", "DISPLAY", "XAUTHORITY")
# Of X servers, by the number of the display.
LOCK, SOCKET = "/tmp/.X%s-lock", "/tmp/.X11-unix/X%s"


class WaylandEnvironment(Environment):
    """`compositor` is the program that keeps the X server, `guest` one that is told of both."""

    session_type = "wayland"
    compositor = None
    guest = None
    _numbers = ()  # of X displays

    def start_display(self):
        """The display comes with the login."""

    def log_in(self):
        self._remove_files()
        for name in DISPLAYS:
            self.room.environment.pop(name, None)
        super().log_in()

    def wait_for_session(self):
        self.room.environment |= wait_until(self._displays, "the displays of the compositor", 120)
        self._numbers = [re.sub(r"\D", "", path) for path in glob.glob(LOCK % "*") if self._is_own(path)]
        super().wait_for_session()

    def _is_own(self, path):
        """Whether it is a lock file of this compositor's."""
        try:
            with open(path, encoding="utf-8") as file:
                return os.stat(path).st_uid == UID and int(file.read()) in self.room.pids(self.compositor)
        except (FileNotFoundError, ValueError):
            return False  # of somebody else, who has just gone or come

    def _displays(self):
        for pid in self.room.pids(self.guest):
            with open("/proc/%d/environ" % pid, encoding="utf-8") as file:
                variables = dict(text.split("=", 1) for text in file.read().split("\0") if "=" in text)
            if all(name in variables for name in DISPLAYS):
                return {name: variables[name] for name in DISPLAYS}
        return None

    def _remove_files(self):
        """Whoever ends without being asked leaves files behind, in the folder of all."""
        for path in (file % number for number in self._numbers for file in (LOCK, SOCKET)):
            if os.path.exists(path):
                os.remove(path)
        self._numbers = ()

    def stop(self):
        super().stop()
        self._remove_files()

    def activate_window(self):
        """Gives the main window the keyboard, which a desktop that was still starting may have."""
        self.act("showWindow")

    def close_window(self):
        self.activate_window()
        self.settle()
        self.key("alt+F4")
        wait_until(lambda: not self.windows(), "the window to go")

    def end_system_lock(self):
        """As another way to log in does, a fingerprint for example."""
        self.system_bus.call("UnlockSession", "s", self.system_bus.session_id)
        wait_until(lambda: not self.system_bus.is_locked(), "the end of the system's lock")
