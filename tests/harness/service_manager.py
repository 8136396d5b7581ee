#!/usr/bin/python3
"""Stands in for the service manager that logind asks to start and stop units: every job succeeds at
once, and every call is printed. Usage: service_manager.py SECONDS"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

MANAGER = "org.freedesktop.systemd1.Manager"


class ServiceManager(dbus.service.FallbackObject):
    """Below its own path are the units, all loaded and active."""

    jobs = 0

    def job(self, what, unit):
        self.jobs += 1
        number = self.jobs
        path = "/org/freedesktop/systemd1/job/%d" % number
        print(what, unit, flush=True)

        def finish():
            self.JobRemoved(number, path, unit, "done")
            return False

        GLib.timeout_add(20, finish)
        return dbus.ObjectPath(path)

    @dbus.service.method(MANAGER)
    def Subscribe(self):
        pass

    @dbus.service.method(MANAGER, in_signature="ssa(sv)a(sa(sv))", out_signature="o")
    def StartTransientUnit(self, unit, _mode, _properties, _others):
        return self.job("StartTransientUnit", unit)

    @dbus.service.method(MANAGER, in_signature="ss", out_signature="o")
    def StartUnit(self, unit, _mode):
        return self.job("StartUnit", unit)

    @dbus.service.method(MANAGER, in_signature="ss", out_signature="o")
    def StopUnit(self, unit, _mode):
        return self.job("StopUnit", unit)

    @dbus.service.method(MANAGER, in_signature="s")
    def AbandonScope(self, unit):
        pass

    @dbus.service.method(MANAGER, in_signature="sb")
    def SetUnitProperties(self, unit, runtime):
        pass

    @dbus.service.method("org.freedesktop.systemd1.Scope")
    def Abandon(self):
        pass

    @dbus.service.signal(MANAGER, signature="uoss")
    def JobRemoved(self, number, path, unit, result):
        pass

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="ss", out_signature="v")
    def Get(self, _interface, name):
        return {"ActiveState": "active", "LoadState": "loaded"}.get(name, "")


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SystemBus()
name = dbus.service.BusName("org.freedesktop.systemd1", bus)
manager = ServiceManager(bus, "/org/freedesktop/systemd1")
print("ready", flush=True)
GLib.timeout_add_seconds(int(sys.argv[1]), lambda: sys.exit(0))
GLib.MainLoop().run()
