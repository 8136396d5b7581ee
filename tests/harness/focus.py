"""Which window of an X display the keyboard belongs to."""

import subprocess

from .processes import environment


def focused_window(display):
    """The identifier of the window that gets the keys, as windows_named() gives it; empty where none does."""
    return subprocess.run(
        ["xdotool", "getwindowfocus"], env=environment(DISPLAY=display), stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL, text=True, check=False,
    ).stdout.strip()
