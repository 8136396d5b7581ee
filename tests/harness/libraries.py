"""Where Debian keeps the programs that only other programs start, on this kind of machine."""

import sysconfig

LIBRARIES = "/usr/lib/" + sysconfig.get_config_var("MULTIARCH")
XFCONFD = LIBRARIES + "/xfce4/xfconf/xfconfd"
