"""A desktop's power service that can be killed and started anew."""

import os
import subprocess

from .processes import wait_until

SERVICES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../services")


class PowerService:
    """Plasma's power service, and what the program holds of it."""

    def __init__(self, folder, processes, variables):
        self._log_path = os.path.join(folder, "log")
        with open(self._log_path, "w", encoding="utf-8") as log:
            self._process = processes.start(
                ["/usr/bin/python3", SERVICES + "/restarting_power_service.py", "plasma", "grant"],
                env=variables, stdin=subprocess.PIPE, stdout=log,
            )
        wait_until(lambda: self.starts() == 1, "the power service")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def _lines(self):
        with open(self._log_path, encoding="utf-8") as log:
            # Whole lines only: the last one may be half written.
            return log.read().rpartition("\n")[0].splitlines()

    def starts(self):
        return self._lines().count("ready")

    def takes(self):
        """How often a lock was taken so far."""
        return sum(line.startswith("AddInhibition") for line in self._lines())

    def restart(self):
        """Kills it and starts it anew."""
        before = self.starts()
        self._process.stdin.write(b"again\n")
        self._process.stdin.flush()
        wait_until(lambda: self.starts() > before, "the power service")

    def held(self):
        """The cookies that are held of the service that runs now; each of them begins at 0."""
        cookies = set()
        for line in self._lines():
            if line == "ready":
                cookies.clear()
            elif line.startswith("AddInhibition"):
                cookies.add(line.split()[-1])
            elif line.startswith("release"):
                cookies.remove(line.split()[-1])
        return cookies

    def holders_gone(self):
        """How often a holder has left the bus."""
        return self._lines().count("holder gone")

    def wait_until_held(self):
        wait_until(lambda: len(self.held()) == 1, "the lock")

    def wait_until_released(self):
        wait_until(lambda: not self.held(), "the release")

    def stop(self):
        self._process.stdin.close()
        self._process.wait()
