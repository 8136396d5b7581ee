"""Limits of a running program, as it meets them when the system has no more to give."""

import os
import subprocess

# As prlimit(1) and proc(5) name them.
_NAMES = {"nofile": "Max open files", "nproc": "Max processes", "as": "Max address space"}


def descriptors(pid):
    """The numbers that a process has in use for good, leaving out those of a moment and of a look at the
    process table."""
    folder = "/proc/%d/fd" % pid

    def lasts(number):
        try:
            return not os.readlink(os.path.join(folder, number)).startswith("/proc/")
        except FileNotFoundError:
            return False

    numbers = set(os.listdir(folder))
    for _ in range(20):
        numbers &= set(os.listdir(folder))
    return {int(number) for number in numbers if lasts(number)}


class Limits:
    """Those of the process `pid`, set as its own user, who may lift them again up to what they were."""

    def __init__(self, pid, user):
        self._pid = pid
        self._user = str(user)

    def set(self, kind, value):
        command = ["prlimit", "--pid", str(self._pid), "--%s=%s:" % (kind, value)]
        change = ["setpriv", "--reuid", self._user, "--regid", self._user, "--clear-groups"]
        subprocess.run([*change, *command], check=True)

    def lift(self, kind):
        with open("/proc/%d/limits" % self._pid, encoding="utf-8") as file:
            (hard,) = (line.split()[-2] for line in file if line.startswith(_NAMES[kind]))
        self.set(kind, hard)

    def leave_descriptors(self, count):
        """Lets it have only so many more descriptors."""
        used = descriptors(self._pid)
        limit = 0
        while count >= 0:
            count -= limit not in used
            limit += 1
        self.set("nofile", limit - 1)

