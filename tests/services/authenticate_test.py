#!/usr/bin/python3
"""The helper that talks to PAM, over its connection: what it answers, what it bears and when it ends.
Usage: authenticate_test.py HELPER MODULE"""

import os
import random
import select
import signal
import socket
import struct
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.pam import OddPam
from harness.processes import PATIENCE, die_with_parent

HELPER = sys.argv.pop(1)
MODULE = sys.argv.pop(1)
REFUSED = 3
SEED = 4711

# Starts the helper as a child, tells its process id and waits to be killed.
BETWEEN = "import subprocess, sys; print(subprocess.Popen(sys.argv[1:], pass_fds=[3]).pid, flush=True); input()"


def frame(kind, text):
    return kind.encode() + struct.pack("<H", len(text)) + text


class Helper:
    """A running helper and the program's end of the connection."""

    def __init__(self, pam, *between, also=(), arguments=()):
        self._socket, theirs = socket.socketpair()
        self._socket.settimeout(PATIENCE)
        self.process = subprocess.Popen(
            pam.command(*between, HELPER, *arguments),
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            pass_fds=[3, *also],
            preexec_fn=lambda: (die_with_parent(), os.dup2(theirs.fileno(), 3)),
        )
        theirs.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._socket.close()
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()

    def send(self, data):
        try:
            self._socket.sendall(data)
        except (BrokenPipeError, ConnectionResetError):
            pass  # it has ended already

    def answer(self, text):
        self.send(frame("A", text))

    def say_no_more(self):
        self._socket.shutdown(socket.SHUT_WR)

    def close(self):
        self._socket.close()

    def read(self):
        """Its next frame, as kind and text; None at the end."""
        header = self._exactly(3)
        if header is None:
            return None
        return chr(header[0]), self._exactly(struct.unpack("<H", header[1:])[0])

    def rest(self):
        """The kinds of all frames up to the end."""
        kinds = ""
        while (next_frame := self.read()) is not None:
            kinds += next_frame[0]
        return kinds

    def _exactly(self, size):
        data = b""
        while len(data) < size:
            try:
                piece = self._socket.recv(size - len(data))
            except ConnectionResetError:
                piece = b""
            if not piece:
                return None
            data += piece
        return data


class Authenticate(unittest.TestCase):
    def setUp(self):
        self.pam = OddPam(MODULE)
        self.addCleanup(self.pam.__exit__)
        self.pam.does("ask", "Password:")

    def test_the_right_answer_and_only_it_is_a_success(self):
        for answer, frames, status in (
            (b"right", "S", 0), (b"wrong", "", REFUSED), (b"", "", REFUSED), (b"rightx", "", REFUSED),
            (b"x" * 511, "", REFUSED),
        ):
            with self.subTest(answer=answer), Helper(self.pam) as helper:
                self.assertEqual(helper.read(), ("P", b"Password:"))
                helper.answer(answer)
                self.assertEqual(helper.rest().replace("D", ""), frames)
                self.assertEqual(helper.process.wait(PATIENCE), status)

    def test_a_finger_is_asked_of_its_own_service_and_no_question_is_put(self):
        for steps, frames, status in (
            (["say", "Touch"], "IS", 0), (["ask", "Password:"], "", REFUSED), (["broken"], "", 1),
            (["say", "Touch", "ask", "PIN"], "I", REFUSED), (None, "", 1),
        ):
            with self.subTest(steps=steps):
                if steps is None:
                    self.pam.finger_has_no_module()
                else:
                    self.pam.finger_does(*steps)
                with Helper(self.pam, arguments=["fingerprint"]) as helper:
                    self.assertEqual(helper.rest().replace("D", ""), frames)
                    self.assertEqual(helper.process.wait(PATIENCE), status)

    def test_without_a_module_for_fingers_no_finger_is_the_owner_s(self):
        # Neither a service of the system's nor, on this machine, the module of ours.
        self.pam.does("say", "Anybody")
        with Helper(self.pam, arguments=["fingerprint"]) as helper:
            self.assertEqual(helper.rest().replace("D", ""), "")
            self.assertEqual(helper.process.wait(PATIENCE), 1)

    def test_nothing_in_the_working_folder_decides(self):
        # Without /proc it does not know where it is installed itself.
        folder = os.path.join(self.pam.folder, "anybodys")
        os.makedirs(os.path.join(folder, "pam/fingerprint"))
        with open(os.path.join(folder, "pam/fingerprint/vigilo-fingerprint"), "w", encoding="utf-8") as file:
            file.write("auth required %s say Anybody\n" % MODULE)
        script = 'umount --lazy /proc; cd "$0"; exec "$@"'
        with Helper(self.pam, "bash", "-c", script, folder, arguments=["fingerprint"]) as helper:
            self.assertEqual(helper.rest(), "N")
            self.assertEqual(helper.process.wait(PATIENCE), 1)

    def test_bytes_that_are_no_answer_end_it(self):
        for data in (
            frame("S", b""), frame("P", b"right"), b"A\xff\xff" + b"x" * 70000, frame("A", b"x" * 512), b"\0" * 100,
            b"\xff" * 3,
        ):
            with self.subTest(data=data[:8]), Helper(self.pam) as helper:
                self.assertEqual(helper.read()[0], "P")
                helper.send(data)
                self.assertEqual(helper.rest(), "")
                self.assertNotIn(helper.process.wait(PATIENCE), (0, REFUSED))

    def test_the_end_of_the_connection_ends_it(self):
        for data in (b"", b"A", b"A\x05", b"A\x05\x00rig"):
            with self.subTest(data=data), Helper(self.pam) as helper:
                self.assertEqual(helper.read()[0], "P")
                helper.send(data)
                helper.close()
                self.assertNotIn(helper.process.wait(PATIENCE), (0, REFUSED))

    def test_rubbish_never_is_a_success(self):
        chance = random.Random(SEED)
        for number in range(150):
            data = chance.randbytes(chance.randrange(1, 40))
            if number % 2:
                # Nearly right, up to one byte.
                data = bytearray(frame("A", b"right"))
                data[chance.randrange(len(data))] ^= 1 << chance.randrange(8)
            with self.subTest(data=bytes(data)), Helper(self.pam) as helper:
                helper.send(bytes(data))
                helper.say_no_more()
                kinds = helper.rest()
                self.assertEqual(kinds[:1], "P", "the helper has asked")
                self.assertNotIn("S", kinds)
                self.assertNotEqual(helper.process.wait(PATIENCE), 0)

    def test_it_does_not_outlive_the_program(self):
        self.pam.does("ask", "Password:", "hang")
        with Helper(self.pam, "/usr/bin/python3", "-c", BETWEEN) as helper:
            pid = int(helper.process.stdout.readline())
            self.assertEqual(helper.read()[0], "P")
            helper.answer(b"right")
            watch = os.pidfd_open(pid)
            self.addCleanup(os.close, watch)
            helper.process.send_signal(signal.SIGKILL)
            self.assertTrue(select.select([watch], [], [], 20)[0], "the helper lives on")

    def test_it_leaves_no_core_and_has_nothing_else_open(self):
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        self.addCleanup(os.close, writer)
        with Helper(self.pam, also=[reader, writer]) as helper:
            self.assertEqual(helper.read()[0], "P")
            process = "/proc/%d/" % helper.process.pid
            with open(process + "limits", encoding="utf-8") as limits:
                (core,) = [line.split()[4:6] for line in limits if line.startswith("Max core file size")]
            self.assertEqual(core, ["0", "0"])
            self.assertTrue(os.readlink(process + "fd/3").startswith("socket:"))
            given = {os.readlink("/proc/self/fd/%d" % number) for number in (reader, writer)}
            for name in os.listdir(process + "fd"):
                self.assertNotIn(os.readlink(process + "fd/" + name), given)

    def test_nothing_that_a_module_starts_can_speak_for_it(self):
        self.pam.does("ask", "Password:")
        with Helper(self.pam) as helper:
            self.assertEqual(helper.read()[0], "P")
            with open("/proc/%d/fdinfo/3" % helper.process.pid, encoding="utf-8") as info:
                (flags,) = [int(line.split()[1], 8) for line in info if line.startswith("flags:")]
            self.assertTrue(flags & os.O_CLOEXEC)


if __name__ == "__main__":
    reason = OddPam.missing()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
