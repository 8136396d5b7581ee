#!/usr/bin/python3
"""The watcher that panels find status items through, without a panel: standard input says "host" when
one comes and "no host" when it goes. Prints "ready", "asked" for each question whether there is one, and
"item NAME" for each item that is registered. A second watcher waits for the first one's end."""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.kde.StatusNotifierWatcher"
# For programs that look for the property here before they ask for it.
DESCRIPTION = """<node><interface name="%s">
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<method name="RegisterStatusNotifierItem"><arg name="item" type="s" direction="in"/></method>
</interface></node>""" % NAME


def say(line):
    print(line, flush=True)


class Watcher(dbus.service.Object):
    is_hosted = False

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        if (interface, name) != (NAME, "IsStatusNotifierHostRegistered"):
            raise dbus.DBusException("There is no " + name, name="org.freedesktop.DBus.Error.InvalidArgs")
        say("asked")
        return dbus.Boolean(self.is_hosted, variant_level=1)

    @dbus.service.method(dbus.INTROSPECTABLE_IFACE, out_signature="s")
    def Introspect(self):
        return DESCRIPTION

    @dbus.service.method(NAME, in_signature="s")
    def RegisterStatusNotifierItem(self, item):
        say("item " + item)

    @dbus.service.signal(NAME)
    def StatusNotifierHostRegistered(self):
        pass

    @dbus.service.signal(NAME)
    def StatusNotifierHostUnregistered(self):
        pass

    def hear(self, *_):
        line = sys.stdin.readline()
        if not line:
            loop.quit()
            return False
        self.is_hosted = line == "host\n"
        if self.is_hosted:
            self.StatusNotifierHostRegistered()
        else:
            self.StatusNotifierHostUnregistered()
        return True


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
loop = GLib.MainLoop()
bus = dbus.SessionBus()
watcher = Watcher(bus, "/StatusNotifierWatcher")
name = dbus.service.BusName(NAME, bus)
GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, watcher.hear)
say("ready")
loop.run()
