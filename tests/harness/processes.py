"""Programs that a test starts and surely stops again."""

import ctypes
import os
import signal
import subprocess
import time

SERVICES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../services")
_libc = ctypes.CDLL(None)
_PR_SET_PDEATHSIG = 1
# How long tests wait for what has to come, in seconds. Only what hangs takes longer: a machine with ten programs
# a processor may need minutes for what is otherwise there in a moment.
PATIENCE = 300


def die_with_parent():
    """For `preexec_fn`: the program ends when the test does, even when that is killed."""
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


class Processes:
    """Starts programs and stops them in reverse order, by process id, at the end of a `with` block."""

    def __init__(self):
        self._started = []
        self._pipes = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self, command, **options):
        """A program with its output thrown away unless the options say otherwise."""
        nothing = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        options = nothing | {"preexec_fn": die_with_parent} | options
        process = subprocess.Popen(command, **options)
        self._started.append(process)
        return process

    def serve(self, script, *arguments, env):
        """A script of tests/services that has said on a line that it is there; what else it says can be read."""
        process = self.start(
            ["/usr/bin/python3", os.path.join(SERVICES, script), *arguments], env=env, stdout=subprocess.PIPE, text=True
        )
        self._pipes.append(process.stdout)
        if not process.stdout.readline():
            raise RuntimeError(script + " has not come up")
        return process

    def stop(self):
        while self._started:
            end(self._started.pop())
        while self._pipes:
            self._pipes.pop().close()


def end(process, timeout=20):
    """Asks a program to end, and kills it if it does not; returns its exit status."""
    if process.poll() is None:
        # unshare(1) with a child leaves that signal to it, which does not get it.
        process.send_signal(signal.SIGKILL if "--kill-child" in process.args else signal.SIGTERM)
        try:
            process.wait(timeout)
        except subprocess.TimeoutExpired:
            process.kill()
    return process.wait()


def wait_until(condition, what, timeout=PATIENCE):
    """Waits until the condition holds and returns its value; raises an error after the timeout, in seconds."""
    deadline = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TimeoutError("waited in vain for " + what)
        time.sleep(0.05)


def environment(**changes):
    """This process's environment with changes; None takes a variable out."""
    result = dict(os.environ)
    for name, value in changes.items():
        if value is None:
            result.pop(name, None)
        else:
            result[name] = value
    return result
