#!/usr/bin/python3
"""The power service of fake_power_service.py, killed without warning and started anew for each line on
standard input; the end of the input ends it. It is started in a moment, since a copy of this process,
which has loaded everything already, becomes the service.
Usage: restarting_power_service.py with the arguments of fake_power_service.py"""

import os
import runpy
import signal
import sys

# What the service imports.
import dbus  # noqa: F401
import dbus.mainloop.glib  # noqa: F401
import dbus.service  # noqa: F401
from gi.repository import GLib  # noqa: F401

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, ".."))

from harness.processes import die_with_parent


def start():
    pid = os.fork()
    if pid == 0:
        die_with_parent()
        runpy.run_path(os.path.join(HERE, "fake_power_service.py"), run_name="__main__")
    return pid


def kill(pid):
    os.kill(pid, signal.SIGKILL)
    os.waitpid(pid, 0)


service = start()
for _ in sys.stdin:
    kill(service)
    service = start()
kill(service)
