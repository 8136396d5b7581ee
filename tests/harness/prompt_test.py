"""What the tests of the unlock prompt begin with, read as a screen reader reads it."""

import subprocess
import unittest

from .accessibility import AccessibleDesktop
from .display import VirtualDisplay, windows_named
from .pam import OddPam
from .pictures import DESKTOP, Picture
from .processes import Processes, environment, wait_until

NOT_RIGHT = "That password is not right."
NOT_NOW = "The password cannot be checked now. Try again or use Apple Lock."


class PromptTest(unittest.TestCase):
    """The lock screen of the program is up; authentication is done by the odd module, which asks for a
    password unless a test says otherwise."""

    # From the command line.
    vigilo = None
    module = None
    # There is none, unless a test says otherwise.
    system_bus = "unix:path=/nonexistent/bus"

    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.display = self.enterContext(VirtualDisplay("1024x768x24"))
        self.processes = self.enterContext(Processes())
        self.pam = self.enterContext(OddPam(self.module))
        self.pam.does("ask", "Password:")
        subprocess.run(["xsetroot", "-display", self.display.name, "-solid", "#ff00ff"], check=True)
        self.processes.serve("fake_power_service.py", "plasma", "grant", env=environment())
        self.start()

    def start(self, *launcher):
        """Starts the program, by way of another one that ends up as it, and covers the display."""
        self.vigilo = self.processes.start(
            self.pam.command(*launcher, type(self).vigilo),
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, DBUS_SYSTEM_BUS_ADDRESS=self.system_bus
            ),
        )
        window = wait_until(lambda: windows_named(self.display.name, "Vigilo"), "the window")[0]
        self.display.settle()
        self.display.click(window, 360, 399)
        self.lock_is_up()

    def lock_is_up(self):
        self.desktop.wait_for("push button", "Unlock Agent Lock with Touch ID or password")
        wait_until(self.is_covered, "the lock")

    def lock(self):
        """Ends the session and begins another."""
        for button in ("End Awake Session", "Start Awake Session"):
            self.desktop.wait_for("push button", button).press()
        self.lock_is_up()

    def is_covered(self):
        return not Picture(self.display.picture()).has(DESKTOP)

    def prompt(self):
        """The nodes of the prompt that is shown; none without one."""
        return self.desktop.prompt()

    def message(self):
        return [
            node.name for node in self.prompt() if node.role == "label" and not node.name.startswith("Keyboard")
        ]

    def question(self):
        """What the field is said to be for, and what was said last."""
        return [node.description for node in self.prompt() if node.role == "password text"]

    def wait_for_message(self, message):
        wait_until(lambda: self.message() == [message], message)

    def wait_for_question(self, question):
        wait_until(lambda: self.question() == [question], question)

    def open(self):
        self.display.key("Return")
        wait_until(self.prompt, "the prompt")

    def helpers(self):
        """Process ids of the helpers of our program that ask for a password."""
        return self.children("vigilo-authenticate$")

    def fingers(self):
        """And of those that wait for a finger."""
        return self.children("vigilo-authenticate fingerprint$")

    def children(self, pattern):
        found = subprocess.run(
            ["pgrep", "-P", str(self.vigilo.pid), "-f", pattern],
            check=False, stdout=subprocess.PIPE, text=True,
        ).stdout
        return [int(pid) for pid in found.split()]

    def submit(self, answer):
        self.display.key(*answer, "Return")

    def stay_locked(self):
        self.display.key("Escape")
        wait_until(lambda: not self.prompt(), "the prompt to go")
        wait_until(lambda: not self.helpers() + self.fingers(), "the helpers to end")
        self.assertTrue(self.is_covered())

    def unlock(self):
        self.unlock_with(*"right", "Return")

    def unlock_with(self, *keys):
        self.display.key(*keys)
        self.is_unlocked()

    def is_unlocked(self):
        wait_until(lambda: not self.is_covered(), "the lock to go")
        self.assertIsNone(self.vigilo.poll())
        wait_until(lambda: not self.helpers() + self.fingers(), "the helpers to end")
