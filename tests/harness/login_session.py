#!/usr/bin/python3
"""Opens a session at logind, prints its id and keeps it. Usage: login_session.py USER LEADER-PID SECONDS"""

import pwd
import sys
import time

import dbus

user, leader, seconds = sys.argv[1], int(sys.argv[2]), float(sys.argv[3])
bus = dbus.SystemBus()
manager = dbus.Interface(
    bus.get_object("org.freedesktop.login1", "/org/freedesktop/login1", introspect=False),
    "org.freedesktop.login1.Manager",
)
reply = manager.CreateSession(
    dbus.UInt32(pwd.getpwnam(user).pw_uid), dbus.UInt32(leader), "vigilo-test", "x11", "user", "", "seat0",
    dbus.UInt32(1), "tty1", ":95", False, "", "", dbus.Array([], signature="(sv)"),
    signature="uusssssussbssa(sv)",
)
# The session lives for as long as this descriptor is open.
keep = reply[3].take()
print(reply[0], flush=True)
time.sleep(seconds)
