"""A private X display for a test or a demonstration, and a look at its windows."""

import ctypes
import os
import re
import subprocess
import time

from .processes import die_with_parent, wait_until


class VirtualDisplay:
    """Xvfb on a display number of its own choosing; use it as a context manager or call stop()."""

    def __init__(self, size="1280x800x24", options=()):
        reader, writer = os.pipe()
        # -noreset: the server would otherwise end with its last client. -r: a key does not repeat because a busy
        # machine lets go of it late.
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", size, "-noreset", "-r", "-nolisten", "tcp", *options],
            pass_fds=[writer],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            preexec_fn=die_with_parent,
        )
        os.close(writer)
        self._read_number(reader)

    def _read_number(self, reader):
        with os.fdopen(reader) as numbers:
            number = numbers.readline().strip()
        if not number:
            self.stop()
            raise RuntimeError("the display server did not start")
        self.name = ":" + number

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        self._server.terminate()
        self._server.wait()

    def screenshot(self, path):
        """Writes the whole screen as a PNG."""
        subprocess.run(["/usr/bin/import", "-display", self.name, "-window", "root", path], check=True)

    def picture(self, width=None, height=None):
        """The screen's pixels, or those of its upper left corner."""
        crop = ["-crop", "%dx%d+0+0" % (width, height)] if width else []
        return subprocess.run(
            ["/usr/bin/import", "-display", self.name, "-window", "root", *crop, "-depth", "8", "ppm:-"],
            check=True,
            stdout=subprocess.PIPE,
        ).stdout

    def wait_for_window_manager(self):
        """Waits until a window manager says that it is there, and gets it to know the keyboard that tests press:
        some take their shortcuts anew when they meet it, and miss one that comes meanwhile."""
        wait_until(
            lambda: subprocess.run(
                ["wmctrl", "-m"], env=os.environ | {"DISPLAY": self.name}, stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL, check=False,
            ).returncode == 0,
            "the window manager",
        )
        self.key("Shift_L")

    def selection_owner(self, name):
        """The number of the window that owns a selection of the server; 0 where nobody does."""
        library = ctypes.CDLL("libX11.so.6")
        library.XOpenDisplay.restype = ctypes.c_void_p
        library.XInternAtom.restype = library.XGetSelectionOwner.restype = ctypes.c_ulong
        server = ctypes.c_void_p(library.XOpenDisplay(self.name.encode()))
        atom = ctypes.c_ulong(library.XInternAtom(server, name.encode(), 0))
        owner = library.XGetSelectionOwner(server, atom)
        library.XCloseDisplay(server)
        return owner

    def is_composited(self):
        """Whether a program has taken over the drawing of the windows."""
        return self.selection_owner("_NET_WM_CM_S0") != 0

    def settle(self, quiet=0.4, timeout=20):
        """Waits until the screen has not changed for a moment; both times in seconds. A moment in which nobody
        had a turn is none: it takes a look every tenth of a second."""
        before, looks = self.picture(), 0
        deadline = time.monotonic() + timeout
        while looks < quiet / 0.1 and time.monotonic() < deadline:
            time.sleep(0.1)
            now = self.picture()
            looks = looks + 1 if now == before else 0
            before = now

    def pictures_after(self, key, seconds=1.5):
        """How many different pictures are seen from before a key is pressed until so long after it has changed
        something."""
        seen = {self.picture()}
        self.key(key)
        wait_until(lambda: seen.add(self.picture()) or len(seen) > 1, "a change")
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            seen.add(self.picture())
        return len(seen)

    def position(self, window):
        """The upper left corner of a window, in pixels of the screen."""
        geometry = self._geometry(window)
        return geometry["X"], geometry["Y"]

    def size(self, window):
        """The width and the height of a window, in pixels."""
        geometry = self._geometry(window)
        return geometry["WIDTH"], geometry["HEIGHT"]

    def _geometry(self, window):
        answer = subprocess.run(
            ["xdotool", "getwindowgeometry", "--shell", window],
            check=True,
            env=os.environ | {"DISPLAY": self.name},
            stdout=subprocess.PIPE,
            text=True,
        ).stdout
        return {name: int(value) for name, value in (line.split("=") for line in answer.split())}

    def click(self, window, x, y):
        """Clicks at a point of a window, in pixels from its corner."""
        subprocess.run(
            ["xdotool", "mousemove", "--window", window, str(int(x)), str(int(y)), "click", "1"],
            check=True,
            env=os.environ | {"DISPLAY": self.name},
        )

    def click_at(self, x, y):
        """Clicks at a pixel of the screen."""
        subprocess.run(
            ["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True, env=os.environ | {"DISPLAY": self.name}
        )

    def move_pointer(self, x, y):
        """Moves the pointer to a pixel of the screen."""
        subprocess.run(
            ["xdotool", "mousemove", str(x), str(y)], check=True, env=os.environ | {"DISPLAY": self.name}
        )

    def key(self, *keys):
        """Presses keys, one after another, as xdotool names them."""
        subprocess.run(["xdotool", "key", *keys], check=True, env=os.environ | {"DISPLAY": self.name})

    def use_layouts(self, layouts, variants):
        """Gives the keyboard these layouts, as setxkbmap takes them."""
        subprocess.run(
            ["setxkbmap", "-layout", layouts, "-variant", variants], check=True, env=os.environ | {"DISPLAY": self.name}
        )

    def choose_layout(self, number):
        """Switches to one of the layouts, counted from 0."""
        library = ctypes.CDLL("libX11.so.6")
        library.XOpenDisplay.restype = ctypes.c_void_p
        server = ctypes.c_void_p(library.XOpenDisplay(self.name.encode()))
        library.XkbLockGroup(server, 0x100, number)  # the core keyboard
        library.XCloseDisplay(server)

    def hold_key(self, key, seconds):
        """Holds a key down, so that it repeats."""
        environment = os.environ | {"DISPLAY": self.name}
        subprocess.run(["xset", "r", "on"], check=True, env=environment)
        subprocess.run(["xdotool", "keydown", key], check=True, env=environment)
        time.sleep(seconds)
        subprocess.run(["xdotool", "keyup", key], check=True, env=environment)
        subprocess.run(["xset", "r", "off"], check=True, env=environment)


def windows_named(display, title):
    """Identifiers of the windows shown with exactly this title."""
    found = subprocess.run(
        ["xdotool", "search", "--onlyvisible", "--name", "^" + re.escape(title) + "$"],
        env=os.environ | {"DISPLAY": display},
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        text=True,
        check=False,
    )
    return found.stdout.split()
