"""Private Wayland compositors with two outputs side by side and an X server of their own, apart from sway,
which has a module of its own. All look the same to a test."""

import collections
import contextlib
import glob
import os
import re
import shutil
import signal
import subprocess
import tempfile

from .buses import SessionBus
from .display import VirtualDisplay
from .processes import Processes, environment, wait_until

WIDTH, HEIGHT = 800, 600
NOBODY = 65534
DISPLAYS = "org.gnome.Mutter.DisplayConfig"
# An output that is on: its number, the corner of its picture in the picture of all, and how it is used.
Place = collections.namedtuple("Place", "output x y scale is_turned", defaults=(1, False))
SIDE_BY_SIDE = (Place(0, 0, 0), Place(1, WIDTH, 0))
X_SERVER = r"display (?P<name>:\d+)(?: with (?P<authority>\S+))?"


class Compositor:
    """As a context manager or with stop(). It runs as an ordinary user even for root. `environment` is
    for clients, `bus` the SessionBus that it is on."""

    programs = ()
    command = ()
    variables = {}

    @classmethod
    def missing(cls):
        """Why it cannot be had here; None when it can."""
        for program in (cls.command[0], "Xwayland", *cls.programs):
            if not shutil.which(program):
                return program + " is not installed"
        return None

    def __init__(self):
        self.places = SIDE_BY_SIDE
        self.processes = Processes()
        self.folder = tempfile.mkdtemp(prefix="vigilo-compositor-")
        os.chmod(self.folder, 0o700)
        self.log = os.path.join(self.folder, "log")
        self.bus = SessionBus()
        # A shell looks for services there and ends when there is no such bus.
        self.system_bus = SessionBus()
        self.session = None
        try:
            self.begin()
        except BaseException:
            self.stop()
            raise

    def begin(self):
        """Starts it and waits until it is ready for clients."""
        command = self.own(shutil.which(self.command[0]))
        command += [word.format(folder=self.folder) for word in self.command[1:]]
        if os.geteuid() == 0:
            shutil.chown(self.folder, NOBODY, NOBODY)
        changes = {
            "DISPLAY": None, "WAYLAND_DISPLAY": None, "XAUTHORITY": None, "XDG_CURRENT_DESKTOP": None,
            "QT_QPA_PLATFORM": None, "HOME": self.folder, "XDG_RUNTIME_DIR": self.folder,
            "DBUS_SESSION_BUS_ADDRESS": self.bus.address, "DBUS_SYSTEM_BUS_ADDRESS": self.system_bus.address,
        }
        with open(self.log, "w", encoding="utf-8") as log:
            process = self.processes.start(
                command, env=environment(**(changes | self.variables)), stdout=log, stderr=subprocess.STDOUT,
                start_new_session=True,
            )
        self.session = process.pid

        def text():
            with open(self.log, encoding="utf-8", errors="replace") as file:
                result = file.read()
            if process.poll() is not None:
                raise RuntimeError("the compositor ended: " + result)
            return result

        server = wait_until(lambda: re.search(X_SERVER, text()), "the compositor and its X server")
        (display,) = wait_until(self._displays, "the compositor's socket")
        authority = server["authority"] or "".join(glob.glob(self.folder + "/.mutter-Xwaylandauth.*"))
        self.environment = {
            "WAYLAND_DISPLAY": display, "XDG_RUNTIME_DIR": self.folder, "XDG_SESSION_TYPE": "wayland",
            "DISPLAY": server["name"], "XAUTHORITY": authority or None, "QT_QPA_PLATFORM": None,
            "DBUS_SESSION_BUS_ADDRESS": self.bus.address, "DBUS_SYSTEM_BUS_ADDRESS": self.system_bus.address,
        }

    def _displays(self):
        return [name for name in os.listdir(self.folder) if re.fullmatch(r"wayland-\w+", name)]

    def own(self, program):
        """A command for a copy of the program, run by the user who runs the compositor. A copy has no
        file capabilities; one that a container does not allow would keep it from starting."""
        copy = os.path.join(self.folder, os.path.basename(program))
        if not os.path.exists(copy):
            shutil.copy(program, copy)
        if os.geteuid() != 0:
            return [copy]
        shutil.chown(copy, NOBODY, NOBODY)
        return ["setpriv", "--reuid", str(NOBODY), "--regid", str(NOBODY), "--clear-groups", copy]

    def frames(self):
        """The rectangle of each output that is on, in the picture of all: x, y, width, height."""
        result = []
        for place in self.places:
            size = self.scaled(WIDTH, place.scale), self.scaled(HEIGHT, place.scale)
            result.append((place.x, place.y, *(reversed(size) if place.is_turned else size)))
        return result

    def size(self):
        """Width and height of the picture of all."""
        return tuple(max(frame[axis] + frame[axis + 2] for frame in self.frames()) for axis in (0, 1))

    def pixels(self):
        """What the outputs show, three bytes a pixel."""
        raise NotImplementedError

    @staticmethod
    def scaled(length, scale):
        """How long an output of this scale is in the picture of all."""
        raise NotImplementedError

    def arrange(self, *places):
        """Uses the outputs that are named, and switches the others off."""
        raise NotImplementedError

    def key(self, *keys):
        """Presses keys, one after another, as xdotool names them."""
        raise NotImplementedError

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        self.processes.stop()
        # A process that it has forked off does not end with it when that hangs.
        if self.session is not None:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(self.session, signal.SIGKILL)
        self.system_bus.stop()
        self.bus.stop()
        shutil.rmtree(self.folder, ignore_errors=True)


class Nested(Compositor):
    """One whose outputs are windows on a private X display: what they show is a picture of that display,
    and its keyboard and pointer are theirs."""

    programs = ("Xvfb", "xdotool", "import")

    def begin(self):
        # With room for one that is twice as large.
        self.display = VirtualDisplay("%dx%dx24" % (3 * WIDTH, 2 * HEIGHT))
        self.rest_pointer()
        self.variables = self.variables | {"DISPLAY": self.display.name}
        super().begin()

    def rest_pointer(self):
        """Moves the pointer to where the outputs have the keyboard and nothing is to be clicked."""
        for x in (61, 60):
            self.display.move_pointer(x, 230)

    def pixels(self):
        return self.display.picture(*self.size()).split(b"255\n", 1)[1]

    @staticmethod
    def scaled(length, scale):
        return length * scale

    def key(self, *keys):
        self.display.key(*keys)

    def stop(self):
        super().stop()
        if hasattr(self, "display"):
            self.display.stop()


class Mutter(Nested):
    """The compositor of GNOME without its shell."""

    command = ("mutter", "--wayland", "--nested")
    variables = {
        "MUTTER_DEBUG_NUM_DUMMY_MONITORS": "2",
        "MUTTER_DEBUG_DUMMY_MODE_SPECS": ":".join("%dx%d" % (WIDTH * scale, HEIGHT * scale) for scale in (1, 2)),
    }

    def arrange(self, *places):
        # A scale of two is not allowed on an output so small; such a one has twice as many pixels.
        import dbus  # only where it is needed

        connection = dbus.bus.BusConnection(self.bus.address)
        try:
            monitors = dbus.Interface(
                connection.get_object(DISPLAYS, "/" + DISPLAYS.replace(".", "/"), introspect=False), DISPLAYS
            )
            serial, outputs, *_ = monitors.GetCurrentState()

            def used(place):
                name, modes = outputs[place.output][0][0], outputs[place.output][1]
                (mode,) = [mode[0] for mode in modes if mode[1] == WIDTH * place.scale]
                return (
                    dbus.Int32(place.x), dbus.Int32(place.y), dbus.Double(place.scale), dbus.UInt32(place.is_turned),
                    place is places[0], [(name, mode, dbus.Dictionary(signature="sv"))],
                )

            monitors.ApplyMonitorsConfig(
                dbus.UInt32(serial), dbus.UInt32(1), [used(place) for place in places],
                dbus.Dictionary(signature="sv"),
            )
        finally:
            connection.close()
        self.places = places
        self.rest_pointer()  # it goes to a corner


class GnomeShell(Mutter):
    """It begins with its overview, which is ended."""

    command = ("gnome-shell", "--wayland", "--nested")
    variables = Mutter.variables | {"XDG_CURRENT_DESKTOP": "GNOME"}

    def __init__(self):
        try:
            super().__init__()
        except TimeoutError:
            # Seen on a busy machine: a process that it forks off as it starts waits for ever for a lock that
            # one of its threads held just then.
            super().__init__()

    def begin(self):
        super().begin()
        wait_until(self.has_overview, "the shell")
        wait_until(self.has_no_overview, "the end of the overview")

    def _properties(self, *words):
        return subprocess.run(
            ["busctl", "--address=" + self.bus.address, words[0], "org.gnome.Shell", "/org/gnome/Shell",
             "org.gnome.Shell", "OverviewActive", *words[1:]],
            check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
        ).stdout.strip()

    def has_overview(self):
        return self._properties("get-property") == "b true"

    def has_no_overview(self):
        """Asks for its end again, too: the shell does not take notice while it still begins."""
        self.show_overview(False)
        return not self.has_overview()

    def show_overview(self, is_shown):
        self._properties("set-property", "b", str(is_shown).lower())


class Weston(Nested):
    """The reference compositor."""

    command = (
        "weston", "--backend=x11-backend.so", "--use-pixman", "--output-count=2", "--width=%d" % WIDTH,
        "--height=%d" % HEIGHT, "--xwayland", "--idle-time=0", "--socket=wayland-weston",
    )

    def begin(self):
        super().begin()
        # Without a window manager, the windows of the outputs lie upon each other.
        for index, window in enumerate(wait_until(self._outputs, "the outputs")):
            subprocess.run(
                ["xdotool", "windowmove", window, str(index * WIDTH), "0"],
                env=environment(DISPLAY=self.display.name), check=True,
            )

    def _outputs(self):
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", "Weston Compositor"],
            env=environment(DISPLAY=self.display.name), check=False, stdout=subprocess.PIPE, text=True,
        ).stdout.split()
        return found if len(found) == 2 else None


def kwin_picture(address):
    """What KWin on the session bus with this address shows on all its outputs, as a PPM."""
    import dbus  # only where it is needed

    connection = dbus.bus.BusConnection(address)
    reader, writer = os.pipe()
    with os.fdopen(reader, "rb") as pictures:
        try:
            shots = connection.get_object("org.kde.KWin", "/org/kde/KWin/ScreenShot2", introspect=False)
            answer = shots.CaptureWorkspace(
                dbus.Dictionary({}, signature="sv"), dbus.types.UnixFd(writer),
                dbus_interface="org.kde.KWin.ScreenShot2",
            )
        finally:
            os.close(writer)
            connection.close()
        data = pictures.read()
    width, height = int(answer["width"]), int(answer["height"])
    assert len(data) == 4 * width * height == int(answer["stride"]) * height
    # Blue, green, red and nothing, or the same with opacity.
    result = bytearray(width * height * 3)
    result[0::3], result[1::3], result[2::3] = data[2::4], data[1::4], data[0::4]
    return b"P6\n%d %d\n255\n" % (width, height) + bytes(result)


class KWin(Compositor):
    """The compositor of Plasma, on outputs without hardware; `keyboard` is the built virtual_keyboard
    and `outputs` the built kwin_outputs."""

    programs = ("xhost",)
    command = (
        "kwin_wayland", "--virtual", "--output-count", "2", "--width", str(WIDTH), "--height", str(HEIGHT),
        "--xwayland", "--no-lockscreen", "--no-global-shortcuts", "--no-kactivities", "{folder}/tell",
    )
    variables = {"KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1", "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1"}

    def __init__(self, keyboard, outputs):
        self._keyboard = keyboard
        self._outputs = outputs
        super().__init__()

    def begin(self):
        # It tells of its X server only to what it starts.
        tell = os.path.join(self.folder, "tell")
        with open(tell, "w", encoding="utf-8") as file:
            # Without a file of cookies it lets in only the user who runs it.
            file.write('#!/bin/sh\nxhost +si:localuser:root\necho "display $DISPLAY with $XAUTHORITY"\n')
        os.chmod(tell, 0o755)
        # It takes such requests only from a program whose file it can see.
        self._keyboard, self._outputs = self.own(self._keyboard), self.own(self._outputs)
        super().begin()

    def pixels(self):
        return kwin_picture(self.bus.address).split(b"255\n", 1)[1]

    def key(self, *keys):
        subprocess.run([*self._keyboard, *keys], env=environment(**self.environment), check=True)

    def effects(self):
        """Those that are loaded, as text; nothing while it reads its settings anew."""
        return subprocess.run(
            ["busctl", "--address=" + self.bus.address, "--json=short", "get-property", "org.kde.KWin", "/Effects",
             "org.kde.kwin.Effects", "loadedEffects"],
            check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
        ).stdout

    def close_windows(self):
        """Asks every window but those of the desktop below to close."""
        script = os.path.join(self.folder, "close.js")
        with open(script, "w", encoding="utf-8") as file:
            file.write(
                "workspace.clientList().filter(window => !window.caption.startsWith('other_window'))"
                ".forEach(window => window.closeWindow());"
            )
        scripting = ("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting")
        for words in (("loadScript", "s", script), ("start",)):
            subprocess.run(
                ["busctl", "--address=" + self.bus.address, "--quiet", "call", *scripting, *words], check=True
            )

    @staticmethod
    def scaled(length, scale):
        return length // scale

    def arrange(self, *places):
        changes = ["%d:%d,%d,%d,%d" % place for place in places]
        off = {0, 1} - {place.output for place in places}
        subprocess.run(
            [*self._outputs, *changes, *("%d:off" % output for output in off)],
            env=environment(**self.environment), check=True,
        )
        self.places = places
