#!/usr/bin/python3
"""A power service that keeps to no interface: each call that it gets is answered with something of
another type than promised."""

import dbus
import dbus.mainloop.glib
import dbus.lowlevel
import dbus.service
from gi.repository import GLib

NAMES = [
    "org.kde.Solid.PowerManagement.PolicyAgent", "org.gnome.SessionManager", "org.freedesktop.PowerManagement",
]


def answer(connection, message):
    if message.get_type() != dbus.lowlevel.MESSAGE_TYPE_METHOD_CALL:
        return dbus.lowlevel.HANDLER_RESULT_NOT_YET_HANDLED
    reply = dbus.lowlevel.MethodReturnMessage(message)
    reply.append(["nonsense", "\N{SNOWMAN}" * 1000], signature="as")
    connection.send_message(reply)
    print("answered", message.get_member(), flush=True)
    return dbus.lowlevel.HANDLER_RESULT_HANDLED


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
bus.add_message_filter(answer)
names = [dbus.service.BusName(name, bus) for name in NAMES]
print("ready", flush=True)
GLib.MainLoop().run()
