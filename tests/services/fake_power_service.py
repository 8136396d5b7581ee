#!/usr/bin/python3
"""One desktop's power service with the interface of the real one; prints what it is asked.
Usage: fake_power_service.py plasma|session-manager|power-manager|logind|portal ANSWER
ANSWER is grant, hang, renames, refuse-twice, refuse-late (after a second) or the name of an error.
"renames" grants, and gives its name away and takes it back on SIGUSR1. The portal knows "deny", too: it
accepts the request and says no in its response."""

import os
import signal
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
    "logind": ("org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager"),
    "portal": (
        "org.freedesktop.portal.Desktop",
        "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.Inhibit",
    ),
}
NAME, PATH, INTERFACE = SERVICES[DESKTOP]


def say(*words):
    """In one write: others write into the same file."""
    os.write(sys.stdout.fileno(), (" ".join(map(str, words)) + "\n").encode())


class Refusal(dbus.DBusException):
    pass


def watch_holder(name):
    """Says when a holder has left the bus; the bus bears only so many watches at a time."""

    def notice(owner):
        if not owner:
            say("holder gone")
            watch.cancel()

    watch = bus.watch_name_owner(name, notice)


class Service(dbus.service.Object):
    cookies = 0
    refusals = 2 if ANSWER == "refuse-twice" else 0

    def take(self, text, sender, reply, error):
        watch_holder(sender)
        if ANSWER in ("hang", "refuse-late"):
            say(text, "...")
            if ANSWER == "refuse-late":
                GLib.timeout_add(1000, lambda: error(Refusal("no", name="org.freedesktop.DBus.Error.Failed")))
            return
        if ANSWER not in ("grant", "renames", "refuse-twice") or self.refusals > 0:
            self.refusals -= 1
            say(text, "refused")
            name = ANSWER if "." in ANSWER else "org.freedesktop.DBus.Error.Failed"
            error(Refusal("no", name=name))
            return
        say(text, "->", self.cookies)
        reply(dbus.UInt32(self.cookies))
        self.cookies += 1

    def give_back(self, cookie):
        say("release", int(cookie))


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


class Logind(Service):
    """It grants nothing: that would be a descriptor."""

    @dbus.service.method(INTERFACE, in_signature="ssss", **(OPTIONS | {"out_signature": "h"}))
    def Inhibit(self, what, who, _why, mode, sender, reply, error):
        self.take("Inhibit %s %s %s" % (what, who, mode), sender, reply, error)


class PortalRequest(dbus.service.Object):
    @dbus.service.signal("org.freedesktop.portal.Request", signature="ua{sv}")
    def Response(self, response, results):
        pass

    @dbus.service.method("org.freedesktop.portal.Request")
    def Close(self):
        say("close")
        self.remove_from_connection()


class Portal(Service):
    @dbus.service.method(INTERFACE, in_signature="sua{sv}", out_signature="o", sender_keyword="sender")
    def Inhibit(self, _window, flags, options, sender):
        watch_holder(sender)
        name = sender[1:].replace(".", "_")
        path = "/org/freedesktop/portal/desktop/request/%s/%s" % (name, options["handle_token"])
        request = PortalRequest(bus, path)
        say("Inhibit %d" % flags, ANSWER)
        if ANSWER != "hang":
            GLib.timeout_add(50, lambda: request.Response(0 if ANSWER == "grant" else 1, {}))
        return dbus.ObjectPath(path)


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
KINDS = {
    "plasma": Plasma, "session-manager": SessionManager, "power-manager": PowerManager, "logind": Logind,
    "portal": Portal,
}
service = KINDS[DESKTOP](bus, PATH)
# The name last: who sees it may ask at once.
name = dbus.service.BusName(NAME, bus)
GLib.unix_signal_add(
    GLib.PRIORITY_DEFAULT, signal.SIGUSR1, lambda: bus.release_name(NAME) and bus.request_name(NAME) or True
)
say("ready")
GLib.MainLoop().run()
