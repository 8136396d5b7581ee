#!/usr/bin/python3
"""The settings of a desktop as its portal tells them; says so on a line when it is there.
Usage: fake_settings_portal.py TEXT-SCALE on|off|hang (animations; nothing is ever answered)"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

TEXT_SCALE, ANIMATIONS = sys.argv[1:]


class Settings(dbus.service.Object):
    @dbus.service.method(
        "org.freedesktop.portal.Settings", in_signature="ss", out_signature="v", async_callbacks=("reply", "refuse")
    )
    def Read(self, namespace, key, reply, refuse):
        if ANIMATIONS == "hang":
            return
        values = {"enable-animations": dbus.Boolean(ANIMATIONS == "on", variant_level=1)}
        try:
            values["text-scaling-factor"] = dbus.Double(TEXT_SCALE, variant_level=1)
        except ValueError:
            values["text-scaling-factor"] = dbus.String(TEXT_SCALE, variant_level=1)
        if namespace == "org.gnome.desktop.interface" and key in values:
            reply(values[key])
        else:
            refuse(dbus.DBusException("no such key", name="org.freedesktop.portal.Error.NotFound"))


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
settings = Settings(bus, "/org/freedesktop/portal/desktop")
print("there", flush=True)
GLib.MainLoop().run()
