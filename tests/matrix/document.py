"""Writes the document of the matrix from what was seen, now or before."""

import subprocess

from .environments import ENVIRONMENTS
from .findings import CAPABILITIES, FAILED, LACKS, WORKS

MARKS = {WORKS: "✓", LACKS: "—", FAILED: "✗"}

BEFORE = """# On the desktops

What `scripts/desktops` has seen; it writes this page. In each row a whole session of the desktop ran for an
ordinary user with a real password, on {system} on displays without hardware, beside a real
logind, polkit and UPower. In each, Vigilo was started with two example agents; a session was begun, ended and
begun again; the Agent Lock covered a test pattern and the panel, refused a wrong password and took the right
one; Apple Lock was chosen; the program was quit, and the user logged in anew.

✓ works, by the means named · — the desktop cannot do it, and what there is instead · ✗ failed

"""

AFTER = """
## What it does not show

- GNOME's display manager, without which its shell has no lock screen, was a stand-in that is there and
  nothing more.
- On Wayland, keys came from Mutter's remote desktop and KWin's fake input, not from a keyboard, and both were
  started so that any program may take pictures of the screen.
- Displays that wake, fingerprint readers, closed lids and batteries need hardware.

## Pictures
"""


def version(kind):
    """Of the package that the environment is best known by; empty where it is not installed."""
    if not kind.version_of:
        return ""
    answer = subprocess.run(
        ["dpkg-query", "--show", "--showformat=${Version}", kind.version_of],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
    ).stdout
    # Without the epoch and the packaging's own number.
    return answer.split(":")[-1].split("-")[0]


def system():
    """The name of this system and its version."""
    with open("/etc/os-release", encoding="utf-8") as file:
        fields = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
    return fields["PRETTY_NAME"].strip('"')


def new_row(kind, result):
    """What was seen now; `result` is what play.py printed."""
    number = version(kind)
    title = "%s (%s %s)" % (kind.title, kind.version_of, number) if number else kind.title
    if "skipped" in result:
        return "| %s | not run: %s |" % (title, result["skipped"]) + " |" * (len(CAPABILITIES) - 1)
    if set(result["findings"]) != set(CAPABILITIES):
        return "| %s | ✗ it could not be started" % title + " |" * len(CAPABILITIES)
    cells = ["%s %s" % (MARKS[outcome], " ".join(words.replace("|", "/").split())) for outcome, words in result["findings"].values()]
    return "| " + " | ".join([title, *cells]) + " |"


def old_row(kind, page):
    """What was seen before, as the page has it."""
    for line in page.splitlines():
        if line.startswith(("| %s (" % kind.title, "| %s |" % kind.title)):
            return line
    return "| %s | never run |" % kind.title + " |" * (len(CAPABILITIES) - 1)


def document(results, page, pictures):
    """The text of the page; `results` has what play.py printed, by the environment's name, `page` is the text
    so far, from which the other environments are taken. `pictures` names the environments of which there is one."""
    lines = ["| desktop | " + " | ".join(CAPABILITIES.values()) + " |", "|---" * (len(CAPABILITIES) + 1) + "|"]
    shown = []
    for name, kind in ENVIRONMENTS.items():
        row = new_row(kind, results[name]) if name in results else old_row(kind, page)
        lines.append(row)
        if name in pictures:
            title = row.split("|")[1].strip()
            shown += ["", "### " + title, "", "![Vigilo in %s](pictures/desktops/%s.png)" % (kind.title, name)]
    return BEFORE.format(system=system()) + "\n".join(lines) + "\n" + AFTER + "\n".join(shown) + "\n"
