#!/usr/bin/python3
"""Reads our includes: folders know only what is below them. Usage: dependencies_test.py PROJECT"""

import pathlib
import re
import sys
import unittest

PROJECT = pathlib.Path(sys.argv.pop(1))

# For each folder, the folders whose headers it may name.
BELOW = {
    "text": set(),
    "platform": set(),
    "agents": {"platform", "text"},
    "core": {"agents", "platform"},
    "ui": {"core", "agents", "platform"},
    "privacy": {"core", "agents", "platform"},
    "app": {"ui", "privacy", "core", "agents", "platform"},
    "helpers": set(),
}
WITHOUT_QT = ("text", "agents", "core", "app", "platform", "helpers")
MEANS = ("platform/linux/", "platform/qt/")


def sources(folder, recursive=True):
    pattern = "**/*" if recursive else "*"
    found = [path for path in (PROJECT / folder).glob(pattern) if path.suffix in (".h", ".cpp")]
    assert found, "there are no sources in %s" % (PROJECT / folder)
    return found


def includes(path):
    return re.findall(r'^\s*#include\s+[<"]([^">]+)[">]', path.read_text(encoding="utf-8"), re.MULTILINE)


class Dependencies(unittest.TestCase):
    def test_folders_know_only_what_is_below_them(self):
        for folder, allowed in BELOW.items():
            for path in sources(folder, recursive=folder != "platform"):
                for include in includes(path):
                    other = include.split("/")[0]
                    if other in BELOW:
                        self.assertIn(other, allowed | {folder}, "%s includes %s" % (path, include))

    def test_only_the_composition_names_the_means(self):
        for folder in BELOW:
            for path in sources(folder, recursive=folder != "platform"):
                if path == PROJECT / "app/main.cpp":
                    continue
                for include in includes(path):
                    self.assertFalse(include.startswith(MEANS), "%s includes %s" % (path, include))

    def test_decisions_are_made_without_qt(self):
        for folder in WITHOUT_QT:
            for path in sources(folder, recursive=folder != "platform"):
                for include in includes(path):
                    self.assertFalse(include.startswith("Q"), "%s includes %s" % (path, include))

    def test_ports_name_no_system_header(self):
        for path in sources("platform", recursive=False):
            if path.suffix == ".h":
                for include in includes(path):
                    self.assertNotRegex(include, r"^(sys/|linux/|unistd|fcntl|X11/|wayland)", str(path))

    def test_the_means_do_not_know_who_uses_them(self):
        for folder in ("platform/linux", "platform/qt"):
            for path in sources(folder):
                for include in includes(path):
                    self.assertNotRegex(include, r"^(agents|core|ui|privacy|app)/", "%s includes %s" % (path, include))


if __name__ == "__main__":
    unittest.main(verbosity=2)
