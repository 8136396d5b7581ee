#!/usr/bin/python3
"""The Debian package: made, looked at by Debian's own checkers, installed into a root of its own, run and
removed again. Usage: debian_package_test.py BUILD"""

import glob
import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.processes import Processes, environment, wait_until

BUILD = os.path.abspath(sys.argv.pop(1))
SOURCE = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
ID = "io.github.vigilo.Vigilo"
# The administrator's programs, which dpkg wants to see, are not in everybody's path.
TOOLS = environment(PATH=os.environ["PATH"] + ":/usr/sbin:/sbin", LC_ALL="C.UTF-8")


def run(*command, **options):
    """The exit status of a command, and all that it printed."""
    options = {"env": TOOLS} | options
    result = subprocess.run(
        command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
        check=False, **options,
    )
    return result.returncode, result.stdout


def make_package(folder):
    """Makes the package as somebody would who lets others read nothing, and returns its path."""
    os.makedirs(folder, exist_ok=True)
    status, output = run(
        "cpack", "--config", os.path.join(BUILD, "CPackConfig.cmake"), "-B", folder, cwd=folder, umask=0o077
    )
    packages = glob.glob(os.path.join(folder, "*.deb"))
    if status != 0 or len(packages) != 1:
        raise RuntimeError("no package was made:\n" + output)
    os.chmod(packages[0], 0o644)  # apt reads it as another user
    return packages[0]


class Root:
    """A system with nothing on it but dpkg's records, in which packages are installed."""

    def __init__(self, folder):
        self.folder = folder
        records = self.path("var/lib/dpkg")
        for name in ("info", "updates", "triggers"):
            os.makedirs(os.path.join(records, name))
        for name in ("status", "available"):
            with open(os.path.join(records, name), "w", encoding="utf-8"):
                pass

    def path(self, name):
        return os.path.join(self.folder, name)

    def dpkg(self, *arguments):
        """Runs dpkg on it. What a package depends on need not be there: the machine's libraries serve."""
        status, output = run(
            "fakeroot", "dpkg", "--root=" + self.folder, "--force-depends",
            "--path-include=/*",  # also on a machine that goes without manuals
            "--log=/dev/null", *arguments,
        )
        if status != 0:
            raise RuntimeError("dpkg failed:\n" + output)

    def files(self):
        """Everything in it except for dpkg's records."""
        found = set()
        for folder, folders, files in os.walk(self.folder):
            if folder == self.folder:
                folders.remove("var")
            found.update(os.path.relpath(os.path.join(folder, name), self.folder) for name in folders + files)
        return found


class DebianPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.package = make_package(cls.folder)
        cls.root = Root(os.path.join(cls.folder, "root"))
        cls.root.dpkg("--install", cls.package)
        cls.program = cls.root.path("usr/bin/vigilo")

    def test_making_it_leaves_the_list_of_what_was_installed_from_the_build(self):
        installed = os.path.join(self.folder, "installed")
        self.assertEqual(run("cmake", "--install", BUILD, "--prefix", installed)[0], 0)
        make_package(os.path.join(self.folder, "again"))
        with open(os.path.join(BUILD, "install_manifest.txt"), encoding="utf-8") as file:
            listed = file.read().splitlines()
        found = [os.path.join(folder, name) for folder, _, names in os.walk(installed) for name in names]
        self.assertEqual(sorted(listed), sorted(found))

    def test_lintian_finds_nothing(self):
        self.assertEqual(
            run("lintian", "--allow-root", "--no-cfg", "--fail-on", "error,warning", self.package), (0, "")
        )

    def test_the_metainfo_is_valid(self):
        metainfo = self.root.path(f"usr/share/metainfo/{ID}.metainfo.xml")
        status, output = run("appstreamcli", "validate", "--no-net", metainfo)
        self.assertEqual(status, 0, output)
        self.assertIn("Validation was successful", output)

    def test_the_desktop_file_is_valid(self):
        entry = self.root.path(f"usr/share/applications/{ID}.desktop")
        self.assertEqual(run("desktop-file-validate", entry), (0, ""))

    def test_the_manual_is_found_by_its_name_and_formatted_without_a_warning(self):
        page = self.root.path("usr/share/man/man1/vigilo.1.gz")
        self.assertIn('"vigilo - ', run("lexgrog", page)[1])
        result = subprocess.run(
            ["man", "--warnings", "--encoding=UTF-8", "--local-file", page], env=TOOLS | {"MANWIDTH": "80"},
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False,
        )
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("--self-test", result.stdout)

    def test_the_icons_have_the_sizes_of_their_folders(self):
        icons = self.root.path("usr/share/icons/hicolor/")
        for size in (16, 22, 24, 32, 48, 64, 128, 256):
            icon = f"{icons}{size}x{size}/apps/{ID}.png"
            self.assertEqual(run("/usr/bin/identify", "-format", "%wx%h", icon), (0, f"{size}x{size}"))
        for name in (f"scalable/apps/{ID}", "symbolic/apps/vigilo-on-symbolic", "symbolic/apps/vigilo-off-symbolic"):
            self.assertTrue(os.path.exists(icons + name + ".svg"), name)

    def test_the_bus_is_told_where_the_program_will_be(self):
        with open(self.root.path(f"usr/share/dbus-1/services/{ID}.service"), encoding="utf-8") as file:
            self.assertEqual(file.read(), f"[D-BUS Service]\nName={ID}\nExec=/usr/bin/vigilo\n")

    def test_no_file_names_a_folder_that_it_was_made_in(self):
        for folder in (SOURCE, BUILD, self.folder):
            self.assertEqual(run("grep", "-r", "-l", "-F", folder, self.root.path("usr")), (1, ""))

    def test_apt_can_install_it_on_this_machine(self):
        status, output = run("apt-get", "--simulate", "--reinstall", "install", self.package)
        self.assertEqual(status, 0, output)
        self.assertIn("Inst vigilo ", output)

    def test_apt_can_install_it_where_nothing_is_installed(self):
        empty_system = ("--option", "Dir::State::status=/dev/null")
        if run("apt-cache", *empty_system, "show", "libc6")[0] != 0:
            self.skipTest("apt has no list of packages here")
        status, output = run(
            "apt-get", *empty_system, "--no-install-recommends", "--simulate", "install", self.package
        )
        self.assertEqual(status, 0, output)
        for name in ("libqt6quick6", "qml6-module-qtquick-templates", "qt6-wayland", "libpam-runtime", "vigilo"):
            self.assertIn(f"Inst {name} ", output)

    def test_it_passes_its_own_test_and_tells_its_version(self):
        self.assertEqual(run(self.program, "--self-test"), (0, "SELF_TEST_PASS\n"))
        version = run("dpkg-deb", "--field", self.package, "Version")[1].partition("-")[0]
        self.assertEqual(run(self.program, "--version"), (0, f"Vigilo {version}\n"))

    def test_it_shows_its_window(self):
        with VirtualDisplay() as display, SessionBus() as bus, Processes() as processes:
            processes.start(
                [self.program],
                env=environment(
                    DISPLAY=display.name, WAYLAND_DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=bus.address,
                    DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus",
                ),
            )
            wait_until(lambda: windows_named(display.name, "Vigilo"), "the window")

    def test_it_is_removed_without_a_trace(self):
        root = Root(os.path.join(self.folder, "removal"))
        root.dpkg("--install", self.package)
        self.assertIn("usr/bin/vigilo", root.files())
        root.dpkg("--remove", "vigilo")
        # The administrator's changes to the configuration outlive the program until it is purged.
        self.assertEqual(root.files(), {"etc", "etc/pam.d", "etc/pam.d/vigilo"})
        root.dpkg("--purge", "vigilo")
        self.assertEqual(root.files(), set())


if __name__ == "__main__":
    unittest.main(verbosity=2)
