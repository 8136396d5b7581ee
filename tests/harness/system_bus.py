"""A private system bus with a real logind on it."""

import os
import subprocess

from .buses import Bus
from .processes import Processes, environment, wait_until

HERE = os.path.dirname(os.path.abspath(__file__))
POLKITD = "/usr/lib/polkit-1/polkitd"
LOGIND = "/lib/systemd/systemd-logind"

# Deny by default, then whatever the installed services' own policies allow, as on a real system.
SYSTEM_BUS = """<busconfig>
  <type>system</type>
  <listen>unix:path={path}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus"/>
  </policy>
  <policy user="root">
    <allow own="org.freedesktop.systemd1"/>
    <allow own="org.gnome.DisplayManager"/>
  </policy>
  <policy context="default"><allow send_destination="org.gnome.DisplayManager"/></policy>
  <includedir>/usr/share/dbus-1/system.d</includedir>
  <includedir>/etc/dbus-1/system.d</includedir>
</busconfig>
"""


class SystemBus(Bus):
    """A system bus with systemd-logind, polkitd and one active session. Needs root: logind gets a
    mount namespace in which /run/systemd is a folder of ours."""

    @staticmethod
    def missing():
        """Why it cannot be had here; None when it can."""
        if os.geteuid() != 0:
            return "a private logind needs root"
        for program in (LOGIND, POLKITD, "/usr/bin/unshare", "/usr/bin/nsenter"):
            if not os.path.exists(program):
                return program + " is not installed"
        if subprocess.run(["unshare", "-m", "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
            return "mount namespaces are not allowed here"
        return None

    def __init__(self, user="root", kind="x11", lifetime=900, logind_settings="", polkit_rule=None):
        super().__init__(SYSTEM_BUS)
        self.user = user
        self._kind = kind
        with open(self._path("logind.conf"), "w", encoding="utf-8") as file:
            file.write("[Login]\n" + logind_settings)
        os.mkdir(self._path("rules"))
        if polkit_rule:
            with open(self._path("rules/10-test.rules"), "w", encoding="utf-8") as file:
                file.write(polkit_rule)
        self._lifetime = str(lifetime)
        self._environment = environment(DBUS_SYSTEM_BUS_ADDRESS=self.address)
        try:
            self._start()
        except BaseException:
            self.stop()
            raise

    def _path(self, name):
        return os.path.join(self.folder, name)

    def _start(self):
        for folder in ("seats", "sessions", "users", "inhibit", "shutdown", "system"):
            os.makedirs(self._path("run/" + folder))
        self.manager_log = self._path("manager.log")
        with open(self.manager_log, "w", encoding="utf-8") as log:
            self.processes.start(
                ["/usr/bin/python3", os.path.join(HERE, "service_manager.py"), self._lifetime],
                env=self._environment,
                stdout=log,
            )
        wait_until(lambda: "ready" in self.manager_calls(), "the service manager")
        self.start_logind()
        self.processes.start(
            ["nsenter", "-t", str(self.logind.pid), "-m", "timeout", self._lifetime, POLKITD, "--no-debug"],
            env=self._environment,
        )
        leader = self.processes.start(["sleep", self._lifetime])
        session_log = self._path("session.log")
        with open(session_log, "w", encoding="utf-8") as log:
            self.processes.start(
                [
                    "/usr/bin/python3", os.path.join(HERE, "login_session.py"),
                    self.user, self._kind, str(leader.pid), self._lifetime,
                ],
                env=self._environment,
                stdout=log,
            )
        wait_until(lambda: _text(session_log).endswith("\n"), "the session")
        self.session_id = _text(session_log).strip()

    def start_display_manager(self):
        """What GNOME's shell looks for before it has a lock screen."""
        self.processes.start(
            ["/usr/bin/python3", os.path.join(HERE, "display_manager.py"), self._lifetime], env=self._environment
        )
        wait_until(lambda: self.has("org.gnome.DisplayManager"), "the display manager")

    def start_logind(self):
        """Starts logind, again after it was stopped."""
        script = """set -e
            mount --make-rprivate /
            mount --bind "$0/run" /run/systemd
            mount --bind "$0/logind.conf" /etc/systemd/logind.conf
            mount --bind "$0/rules" /etc/polkit-1/rules.d
            exec "$1" """
        self.logind = self.processes.start(
            ["unshare", "-m", "bash", "-c", script, self.folder, LOGIND], env=self._environment
        )
        wait_until(lambda: self.call("ListSessions") is not None, "logind")

    def call(self, method, *arguments):
        """What busctl prints of a call to logind's manager; None when it fails."""
        return self._ask(
            "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager", method, *arguments
        )

    def polkit_answers(self):
        """Whether polkitd answers within two seconds. That of polkit 122 can miss the end of a rule it runs, and
        then stands still until it gives the rule up, after 15 seconds."""
        name = self._ask(
            "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority", "org.freedesktop.DBus.Properties",
            "Get", "ss", "org.freedesktop.PolicyKit1.Authority", "BackendName",
        )
        return name is not None

    def _ask(self, *call):
        """What busctl prints of a call: service, path, interface, method, arguments. None when it fails, or takes
        more than two seconds."""
        result = subprocess.run(
            ["busctl", "--system", "--timeout=2", "call", *call],
            env=self._environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
        )
        return result.stdout.strip() if result.returncode == 0 else None

    def set_idle(self, is_idle):
        """What the desktop tells logind about its user."""
        subprocess.run(
            [
                "busctl", "--system", "call", "org.freedesktop.login1",
                "/org/freedesktop/login1/session/" + self.session_id, "org.freedesktop.login1.Session",
                "SetIdleHint", "b", "true" if is_idle else "false",
            ],
            env=self._environment, check=True,
        )

    def is_locked(self):
        """Whether the desktop has told logind that it has locked the session."""
        answer = subprocess.run(
            [
                "busctl", "--system", "get-property", "org.freedesktop.login1",
                "/org/freedesktop/login1/session/" + self.session_id, "org.freedesktop.login1.Session", "LockedHint",
            ],
            env=self._environment, check=True, stdout=subprocess.PIPE, text=True,
        ).stdout.strip()
        return answer == "b true"

    def announce_sleep(self, begins):
        """Sends the signal with which logind announces a suspend or the waking from it."""
        subprocess.run(
            [
                "dbus-send", "--bus=" + self.address, "--type=signal", "/org/freedesktop/login1",
                "org.freedesktop.login1.Manager.PrepareForSleep", "boolean:" + ("true" if begins else "false"),
            ],
            check=True,
        )

    def inhibitors(self):
        """Vigilo's locks as logind lists them: (what, who, why, mode, uid, pid) each."""
        import dbus  # only where there is such a bus

        connection = dbus.bus.BusConnection(self.address)
        try:
            manager = dbus.Interface(
                connection.get_object("org.freedesktop.login1", "/org/freedesktop/login1", introspect=False),
                "org.freedesktop.login1.Manager",
            )
            rows = [tuple(row) for row in manager.ListInhibitors()]
        finally:
            connection.close()
        return [
            (str(what), str(who), str(why), str(mode), int(uid), int(pid))
            for what, who, why, mode, uid, pid in rows
            if who == "Vigilo"
        ]

    def locking_desktop(self):
        """A desktop that locks the session when logind asks it to."""
        return _LockingDesktop(self._path("desktop.log"), self.session_id, self._environment)

    def has(self, name):
        """Whether somebody owns a name on this bus."""
        rows = subprocess.run(
            ["busctl", "--system", "list", "--no-legend"], env=self._environment, check=True,
            stdout=subprocess.PIPE, text=True,
        ).stdout.splitlines()
        return any(row.split()[0] == name for row in rows)

    def listens(self, pid):
        """Whether a process is on this bus."""
        rows = subprocess.run(
            ["busctl", "--system", "list", "--no-legend"], env=self._environment, check=True,
            stdout=subprocess.PIPE, text=True,
        ).stdout.splitlines()
        return any(row.split()[1] == str(pid) for row in rows)

    def manager_calls(self):
        """What logind has asked of the service manager so far, a line each."""
        return _text(self.manager_log)


class _LockingDesktop:
    def __init__(self, log_path, session, variables):
        self._log_path = log_path
        with open(log_path, "w", encoding="utf-8") as log:
            self._processes = Processes()
            self._processes.start(
                ["/usr/bin/python3", os.path.join(HERE, "locking_desktop.py"), session], env=variables, stdout=log
            )

    def __enter__(self):
        wait_until(lambda: "ready" in _text(self._log_path), "the desktop")
        return self

    def __exit__(self, *_):
        self._processes.stop()

    def requests(self):
        """How often it was asked so far."""
        return _text(self._log_path).count("lock")


def _text(path):
    with open(path, encoding="utf-8") as file:
        return file.read()
