"""The program that takes power assertions for tests, driven from outside."""

import os
import subprocess

from .processes import die_with_parent, end, environment


class PowerDriver:
    """A running power_driver; addresses of buses that do not exist stand for no bus."""

    def __init__(self, program, session_bus=None, system_bus=None, user=None, is_sandboxed=False):
        command = [program, "sandboxed"] if is_sandboxed else [program]
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
            preexec_fn=die_with_parent,
        )
        self._line()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        # The end of its input ends it in the orderly way.
        self._process.stdin.close()
        try:
            self._process.wait(5)
        except subprocess.TimeoutExpired:
            end(self._process)
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
        """(status, id); `held_up` is then how long the caller was held up, in milliseconds."""
        status, number, self.held_up = (int(word) for word in self._tell("create"))
        return status, number

    def release(self, number):
        self._tell("release %d" % number)

    def locks_of_logind(self):
        """The lock descriptors of logind that are open in it."""
        folder = "/proc/%d/fd" % self._process.pid
        targets = set()
        for name in os.listdir(folder):
            try:
                targets.add(os.readlink(os.path.join(folder, name)))
            except FileNotFoundError:
                pass  # closed meanwhile
        return {target for target in targets if "/inhibit/" in target}

    def descriptors(self):
        """How many it has open."""
        return len(os.listdir("/proc/%d/fd" % self._process.pid))

    def threads(self):
        return len(os.listdir("/proc/%d/task" % self._process.pid))

    def start_child(self):
        self._tell("child")

    def kill(self):
        self._process.kill()
        self._process.wait()
