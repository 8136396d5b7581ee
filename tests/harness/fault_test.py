"""What the tests of faults begin with."""

import os
import signal
import tempfile
import unittest

import dbus

from .agents import Agents
from .buses import SessionBus
from .display import VirtualDisplay, windows_named
from .hold_ups import HoldUps
from .limits import descriptors
from .pictures import Picture
from .power_service import PowerService
from .processes import PATIENCE, Processes, environment, wait_until

ID = "io.github.vigilo.Vigilo"


class FaultTest(unittest.TestCase):
    """The program on a private display and bus, without logind; what goes wrong is up to the tests."""

    vigilo = None  # its path, from the command line

    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory(prefix="vigilo-faults-"))
        self.display = self.enterContext(VirtualDisplay())
        self.bus = self.enterContext(SessionBus())
        self.processes = self.enterContext(Processes())
        self.hold_ups = HoldUps(self.folder)
        self.addCleanup(self.hold_ups.end, self.id())
        self.variables = environment(
            DISPLAY=self.display.name,
            WAYLAND_DISPLAY=None,
            DBUS_SESSION_BUS_ADDRESS=self.bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
            XDG_RUNTIME_DIR=self.folder,
        )

    def power_service(self):
        service = PowerService(self.folder, self.processes, self.variables)
        self.addCleanup(service.stop)
        return service

    def start(self, command=(), shims=(), **variables):
        """The program with its window shown, behind another command where there is one."""
        self.program = self.processes.start(
            [*command, self.vigilo], env=self.variables | self.hold_ups.variables(*shims) | variables
        )
        self.pid = self.program.pid
        self.window = wait_until(self.windows, "the window")[0]
        self.display.settle()
        self.hold_ups.begin()

    def start_alone(self, **variables):
        """The same, where agents that other tests run meanwhile take no rows of its window."""
        self.start(Agents.alone(), **variables)
        self.pid = Agents.pid_alone(self.program)

    def windows(self):
        return windows_named(self.display.name, "Vigilo")

    def act(self, action):
        """Calls an action of the program over the bus."""
        self._call(
            ID, "/io/github/vigilo/Vigilo", "org.freedesktop.Application", "ActivateAction", "sava{sv}",
            (action, [], {}),
        )

    def instance(self):
        """The process id of the one instance; None when there is none."""
        try:
            return self._call(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "GetConnectionUnixProcessID", "s", (ID,),
            )
        except dbus.DBusException:
            return None

    def _call(self, *message):
        connection = dbus.bus.BusConnection(self.bus.address)
        try:
            return connection.call_blocking(*message)
        finally:
            connection.close()

    def shows_a_session(self):
        """Whether the point before the window's state is green."""
        left, top = self.display.position(self.window)
        red, green, blue = Picture(self.display.picture(), origin=(left, top)).colour(561, 46)
        return green > 150 and red < 100 and blue < 150

    def begin_session(self, service):
        self.assertFalse(self.shows_a_session())
        self.act("toggleProtection")
        service.wait_until_held()
        wait_until(self.shows_a_session, "the session in the window")

    def press_the_button(self):
        self.display.click(self.window, 360, 379)

    def end_in_order(self):
        os.kill(self.pid, signal.SIGTERM)
        self.assertEqual(self.program.wait(PATIENCE), 0)

    def has(self):
        """How many descriptors, threads and children the program has."""
        folder = "/proc/%d" % self.pid
        children = 0
        threads = os.listdir(folder + "/task")
        for thread in threads:
            try:
                with open("%s/task/%s/children" % (folder, thread), encoding="utf-8") as file:
                    children += len(file.read().split())
            except FileNotFoundError:
                pass  # ended meanwhile
        return len(descriptors(self.pid)), len(threads), children

    def wait_until_as_before(self, before):
        """Connections and threads end behind the back of whoever needs them no more."""
        wait_until(lambda: all(now <= then for now, then in zip(self.has(), before)), "what is left to go")
