"""A private desktop, and what programs on it use."""

import collections
import os
import subprocess
import time

from harness.agents import Agents
from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.processes import Processes, environment, wait_until

PROJECT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
BUILD = os.path.join(PROJECT, "build/bench")
VIGILO = os.path.join(BUILD, "app/vigilo")

Watched = collections.namedtuple("Watched", "pid stderr")


class Desktop:
    """A private display and private buses with a power service, and programs on them."""

    def __init__(self, size="1280x800x24"):
        self._size = size

    def __enter__(self):
        self.display = VirtualDisplay(self._size)
        self.session_bus = SessionBus()
        self.processes = Processes()
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=self.environment())
        return self

    def __exit__(self, *_):
        self.processes.stop()
        self.session_bus.stop()
        self.display.stop()

    def environment(self, **changes):
        return environment(
            DISPLAY=self.display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=self.session_bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus", **changes,
        )

    def start(self, command):
        """The program, and the seconds until its first frame was drawn."""
        begin = time.monotonic()
        process = self.processes.start(
            command,
            env=self.environment(
                QT_LOGGING_RULES="qt.scenegraph.time.renderloop=true", QT_MESSAGE_PATTERN="%{message}"
            ),
            stderr=subprocess.PIPE,
        )
        while b"rame" not in process.stderr.readline():
            pass
        taken = time.monotonic() - begin
        os.set_blocking(process.stderr.fileno(), False)
        wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")
        return process, taken

    def start_alone(self, *command):
        """The program where it sees none of the machine's agents, whose coming and going is its work: its process
        id, and what it writes."""
        if Agents.missing():
            process, _ = self.start(list(command))
            return Watched(process.pid, process.stderr)
        process, _ = self.start(Agents.apart(*command))
        return Watched(Agents.first(process), process.stderr)

    def frames(self, process):
        """How many frames were drawn since the last question."""
        text = process.stderr.read() or b""
        return text.count(b"Frame rendered") or text.count(b"rendered")


def pss(process):
    with open("/proc/%d/smaps_rollup" % process.pid, encoding="utf-8") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("Pss:")) / 1024


def processor_time(process):
    with open("/proc/%d/stat" % process.pid, encoding="utf-8") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
