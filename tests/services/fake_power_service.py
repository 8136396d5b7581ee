#!/usr/bin/python3
"""One desktop's power service with the interface of the real one; prints what it is asked.
Usage: fake_power_service.py plasma|session-manager|power-manager grant|hang|refuse-twice|ERROR-NAME"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

DESKTOP, ANSWER = sys.argv[1:]

# Name, path, interface.
SERVICES = {
    "plasma": (
        "org.kde.Solid.PowerManagement.PolicyAgent",
        "/org/kde/Solid/PowerManagement/PolicyAgent",
        "org.kde.Solid.PowerManagement.PolicyAgent",
    ),
    "session-manager": ("org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager"),
    "power-manager": (
        "org.freedesktop.PowerManagement",
        "/org/freedesktop/PowerManagement/Inhibit",
        "org.freedesktop.PowerManagement.Inhibit",
    ),
}
NAME, PATH, INTERFACE = SERVICES[DESKTOP]


class Refusal(dbus.DBusException):
    pass


class Service(dbus.service.Object):
    cookies = 0
    refusals = 2 if ANSWER == "refuse-twice" else 0

    def take(self, text, sender, reply, error):
        bus.watch_name_owner(sender, lambda owner: owner or print("holder gone", flush=True))
        if ANSWER == "hang":
            print(text, "...", flush=True)
            return
        if ANSWER not in ("grant", "refuse-twice") or self.refusals > 0:
            self.refusals -= 1
            print(text, "refused", flush=True)
            name = ANSWER if "." in ANSWER else "org.freedesktop.DBus.Error.Failed"
            error(Refusal("no", name=name))
            return
        print(text, "->", self.cookies, flush=True)
        reply(dbus.UInt32(self.cookies))
        self.cookies += 1

    def give_back(self, cookie):
        print("release", int(cookie), flush=True)


OPTIONS = {"sender_keyword": "sender", "async_callbacks": ("reply", "error"), "out_signature": "u"}


class Plasma(Service):
    @dbus.service.method(INTERFACE, in_signature="uss", **OPTIONS)
    def AddInhibition(self, types, who, _why, sender, reply, error):
        self.take("AddInhibition %d %s" % (types, who), sender, reply, error)

    @dbus.service.method(INTERFACE, in_signature="u")
    def ReleaseInhibition(self, cookie):
        self.give_back(cookie)


class SessionManager(Service):
    @dbus.service.method(INTERFACE, in_signature="susu", **OPTIONS)
    def Inhibit(self, who, window, _why, flags, sender, reply, error):
        self.take("Inhibit %s %d %d" % (who, window, flags), sender, reply, error)

    @dbus.service.method(INTERFACE, in_signature="u")
    def Uninhibit(self, cookie):
        self.give_back(cookie)


class PowerManager(Service):
    @dbus.service.method(INTERFACE, in_signature="ss", **OPTIONS)
    def Inhibit(self, who, _why, sender, reply, error):
        self.take("Inhibit %s" % who, sender, reply, error)

    @dbus.service.method(INTERFACE, in_signature="u")
    def UnInhibit(self, cookie):
        self.give_back(cookie)


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
service = {"plasma": Plasma, "session-manager": SessionManager, "power-manager": PowerManager}[DESKTOP](bus, PATH)
# The name last: who sees it may ask at once.
name = dbus.service.BusName(NAME, bus)
print("ready", flush=True)
GLib.MainLoop().run()
