"""An ordinary user with a real password: one of the system's own accounts, which has a password only
inside the mount namespace that a program is started in."""

import os
import shutil
import subprocess
import tempfile

UID = 5
NAME = "games"  # "nobody" has a made-up shadow entry on systems with systemd
PASSWORD = "correct horse 7"
_AS_OWNER = ("setpriv", "--reuid", str(UID), "--regid", str(UID), "--clear-groups")


class Owner:
    """Makes commands that run as this user."""

    @staticmethod
    def missing():
        """Why it cannot be had here; None when it can."""
        if os.geteuid() != 0:
            return "an account of one's own in a mount namespace needs root"
        if subprocess.run(["unshare", "-m", "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
            return "mount namespaces are not allowed here"
        if subprocess.run([*_AS_OWNER, "test", "-r", __file__], check=False).returncode != 0:
            return "an ordinary user cannot reach the folder of the project"
        return None

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="vigilo-owner-")
        os.chmod(self.folder, 0o755)
        self.home = os.path.join(self.folder, "home")
        os.mkdir(self.home, 0o700)
        os.chown(self.home, UID, UID)
        secret = subprocess.run(
            ["openssl", "passwd", "-6", PASSWORD], check=True, stdout=subprocess.PIPE, text=True
        ).stdout.strip()
        shadow = os.path.join(self.folder, "shadow")
        with open("/etc/shadow", encoding="utf-8") as before, open(shadow, "w", encoding="utf-8") as after:
            os.chmod(shadow, 0o640)
            for line in before:
                if not line.startswith(NAME + ":"):
                    after.write(line)
            after.write("%s:%s:19000:0:99999:7:::\n" % (NAME, secret))
        shutil.chown(shadow, "root", "shadow")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder, ignore_errors=True)

    def command(self, *command):
        script = """set -e
            mount --make-rprivate /
            mount --bind "$0/shadow" /etc/shadow
            exec "$@" """
        return ["unshare", "-m", "bash", "-c", script, self.folder, *_AS_OWNER, *command]
