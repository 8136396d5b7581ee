#!/usr/bin/python3
"""The prompt of the lock screen with a fingerprint reader, also one that fails in every way that it can.
Usage: unlock_prompt_finger_test.py VIGILO MODULE"""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.pam import OddPam
from harness.processes import wait_until
from harness.prompt_test import NOT_NOW, NOT_RIGHT, PromptTest

PromptTest.vigilo, PromptTest.module = sys.argv[1:3]
del sys.argv[1:3]
PLACE = "Place your finger on the reader"
NOT_RECOGNISED = "The fingerprint was not recognised. Use the password."



class UnlockPromptFinger(PromptTest):
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


if __name__ == "__main__":
    reason = OddPam.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
