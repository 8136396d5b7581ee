"""The same short day in every environment: a session is started and seen by whoever manages the power,
the status item by the panel; the lock screen covers, is lifted, leaves the screen to the system's lock;
the program quits and starts again with the next login."""

import os
import subprocess

from harness.owner import PASSWORD
from harness.processes import PATIENCE, wait_until

from .findings import CAPABILITIES, FAILED, Finding, works

# Nothing of the lock screen is as bright as that near the edges, where panels are.
DARK, EDGE = 110, 24


class Scenario:
    def __init__(self, environment, pictures=None):
        self.environment = environment
        self.pictures = pictures
        self.findings = {}

    def play(self):
        """Returns a Finding for each capability."""
        self._start_agents()
        self.vigilo = self.environment.start_vigilo()
        self._begin()
        for capability in CAPABILITIES:
            try:
                self.findings[capability] = getattr(self, "_" + capability)()
            except Exception as error:  # whatever it is, the rest of the day is played
                self.findings[capability] = Finding(FAILED, "%s: %s" % (type(error).__name__, error))
                self._screenshot("-" + capability)
        return self.findings

    def _begin(self):
        wait_until(self.environment.windows, "the window")
        self.environment.settle()

    def _start_agents(self):
        room = self.environment.room
        for project in ("webapp", "compiler"):
            room.start("bash", "-c", 'cd "$0" && exec -a claude sleep 3000', room.folder("projects/" + project))

    def _screenshot(self, name):
        if self.pictures:
            with open(os.path.join(self.pictures, self.environment.name + name + ".ppm"), "wb") as file:
                file.write(self.environment.ppm())

    def _holds(self, is_held):
        for holder in self.environment.holders():
            wait_until(lambda: holder.is_held() == is_held, "%s: %s" % (holder.words, is_held))

    def _awake(self):
        self._holds(False)
        self.environment.act("toggleProtection")
        self._holds(True)
        return works("; ".join(holder.words for holder in self.environment.holders()))

    def _item(self):
        found = self.environment.status_item()
        self.environment.settle()
        self._screenshot("")
        return found

    def _cover(self):
        environment = self.environment
        environment.show_pattern()
        environment.act("agentLock")
        wait_until(lambda: not environment.shows_pattern(), "the lock screen")
        environment.settle()
        if environment.shows_pattern():
            raise AssertionError("the test pattern is seen")
        self._screenshot("-lock")
        picture = environment.picture()
        width, height = picture.size
        for area in ((0, 0, width, EDGE), (0, height - EDGE, width, height)):
            if picture.ink(*area, DARK):
                raise AssertionError("something is seen above the lock screen in %s" % (area,))
        return works("no pixel of the windows and the panel is seen")

    def _unlock(self):
        environment = self.environment
        environment.type("not " + PASSWORD)
        environment.key("Return")
        environment.settle(quiet=3)
        if environment.shows_pattern():
            raise AssertionError("a wrong password lifts it")
        self._screenshot("-refused")
        for attempt in range(3):
            # The system takes its time after a wrong one, and what is typed meanwhile is lost.
            environment.key("Escape")
            environment.settle()
            environment.type(PASSWORD)
            environment.key("Return")
            try:
                wait_until(environment.shows_pattern, "the lock screen to go", 45)
                break
            except TimeoutError:
                if attempt == 2:
                    raise
        environment.hide_pattern()
        self._holds(True)
        return works("by password, and the session goes on")

    def _system(self):
        return self.environment.apple_lock()

    def _quit(self):
        self.environment.act("quitApp")
        try:
            status = self.vigilo.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            raise AssertionError("it does not end") from None
        if status != 0:
            raise AssertionError("it ends with status %d" % status)
        self._holds(False)
        if self.environment.has_session_bus and self.environment.is_owned("io.github.vigilo.Vigilo"):
            raise AssertionError("its name is still on the bus")
        return works("status 0, and nobody lists it any more")

    def _login(self):
        environment = self.environment
        entry = environment.room.path(".config/autostart/io.github.vigilo.Vigilo.desktop")
        self.vigilo = environment.start_vigilo()
        self._begin()
        environment.act("toggleLaunchAtLogin")
        wait_until(lambda: os.path.exists(entry), "the entry")
        seen = environment.startup_settings()
        self._quit()
        environment.log_in_again()
        found = environment.start_at_login()
        return Finding(found.outcome, "; ".join(filter(None, [found.words, seen])))
