#!/usr/bin/python3
"""The settings of a desktop as its portal tells them; says so on a line when it is there. Usage:
fake_settings_portal.py SETTINGS (namespaces with their keys and values as JSON; "hang": never an answer)"""

import json
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SETTINGS = json.loads(sys.argv[1])
TYPES = {bool: dbus.Boolean, int: dbus.UInt32, float: dbus.Double, str: dbus.String}


class Settings(dbus.service.Object):
    @dbus.service.method(
        "org.freedesktop.portal.Settings", in_signature="as", out_signature="a{sa{sv}}",
        async_callbacks=("reply", "refuse"),
    )
    def ReadAll(self, namespaces, reply, refuse):
        if SETTINGS == "hang":
            return
        reply({
            name: {key: TYPES[type(value)](value) for key, value in SETTINGS[name].items()}
            for name in namespaces if name in SETTINGS
        })


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
settings = Settings(bus, "/org/freedesktop/portal/desktop")
print("there", flush=True)
GLib.MainLoop().run()
