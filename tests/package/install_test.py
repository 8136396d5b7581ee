#!/usr/bin/python3
"""What `cmake --install` puts into a folder, started from there. Usage: install_test.py BUILD"""

import os
import shlex
import stat
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.processes import Processes, environment, wait_until

BUILD = sys.argv.pop(1)
SOURCES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..")
ID = "io.github.vigilo.Vigilo"


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.root = os.path.join(folder.name, "a prefix")
        subprocess.run(
            ["cmake", "--install", BUILD, "--prefix", cls.root], check=True, stdout=subprocess.DEVNULL
        )

    def path(self, name):
        return os.path.join(self.root, name)

    def test_it_is_configured_without_the_libraries_of_the_tests(self):
        with tempfile.TemporaryDirectory() as build:
            result = subprocess.run(
                ["cmake", "--preset", "release", "-B", build]
                + ["-DCMAKE_DISABLE_FIND_PACKAGE_%s=ON" % library for library in ("GTest", "benchmark")],
                cwd=SOURCES, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False,
            )
            self.assertEqual(result.returncode, 0, result.stderr)

    def test_the_script_that_installs_what_it_needs_knows_the_list(self):
        for name, status in (("package", 0), ("nonsense", 2)):
            with self.subTest(list=name):
                script = os.path.join(SOURCES, "scripts/setup")
                result = subprocess.run([script, name], stderr=subprocess.PIPE, text=True, check=False)
                self.assertEqual(result.returncode, status, result.stderr)

    def test_the_program_and_its_helpers_are_there_and_may_be_run(self):
        for name in ("bin/vigilo", *("libexec/vigilo/vigilo-" + helper for helper in ("authenticate", "guard", "lock"))):
            self.assertTrue(os.stat(self.path(name)).st_mode & stat.S_IXOTH, name)
        for name in (
            "libexec/vigilo/pam/common-auth/vigilo", "libexec/vigilo/pam/fingerprint/vigilo-fingerprint",
        ):
            self.assertTrue(os.path.exists(self.path(name)), name)
        # Nobody would read it there.
        self.assertFalse(os.path.exists(self.path("etc")))

    def test_the_systems_own_programs_are_configured_outside_of_their_prefix(self):
        with tempfile.TemporaryDirectory() as stage:
            subprocess.run(
                ["cmake", "--install", BUILD, "--prefix", "/usr"],
                check=True, stdout=subprocess.DEVNULL, env=environment(DESTDIR=stage),
            )
            self.assertEqual(sorted(os.listdir(stage)), ["etc", "usr"])
            self.assertEqual(os.listdir(os.path.join(stage, "etc/pam.d")), ["vigilo"])

    def test_the_manifest_that_it_is_removed_by_names_every_file(self):
        with tempfile.TemporaryDirectory() as root:
            subprocess.run(["cmake", "--install", BUILD, "--prefix", root], check=True, stdout=subprocess.DEVNULL)
            with open(os.path.join(BUILD, "install_manifest.txt"), encoding="utf-8") as file:
                for name in file.read().split():
                    os.remove(name)
            left = [os.path.join(folder, name) for folder, _, names in os.walk(root) for name in names]
            self.assertEqual(left, [])
            folders = [folder[len(root) + 1 :] for folder, _, _ in os.walk(root) if "vigilo" in folder[len(root) :]]
            self.assertTrue(all(folder.startswith("libexec/vigilo") for folder in folders), folders)

    def test_the_self_test_passes_from_there(self):
        result = subprocess.run([self.path("bin/vigilo"), "--self-test"], stdout=subprocess.PIPE, check=False)
        self.assertEqual((result.returncode, result.stdout), (0, b"SELF_TEST_PASS\n"))

    def test_the_desktop_file_is_valid(self):
        entry = self.path("share/applications/" + ID + ".desktop")
        result = subprocess.run(
            ["desktop-file-validate", entry], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False
        )
        self.assertEqual((result.returncode, result.stdout), (0, ""))

    def test_it_runs_from_there_and_the_bus_is_told_where_it_is(self):
        with VirtualDisplay() as display, SessionBus() as bus, Processes() as processes:
            service = self.path("share/dbus-1/services/" + ID + ".service")
            with open(service, encoding="utf-8") as file:
                lines = dict(line.strip().split("=", 1) for line in file if "=" in line)
            self.assertEqual(lines["Name"], ID)
            self.assertEqual(shlex.split(lines["Exec"]), [self.path("bin/vigilo")])
            processes.start(
                [self.path("bin/vigilo")],
                env=environment(
                    DISPLAY=display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=bus.address,
                    DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
                ),
            )
            wait_until(lambda: windows_named(display.name, "Vigilo"), "the window")


if __name__ == "__main__":
    unittest.main(verbosity=2)
