"""How soon the Agent Lock covers a display, beside screen lockers, and what it uses while it is up."""

import os
import shutil
import signal
import statistics
import subprocess
import time

from desktop import BUILD, VIGILO, Desktop, processor_time, pss
from harness.actions import perform
from harness.agents import Agents
from harness.buses import SessionBus
from harness.display import windows_named
from harness.processes import Processes, environment, wait_until
from harness.sway import Sway

LOCKERS = {"i3lock": ["i3lock", "--nofork", "--color", "101010"], "xsecurelock": ["xsecurelock"]}
# Two displays of 3840 by 2160, side by side: size in pixels and millimetres, and place.
LARGE = "7680x2160x24"
MONITORS = {"left": ("3840/600x2160/340+0+0", "screen"), "right": ("3840/600x2160/340+3840+0", "none")}


class Watch:
    """Tells when all displays are covered; `program` is the one that looks at them."""

    def __init__(self, processes, program, variables):
        self._process = processes.start(
            [os.path.join(BUILD, "bench", program)], env=variables, stdout=subprocess.PIPE
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
            watch, begin = Watch(desktop.processes, "covered", desktop.environment()), time.monotonic()
            perform(desktop.session_bus, "agentLock")
            taken.setdefault("vigilo", []).append(watch.seconds_since(begin))
            perform(desktop.session_bus, "toggleProtection")
            wait_until(lambda: not windows_named(desktop.display.name, "Agent Lock"), "the end of the lock")
            for name, command in LOCKERS.items():
                if shutil.which(name):
                    watch, begin = Watch(desktop.processes, "covered", desktop.environment()), time.monotonic()
                    locker = desktop.processes.start(command, env=desktop.environment())
                    taken.setdefault(name, []).append(watch.seconds_since(begin))
                    locker.terminate()
                    locker.wait()
    return {name: statistics.median(values) * 1000 for name, values in taken.items()}


def covering_wayland(times):
    """The same on sway with two outputs, beside swaylock. They show a thousand pictures a second, so that
    waiting for the next one takes no part in it."""
    print("bench: covering two outputs of sway", flush=True)
    if Sway.missing():
        return {}
    fast = "output * mode --custom 1280x800@1000Hz"
    taken = {}
    with Sway(outputs=2, settings=fast) as sway, SessionBus() as bus, Processes() as processes:
        variables = environment(
            **sway.environment, DBUS_SESSION_BUS_ADDRESS=bus.address,
            DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus", QT_QPA_PLATFORM="wayland",
        )

        def watch():
            return Watch(processes, "harness/covered_wayland", variables), time.monotonic()

        processes.serve("fake_power_service.py", "plasma", "grant", env=variables)
        processes.start([VIGILO], env=variables)
        time.sleep(3)
        for _ in range(times):
            watching, begin = watch()
            perform(bus, "agentLock")
            taken.setdefault("vigilo", []).append(watching.seconds_since(begin))
            perform(bus, "toggleProtection")
            time.sleep(1)
            if shutil.which("swaylock"):
                watching, begin = watch()
                locker = processes.start(["swaylock", "--color", "101010"], env=variables)
                taken.setdefault("swaylock", []).append(watching.seconds_since(begin))
                locker.send_signal(signal.SIGUSR1)  # to unlock
                locker.wait()
                time.sleep(1)
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
