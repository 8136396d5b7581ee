"""How soon the Agent Lock covers a display, beside screen lockers, and what it uses while it is up."""

import os
import shutil
import statistics
import subprocess
import time

from desktop import BUILD, VIGILO, Desktop, processor_time, pss
from harness.actions import perform
from harness.agents import Agents
from harness.display import windows_named
from harness.processes import wait_until

LOCKERS = {"i3lock": ["i3lock", "--nofork", "--color", "101010"], "xsecurelock": ["xsecurelock"]}
# Two displays of 3840 by 2160, side by side: size in pixels and millimetres, and place.
LARGE = "7680x2160x24"
MONITORS = {"left": ("3840/600x2160/340+0+0", "screen"), "right": ("3840/600x2160/340+3840+0", "none")}


class Watch:
    """Tells when the display is covered."""

    def __init__(self, desktop):
        self._process = desktop.processes.start(
            [os.path.join(BUILD, "bench/covered")], env=desktop.environment(), stdout=subprocess.PIPE
        )
        self._process.stdout.readline()

    def seconds_since(self, begin):
        covered = float(self._process.stdout.readline())
        self._process.wait()
        return covered - begin


def paint_ground(desktop):
    subprocess.run(["xsetroot", "-solid", "#ff00ff"], env=desktop.environment(), check=True)


def covering(times):
    """Milliseconds from a request until the display is covered, by locker, the median of so many times. A
    locker is requested by starting it, the Agent Lock by an action of the running program."""
    print("bench: covering a display", flush=True)
    taken = {}
    with Desktop() as desktop:
        paint_ground(desktop)
        desktop.start([VIGILO])
        for _ in range(times):
            watch, begin = Watch(desktop), time.monotonic()
            perform(desktop.session_bus, "agentLock")
            taken.setdefault("vigilo", []).append(watch.seconds_since(begin))
            perform(desktop.session_bus, "toggleProtection")
            wait_until(lambda: not windows_named(desktop.display.name, "Agent Lock"), "the end of the lock")
            for name, command in LOCKERS.items():
                if shutil.which(name):
                    watch, begin = Watch(desktop), time.monotonic()
                    locker = desktop.processes.start(command, env=desktop.environment())
                    taken.setdefault(name, []).append(watch.seconds_since(begin))
                    locker.terminate()
                    locker.wait()
    return {name: statistics.median(values) * 1000 for name, values in taken.items()}


def child(parent, name):
    """The process id of the one child of this name."""
    return int(subprocess.run(
        ["pgrep", "--parent", str(parent), "--exact", name], check=True, stdout=subprocess.PIPE
    ).stdout)


def locked(seconds):
    """Per cent of a core, frames drawn and memory (Pss, MiB) with the lock up for so many seconds over two
    large displays, with five agents."""
    print("bench: watching the lock", flush=True)
    agents = [("claude", "project%d" % number, False, 1) for number in range(5)]
    with Desktop(LARGE) as desktop, Agents(*agents) as listed:
        for name, (place, output) in MONITORS.items():
            subprocess.run(
                ["xrandr", "--setmonitor", name, place, output],
                env=desktop.environment(), check=True, stdout=subprocess.DEVNULL,
            )
        first = desktop.start_alone(*listed.command(VIGILO))
        process = first._replace(pid=child(first.pid, "vigilo"))
        perform(desktop.session_bus, "agentLock")
        wait_until(lambda: len(windows_named(desktop.display.name, "Agent Lock")) == 2, "the lock")
        time.sleep(5)
        desktop.frames(process)
        before = processor_time(process)
        time.sleep(seconds)
        used = processor_time(process) - before
        return used / seconds * 100, desktop.frames(process), pss(process)
