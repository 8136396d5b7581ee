"""Services of desktops, which a private bus does not start for those that call them."""

from .buses import owned_names
from .libraries import XFCONFD
from .processes import wait_until

UPOWERD = "/usr/libexec/upowerd"


def start_xfconfd(processes, variables):
    """Starts the settings of Xfce on the session bus of these variables."""
    _start(processes, XFCONFD, variables, variables["DBUS_SESSION_BUS_ADDRESS"], "org.xfce.Xfconf")


def start_upowerd(processes, variables):
    """Starts what knows of the batteries on the system bus of these variables."""
    _start(processes, UPOWERD, variables, variables["DBUS_SYSTEM_BUS_ADDRESS"], "org.freedesktop.UPower")


def _start(processes, program, variables, address, name):
    processes.start([program], env=variables)
    wait_until(lambda: name in owned_names(address), name)
