"""All environments, in the order of the document."""

from .gnome import Gnome, GnomeWayland
from .lxqt import Lxqt
from .mate import Mate
from .openbox import BareX, NoSessionBus, NoTray, Openbox
from .plasma import Plasma, PlasmaWayland
from .sway import SwayEnvironment
from .xfce import Xfce

ENVIRONMENTS = {
    kind.name: kind
    for kind in (Gnome, GnomeWayland, Plasma, PlasmaWayland, Xfce, Mate, Lxqt, SwayEnvironment, Openbox, NoTray, NoSessionBus, BareX)
}
