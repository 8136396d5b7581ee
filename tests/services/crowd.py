#!/usr/bin/python3
"""Many who are on a bus and do nothing there. Usage: crowd.py ADDRESS COUNT"""

import sys
import time

import dbus.bus

connections = [dbus.bus.BusConnection(sys.argv[1]) for _ in range(int(sys.argv[2]))]
print("ready", flush=True)
time.sleep(900)
