"""Which window of an X display the keyboard belongs to."""

import subprocess

from .processes import environment


def focused_window(display):
    """The identifier of the window that gets the keys, as windows_named() gives it; empty where none does."""
    return _xdotool(display, "getwindowfocus")


def lock_has_keyboard(display):
    """Whether what is typed goes to the lock."""
    return _xdotool(display, "getwindowfocus", "-f", "getwindowname").startswith("Agent Lock")


def _xdotool(display, *words):
    return subprocess.run(
        ["xdotool", *words], env=environment(DISPLAY=display), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        text=True, check=False,
    ).stdout.strip()
