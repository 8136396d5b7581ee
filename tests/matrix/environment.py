"""What every environment of the matrix has in common: a user's session on a display, with a login
manager and a battery service beside it."""

import os
import shutil
import time

import dbus

from harness.owner import NAME
from harness.panels import StatusItem
from harness.pictures import Picture
from harness.processes import PATIENCE, Processes, environment, wait_until
from harness.room import Room
from harness.system_bus import SystemBus

from .findings import lacks, works

READER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "settings_reader.py")
UPOWERD = "/usr/libexec/upowerd"
PATTERN = b"\xff\x00\xff"
# The login manager cannot tell which session a program belongs to where no service manager puts it
# into one, so that what it allows an active session is granted to the user by name.
POLKIT_RULE = """polkit.addRule(function(action, subject) {
    return subject.user == "%s" ? polkit.Result.YES : polkit.Result.NOT_HANDLED;
});""" % NAME


class Environment:
    """One row of the matrix. The class says what it is and needs, an instance runs it."""

    name = ""            # of its files
    title = ""           # in the document
    needs = {}           # program -> Debian package
    version_of = None    # the package that the document names with its version
    variables = {}       # of the session
    session = None       # the command that starts it
    session_type = "x11"  # at logind
    desktops = ()        # whose services the session bus may start
    autostart = ()       # entries of /etc/xdg/autostart that belong to it; others are switched off
    has_session_bus = True
    starts_entries = True  # of the autostart folders, at login
    no_start_words = ""    # what to do where it does not

    def __init__(self, vigilo, helpers):
        """`helpers` is the folder with the harness's own programs and libraries, built."""
        self.vigilo = vigilo
        self.helpers = helpers
        self.processes = Processes()
        self._cleanups = []

    @classmethod
    def missing(cls):
        """Why it cannot be run here; None when it can."""
        for program, package in cls.needs.items():
            if not (os.path.exists(program) if program.startswith("/") else shutil.which(program)):
                return "the package " + package + " is not installed"
        return SystemBus.missing() or Room.missing()

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def enter(self, manager):
        value = manager.__enter__()
        self._cleanups.append(manager)
        return value

    def start(self):
        self.system_bus = self.enter(SystemBus(user=NAME, kind=self.session_type, lifetime=1800, polkit_rule=POLKIT_RULE))
        self.processes.start([UPOWERD], env=environment(DBUS_SYSTEM_BUS_ADDRESS=self.system_bus.address))
        self.room = self.enter(Room(
            self.system_bus.session_id, DBUS_SYSTEM_BUS_ADDRESS=self.system_bus.address,
            XDG_DATA_DIRS=self._data_folders(), XDG_SESSION_TYPE=self.session_type, **self.variables,
        ))
        self.start_display()
        self.settle_in()
        self.log_in()

    def _data_folders(self):
        """Where the session finds icons and desktop entries: those of the program, too, if it is installed."""
        folder = os.path.join(os.path.dirname(os.path.dirname(self.vigilo)), "share")
        return ":".join([folder] * os.path.isdir(os.path.join(folder, "icons")) + ["/usr/local/share", "/usr/share"])

    def start_display(self):
        raise NotImplementedError

    def settle_in(self):
        """Writes the user's settings, before the session starts."""
        folder = "/etc/xdg/autostart"
        for entry in os.listdir(folder) if os.path.isdir(folder) else ():
            if entry.removesuffix(".desktop") not in self.autostart:
                self.room.write(
                    ".config/autostart/" + entry, "[Desktop Entry]\nType=Application\nName=Off\nExec=true\nHidden=true\n"
                )

    def log_in(self):
        if self.has_session_bus:
            self.room.start_bus(self.desktops)
        if self.session:
            self.room.start(*self.session, log=self.room.path("session.log"))
        self.wait_for_session()

    def wait_for_session(self):
        """Returns once the desktop is ready to be used."""

    def log_in_again(self):
        """Ends everything of the user's and logs in anew."""
        self._bus = None
        self.room.empty()
        self.log_in()

    def stop(self):
        self.processes.stop()
        while self._cleanups:
            self._cleanups.pop().__exit__(None, None, None)

    _bus = None

    def bus(self):
        """A connection to the session bus."""
        if self._bus is None:
            self._bus = dbus.bus.BusConnection(self.room.environment["DBUS_SESSION_BUS_ADDRESS"])
        return self._bus

    def is_owned(self, name):
        return bool(self.bus().name_has_owner(name))

    def interface(self, name, path, interface):
        """An object of a service on the session bus."""
        return dbus.Interface(self.bus().get_object(name, path, introspect=False), interface)

    def holders(self):
        """Who is to know that the machine is held awake."""
        return []

    def start_vigilo(self):
        return self.room.start(self.vigilo, log=self.room.path("vigilo.log"))

    def show_pattern(self):
        """Opens a window with the test pattern; it is an X11 program's, as most desktops show these."""
        self._pattern = self.room.start("display", "-geometry", "+60+60", "-size", "1100x640", "xc:#ff00ff")
        wait_until(self.shows_pattern, "the test pattern")

    def hide_pattern(self):
        for pid in self.room.pids("display-im6.q16") + self.room.pids("display"):
            self.room.run("kill", str(pid))
        self._pattern.wait()

    def shows_pattern(self):
        """Whether any pixel of the test pattern is seen."""
        ppm = self.ppm()
        if not ppm:
            raise RuntimeError("there is no picture of the screen")
        return Picture(ppm).has(PATTERN)

    def picture(self):
        return Picture(self.ppm())

    def settle(self, quiet=0.6, limit=15):
        """Waits until the screen has not changed for a moment; both times in seconds."""
        before, since = self.ppm(), time.monotonic()
        deadline = since + limit
        while time.monotonic() - since < quiet and time.monotonic() < deadline:
            time.sleep(0.1)
            now = self.ppm()
            if now != before:
                before, since = now, time.monotonic()

    def act(self, action):
        """Does one of Vigilo's actions, as a script or a shortcut does."""
        self.room.run("gapplication", "action", "io.github.vigilo.Vigilo", action)

    def status_item(self):
        """Finds it in the panel."""
        raise NotImplementedError

    def hosted_item(self, panel):
        """It is hosted and shown by a panel that speaks the protocol of StatusNotifierItems."""
        item = StatusItem(self.room.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_until(item.registered, "the status item")
        if not item.is_hosted():
            raise AssertionError("no panel hosts status items")
        self._wait_for_tool_tip(item, "Vigilo — Mac is staying awake")
        self.close_window()
        self.settle()
        before = self.picture()
        item.menu().click("Stop Keeping Awake")
        self._wait_for_tool_tip(item, "Vigilo — Normal sleep")
        wait_until(lambda: self.picture().differs(before), "the other icon in the panel")
        self.settle()
        before = self.picture()
        item.menu().click("Keep Mac Awake")
        wait_until(lambda: self.picture().differs(before), "the first icon in the panel")
        item.activate()
        wait_until(self.windows, "the window")
        return works("shown by %s (StatusNotifierItem)" % panel)

    @staticmethod
    def _wait_for_tool_tip(item, text):
        wait_until(lambda: item.properties()["ToolTip"][2] == text, "the tooltip " + text)

    def lockers(self):
        """The screen lockers that run, of those that Vigilo may start itself."""
        return {"xsecurelock", "i3lock", "slock", "swaylock", "hyprlock", "gtklock"} & self.room.programs()

    def system_lock(self):
        """What locks the screen, in words; None while nothing does."""
        lockers = self.lockers()
        return "`%s`, started by Vigilo" % lockers.pop() if lockers else None

    def end_system_lock(self):
        """Uncovers the screen again, in whatever way."""
        for name in self.lockers():
            for pid in self.room.pids(name):
                self.room.run("kill", "-KILL", str(pid))

    def apple_lock(self):
        """The effect of Apple Lock."""
        self.act("appleLock")
        means = wait_until(self.system_lock, "the system's lock", 30)
        wait_until(self.is_dark, "the displays to go dark")
        self.end_system_lock()
        return works("locked by %s; %s" % (means, self.dark_words))

    def startup_settings(self):
        """The desktop's startup settings that show the login item, in words; None where there is no such
        program."""
        return None

    def settings_that_show_it(self, *command, page=None):
        """A program of the desktop's that lists the login item, on its page of this name."""
        program = command[0]
        log = self.room.path("settings.log")
        started = self.room.start(*command, log=log, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORMTHEME=None)
        answer = self.room.run(
            "sh", "-c", '"$0" "$@" 2>&1; echo $?', "/usr/bin/python3", "-W", "ignore", READER, program, "Vigilo", *filter(None, [page])
        )
        if answer != "0":
            with open(log, encoding="utf-8") as file:
                raise AssertionError("%s; it says: %s" % (answer, file.read()[-500:]))
        self.settle()
        for pid in self.room.pids(program):
            self.room.run("kill", str(pid))
        started.wait(PATIENCE)
        return "`%s` lists it" % program

    def start_at_login(self):
        """What the new session does with the login item."""
        if not self.starts_entries:
            time.sleep(5)
            if self.windows():
                raise AssertionError("the session starts it, which was not expected")
            return lacks(self.no_start_words)
        wait_until(self.windows, "the start at login", 90)
        return works("the next session starts it")
