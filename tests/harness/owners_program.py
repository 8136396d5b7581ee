"""Vigilo as its owner runs it, an ordinary user with a password, and all that it stands on."""

import os
import subprocess

from .actions import perform
from .display import VirtualDisplay, windows_named
from .hold_ups import HoldUps
from .owner import PASSWORD, UID, Owner
from .pictures import DESKTOP, Picture
from .power_service import PowerService
from .processes import Processes, environment, wait_until

STATES = ("idle", "session", "timed", "timed lock", "lock", "prompt")
WITH_A_LOCK = ("timed lock", "lock", "prompt")


class OwnersProgram:
    """As a context manager: `vigilo` on an X display of its own, in one of the states. `desktop` is an
    AccessibleDesktop for the owner's user id."""

    def __init__(self, desktop, vigilo, state="idle", shims=()):
        self.desktop = desktop
        self._managers = []
        try:
            self.display = self._enter(VirtualDisplay("1024x768x24"))
            self.owner = self._enter(Owner())
            self.processes = self._enter(Processes())
            self.hold_ups = HoldUps(self.owner.folder)
            self._start(vigilo, shims)
            self.hold_ups.begin()
            self.enter(state)
        except BaseException:
            self.__exit__()
            raise

    def _enter(self, manager):
        self._managers.append(manager)
        return manager

    def _start(self, vigilo, shims):
        subprocess.run(["xsetroot", "-display", self.display.name, "-solid", "#ff00ff"], check=True)
        os.mkdir(os.path.join(self.owner.folder, "bin"))
        # The locker that goes before all others, and a desktop's settings, note that they were started.
        self.make_program("xsecurelock")
        self.make_program("mate-screensaver-preferences")
        plain = environment(
            **self.desktop.environment | {
                "PATH": self.owner.folder + "/bin:" + os.environ["PATH"],
                "DISPLAY": self.display.name,
                "WAYLAND_DISPLAY": None,
                "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus",
                "HOME": self.owner.home,
                "XDG_RUNTIME_DIR": self.owner.home,
                "XAUTHORITY": None,
                "XDG_CURRENT_DESKTOP": "MATE",
                "CLOCK_OFFSET": os.path.join(self.owner.folder, "offset"),
            }
        )
        self.service = self._enter(PowerService(self.owner.folder, self.processes, plain))
        self.program = self.processes.start(
            self.owner.command(vigilo), env=plain | self.hold_ups.variables(*shims)
        )
        wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")
        self.button("Start Awake Session")
        self.display.settle()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        while self._managers:
            self._managers.pop().__exit__(None, None, None)
        wait_until(lambda: not self.desktop.nodes(), "the program to leave the desktop")

    def make_program(self, name):
        """Installs a program that only notes that it was started."""
        path = os.path.join(self.owner.folder, "bin", name)
        with open(path, "w", encoding="utf-8") as file:
            file.write('#!/bin/sh\n: > "$HOME/%s-started"\n' % name)
        os.chmod(path, 0o755)

    def was_started(self, name):
        return os.path.exists(os.path.join(self.owner.home, name + "-started"))

    def button(self, name):
        return self.desktop.wait_for("push button", name)

    def set_clock(self, seconds, has_slept):
        """Where the clock shim is loaded, sets the clock of the day ahead, and the one that counts sleep with it
        or not."""
        path = os.path.join(self.owner.folder, "offset")
        with open(path + ".new", "w", encoding="utf-8") as file:
            file.write("%d %d" % (seconds, has_slept))
        os.replace(path + ".new", path)

    def act(self, action):
        perform(self.desktop, action)

    def enter(self, state):
        """From idle to one of the states; "session" has no end, and neither have "lock" and "prompt"."""
        if state == "session":
            self.begin_session()
        elif state in ("timed", "timed lock"):
            self.choose(250)
            if state == "timed":
                self.choose(470)
            self.button("Start Awake Session").press()
            self.service.wait_until_held()
        elif state in ("lock", "prompt"):
            self.begin_session()
            self.act("agentLock")
        if state in WITH_A_LOCK:
            self.lock_is_up()
        if state == "prompt":
            self.open_prompt()

    def choose(self, menu):
        """The first choice of the menu at this place of the window: the shortest time, or "Stay Visible"."""
        (window,) = windows_named(self.display.name, "Vigilo")
        self.display.click(window, menu, 329)
        self.display.settle()
        self.display.key("Home", "Return")
        self.display.settle()

    def begin_session(self):
        self.act("toggleProtection")
        self.service.wait_until_held()
        self.button("End Awake Session")

    def end_session(self):
        self.act("toggleProtection")
        self.service.wait_until_released()
        self.button("Start Awake Session")

    def lock_is_up(self):
        wait_until(self.is_covered, "the lock")
        wait_until(lambda: self.running("vigilo-guard"), "the guard")

    def is_covered(self):
        """Whether not one pixel of the desktop below shows."""
        return not Picture(self.display.picture()).has(DESKTOP)

    def prompt(self):
        """The nodes of the prompt that is shown; none without one."""
        return self.desktop.prompt()

    def says(self, message):
        return any(node.name == message for node in self.prompt())

    def open_prompt(self):
        # The content of the lock comes after it has taken the keyboard.
        self.button("Unlock Agent Lock with Touch ID or password")
        self.display.key("Return")
        wait_until(self.prompt, "the prompt")

    def close_prompt(self):
        self.display.key("Escape")
        wait_until(lambda: not self.prompt(), "the prompt to go")

    def type_password(self):
        subprocess.run(
            ["xdotool", "type", "--delay", "20", PASSWORD], env=environment(DISPLAY=self.display.name), check=True
        )
        self.display.key("Return")

    def unlock(self):
        self.type_password()
        wait_until(lambda: not self.is_covered(), "the lock to go")
        wait_until(lambda: not self.running("vigilo-guard"), "the guard to end")

    def processes_left(self):
        """All of the owner's processes that know this home; displays of other tests may have the same name later."""
        found = []
        for name in os.listdir("/proc"):
            try:
                if name.isdigit() and os.stat("/proc/" + name).st_uid == UID:
                    with open("/proc/%s/environ" % name, "rb") as file:
                        if b"HOME=" + self.owner.home.encode() in file.read().split(b"\0"):
                            found.append(int(name))
            except OSError:
                pass  # ended meanwhile
        return found

    def running(self, name, without=None):
        """Process ids of the program's helpers of this name, those apart that have an argument."""
        found = []
        for pid in self.processes_left():
            try:
                with open("/proc/%d/cmdline" % pid, "rb") as file:
                    path, *arguments = file.read().decode().split("\0")
            except OSError:
                continue  # ended meanwhile
            if os.path.basename(path) == name and without not in arguments:
                found.append(pid)
        return found

    def helpers(self):
        """Process ids of the helpers that ask for a password; one that waits for a finger ends by itself where there
        is no reader."""
        return self.running("vigilo-authenticate", without="fingerprint")

    def is_alive(self):
        return self.program.poll() is None

    def works(self):
        """Whether all of it can be used, from idle to idle."""
        self.begin_session()
        self.act("agentLock")
        self.lock_is_up()
        self.open_prompt()
        self.unlock()
        self.end_session()
        return self.is_alive()
