"""The lock screen of a program started for a test, as a screen reader finds it."""

import os
import signal

from .agents import Agents
from .display import windows_named
from .pam import OddPam
from .processes import environment, wait_until

UNLOCK = "Unlock Agent Lock with Touch ID or password"
APPLE_LOCK = "Switch to secure Apple Lock"


class LockScreen:
    """Up from the start, with the given agents, as `Agents` takes them. Everything goes with the test
    case; `desktop` is an AccessibleDesktop. The program gets the variables in its environment."""

    def __init__(self, case, desktop, display, processes, vigilo, module, agents=(), **variables):
        self.desktop = desktop
        self.display = display
        self.pam = OddPam(module)
        case.addCleanup(self.pam.__exit__)
        self.pam.does("ask", "Password:")
        self.agents = Agents(*agents)
        case.addCleanup(self.agents.__exit__)
        processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.process = processes.start(
            Agents.apart(*self.pam.command(*self.agents.command(vigilo))),
            env=environment(
                DISPLAY=display.name, WAYLAND_DISPLAY=None, DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
                **variables,
            ),
        )
        wait_until(lambda: windows_named(display.name, "Vigilo"), "the window")
        case.addCleanup(self.process.wait)
        case.addCleanup(os.kill, Agents.first(self.process), signal.SIGKILL)
        desktop.wait_for("push button", "Start Awake Session").press()
        self.wait()

    def wait(self):
        self.desktop.wait_for("push button", UNLOCK)
        if self.agents.count:
            header = "%d AGENT%s DETECTED" % (self.agents.count, "" if self.agents.count == 1 else "S")
            self.desktop.wait_for("heading", header)

    def shown(self):
        """The nodes that are shown: all of the lock screen's, as long as it covers the window."""
        nodes = [node for node in self.desktop.nodes() if "showing" in node.states]
        starts = [index for index, node in enumerate(nodes) if (node.role, node.name) == ("heading", "Agent Lock")]
        return nodes[starts[-1] :] if starts else []

    def prompt(self):
        """The nodes of the prompt; none without one."""
        nodes = self.shown()
        for index, node in enumerate(nodes):
            if (node.role, node.name) == ("dialog", "Unlock Vigilo"):
                return nodes[index:]
        return []

    def focused(self):
        """What of it has the keyboard: its role and name."""
        found = [(node.role, node.name) for node in self.shown() if "focused" in node.states]
        return found[-1] if found else None
