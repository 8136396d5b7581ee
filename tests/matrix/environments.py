"""All environments, in the order of the document."""

from .gnome import Gnome
from .lxqt import Lxqt
from .mate import Mate
from .openbox import BareX, NoSessionBus, NoTray, Openbox
from .plasma import Plasma
from .wayland import SwayEnvironment
from .xfce import Xfce

ENVIRONMENTS = {
    kind.name: kind
    for kind in (Gnome, Plasma, Xfce, Mate, Lxqt, SwayEnvironment, Openbox, NoTray, NoSessionBus, BareX)
}
