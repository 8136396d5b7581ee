"""A private Xorg on screens without hardware: several outputs and display power, which Xvfb lacks."""

import glob
import os
import shutil
import subprocess
import tempfile

from .display import VirtualDisplay
from .preload import preload
from .processes import die_with_parent

CONFIGURATION = """
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoEnableDevices" "false"
  Option "DontVTSwitch" "true"
EndSection
Section "Device"
  Identifier "device"
  Driver "dummy"
  VideoRam 256000
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5.0-1000.0
  VertRefresh 5.0-200.0
  Option "DPMS" "true"
EndSection
Section "Screen"
  Identifier "screen"
  Device "device"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "1280x800"
    Virtual 3840 2160
  EndSubSection
EndSection
"""

SERVER = "/usr/lib/xorg/Xorg"
MODULES = "/usr/lib/xorg/modules"


class DummyXorg(VirtualDisplay):
    """Xorg with the dummy driver; `shim` is the built dpms_shim, for displays that can be switched off."""

    @staticmethod
    def missing():
        """Why it cannot be had here; None when it can."""
        if os.geteuid() != 0:
            return "Xorg on the dummy driver needs root"
        if not os.path.exists(SERVER) or not glob.glob(MODULES + "/drivers/dummy_drv.so"):
            return "Xorg or its dummy driver is not installed"
        return None

    def __init__(self, shim):
        self._folder = tempfile.mkdtemp(prefix="vigilo-xorg-")
        configuration = os.path.join(self._folder, "xorg.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION)
        os.mkdir(os.path.join(self._folder, "drivers"))
        with open(MODULES + "/drivers/dummy_drv.so", "rb") as file:
            driver = file.read()
        with open(os.path.join(self._folder, "drivers/dummy_drv.so"), "wb") as file:
            file.write(driver.replace(b"xf86CrtcScreenInit\0", b"xf86CrtcScreenIniT\0"))
        self._log = os.path.join(self._folder, "log")
        reader, writer = os.pipe()
        with open(self._log, "w", encoding="utf-8") as log:
            self._server = subprocess.Popen(
                [
                    SERVER, "-displayfd", str(writer), "-noreset", "-r", "-nolisten", "tcp", "-novtswitch",
                    "-sharevts", "-config", configuration, "-logfile", os.path.join(self._folder, "Xorg.log"),
                    "-modulepath", self._folder + "," + MODULES,
                ],
                env=os.environ | preload(self._folder, shim),
                pass_fds=[writer],
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
                preexec_fn=die_with_parent,
            )
        os.close(writer)
        self._read_number(reader)

    def stop(self):
        super().stop()
        shutil.rmtree(self._folder, ignore_errors=True)

    def power_levels(self):
        """The levels that the displays were set to so far: 0 is on, 3 is off."""
        with open(self._log, encoding="utf-8") as log:
            return [int(line.split()[-1]) for line in log if line.startswith("display power level")]
