"""The program that takes power assertions for tests, driven from outside."""

import os
import subprocess

from .processes import end, environment


class PowerDriver:
    """A running power_driver; addresses of buses that do not exist stand for no bus."""

    def __init__(self, program, session_bus=None, system_bus=None, user=None):
        command = [program]
        if user:
            command = ["setpriv", "--reuid", str(user), "--regid", str(user), "--clear-groups", *command]
        none = "unix:path=/nonexistent/bus"
        self._process = subprocess.Popen(
            command,
            env=environment(
                DBUS_SESSION_BUS_ADDRESS=session_bus.address if session_bus else none,
                DBUS_SYSTEM_BUS_ADDRESS=system_bus.address if system_bus else none,
                DISPLAY=None,
            ),
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        self._line()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        end(self._process)
        self._process.stdin.close()
        self._process.stdout.close()

    def _line(self):
        line = self._process.stdout.readline()
        if not line:
            raise RuntimeError("the driver has ended")
        return line.split()

    def _tell(self, command):
        self._process.stdin.write(command + "\n")
        self._process.stdin.flush()
        return self._line()

    def create(self):
        """(status, id)"""
        status, number = self._tell("create")
        return int(status), int(number)

    def release(self, number):
        self._tell("release %d" % number)

    def holds_a_lock_of_logind(self):
        """Whether one of logind's lock descriptors is open in it."""
        folder = "/proc/%d/fd" % self._process.pid
        return any("/inhibit/" in os.readlink(os.path.join(folder, name)) for name in os.listdir(folder))

    def start_child(self):
        self._tell("child")

    def kill(self):
        self._process.kill()
        self._process.wait()
