#!/usr/bin/python3
"""The login item on disks and in folders that refuse. Usage: login_item_disk_test.py LOGIN_DRIVER"""

import os
import shutil
import stat
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.login_test import NAME, Scratch

NOBODY = 65534


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
    Scratch.original = sys.argv.pop(1)
    unittest.main(verbosity=2)
