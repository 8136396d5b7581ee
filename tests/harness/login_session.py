#!/usr/bin/python3
"""Opens a session at logind, prints its id and keeps it. Usage: login_session.py USER KIND LEADER-PID SECONDS"""

import pwd
import sys
import time

import dbus

user, kind, leader, seconds = sys.argv[1], sys.argv[2], int(sys.argv[3]), float(sys.argv[4])
bus = dbus.SystemBus()
manager = dbus.Interface(
    bus.get_object("org.freedesktop.login1", "/org/freedesktop/login1", introspect=False),
    "org.freedesktop.login1.Manager",
)
reply = manager.CreateSession(
    dbus.UInt32(pwd.getpwnam(user).pw_uid), dbus.UInt32(leader), "vigilo-test", kind, "user", "", "seat0",
    dbus.UInt32(1), "tty1", ":95", False, "", "", dbus.Array([], signature="(sv)"),
    signature="uusssssussbssa(sv)",
)
# The session lives for as long as this descriptor is open.
keep = reply[3].take()
print(reply[0], flush=True)
time.sleep(seconds)
