"""What the tests of the login item begin with."""

import os
import shutil
import subprocess
import tempfile
import unittest

from .processes import environment

NAME = "io.github.vigilo.Vigilo.desktop"


class Scratch(unittest.TestCase):
    """A home, the system's folders and a copy of the driver in a folder of the test's own."""

    original = None  # the driver, from the command line

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
        return shutil.copy(self.original, os.path.join(self.path(folder), "vigilo"))

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
