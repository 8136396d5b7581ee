#!/usr/bin/python3
"""Plays the scenario in one environment and prints what was found, as JSON.
Usage: play.py ENVIRONMENT VIGILO HELPERS [PICTURES]
HELPERS is the folder in which the programs of tests/harness are built.
Ends with 77 where the environment cannot be run, and with 1 when something failed that was expected to hold."""

import json
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from harness.room import APART
from matrix.environments import ENVIRONMENTS
from matrix.findings import FAILED
from matrix.scenario import Scenario


def main():
    name, vigilo, helpers, *pictures = sys.argv[1:]
    kind = ENVIRONMENTS[name]
    reason = kind.missing()
    if reason:
        print(json.dumps({"skipped": reason}))
        return 77
    with kind(vigilo, helpers) as environment:
        findings = Scenario(environment, *pictures).play()
    print(json.dumps({"findings": {key: [one.outcome, one.words] for key, one in findings.items()}}, indent=2))
    return 1 if any(one.outcome == FAILED for one in findings.values()) else 0


if __name__ == "__main__":
    if os.getppid() != 1:
        os.execvp(APART[0], [*APART, sys.executable, *sys.argv])
    sys.exit(main())
