"""Private message buses."""

import os
import shlex
import shutil
import socket
import subprocess
import tempfile

from .processes import Processes, end, environment, wait_until

SESSION_BUS = """<busconfig>
  <type>session</type>
  <listen>unix:path={path}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{folder}/services</servicedir>
  <policy context="default">
    <allow user="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def accepts(path):
    """Whether somebody listens on a socket, which is there a moment before."""
    with socket.socket(socket.AF_UNIX) as connection:
        return connection.connect_ex(path) == 0


def owned_names(address):
    """The well-known names that somebody has on the bus at an address; none while it does not answer."""
    rows = subprocess.run(
        ["busctl", "--address=" + address, "list", "--acquired", "--no-legend"],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
    ).stdout.splitlines()
    return [row.split()[0] for row in rows]


class Bus:
    """A dbus-daemon of our own in a folder of its own; starts no services by itself."""

    def __init__(self, configuration):
        self.folder = tempfile.mkdtemp(prefix="vigilo-bus-")
        os.chmod(self.folder, 0o755)
        self.processes = Processes()
        self._socket = os.path.join(self.folder, "bus")
        self.address = "unix:path=" + self._socket
        with open(os.path.join(self.folder, "bus.conf"), "w", encoding="utf-8") as out:
            out.write(configuration.format(path=self._socket, folder=self.folder))
        try:
            self._start_daemon()
        except BaseException:
            self.stop()
            raise

    def _start_daemon(self):
        file = os.path.join(self.folder, "bus.conf")
        self.daemon = self.processes.start(["dbus-daemon", "--config-file=" + file, "--nofork", "--nopidfile"])
        wait_until(lambda: accepts(self._socket), "the bus")
        os.chmod(self._socket, 0o777)

    def restart(self):
        """Ends the bus, with everybody's connection to it, and starts it anew at the same address."""
        end(self.daemon)
        if os.path.exists(self._socket):
            os.remove(self._socket)
        self._start_daemon()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        self.processes.stop()
        shutil.rmtree(self.folder, ignore_errors=True)


class SessionBus(Bus):
    """A session bus without any service on it."""

    def __init__(self):
        super().__init__(SESSION_BUS)

    def offer(self, name, program, variables):
        """Has the bus start a program, with some of the environment, for whoever calls a name."""
        services = os.path.join(self.folder, "services")
        os.makedirs(services, exist_ok=True)
        with open(os.path.join(services, name + ".service"), "w", encoding="utf-8") as file:
            file.write("[D-BUS Service]\nName=%s\nExec=%s\n" % (name, shlex.quote(program)))
        environment_ = ["%s=%s" % item for item in variables.items()]
        client = environment(DBUS_SESSION_BUS_ADDRESS=self.address)
        subprocess.run(["dbus-update-activation-environment", *environment_], env=client, check=True)
        subprocess.run(
            [
                "busctl", "--address=" + self.address, "call", "org.freedesktop.DBus", "/org/freedesktop/DBus",
                "org.freedesktop.DBus", "ReloadConfig",
            ],
            check=True,
        )
