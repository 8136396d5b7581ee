#!/usr/bin/python3
"""A desktop's notification service that can be asked for silence; prints what it is asked.
Usage: fake_notification_service.py grant|slow|unable
It takes the name over from another, and lets others do so. "slow" grants when it gets SIGUSR1; "unable" knows no such request."""

import signal
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

ANSWER = sys.argv[1]
INTERFACE = "org.freedesktop.Notifications"


class Service(dbus.service.Object):
    @dbus.service.method(INTERFACE, in_signature="u")
    def UnInhibit(self, cookie):
        print("UnInhibit", int(cookie), flush=True)


class Inhibitable(Service):
    cookies = 6

    @dbus.service.method(INTERFACE, in_signature="ssa{sv}", out_signature="u", async_callbacks=("reply", "error"))
    def Inhibit(self, entry, reason, _hints, reply, error):
        self.cookies += 1
        cookie = self.cookies

        def grant():
            reply(dbus.UInt32(cookie))

        if ANSWER == "slow":
            GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, grant)
        print("Inhibit", entry, reason, "->", cookie, flush=True)
        if ANSWER != "slow":
            grant()


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
service = (Service if ANSWER == "unable" else Inhibitable)(bus, "/org/freedesktop/Notifications")
name = dbus.service.BusName(INTERFACE, bus, allow_replacement=True, replace_existing=True)
print("ready", flush=True)
GLib.MainLoop().run()
