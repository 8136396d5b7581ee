#!/usr/bin/python3
"""Locks a session of logind as a desktop does: prints each request and says that it has locked.
Usage: locking_desktop.py SESSION"""

import sys

import dbus
import dbus.mainloop.glib
from gi.repository import GLib

LOGIND = "org.freedesktop.login1"

dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SystemBus()
path = "/org/freedesktop/login1/session/" + sys.argv[1]
session = dbus.Interface(bus.get_object(LOGIND, path, introspect=False), LOGIND + ".Session")
session.SetLockedHint(False)


def lock():
    print("lock", flush=True)
    session.SetLockedHint(True)


bus.add_signal_receiver(lock, "Lock", LOGIND + ".Session", LOGIND, path)
print("ready", flush=True)
GLib.MainLoop().run()
