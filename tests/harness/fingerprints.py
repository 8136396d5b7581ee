"""The system's own fingerprint service with a reader that is a socket."""

import os
import socket
import subprocess

from .processes import environment, wait_until

SERVICE = "/usr/libexec/fprintd"
NAME = "net.reactivated.Fprint"


class FingerprintService:
    """On a private system bus, with prints of its own. The reader is its library's for tests: all behind it is
    as with one that is plugged in."""

    @staticmethod
    def missing():
        """Why it cannot be had here; None when it can."""
        return None if os.path.exists(SERVICE) else SERVICE + " is not installed"

    def __init__(self, bus, has_reader=True):
        self._reader = os.path.join(bus.folder, "reader")
        prints = os.path.join(bus.folder, "prints")
        os.mkdir(prints)
        self._environment = environment(DBUS_SYSTEM_BUS_ADDRESS=bus.address)
        self._process = bus.processes.start(
            [SERVICE, "--no-timeout"],
            env=self._environment
            | {"STATE_DIRECTORY": prints, "FP_DRIVERS_WHITELIST": "virtual_device"}
            | ({"FP_VIRTUAL_DEVICE": self._reader} if has_reader else {}),
        )
        wait_until(lambda: bus.has(NAME), "the fingerprint service")

    def enroll(self, user, finger):
        """Shows a finger as often as it takes until the reader knows it as the user's right index finger."""
        command = ["fprintd-enroll", "-f", "right-index-finger", user]
        with subprocess.Popen(command, env=self._environment, stdout=subprocess.PIPE, text=True) as enrolling:
            for line in enrolling.stdout:
                if line.startswith("Enrolling") or "enroll-stage-passed" in line:
                    self.touch(finger)
        if enrolling.returncode != 0:
            raise RuntimeError("the finger is not known")

    def touch(self, finger):
        """A finger on the reader, known by this name."""
        self._tell("SCAN " + finger)

    def unplug(self):
        """Pulls the reader out."""
        self._tell("UNPLUG")

    def kill(self):
        self._process.kill()
        self._process.wait()

    def _tell(self, what):
        with socket.socket(socket.AF_UNIX) as reader:
            wait_until(lambda: reader.connect_ex(self._reader) == 0, "the reader")
            reader.sendall(what.encode())
            reader.shutdown(socket.SHUT_WR)
            reader.recv(1)  # it has heard it
