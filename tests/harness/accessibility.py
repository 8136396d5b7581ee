"""The desktop's accessibility service on a private session bus, and what it says of a program."""

import os
import shutil
import tempfile

from .buses import SessionBus
from .processes import PATIENCE, environment, wait_until

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
# How long a program may take to answer, also when it has just started, in milliseconds; the library gives
# it 0.8 s otherwise, which a busy machine does not; a press is answered when what it does is done.
ANSWER_LIMIT = STARTUP_LIMIT = 1000 * PATIENCE


def _atspi():
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi

    Atspi.set_timeout(ANSWER_LIMIT, STARTUP_LIMIT)
    return Atspi


class AccessibleDesktop(SessionBus):
    """A session bus with the accessibility service; this process, too, reads the tree over it. For a
    program of another user the service has to run as that one."""

    def __init__(self, user=None):
        super().__init__()
        try:
            self.runtime_folder = tempfile.mkdtemp(prefix="vigilo-runtime-")
            self.environment = {
                "DBUS_SESSION_BUS_ADDRESS": self.address,
                "XDG_RUNTIME_DIR": self.runtime_folder,
                "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            }
            os.environ.update(self.environment)
            os.environ.pop("AT_SPI_BUS_ADDRESS", None)
            command = [LAUNCHER, "--launch-immediately"]
            if user is not None:
                os.chown(self.runtime_folder, user, user)
                command = ["setpriv", "--reuid", str(user), "--regid", str(user), "--clear-groups", *command]
            self.processes.start(command, env=environment(DISPLAY=None))
            wait_until(lambda: os.path.exists(self.runtime_folder + "/at-spi/bus"), "the accessibility bus")
        except BaseException:
            self.stop()
            raise

    def stop(self):
        super().stop()
        shutil.rmtree(self.runtime_folder, ignore_errors=True)

    def nodes(self, program="vigilo"):
        """Everything that can be read of a program, in the order of its tree."""
        from gi.repository import GLib

        desktop = _atspi().get_desktop(0)
        found = []
        for index in range(desktop.get_child_count()):
            try:
                application = desktop.get_child_at_index(index)
                if application and application.get_name() == program:
                    _collect(application, found)
            except GLib.Error:
                pass  # it has just ended
        return found

    def find(self, role, name):
        """The one node with this role and name that is shown; None when there is none."""
        for node in self.nodes():
            if node.role == role and node.name == name and "showing" in node.states:
                return node
        return None

    def wait_for(self, role, name):
        return wait_until(lambda: self.find(role, name), "the %s named %s" % (role, name))

    def prompt(self):
        """The nodes of the unlock prompt that is shown; none without one."""
        nodes = [node for node in self.nodes() if "showing" in node.states]
        for index, node in enumerate(nodes):
            if (node.role, node.name) == ("dialog", "Unlock Vigilo"):
                return nodes[index:]
        return []


class Announcements:
    """What a screen reader is told unasked, from here on: the events of the accessibility bus, each as its
    kind, and the role and the name of what it is about."""

    KINDS = (
        "object:property-change:accessible-name", "object:property-change:accessible-description",
        "object:state-changed:focused", "object:state-changed:checked", "object:state-changed:showing",
        "object:children-changed", "window:activate",
    )

    def __init__(self):
        self.heard = []
        self._listener = _atspi().EventListener.new(self._hear)
        for kind in self.KINDS:
            self._listener.register(kind)

    def stop(self):
        for kind in self.KINDS:
            self._listener.deregister(kind)

    def _hear(self, event):
        from gi.repository import GLib

        try:
            self.heard.append((event.type, (event.source.get_role_name(), event.source.get_name())))
        except GLib.Error:
            pass  # gone meanwhile

    def has(self, kind, role, name):
        """Whether this has been told; the kind may be the beginning of one."""
        from gi.repository import GLib

        while GLib.MainContext.default().iteration(False):
            pass
        return any(told.startswith(kind) and about == (role, name) for told, about in self.heard)

    def wait_for(self, kind, role, name):
        wait_until(lambda: self.has(kind, role, name), "the news of the %s named %s" % (role, name))

    def forget(self):
        self.has("", "", "")
        self.heard.clear()


class Node:
    """What a screen reader is told of one thing on the screen."""

    def __init__(self, accessible):
        self._accessible = accessible
        self.role = accessible.get_role_name()
        self.name = accessible.get_name()
        self.description = accessible.get_description()
        self.states = {state.value_nick for state in accessible.get_state_set().get_states()}

    def box(self):
        """Its left, top, right and bottom on the screen, in pixels."""
        box = self._accessible.get_component_iface().get_extents(_atspi().CoordType.SCREEN)
        return box.x, box.y, box.x + box.width, box.y + box.height

    def text(self):
        """What is in it, for what has text of its own."""
        if "Text" not in self._accessible.get_interfaces():
            return ""
        return _atspi().Text.get_text(self._accessible, 0, -1)

    def press(self):
        actions = self._accessible.get_action_iface()
        names = [actions.get_action_name(index) for index in range(actions.get_n_actions())]
        actions.do_action(names.index("Press"))


def _collect(accessible, found):
    from gi.repository import GLib

    try:
        found.append(Node(accessible))
        for index in range(accessible.get_child_count()):
            child = accessible.get_child_at_index(index)
            if child:
                _collect(child, found)
    except GLib.Error:
        pass  # gone meanwhile
