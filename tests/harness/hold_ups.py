"""How long a program's main thread is kept from its events at a time, for those who ask for it in the
environment: HOLD_UPS names the shim that looks, and the file that takes a line for each test."""

import os
import struct

from .preload import preload

_RECORD = struct.Struct("=QQQ")


class HoldUps:
    """Watches a program that is started with `variables`."""

    def __init__(self, folder):
        self._folder = folder
        shim, _, self._report = os.environ.get("HOLD_UPS", "").partition(":")
        self._path = os.path.join(folder, "hold-ups")
        self._shim = shim
        if shim:
            self.begin()
            os.chmod(self._path, 0o666)

    def variables(self, *shims):
        """For the program, with other shims that are loaded into it."""
        shims = [*shims, self._shim] if self._shim else shims
        return {"HOLD_UP_RECORD": self._path} | preload(self._folder, *shims) if shims else {}

    def begin(self):
        """Forgets what was; the start of a program is no fault."""
        if self._shim:
            with open(self._path, "r+b" if os.path.exists(self._path) else "wb") as file:
                file.write(bytes(_RECORD.size))

    def end(self, name):
        """Reports the longest stretch since the beginning, in milliseconds: on a processor or asleep, and
        in wait for a processor; and how many took more than 100 ms without the latter."""
        if self._shim:
            with open(self._path, "rb") as file:
                stretch, waiting, count = _RECORD.unpack(file.read(_RECORD.size))
            with open(self._report, "a", encoding="utf-8") as report:
                report.write("%s\t%.1f\t%.1f\t%d\n" % (name, (stretch - waiting) / 1e6, waiting / 1e6, count))
