#!/usr/bin/python3
"""The prompt of the lock screen when authentication goes wrong in every way that a module of the
system can go wrong, read as a screen reader reads it. Usage: unlock_prompt_test.py VIGILO MODULE"""

import os
import shutil
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.pam import OddPam
from harness.processes import end, environment, wait_until
from harness.prompt_test import NOT_NOW, NOT_RIGHT, PromptTest

PromptTest.vigilo, PromptTest.module = sys.argv[1:3]
del sys.argv[1:3]



class UnlockPrompt(PromptTest):
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

    def test_a_wait_for_the_next_attempt_is_said_and_not_slept_through(self):
        # The most that a module may ask for is ten seconds.
        self.pam.does("delay", "20000", "ask", "Password:")
        self.open()
        self.submit("wrong")
        wait_until(lambda: "".join(self.message()).startswith(NOT_RIGHT + " The next one is checked in "), "the wait")
        helpers = self.helpers()
        # Unless the wait is over already.
        if "checked in" in "".join(self.message()):
            self.assertEqual(helpers, [])
        # It can be left meanwhile.
        self.stay_locked()
        self.open()
        self.submit("wrong")
        wait_until(lambda: "checked in" in "".join(self.message()), "the wait")
        self.wait_for_message(NOT_RIGHT)
        begun = time.monotonic()
        self.submit("wrong")
        wait_until(lambda: "checked in" in "".join(self.message()), "the wait")
        # What is typed meanwhile is checked when it is over.
        self.submit("right")
        wait_until(lambda: self.message() == [], "the message to go")
        self.is_unlocked()
        self.assertGreater(time.monotonic() - begun, 9)

    def test_one_that_nobody_uses_goes_after_a_minute_and_the_lock_stays(self):
        self.open()
        # Whoever is there without typing is there all the same.
        begun = time.monotonic()
        while time.monotonic() < begun + 70:
            self.display.key("Shift_L", "Tab")
            time.sleep(5)
        self.assertTrue(self.prompt())
        wait_until(lambda: not self.prompt(), "the prompt to give up", timeout=180)
        self.assertTrue(self.is_covered())
        wait_until(lambda: not self.helpers() + self.fingers(), "the helpers to end")
        self.open()
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

    def test_the_owner_is_known_whatever_the_programs_parent_ignored(self):
        # Some window managers hand this on to all that they start.
        end(self.vigilo)
        self.start("env", "--ignore-signal=CHLD")
        self.open()
        self.submit("wrong")
        self.wait_for_message(NOT_RIGHT)
        self.unlock()

    def test_characters_of_several_keys_are_composed(self):
        self.display.use_layouts("de", "")
        self.pam.does("expect", "é^à", "ask", "Password:")
        # The first opens the prompt.
        self.display.key("dead_acute")
        wait_until(self.prompt, "the prompt")
        self.unlock_with("e", "dead_circumflex", "space", "dead_acute", "BackSpace", "dead_grave", "a", "Return")

    def test_what_other_programs_offer_is_pasted(self):
        for target in ("text/plain;charset=utf-8", "UTF8_STRING", "STRING"):
            with self.subTest(target=target):
                owner = self.processes.start(
                    ["xclip", "-selection", "clipboard", "-target", target, "-quiet"],
                    env=environment(DISPLAY=self.display.name), stdin=subprocess.PIPE,
                )
                owner.stdin.write(b"right\n")
                owner.stdin.close()
                wait_until(lambda: self.display.selection_owner("CLIPBOARD"), "the clipboard")
                self.open()
                self.unlock_with("ctrl+v", "Return")
                self.lock()
                end(owner)
                wait_until(lambda: not self.display.selection_owner("CLIPBOARD"), "the clipboard to go")

    def test_where_no_password_is_right_the_way_out_keeps_the_keyboard(self):
        self.pam.lock_password()
        self.open()
        self.wait_for_message("No password can be checked here. Apple Lock is the way out.")
        wait_until(self.is_way_out_focused, "the focus on the way out")
        self.display.key("Tab", "shift+Tab")
        self.display.click_at(20, 20)
        self.display.settle()
        self.assertTrue(self.is_way_out_focused())
        self.stay_locked()

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
                    # Return is behind it by then: seen after the helper's end, it would start a new one.
                    self.display.key("Tab")
                    wait_until(self.is_way_out_focused, "the focus on the way out")
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

    def is_way_out_focused(self):
        return any(node.name == "Stay Locked" and "focused" in node.states for node in self.prompt())


if __name__ == "__main__":
    reason = OddPam.missing() or (None if shutil.which("xclip") else "xclip is not installed")
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
