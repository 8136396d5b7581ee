"""What scripts and key bindings of the desktop can ask of the running program."""

import subprocess

ID = "io.github.vigilo.Vigilo"


def perform(bus, action):
    """One of the program's actions; `bus` is a SessionBus that it is on."""
    subprocess.run(
        ["busctl", "--address=" + bus.address, "call", ID, "/io/github/vigilo/Vigilo", "org.freedesktop.Application",
         "ActivateAction", "sava{sv}", action, "0", "0"],
        check=True, stdout=subprocess.DEVNULL,
    )
