"""A login session of an ordinary user, whose programs share one home and all end with it. It belongs into
a process namespace of its own, so that they see nothing of the machine's other processes."""

import os
import pwd
import shutil
import signal
import subprocess

from .buses import accepts
from .owner import NAME, UID, Owner
from .processes import PATIENCE, Processes, wait_until

GROUP = pwd.getpwuid(UID).pw_gid

SERVICES = "/usr/share/dbus-1/services"
DESKTOPS = {"xfce", "mate", "gnome", "kde", "cinnamon", "lxqt"}

SESSION_BUS = """<busconfig>
  <type>session</type>
  <listen>unix:path={path}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow user="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

# Stays for as long as the room is open and sees a password that nobody else sees.
ENTRANCE = """set -e
mount --make-rprivate /
mount --bind "$0/shadow" /etc/shadow
# Session managers name their sockets for their process ids, which are the same in every room.
mkdir -p /tmp/.ICE-unix
mount -t tmpfs -o mode=1777 none /tmp/.ICE-unix
exec sleep infinity"""

# Its arguments, in a process namespace with its own /proc, whose first process takes care of orphans.
APART = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "bash", "-c", '"$@"; exit $?', "room"]

# Where the processes of a login session are put; which of them depends on the system.
CONTROL_GROUPS = ("/sys/fs/cgroup/unified", "/sys/fs/cgroup/systemd", "/sys/fs/cgroup")


class Room:
    """The owner's session. `environment` is what its programs get; `user` is the owner's name."""

    user = NAME

    @staticmethod
    def missing():
        """Why it cannot be had here; None when it can."""
        return Owner.missing()

    def __init__(self, session, **variables):
        if os.getppid() != 1:
            raise RuntimeError("a room needs a process namespace of its own")
        self.owner = Owner()
        self.home = self.owner.home
        self.processes = Processes()
        self.environment = {
            "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "USER": NAME, "LOGNAME": NAME, "SHELL": "/bin/sh",
            "HOME": self.home, "XDG_RUNTIME_DIR": os.path.join(self.home, "run"), "XDG_SESSION_ID": session,
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus",
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus",
        } | variables
        self.folder("run")
        self._groups = []
        try:
            self._groups = _control_groups("user.slice/user-%d.slice/session-%s.scope" % (UID, session))
            entrance = self.processes.start(["unshare", "--mount", "bash", "-c", ENTRANCE, self.owner.folder])
            self._entrance = str(entrance.pid)
            wait_until(lambda: _text("/proc/%d/comm" % entrance.pid) == "sleep\n", "the room")
        except BaseException:
            self.stop()
            raise

    def _end_all(self):
        """Ends everything that the owner runs; outside this namespace, nothing can be seen."""

        def all_ended():
            pids = _pids_of_the_owner()
            for pid in pids:
                try:
                    os.kill(pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
            return not pids

        wait_until(all_ended, "the end of the session")

    def empty(self):
        """Ends everything in the room; the home stays, except for what lives no longer than a login."""
        self._end_all()
        shutil.rmtree(self.environment["XDG_RUNTIME_DIR"])
        self.folder("run")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        self._end_all()
        self.processes.stop()
        for group in self._groups:
            _remove_folders(group, 3)
        self.owner.__exit__()

    def path(self, name):
        """Of a file in the home."""
        return os.path.join(self.home, name)

    def folder(self, name):
        """The path of a folder in the home, which is made where it is missing."""
        path = self.home
        for part in name.split("/"):
            path = os.path.join(path, part)
            if not os.path.isdir(path):
                os.mkdir(path, 0o700)
                os.chown(path, UID, GROUP)
        return path

    def write(self, name, text):
        """A file of the owner's; the path."""
        path = os.path.join(self.folder(os.path.dirname(name)) if "/" in name else self.home, os.path.basename(name))
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chown(path, UID, GROUP)
        return path

    def command(self, *command):
        return [
            "sh", "-c", 'for group in $0; do echo 0 > "$group/cgroup.procs"; done; exec "$@"', " ".join(self._groups),
            "nsenter", "-t", self._entrance, "--mount", "--wd=" + self.home, "--",
            "setpriv", "--reuid", str(UID), "--regid", str(GROUP), "--clear-groups", *command,
        ]

    def _variables(self, changes):
        return {name: value for name, value in (self.environment | changes).items() if value is not None}

    def start(self, *command, log=None, **variables):
        """A program in the room; its output goes to the file `log`. Variables that are None are not set."""
        environment = self._variables(variables)
        if log is None:
            return self.processes.start(self.command(*command), env=environment)
        with open(log, "w", encoding="utf-8") as file:
            return self.processes.start(self.command(*command), env=environment, stdout=file, stderr=file)

    def run(self, *command, **variables):
        """What a program in the room prints; empty when it fails."""
        environment = self._variables(variables)
        result = subprocess.run(
            self.command(*command), env=environment, check=False, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, timeout=PATIENCE,
        )
        return result.stdout.strip() if result.returncode == 0 else ""

    def start_bus(self, desktops=()):
        """A session bus that starts services on demand, with the environment as it is now: those of these
        desktops ("mate") and those that belong to none."""
        socket = os.path.join(self.environment["XDG_RUNTIME_DIR"], "bus")
        services = self.folder("run/services")
        for name in os.listdir(SERVICES):
            parts = set(name.lower().split("."))
            if not parts & DESKTOPS - set(desktops):
                os.symlink(os.path.join(SERVICES, name), os.path.join(services, name))
        configuration = self.write("run/bus.conf", SESSION_BUS.format(path=socket, services=services))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + socket
        self.start("dbus-daemon", "--config-file=" + configuration, "--nofork", "--nopidfile")
        wait_until(lambda: accepts(socket), "the session bus")

    def programs(self):
        """The names of those that run here, as the kernel keeps them (15 bytes at most)."""
        return {_text("/proc/%d/comm" % pid).strip() for pid in _pids_of_the_owner()}

    def pids(self, name):
        """Process ids of the programs of this name."""
        return [pid for pid in _pids_of_the_owner() if _text("/proc/%d/comm" % pid).strip() == name[:15]]


def _pids_of_the_owner():
    found = []
    for name in filter(str.isdigit, os.listdir("/proc")):
        fields = dict(line.split(":\t", 1) for line in _text("/proc/%s/status" % name).splitlines() if ":\t" in line)
        if fields and fields["Uid"].split()[0] == str(UID) and not fields["State"].startswith("Z"):
            found.append(int(name))
    return found


def _remove_folders(path, count):
    """The folder and those it is in, so many in all, as long as they are empty."""
    for _ in range(count):
        try:
            os.rmdir(path)
        except OSError:
            return  # another room has one, too
        path = os.path.dirname(path)


def _control_groups(name):
    """The folders, made where they are missing, by which logind knows the session of a process; none
    where there are no such groups."""
    groups = []
    for root in CONTROL_GROUPS:
        if os.path.exists(os.path.join(root, "cgroup.procs")):
            group = os.path.join(root, name)
            os.makedirs(group, exist_ok=True)
            groups.append(group)
    return groups


def _text(path):
    try:
        with open(path, encoding="utf-8") as file:
            return file.read()
    except (FileNotFoundError, ProcessLookupError):
        return ""
