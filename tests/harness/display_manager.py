#!/usr/bin/python3
"""Stands in for GNOME's display manager, without which its shell has no lock screen: it is there, has a
version, and takes note of the session. Usage: display_manager.py SECONDS"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.gnome.DisplayManager"
PATH = "/org/gnome/DisplayManager/Manager"


class DisplayManager(dbus.service.Object):
    @dbus.service.method(NAME + ".Manager", in_signature="a{sv}")
    def RegisterSession(self, _details):
        pass

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="ss", out_signature="v")
    def Get(self, _interface, name):
        return "43.0" if name == "Version" else ""

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="s", out_signature="a{sv}")
    def GetAll(self, _interface):
        return {"Version": "43.0"}


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SystemBus()
manager = DisplayManager(bus, PATH)
name = dbus.service.BusName(NAME, bus)
GLib.timeout_add_seconds(int(sys.argv[1]), lambda: sys.exit(0))
GLib.MainLoop().run()
