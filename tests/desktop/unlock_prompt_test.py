#!/usr/bin/python3
"""The prompt of the lock screen when authentication goes wrong in every way that a module of the
system can go wrong, read as a screen reader reads it. Usage: unlock_prompt_test.py VIGILO MODULE"""

import os
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.accessibility import AccessibleDesktop
from harness.display import VirtualDisplay, windows_named
from harness.pam import OddPam
from harness.processes import Processes, environment, wait_until

VIGILO = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
SERVICE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../services/fake_power_service.py")
DESKTOP = b"\xff\x00\xff"
PLACE = "Place your finger on the reader"
NOT_RECOGNISED = "The fingerprint was not recognised. Use the password."
NOT_RIGHT = "That password is not right."
NOT_NOW = "The password cannot be checked now. Try again or use Apple Lock."


class UnlockPrompt(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # One for all: the library that reads the tree keeps its first connection.
        cls.desktop = AccessibleDesktop()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.display = self.enter(VirtualDisplay("1024x768x24"))
        self.processes = self.enter(Processes())
        self.pam = self.enter(OddPam(MODULE))
        self.pam.does("ask", "Password:")
        subprocess.run(["xsetroot", "-display", self.display.name, "-solid", "#ff00ff"], check=True)
        service = self.processes.start(
            ["/usr/bin/python3", SERVICE, "plasma", "grant"], env=environment(), stdout=subprocess.PIPE
        )
        self.addCleanup(service.stdout.close)
        service.stdout.readline()
        self.vigilo = self.processes.start(
            self.pam.command(VIGILO),
            env=environment(
                DISPLAY=self.display.name, WAYLAND_DISPLAY=None, DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus"
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

    def enter(self, manager):
        value = manager.__enter__()
        self.addCleanup(manager.__exit__, None, None, None)
        return value

    def is_covered(self):
        pixels = self.display.picture().split(b"255\n", 1)[1]
        start = pixels.find(DESKTOP)
        while start >= 0 and start % 3 != 0:
            start = pixels.find(DESKTOP, start + 1)
        return start < 0

    def prompt(self):
        """The nodes of the prompt that is shown; none without one."""
        nodes = [node for node in self.desktop.nodes() if "showing" in node.states]
        for index, node in enumerate(nodes):
            if (node.role, node.name) == ("dialog", "Unlock Vigilo"):
                return nodes[index:]
        return []

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

    def test_a_finger_unlocks_while_the_password_is_asked_for(self):
        sensor = self.pam.sensor()
        self.open()
        self.wait_for_message(PLACE)
        self.assertEqual(self.question(), ["Password"])
        for _ in range(2):
            sensor.touch("wrong")
            self.wait_for_message("Failed to match fingerprint")
            self.assertTrue(self.is_covered())
        # Typed, but not yet given up: the finger needs none of it.
        self.display.key(*"wro")
        sensor.touch("right")
        self.is_unlocked()

    def test_a_finger_unlocks_while_the_password_hangs_or_cannot_be_checked(self):
        sensor = self.pam.sensor()
        for steps, message in ((["hang"], []), (["broken"], [NOT_NOW])):
            with self.subTest(steps=steps):
                self.pam.does(*steps)
                self.open()
                wait_until(lambda said=message: self.message() == said + [PLACE], "what is said")
                sensor.touch("right")
                self.is_unlocked()
                self.lock()

    def test_the_password_is_taken_while_a_finger_is_waited_for(self):
        sensor = self.pam.sensor()
        self.open()
        self.wait_for_message(PLACE)
        sensor.touch("wrong")
        self.submit("wrong")
        wait_until(lambda: self.message() == [NOT_RIGHT, "Failed to match fingerprint"], "both messages")
        self.assertTrue(self.is_covered())
        self.unlock()

    def test_a_finger_that_is_not_the_owner_s_leaves_the_password(self):
        sensor = self.pam.sensor()
        self.open()
        self.wait_for_message(PLACE)
        sensor.touch("last")
        self.wait_for_message(NOT_RECOGNISED)
        self.assertTrue(self.is_covered())
        self.unlock()

    def test_a_reader_that_is_pulled_out_is_forgotten(self):
        sensor = self.pam.sensor()
        self.open()
        self.wait_for_message(PLACE)
        sensor.touch("gone")
        wait_until(lambda: self.message() == [], "the hint to go")
        self.assertTrue(self.is_covered())
        self.stay_locked()
        # Escape ends the wait for a finger, too.
        self.open()
        self.wait_for_message(PLACE)
        self.stay_locked()
        self.open()
        self.unlock()

    def test_a_reader_that_fails_in_any_way_shows_nothing_and_unlocks_nothing(self):
        ways = (
            ["crash"], ["exit"], ["rubbish", "hang"], ["odd", "broken"], ["broken"], ["forge"], ["hang"],
            ["ask", "Password:"], ["ask", "Password:", "exit"], None,
        )
        for steps in ways:
            with self.subTest(steps=steps):
                if steps is None:
                    self.pam.finger_has_no_module()
                else:
                    self.pam.finger_does(*steps)
                self.open()
                self.wait_for_question("Password")
                if steps != ["hang"] and steps != ["rubbish", "hang"]:
                    wait_until(lambda: not self.fingers(), "the end of the attempt")
                self.assertEqual(self.question(), ["Password"])
                self.assertTrue(self.is_covered())
                self.submit("wrong")
                self.wait_for_message(NOT_RIGHT)
                self.unlock()
                self.lock()

    def test_a_reader_that_never_stops_talking_stops_nothing_else(self):
        self.pam.finger_does("endless")
        self.open()
        self.wait_for_message("and so on")
        self.unlock()

    def test_a_wrong_answer_is_said_and_can_be_mended(self):
        self.open()
        for _ in range(3):
            (before,) = wait_until(self.helpers, "the helper")
            self.submit("wrong")
            wait_until(lambda old=before: self.helpers() not in ([], [old]), "a new helper")
            self.wait_for_message(NOT_RIGHT)
            self.wait_for_question("Password. " + NOT_RIGHT)
            self.assertTrue(self.is_covered())
        self.unlock()

    def test_several_questions_are_asked_one_after_another(self):
        self.pam.does(
            "say", "Two_things,_please.", "ask", "PIN_of_the_card:", "say", "Now_the_other.", "ask", "Code:"
        )
        self.open()
        self.wait_for_question("PIN of the card. Two things, please.")
        self.submit("right")
        self.wait_for_question("Code. Now the other.")
        self.assertTrue(self.is_covered())
        self.submit("wrong")
        self.wait_for_message("Two things, please.")
        self.wait_for_question("PIN of the card. Two things, please.")
        self.assertTrue(self.is_covered())
        self.submit("right")
        self.wait_for_question("Code. Now the other.")
        self.unlock()

    def test_what_cannot_be_checked_is_said_and_can_be_tried_again(self):
        ways = (
            ["crash"], ["exit"], ["rubbish", "hang"], ["odd", "broken"], ["broken"],
            ["ask", "Password:", "crash"], ["ask", "Password:", "exit"], ["ask", "Password:", "rubbish"],
            ["ask", "Password:", "broken"], ["ask", "Password:", "forge"], ["forge"],
        )
        for steps in ways:
            with self.subTest(steps=steps):
                self.pam.does(*steps)
                self.open()
                if steps[0] == "ask":
                    self.submit("right")
                self.wait_for_message(NOT_NOW)
                self.assertTrue(self.is_covered())
                self.stay_locked()
        self.pam.does("broken")
        self.open()
        self.wait_for_message(NOT_NOW)
        # In the same prompt.
        self.pam.does("ask", "Password:")
        self.unlock()

    def test_it_can_be_left_while_a_module_hangs(self):
        for steps in (["hang"], ["ask", "Password:", "hang"]):
            with self.subTest(steps=steps):
                self.pam.does(*steps)
                self.open()
                self.submit("right")
                wait_until(self.helpers, "the helper")
                self.assertEqual(self.message(), [])
                self.assertTrue(self.is_covered())
                self.stay_locked()
        self.pam.does("ask", "Password:")
        self.open()
        self.unlock()

    def test_a_module_that_never_stops_talking_stops_nothing_else(self):
        self.pam.does("endless")
        self.open()
        self.wait_for_message("and so on")
        self.submit("right")
        self.assertTrue(self.is_covered())
        self.stay_locked()

    def test_a_long_and_ugly_message_leaves_the_prompt_whole(self):
        self.pam.does("shout", "ask", "Password:")
        self.open()
        wait_until(lambda: "<b>more</b>" in "".join(self.message()), "the message")
        (message,) = self.message()
        self.assertLessEqual(len(message), 300)
        self.assertTrue(message.isprintable(), repr(message))
        self.assertNotIn("\u202e", message)
        (button,) = [node for node in self.prompt() if node.name == "Stay Locked"]
        left, top, right, bottom = button.box()
        self.assertTrue(0 <= left < right <= 1024 and 0 <= top < bottom <= 768, button.box())
        self.unlock()

    def test_an_old_password_and_a_module_that_leaves_a_process_unlock(self):
        for steps in (["ask", "Password:", "expired"], ["leave", "ask", "Password:"]):
            with self.subTest(steps=steps):
                self.pam.does(*steps)
                self.open()
                self.unlock()
                self.lock()

    def test_a_helper_that_is_killed_leaves_the_lock_up(self):
        self.open()
        for steps, answer in (
            (["ask", "Password:"], None),
            (["hang"], None),
            (["hang"], "right"),
            (["ask", "Password:", "hang"], "right"),
            (["ask", "Password:", "ask", "Code:"], "right"),
        ):
            with self.subTest(steps=steps, answer=answer):
                self.stay_locked()
                self.pam.does(*steps)
                self.open()
                (helper,) = wait_until(self.helpers, "the helper")
                if answer:
                    self.submit(answer)
                if "Code:" in steps:
                    self.wait_for_question("Code")
                os.kill(helper, signal.SIGKILL)
                self.wait_for_message(NOT_NOW)
                self.assertTrue(self.is_covered())
                self.assertEqual(self.helpers(), [])
        # Typed before, but not yet given up.
        self.pam.does("ask", "Password:")
        self.stay_locked()
        self.open()
        self.display.key(*"right")
        (helper,) = wait_until(self.helpers, "the helper")
        os.kill(helper, signal.SIGKILL)
        self.wait_for_message(NOT_NOW)
        self.unlock_with("Return")

if __name__ == "__main__":
    reason = OddPam.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
