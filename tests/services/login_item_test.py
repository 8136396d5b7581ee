#!/usr/bin/python3
"""The login item as those see it that act on it: systemd's generator of autostart units, GLib and a
real Xfce session. Usage: login_item_test.py LOGIN_DRIVER"""

import os
import subprocess
import sys
import tempfile
import unittest

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.desktop_services import start_xfconfd
from harness.display import VirtualDisplay
from harness.login_test import NAME, Scratch
from harness.processes import Processes, environment, wait_until

GENERATOR = "/lib/systemd/user-generators/systemd-xdg-autostart-generator"
CONDITION = "/lib/systemd/systemd-xdg-autostart-condition"
UNIT = "app-io.github.vigilo.Vigilo@autostart.service"

ODD_FOLDERS = ["plain", "my app", "it's \"q\"", "$HOME;a#b~&(c)", "wächter", "`date`"]


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
            start_xfconfd(processes, variables)
            processes.start(["xfce4-session"], env=variables)
            wait_until(lambda: os.path.exists(mark), "the start")

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


if __name__ == "__main__":
    Scratch.original = sys.argv.pop(1)
    unittest.main(verbosity=2)
