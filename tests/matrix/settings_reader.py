#!/usr/bin/python3
"""Waits until a program shows something whose name begins with NAME, and turns to one of its pages for it.
Run as the user whose program it is, since others are not answered.
Usage: settings_reader.py PROGRAM NAME [PAGE]"""

import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

LIMIT = 240  # seconds


def nodes(accessible):
    yield accessible
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child:
            yield from nodes(child)


def find(program, name):
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        try:
            if application and application.get_name() == program:
                for node in nodes(application):
                    if (node.get_name() or "").startswith(name):
                        return node
        except GLib.Error:
            pass  # it has changed meanwhile
    return None


def turn_to(page):
    """Chooses a page in a list or a notebook; toolkits differ in how they let it be chosen."""
    # Rows of a list have their names in a label or two inside.
    node = page
    for _ in range(4):
        parent = node.get_parent()
        if parent is None:
            break
        selection = parent.get_selection_iface()
        if selection and selection.select_child(node.get_index_in_parent()):
            return
        node = parent
    box = page.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
    Atspi.generate_mouse_event(box.x + box.width // 2, box.y + box.height // 2, "b1c")


def wait_for(program, name, deadline):
    while time.monotonic() < deadline:
        node = find(program, name)
        if node:
            return node
        time.sleep(0.5)
    sys.exit("%s shows no %s" % (program, name))


def main():
    program, name, *pages = sys.argv[1:]
    deadline = time.monotonic() + LIMIT
    for page in pages:
        turn_to(wait_for(program, page, deadline))
    wait_for(program, name, deadline)


main()
