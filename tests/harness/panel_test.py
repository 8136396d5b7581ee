"""What the tests of the status item begin with."""

import os
import signal
import unittest

from .agents import Agents
from .buses import SessionBus
from .display import VirtualDisplay, windows_named
from .panels import StatusItem, icon_theme
from .processes import PATIENCE, Processes, environment, wait_until


IDLE = [
    "Mac can sleep normally", "No agent processes detected", "-", "Open Vigilo…", "Keep Mac Awake",
    "Start Agent Lock", "Start with Apple Lock", "-", "Launch at Login", "-", "Quit Vigilo",
]
AWAKE = [
    "Mac is staying awake", "Until you stop it", "No agent processes detected", "-", "Open Vigilo…",
    "Stop Keeping Awake", "Show Agent Lock", "Switch to Apple Lock", "-", "Launch at Login", "-", "Quit Vigilo",
]


class PanelTest(unittest.TestCase):
    """The program on a private display and bus, with a power service; panels are up to the tests."""

    vigilo = None  # its path, from the command line

    def setUp(self):
        self.display = self.enterContext(VirtualDisplay())
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.config = os.path.join(self.bus.folder, "config")
        self.data_folders = icon_theme(os.path.join(self.bus.folder, "share"))
        self.item = StatusItem(self.bus.address)
        self.start_power_service()

    def environment(self, **changes):
        variables = {
            "DISPLAY": self.display.name, "WAYLAND_DISPLAY": None, "DBUS_SESSION_BUS_ADDRESS": self.bus.address,
            "XDG_CONFIG_HOME": self.config, "XDG_DATA_DIRS": self.data_folders,
        }
        return environment(**(variables | changes))

    def start_power_service(self):
        self.power = self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.environment())

    def start(self, **changes):
        program = self.processes.start(Agents.alone(self.vigilo), env=self.environment(**changes))
        self.addCleanup(self.end, program)
        wait_until(self.windows, "the window")
        self.display.settle()
        self.pid = Agents.pid_alone(program)
        return program

    def end(self, program):
        # What runs it in a process namespace takes no signal itself.
        if program.poll() is None:
            os.kill(self.pid, signal.SIGTERM)
            program.wait(PATIENCE)

    def windows(self):
        return windows_named(self.display.name, "Vigilo")

    def wait_for_titles(self, menu, titles):
        wait_until(lambda: menu.titles() == titles, "the menu: " + ", ".join(titles[:2]))
