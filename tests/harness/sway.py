"""A private sway, a Wayland compositor of the wlroots family, on outputs without hardware."""

import json
import os
import shutil
import socket
import struct
import subprocess
import tempfile

from .owner import NAME
from .pictures import DESKTOP, Picture
from .processes import PATIENCE, Processes, environment, wait_until

# Of sway-ipc(7).
_MAGIC = b"i3-ipc"
_RUN_COMMAND = 0
_KINDS = {"get_outputs": 3, "get_tree": 4, "get_seats": 101}

CONFIGURATION = """
xwayland disable
output * bg #ff00ff solid_color
"""


class Sway:
    """As a context manager or with stop(). It refuses to run for root and gets an ordinary user then: the
    owner of the `room` that it is started in, or else nobody. Its outputs can be switched off with the `shim`
    switched_outputs_shim only; without it sway says that they are, and they stay on."""

    @staticmethod
    def missing():
        """Why it cannot be had here; None when it can."""
        return None if shutil.which("sway") else "sway is not installed"

    def __init__(self, outputs=1, settings="", room=None, shim=None, **variables):
        self.folder = tempfile.mkdtemp(prefix="sway-", dir=room.home) if room else tempfile.mkdtemp(prefix="vigilo-sway-")
        os.chmod(self.folder, 0o700)
        self.processes = Processes()
        configuration = os.path.join(self.folder, "config")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION + settings)
        command = ["sway", "-c", configuration]
        if room:
            shutil.chown(self.folder, NAME)
            command = room.command(*command)
        elif os.geteuid() == 0:
            shutil.chown(self.folder, 65534, 65534)
            command = ["setpriv", "--reuid", "65534", "--regid", "65534", "--clear-groups", *command]
        self._socket = os.path.join(self.folder, "ipc")
        changes = {
            "DISPLAY": None, "WAYLAND_DISPLAY": None, "HOME": self.folder, "XDG_RUNTIME_DIR": self.folder,
            "WLR_BACKENDS": "headless", "WLR_HEADLESS_OUTPUTS": str(outputs), "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER": "pixman", "SWAYSOCK": self._socket,
        }
        if shim:
            # A copy, since that user may not come to where the shim was built.
            changes["LD_PRELOAD"] = shutil.copy(shim, self.folder)
        try:
            self.log = os.path.join(self.folder, "log")
            with open(self.log, "w", encoding="utf-8") as log:
                self.processes.start(command, env=environment(**(changes | variables)), stderr=log)
            wait_until(lambda: self._displays() and os.path.exists(self._socket), "sway")
        except BaseException:
            self.stop()
            raise
        self.socket = os.path.join(self.folder, self._displays()[0])
        # For the clients; ones that run as root reach the folder, too.
        self.environment = {
            "WAYLAND_DISPLAY": self._displays()[0], "XDG_RUNTIME_DIR": self.folder, "DISPLAY": None,
            "SWAYSOCK": self._socket,
        }

    def _displays(self):
        return [name for name in os.listdir(self.folder) if name.startswith("wayland-") and "." not in name]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        self.processes.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def message(self, *words):
        """What sway answers to a message, with the arguments of swaymsg(1), which itself gives a busy machine only
        three seconds."""
        kind, text = (_KINDS[words[1]], "") if words[0] == "-t" else (_RUN_COMMAND, " ".join(words))
        with socket.socket(socket.AF_UNIX) as connection, connection.makefile("rb") as answers:
            connection.settimeout(PATIENCE)
            connection.connect(self._socket)
            payload = text.encode()
            connection.sendall(_MAGIC + struct.pack("=II", len(payload), kind) + payload)
            length, _ = struct.unpack("=II", answers.read(len(_MAGIC) + 8)[len(_MAGIC):])
            answer = json.loads(answers.read(length))
        if kind == _RUN_COMMAND and not all(result["success"] for result in answer):
            raise RuntimeError("sway does not take %r: %s" % (text, answer))
        return answer

    def outputs(self):
        return self.message("-t", "get_outputs")

    def switch(self, name, on):
        """Switches an output on or off."""
        self.message("output " + name + (" enable" if on else " disable"))
        active = next(output["active"] for output in self.outputs() if output["name"] == name)
        if active != on:
            raise RuntimeError("sway did not switch %s" % name)

    def windows(self):
        """What sway knows of the ordinary windows."""

        def within(node):
            children = node.get("nodes", []) + node.get("floating_nodes", [])
            return ([node] if node.get("pid") else []) + [window for child in children for window in within(child)]

        return within(self.message("-t", "get_tree"))

    def is_covered(self, may_sleep=False):
        """Whether every output that is on shows something, but not one pixel of the background; one that
        sleeps shows nothing."""
        for output in self.outputs():
            if not output["active"] or (may_sleep and not output["dpms"]):
                continue
            picture = subprocess.run(
                ["grim", "-t", "ppm", "-o", output["name"], "-"], env=environment(**self.environment), check=False,
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            ).stdout
            if not picture or Picture(picture).has(DESKTOP):
                return False
        return True

    def is_asked_to_sleep(self):
        """Whether every output sleeps, or sway has tried it: some releases cannot do it on outputs without
        hardware, and say so."""
        with open(self.log, encoding="utf-8") as file:
            log = file.read()
        return all(
            not output["dpms"] or "Failed to commit output " + output["name"] in log for output in self.outputs()
        )

    def screenshot(self, path, output=None):
        """Writes one output, or all of them side by side, as a PNG."""
        choice = ["-o", output] if output else []
        subprocess.run(["grim", *choice, path], env=environment(**self.environment), check=True)
