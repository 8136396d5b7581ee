"""What the environments on X11 have in common."""

import os
import subprocess

from harness.display import windows_named
from harness.panels import EmbeddedItem
from harness.processes import environment, wait_until
from harness.xorg import DummyXorg

from .environment import Environment
from .findings import works


class X11Environment(Environment):
    """On an X server whose displays have power states."""

    def start_display(self):
        self.display = self.enter(DummyXorg(os.path.join(self.helpers, "libdpms_shim.so")))
        self.room.environment["DISPLAY"] = self.display.name

    def _run(self, *command):
        subprocess.run(command, env=environment(DISPLAY=self.display.name), check=True)

    @classmethod
    def missing(cls):
        return super().missing() or DummyXorg.missing()

    def ppm(self):
        return self.display.picture()

    def windows(self):
        return windows_named(self.display.name, "Vigilo")

    def show_pattern(self):
        self._run("xsetroot", "-solid", "#ff00ff")
        # Above the desktop's own ground.
        super().show_pattern()

    def type(self, text):
        self._run("xdotool", "type", "--delay", "60", text)

    def key(self, *keys):
        self.display.key(*keys)

    def embedded_item(self, tray):
        """It is embedded in and shown by a panel that speaks the X11 protocol alone."""
        wait_until(lambda: EmbeddedItem(self.display).box("Mac is staying awake"), "the status item")
        self.close_window()
        self.press_embedded_item()
        wait_until(self.windows, "the window")
        return works("shown by %s (XEmbed)" % tray)

    def press_embedded_item(self):
        icon = EmbeddedItem(self.display)
        left, top, width, height = wait_until(
            lambda: icon.box("Mac is staying awake") or icon.box("Normal sleep"), "the status item"
        )
        if not (16 <= width <= 32 and 16 <= height <= 32):
            raise AssertionError("it is %d by %d pixels large" % (width, height))
        self.display.click_at(left + width // 2, top + height // 2)

    def close_window(self):
        """Closes the main window by its own button."""
        for attempt in range(3):
            self.display.click(self.windows()[0], 704, 16)
            try:
                wait_until(lambda: not self.windows(), "the window to go", 10)
                return
            except TimeoutError:
                # A desktop that is still animating takes no clicks.
                if attempt == 2:
                    raise

    def is_dark(self):
        return 3 in self.display.power_levels()

    dark_words = "displays off by DPMS"
