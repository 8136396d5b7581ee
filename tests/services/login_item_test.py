#!/usr/bin/python3
"""The login item as those see it that act on it: systemd's generator of autostart units, GLib and a
real Xfce session; and on disks that refuse. Usage: login_item_test.py LOGIN_DRIVER"""

import os
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.display import VirtualDisplay
from harness.processes import Processes, environment, wait_until

DRIVER = sys.argv.pop(1)
GENERATOR = "/lib/systemd/user-generators/systemd-xdg-autostart-generator"
CONDITION = "/lib/systemd/systemd-xdg-autostart-condition"
XFCONFD = "/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"
NAME = "io.github.vigilo.Vigilo.desktop"
UNIT = "app-io.github.vigilo.Vigilo@autostart.service"
NOBODY = 65534

ODD_FOLDERS = ["plain", "my app", "it's \"q\"", "$HOME;a#b~&(c)", "wächter", "`date`"]


class Scratch(unittest.TestCase):
    """A home, the system's folders and a copy of the driver in a folder of the test's own."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="vigilo-login-")
        self.addCleanup(shutil.rmtree, self.folder)
        os.chmod(self.folder, 0o755)
        self.home = self.path("home")
        os.mkdir(self.home)
        self.entry = os.path.join(self.home, "autostart", NAME)
        self.driver = self.copy_of_the_driver("bin")

    def path(self, name):
        return os.path.join(self.folder, name)

    def copy_of_the_driver(self, folder):
        os.mkdir(self.path(folder))
        return shutil.copy(DRIVER, os.path.join(self.path(folder), "vigilo"))

    def environment(self, **changes):
        return environment(
            **{
                "HOME": self.home,
                "XDG_CONFIG_HOME": self.home,
                "XDG_CONFIG_DIRS": self.path("system"),
                "XDG_CURRENT_DESKTOP": "GNOME",
                "LC_ALL": "C",
            }
            | changes
        )

    def ask(self, command, driver=None, prefix=(), user=None, **changes):
        """What the driver prints."""
        return subprocess.run(
            [*prefix, driver or self.driver, command],
            env=self.environment(**changes), stdout=subprocess.PIPE, text=True, check=True, user=user,
        ).stdout.rstrip("\n")

    def write(self, text, path=None):
        path = path or self.entry
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def read(self):
        with open(self.entry, encoding="utf-8") as file:
            return file.read()


@unittest.skipUnless(os.path.exists(GENERATOR), GENERATOR + " is not installed")
class Generator(Scratch):
    def unit(self):
        """The unit that systemd makes of the entry; none when it makes none."""
        units = tempfile.mkdtemp(dir=self.folder)
        subprocess.run(
            [GENERATOR, units, units, units],
            env=self.environment(), stderr=subprocess.DEVNULL, check=True,
        )
        unit = os.path.join(units, UNIT)
        if not os.path.exists(unit):
            return None
        with open(unit, encoding="utf-8") as file:
            return dict(line.strip().split("=", 1) for line in file if "=" in line)

    def test_a_registered_program_gets_a_unit_and_an_unregistered_one_none(self):
        self.assertIsNone(self.unit())
        self.assertEqual(self.ask("register"), "done")
        self.assertEqual(self.unit()["ExecStart"], ":" + self.driver)
        self.assertEqual(self.ask("unregister"), "done")
        self.assertIsNone(self.unit())

    def test_a_path_that_some_desktop_cannot_start_is_refused(self):
        for folder in ("100%", "back\\slash"):
            driver = self.copy_of_the_driver(folder)
            self.assertEqual(self.ask("register", driver), driver + ": Invalid argument")
            self.assertEqual(self.ask("status", driver), "not registered")

    def test_it_finds_the_program_wherever_it_is(self):
        for folder in ODD_FOLDERS:
            with self.subTest(folder=folder):
                driver = self.copy_of_the_driver("at " + folder)
                self.assertEqual(self.ask("register", driver), "done")
                self.assertEqual(self.ask("status", driver), "enabled")
                # It makes a unit only of what it has found to be a program.
                self.assertIsNotNone(self.unit())

    def test_it_agrees_on_what_is_switched_off_or_cannot_be_started(self):
        good = "[Desktop Entry]\nType=Application\nName=Vigilo\nExec=%s\n" % self.driver
        cases = {
            good: "enabled",
            good + "Hidden=false\n": "enabled",
            good + "Hidden=true\n": "requires approval",
            "[Desktop Entry]\nHidden=true\n": "requires approval",
            good + "TryExec=/nonexistent\n": "not found",
            good.replace("Exec=", "Exec=/nonexistent"): "not found",
            "[Desktop Entry]\nType=Application\nName=Vigilo\n": "not found",
            "": "not found",
        }
        for text, status in cases.items():
            with self.subTest(text=text):
                self.write(text)
                self.assertEqual(self.ask("status"), status)
                self.assertEqual(self.unit() is not None, status == "enabled")

    def test_it_agrees_on_which_desktops_an_entry_is_for(self):
        good = "[Desktop Entry]\nType=Application\nName=Vigilo\nExec=%s\n" % self.driver
        for lines in ("", "OnlyShowIn=KDE;\n", "OnlyShowIn=KDE;GNOME\n", "NotShowIn=GNOME;\n", "NotShowIn=KDE;\n"):
            for desktop in ("GNOME", "KDE", "ubuntu:GNOME", "XFCE"):
                with self.subTest(lines=lines, desktop=desktop):
                    self.write(good + lines)
                    starts = self.is_started_on(desktop, self.unit())
                    self.assertEqual(
                        self.ask("status", XDG_CURRENT_DESKTOP=desktop),
                        "enabled" if starts else "requires approval",
                    )

    def is_started_on(self, desktop, unit):
        """Whether the unit's condition holds on a desktop."""
        condition = unit.get("ExecCondition")
        if condition is None:
            return True
        self.assertTrue(condition.startswith(CONDITION))
        command = GLib.shell_parse_argv(condition)[1]
        return subprocess.run(command, env=environment(XDG_CURRENT_DESKTOP=desktop), check=False).returncode == 0

    def test_an_entry_of_the_system_is_switched_off_and_on_for_the_user(self):
        system = os.path.join(self.path("system"), "autostart", NAME)
        self.write("[Desktop Entry]\nType=Application\nName=Vigilo\nExec=%s\n" % self.driver, system)
        self.assertEqual(self.ask("status"), "enabled")
        self.assertIsNotNone(self.unit())
        self.assertEqual(self.ask("unregister"), "done")
        self.assertEqual(self.ask("status"), "not registered")
        self.assertIsNone(self.unit())
        self.assertEqual(self.ask("register"), "done")
        self.assertIsNotNone(self.unit())


class Desktops(Scratch):
    def test_glib_starts_the_program_wherever_it_is(self):
        for number, folder in enumerate(ODD_FOLDERS):
            with self.subTest(folder=folder):
                driver = self.copy_of_the_driver("glib " + folder)
                self.assertEqual(self.ask("register", driver), "done")
                self.assertEqual(self.ask("status", driver), "enabled")
                entry = Gio.DesktopAppInfo.new_from_filename(self.entry)
                self.assertEqual(entry.get_name(), "Vigilo")
                self.assertEqual(entry.get_string("Icon"), "io.github.vigilo.Vigilo")
                mark = self.path("mark%d" % number)
                context = Gio.AppLaunchContext()
                context.setenv("LOGIN_DRIVER_MARK", mark)
                self.assertTrue(entry.launch([], context))
                wait_until(lambda mark=mark: os.path.exists(mark), "the start")

    def test_the_file_is_valid(self):
        self.assertEqual(self.ask("register"), "done")
        result = subprocess.run(
            ["desktop-file-validate", self.entry], stdout=subprocess.PIPE, text=True, check=False
        )
        self.assertEqual((result.returncode, result.stdout), (0, ""))

    def test_a_real_xfce_session_starts_it(self):
        with VirtualDisplay() as display, SessionBus() as bus, Processes() as processes:
            self.assertEqual(self.ask("register", XDG_CURRENT_DESKTOP="XFCE"), "done")
            mark = self.path("mark")
            os.mkdir(self.path("runtime"), 0o700)
            variables = self.environment(
                DISPLAY=display.name,
                WAYLAND_DISPLAY=None,
                SESSION_MANAGER=None,
                DBUS_SESSION_BUS_ADDRESS=bus.address,
                DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
                XDG_CACHE_HOME=self.path("cache"),
                XDG_RUNTIME_DIR=self.path("runtime"),
                XDG_CURRENT_DESKTOP="XFCE",
                LOGIN_DRIVER_MARK=mark,
            )
            processes.start([XFCONFD], env=variables)
            processes.start(["xfce4-session"], env=variables)
            wait_until(lambda: os.path.exists(mark), "the start", timeout=60)

    def test_the_desktops_own_startup_settings_are_opened(self):
        tools = {
            "KDE": ("systemsettings", "kcm_autostart"),
            "XFCE": ("xfce4-session-settings", ""),
            "MATE": ("mate-session-properties", ""),
            "LXQt": ("lxqt-config-session", ""),
            "X-Cinnamon": ("cinnamon-settings", "startup"),
            "GNOME": ("gnome-tweaks", ""),
            "sway": ("xdg-open", os.path.dirname(self.entry)),
        }
        for number, (desktop, (program, argument)) in enumerate(tools.items()):
            with self.subTest(desktop=desktop):
                folder, mark = self.path("tools%d" % number), self.path("opened%d" % number)
                script = os.path.join(folder, program)
                self.write('#!/bin/sh\necho "$*" >"%s.new"\nexec mv "%s.new" "%s"\n' % (mark, mark, mark), script)
                os.chmod(script, 0o755)
                self.ask("settings", XDG_CURRENT_DESKTOP=desktop, PATH=folder + ":/usr/bin:/bin")
                wait_until(lambda mark=mark: os.path.exists(mark), "the settings")
                with open(mark, encoding="utf-8") as file:
                    self.assertEqual(file.read(), argument + "\n")


def mounts_are_allowed():
    if os.geteuid() != 0:
        return False
    return subprocess.run(["unshare", "-m", "true"], stderr=subprocess.DEVNULL, check=False).returncode == 0


class RefusingDisks(Scratch):
    def in_a_home_that(self, setup, *commands):
        """What the driver prints for the commands, and then what the autostart folder holds, on a small
        disk of its own that a shell script has set up."""
        script = "mount --make-rprivate / && mount -t tmpfs -o size=64k none '%s' && cd '%s' && %s" % (
            self.home, self.home, setup,
        )
        script += "".join(" && '%s' %s" % (self.driver, command) for command in commands)
        script += " && ls -A autostart 2>/dev/null; true"
        result = subprocess.run(
            ["unshare", "-m", "sh", "-c", script],
            env=self.environment(), stdout=subprocess.PIPE, text=True, check=True,
        )
        return result.stdout.splitlines()

    @unittest.skipUnless(mounts_are_allowed(), "mounts are not allowed here")
    def test_a_home_that_cannot_be_written_is_named(self):
        self.assertEqual(
            self.in_a_home_that("mount -o remount,ro .", "register", "status"),
            [self.entry + ": Read-only file system", "not registered"],
        )
        self.assertEqual(
            self.in_a_home_that("'%s' register && mount -o remount,ro ." % self.driver, "unregister", "status"),
            ["done", self.entry + ": Read-only file system", "enabled", NAME],
        )

    @unittest.skipUnless(mounts_are_allowed(), "mounts are not allowed here")
    def test_a_full_disk_is_named_and_leaves_what_was_there(self):
        fill = "mkdir autostart && echo '[Desktop Entry]' >autostart/%s && (cat /dev/zero >fill 2>/dev/null; true)"
        self.assertEqual(
            self.in_a_home_that(fill % NAME, "register", "status", "--check; cat autostart/" + NAME),
            [self.entry + ": No space left on device", "not found", "[Desktop Entry]", NAME],
        )

    def test_a_folder_in_the_files_place_is_named(self):
        os.makedirs(self.entry)
        self.assertEqual(self.ask("status"), "not found")
        self.assertEqual(self.ask("register"), self.entry + ": Is a directory")
        self.assertEqual(self.ask("unregister"), self.entry + ": Is a directory")
        self.assertEqual(os.listdir(os.path.dirname(self.entry)), [NAME])

    @unittest.skipUnless(os.geteuid() == 0, "another user's home needs root")
    def test_a_home_of_another_user_is_named(self):
        self.assertEqual(self.ask("register", user=NOBODY), self.entry + ": Permission denied")
        self.assertEqual(self.ask("status", user=NOBODY), "not registered")

    @unittest.skipUnless(os.geteuid() == 0, "another user's file needs root")
    def test_a_file_that_cannot_be_read_is_no_entry(self):
        self.assertEqual(self.ask("register"), "done")
        os.chmod(os.path.dirname(self.entry), 0o755)
        self.assertEqual(self.ask("status", user=NOBODY), "enabled")
        os.chmod(self.entry, 0)
        self.assertEqual(self.ask("status", user=NOBODY), "not found")

    def test_missing_folders_are_made_for_the_user_alone(self):
        shutil.rmtree(self.home)
        self.assertEqual(self.ask("register"), "done")
        for folder in (self.home, os.path.dirname(self.entry)):
            self.assertEqual(stat.S_IMODE(os.stat(folder).st_mode), 0o700, folder)

    def test_the_default_folder_is_in_the_home(self):
        self.assertEqual(self.ask("register", XDG_CONFIG_HOME=None), "done")
        self.assertTrue(os.path.exists(os.path.join(self.home, ".config", "autostart", NAME)))
        # One that is not absolute is to be ignored.
        self.assertEqual(self.ask("status", XDG_CONFIG_HOME="relative"), "enabled")


if __name__ == "__main__":
    unittest.main(verbosity=2)
