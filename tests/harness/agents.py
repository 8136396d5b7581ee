#!/usr/bin/python3
"""A process table of one's own: a program and the agents that it is to find, and nothing else of the
machine. Usage: agents.py FILE COMMAND..., inside a process namespace with its own /proc; the file
holds a list of agents in JSON."""

import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile

# Has used a good part of its short life, and for minutes to come enough of the longer one.
BUSY = "import os, signal\nwhile os.times().user < 2: pass\nsignal.pause()"


class Agents:
    """Makes commands that see these agents: (name, folder, is busy, number of processes). An agent in no
    folder at all has None there."""

    @staticmethod
    def missing():
        """Why they cannot be had here; None when they can."""
        if os.geteuid() != 0:
            return "a process table of one's own needs root"
        command = ["unshare", "--pid", "--fork", "--mount-proc", "true"]
        if subprocess.run(command, stderr=subprocess.DEVNULL, check=False).returncode != 0:
            return "process namespaces are not allowed here"
        return None

    def __init__(self, *agents):
        self.folder = tempfile.mkdtemp(prefix="vigilo-agents-")
        os.chmod(self.folder, 0o755)
        self._list = os.path.join(self.folder, "agents")
        self.count = len(agents)
        entries = []
        for name, folder, is_busy, count in agents:
            path = os.path.join(self.folder, folder) if folder else "/"
            os.makedirs(path, exist_ok=True)
            entries.append({"name": name, "folder": path, "is_busy": is_busy, "count": count})
        with open(self._list, "w", encoding="utf-8") as file:
            json.dump(entries, file)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder, ignore_errors=True)

    def command(self, *command):
        """Starts the agents and the command, all as whoever starts this; they end together."""
        return ["/usr/bin/python3", os.path.abspath(__file__), self._list, *command]

    @staticmethod
    def apart(*command):
        """Runs the command in a process namespace; everything in it goes when its first process does."""
        return ["unshare", "--pid", "--fork", "--kill-child", "--mount-proc", *command]

    @classmethod
    def alone(cls, *command):
        """Runs the command where it sees none of the agents that somebody runs on this machine, as far as
        that can be had."""
        return list(command) if cls.missing() else cls.apart(*command)

    @staticmethod
    def first(process):
        """The process id of the first process of the namespace, of the started `apart` command."""
        path = "/proc/%d/task/%d/children" % (process.pid, process.pid)
        with open(path, encoding="utf-8") as file:
            return int(file.read())

    @classmethod
    def pid_alone(cls, process):
        """The process id of the program, of the started `alone` command."""
        return process.pid if cls.missing() else cls.first(process)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        agents = json.load(file)
    for agent in agents:
        for number in range(agent["count"]):
            is_busy = agent["is_busy"] and number == 0
            subprocess.Popen(
                [agent["name"], "-c", BUSY] if is_busy else [agent["name"], "100000"],
                executable="/usr/bin/python3" if is_busy else "/usr/bin/sleep",
                cwd=agent["folder"],
                stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL,
            )
    program = subprocess.Popen(sys.argv[2:])
    signal.signal(signal.SIGTERM, lambda *_: program.terminate())
    sys.exit(max(program.wait(), 0))


if __name__ == "__main__":
    main()
