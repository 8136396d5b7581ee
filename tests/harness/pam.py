"""A PAM of one's own: what the program's helper is asked, and by which module, is the test's choice."""

import os
import shutil
import subprocess
import tempfile

from .processes import wait_until


class OddPam:
    """Makes commands whose authentication goes through the module for tests; `module` is its file. They
    run as root, who has a password only there."""

    @staticmethod
    def missing():
        """Why it cannot be had here; None when it can."""
        if os.geteuid() != 0:
            return "a PAM of one's own in a mount namespace needs root"
        if subprocess.run(["unshare", "-m", "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
            return "mount namespaces are not allowed here"
        return None

    def __init__(self, module):
        self.folder = tempfile.mkdtemp(prefix="vigilo-pam-")
        # A service file ends a module's path at a blank, which that of the project may have.
        self._module = os.path.join(self.folder, "module.so")
        os.symlink(os.path.abspath(module), self._module)
        self._services = os.path.join(self.folder, "pam.d")
        os.mkdir(self._services)
        self._write_shadow("$6$none$none")

    def _write_shadow(self, password):
        """All accounts, root's with another password, encrypted."""
        shadow = os.path.join(self.folder, "shadow")
        with open("/etc/shadow", encoding="utf-8") as before, open(shadow, "w", encoding="utf-8") as after:
            os.chmod(shadow, 0o600)
            for line in before:
                fields = line.split(":")
                after.write(":".join([fields[0], password] + fields[2:]) if fields[0] == "root" else line)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder, ignore_errors=True)

    def lock_password(self):
        """From the next attempt on no password can be right."""
        self._write_shadow("!")

    def does(self, *steps):
        """What the module does from the next attempt on."""
        self._write("vigilo", steps)

    def finger_does(self, *steps):
        """The same where the fingerprint reader's module would be asked; it is missing until this is called."""
        self._write("vigilo-fingerprint", steps)

    def finger_has_no_module(self):
        """The same with a module that is not installed."""
        with open(os.path.join(self._services, "vigilo-fingerprint"), "w", encoding="utf-8") as file:
            file.write("-auth required pam_that_is_not_installed.so\n")

    def _write(self, service, steps):
        path = os.path.join(self._services, service)
        with open(path + ".new", "w", encoding="utf-8") as file:
            file.write("auth required %s %s\n" % (self._module, " ".join(steps)))
        os.rename(path + ".new", path)

    def sensor(self):
        """A fingerprint reader, there from the next attempt on."""
        sensor = Sensor(os.path.join(self.folder, "sensor"))
        self.finger_does("sensor", sensor.path)
        return sensor

    def command(self, *command):
        script = """set -e
            mount --make-rprivate /
            mount --bind "$0/shadow" /etc/shadow
            mount --bind "$0/pam.d" /etc/pam.d
            exec "$@" """
        return ["unshare", "-m", "bash", "-c", script, self.folder, *command]


class Sensor:
    """A fingerprint reader that is a pipe to the module for tests."""

    def __init__(self, path):
        self.path = path
        os.mkfifo(path)

    def touch(self, finger):
        """A finger on it: "right", "wrong", "last" (wrong once too often), or "gone" when it is unplugged."""
        with open(wait_until(self._opened, "the module to read"), "w", encoding="utf-8") as pipe:
            pipe.write(finger + "\n")

    def _opened(self):
        try:
            return os.open(self.path, os.O_WRONLY | os.O_NONBLOCK)
        except OSError:
            return None  # nobody reads
