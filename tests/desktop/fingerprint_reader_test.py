#!/usr/bin/python3
"""The prompt of the lock screen with the system's own fingerprint service and PAM module, as they are installed.
Usage: fingerprint_reader_test.py VIGILO MODULE"""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.fingerprints import FingerprintService
from harness.pam import OddPam
from harness.processes import wait_until
from harness.prompt_test import NOT_RIGHT, PromptTest
from harness.system_bus import SystemBus

PromptTest.vigilo, PromptTest.module = sys.argv[1:3]
del sys.argv[1:3]
SWIPE = "Swipe your right index finger across the fingerprint reader"
NO_MATCH = "Failed to match fingerprint"
NOT_RECOGNISED = "The fingerprint was not recognised. Use the password."


class FingerprintReader(PromptTest):
    """The owner is root, as whom the program runs here."""

    def setUp(self):
        self.bus = self.enterContext(SystemBus())
        self.system_bus = self.bus.address
        super().setUp()

    def expect_the_password_alone(self):
        self.open()
        wait_until(lambda: not self.fingers(), "the end of the attempt")
        self.assertEqual(self.message(), [])
        self.submit("wrong")
        self.wait_for_message(NOT_RIGHT)
        self.unlock()

    def test_without_the_service_only_the_password_is_asked_for(self):
        self.expect_the_password_alone()

    def test_without_a_reader_only_the_password_is_asked_for(self):
        FingerprintService(self.bus, has_reader=False)
        self.expect_the_password_alone()

    def test_a_reader_that_knows_no_finger_of_the_owner_is_not_spoken_of(self):
        reader = FingerprintService(self.bus)
        reader.enroll("games", "somebody's")
        self.expect_the_password_alone()

    def test_only_the_owner_s_finger_unlocks(self):
        reader = FingerprintService(self.bus)
        reader.enroll("root", "the owner's")
        self.open()
        self.wait_for_message(SWIPE)
        self.assertEqual(self.question(), ["Password"])
        reader.touch("somebody's")
        self.wait_for_message(NO_MATCH + ". " + SWIPE)
        self.assertTrue(self.is_covered())
        reader.touch("the owner's")
        self.is_unlocked()

    def test_a_finger_that_is_wrong_too_often_leaves_the_password(self):
        reader = FingerprintService(self.bus)
        reader.enroll("root", "the owner's")
        self.open()
        self.wait_for_message(SWIPE)
        for answer in (NO_MATCH + ". " + SWIPE, NO_MATCH + ". " + SWIPE, NOT_RECOGNISED):
            reader.touch("somebody's")
            self.wait_for_message(answer)
        self.assertTrue(self.is_covered())
        self.unlock()

    def test_staying_locked_frees_the_reader_for_the_next_attempt(self):
        reader = FingerprintService(self.bus)
        reader.enroll("root", "the owner's")
        for _ in range(3):
            self.open()
            self.wait_for_message(SWIPE)
            self.stay_locked()
        self.open()
        self.wait_for_message(SWIPE)
        reader.touch("the owner's")
        self.is_unlocked()

    def test_a_reader_that_is_pulled_out_leaves_the_password(self):
        self.expect_the_password_after(FingerprintService.unplug)

    def test_a_service_that_dies_leaves_the_password(self):
        self.expect_the_password_after(FingerprintService.kill)

    def expect_the_password_after(self, end):
        reader = FingerprintService(self.bus)
        reader.enroll("root", "the owner's")
        self.open()
        self.wait_for_message(SWIPE)
        end(reader)
        wait_until(lambda: self.message() == [], "the hint to go")
        self.assertTrue(self.is_covered())
        self.unlock()


if __name__ == "__main__":
    reason = OddPam.missing() or SystemBus.missing() or FingerprintService.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
