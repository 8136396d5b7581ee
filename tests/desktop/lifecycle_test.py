#!/usr/bin/python3
"""How the program starts and ends, seen from outside. Usage: lifecycle_test.py VIGILO"""

import os
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.buses import SessionBus
from harness.display import VirtualDisplay, windows_named
from harness.processes import PATIENCE, Processes, die_with_parent

VIGILO = sys.argv.pop(1)

# Neither a display nor a bus unless a test brings one.
BARE = {
    name: value
    for name, value in os.environ.items()
    if name not in ("DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "XDG_SESSION_TYPE", "QT_QPA_PLATFORM")
}
BARE["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent/bus"
BARE["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/nonexistent/bus"


def run(*arguments, **environment):
    return subprocess.run(
        [VIGILO, *arguments],
        env=BARE | environment,
        stdin=subprocess.DEVNULL,
        capture_output=True,
        text=True,
        timeout=PATIENCE,
        check=False,
    )


class WithoutADisplay(unittest.TestCase):
    def test_the_self_test_prints_its_verdict_and_nothing_else(self):
        for arguments in (["--self-test"], ["-x", "--version", "--self-test"]):
            result = run(*arguments)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "SELF_TEST_PASS\n", ""))

    def test_the_self_test_calls_on_nobody(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        servers = {}
        for name in ("display", "session", "system"):
            servers[name] = self.enterContext(socket.socket(socket.AF_UNIX))
            servers[name].bind(os.path.join(folder, name))
            servers[name].listen()
            servers[name].setblocking(False)
        result = run(
            "--self-test",
            WAYLAND_DISPLAY=os.path.join(folder, "display"),
            DBUS_SESSION_BUS_ADDRESS="unix:path=" + os.path.join(folder, "session"),
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=" + os.path.join(folder, "system"),
        )
        self.assertEqual((result.returncode, result.stdout), (0, "SELF_TEST_PASS\n"))
        for name, server in servers.items():
            with self.subTest(server=name), self.assertRaises(BlockingIOError):
                server.accept()

    def test_help_and_version_are_printed(self):
        result = run("--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("--self-test", result.stdout)
        result = run("--version")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertRegex(result.stdout, r"^Vigilo \d+\.\d+\.\d+\n$")

    def test_the_refusal_is_one_line_and_status_1(self):
        displays = [
            {},
            {"DISPLAY": ":4242"},
            {"DISPLAY": "nonsense"},
            {"WAYLAND_DISPLAY": "wayland-4242"},
            {"WAYLAND_DISPLAY": "wayland-4242", "DISPLAY": ":4242", "XDG_SESSION_TYPE": "wayland"},
            {"QT_QPA_PLATFORM": "nonsense"},
        ]
        for display in displays:
            for arguments in ([], ["--Self-Test"], ["--self-tests"]):
                with self.subTest(display=display, arguments=arguments):
                    result = run(*arguments, **display)
                    self.assertEqual(result.returncode, 1)
                    self.assertEqual(result.stdout, "")
                    self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
                    self.assertIn("cannot connect to a display", result.stderr)

    def test_one_that_refuses_is_told_of_in_one_line_too(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        # A server that lets in who has its secret, which is nobody.
        secret = os.path.join(folder, "secret")
        with open(secret, "wb") as file:
            file.write(b"\xff\xff")  # for any machine
            for field in (b"", b"", b"MIT-MAGIC-COOKIE-1", os.urandom(16)):
                file.write(len(field).to_bytes(2, "big") + field)
        display = self.enterContext(VirtualDisplay(options=("-auth", secret)))
        # A compositor that hangs up on whoever calls.
        server = self.enterContext(socket.socket(socket.AF_UNIX))
        server.bind(os.path.join(folder, "wayland"))
        server.listen()
        threading.Thread(target=hang_up_on_all, args=[server], daemon=True).start()
        self.addCleanup(server.shutdown, socket.SHUT_RDWR)
        for variables in (
            {"DISPLAY": display.name, "XAUTHORITY": "/nonexistent"},
            {"WAYLAND_DISPLAY": os.path.join(folder, "wayland"), "XDG_SESSION_TYPE": "wayland"},
        ):
            with self.subTest(variables=variables):
                result = run(**variables)
                self.assertEqual((result.returncode, result.stdout), (1, ""))
                self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
                self.assertRegex(result.stderr, "cannot connect to a display|connection to the display broke")


def hang_up_on_all(server):
    while True:
        try:
            server.accept()[0].close()
        except OSError:
            return


class OnADisplay(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = VirtualDisplay()
        cls.addClassCleanup(cls.display.stop)

    def start(self, *arguments, by=(), **environment):
        process = subprocess.Popen(
            [*by, VIGILO, *arguments],
            env=BARE | {"DISPLAY": self.display.name} | environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            preexec_fn=die_with_parent,
        )
        self.addCleanup(self.finish, process)
        return process

    @staticmethod
    def finish(process):
        if process.poll() is None:
            process.kill()
        if process.stderr.closed:
            process.stderr = None
        process.communicate()

    def wait_for_window(self, process, is_there=True):
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            if bool(windows_named(self.display.name, "Vigilo")) == is_there:
                return
            self.assertIsNone(process.poll(), "the program has ended")
            time.sleep(0.05)
        self.fail("no window" if is_there else "the window stays")

    def test_a_signal_ends_it_in_order(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                process = self.start()
                self.wait_for_window(process)
                process.send_signal(number)
                _, errors = process.communicate(timeout=PATIENCE)
                self.assertEqual(process.returncode, 0, errors)

    def test_it_runs_quietly_without_any_bus(self):
        process = self.start()
        self.wait_for_window(process)
        time.sleep(1)
        process.terminate()
        output, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual((process.returncode, output, errors), (0, "", ""))

    def test_it_runs_on_when_nobody_reads_its_warnings_any_more(self):
        process = self.start(QT_LOGGING_RULES="*.debug=true")
        process.stderr.close()
        self.wait_for_window(process)
        process.terminate()
        self.assertEqual(process.wait(PATIENCE), 0)

    def test_it_runs_without_standard_descriptors(self):
        process = self.start(QT_LOGGING_RULES="*.debug=true", by=["sh", "-c", 'exec "$0" <&- >&- 2>&-'])
        self.wait_for_window(process)
        for number in range(3):
            self.assertEqual(os.readlink("/proc/%d/fd/%d" % (process.pid, number)), "/dev/null")
        process.terminate()
        self.assertEqual(process.wait(PATIENCE), 0)

    def test_unknown_arguments_are_ignored(self):
        process = self.start("--Self-Test", "-platform", "nonsense", "--style", "x", "-qmljsdebugger", "file")
        self.wait_for_window(process)
        process.terminate()
        process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 0)

    def test_the_close_button_hides_the_window_and_the_program_lives_on(self):
        process = self.start()
        self.wait_for_window(process)
        self.display.click(windows_named(self.display.name, "Vigilo")[0], 704, 16)
        self.wait_for_window(process, is_there=False)
        time.sleep(0.5)
        self.assertIsNone(process.poll())
        process.terminate()
        process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 0)

    def test_a_key_held_down_presses_the_button_once(self):
        with SessionBus() as bus, Processes() as processes:
            service = processes.serve(
                "fake_power_service.py", "plasma", "grant", env=BARE | {"DBUS_SESSION_BUS_ADDRESS": bus.address}
            )
            process = self.start(DBUS_SESSION_BUS_ADDRESS=bus.address)
            self.wait_for_window(process)
            window = windows_named(self.display.name, "Vigilo")[0]
            self.display.settle()
            # "Stay Visible", since the lock screen would take the key.
            self.display.click(window, 470, 329)
            self.display.settle()
            self.display.key("Home", "Return")
            self.display.settle()
            self.display.click(window, 360, 399)
            self.assertEqual(service.stdout.readline(), "AddInhibition 1 Vigilo -> 0\n")
            self.display.hold_key("Return", seconds=1.5)
            self.assertEqual(service.stdout.readline(), "release 0\n")
            self.display.settle()
            service.terminate()
            # The one press ended the session; closing what it held is no new request.
            self.assertEqual(service.stdout.read().replace("holder gone\n", ""), "")

    def test_the_users_choice_of_a_rendering_backend_holds(self):
        for chosen, expected in ((None, "Loading backend software"), ("rhi", "Using QRhi with backend")):
            with self.subTest(chosen=chosen):
                environment = {"QSG_INFO": "1", "QT_LOGGING_RULES": "qt.scenegraph.general=true"}
                if chosen:
                    environment["QT_QUICK_BACKEND"] = chosen
                process = self.start(**environment)
                self.assertIn(expected, next(line for line in process.stderr if "backend" in line))
                self.wait_for_window(process)
                process.terminate()
                process.communicate(timeout=PATIENCE)
                self.assertEqual(process.returncode, 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
