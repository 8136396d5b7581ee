#!/usr/bin/python3
"""Runs a test whose programs are built with sanitizers, and fails it when one of them reports anything,
whatever the test itself makes of that program's end. Usage: sanitized.py [--without-leaks] COMMAND...
Without them, since what the toolkit and the libraries below it leave at the end of a program with windows
is theirs, and where the display is lost it ends the program at once, with threads that nobody waits for;
what such a program gathers while it runs is counted by the tests of faults."""

import os
import subprocess
import sys
import tempfile


def main():
    with tempfile.TemporaryDirectory(prefix="vigilo-reports-") as folder:
        # Some programs run as another user.
        os.chmod(folder, 0o777)
        counts_leaks = sys.argv[1] != "--without-leaks"
        # Shims are loaded before the sanitizer, which knows what it replaces.
        options = "verify_asan_link_order=0:log_path=" + os.path.join(folder, "report")
        status = subprocess.run(
            sys.argv[1 if counts_leaks else 2 :],
            env=os.environ | {
                "ASAN_OPTIONS": options + ":detect_leaks=%d" % counts_leaks,
                "UBSAN_OPTIONS": options + ":print_stacktrace=1",
                # What the toolkit does among its own threads it does not tell; the price is that nothing
                # is seen either of what the standard library calls for std::async.
                "TSAN_OPTIONS": options
                + ":ignore_noninstrumented_modules=1:report_thread_leaks=%d" % counts_leaks,
            },
            check=False,
        ).returncode
        reports = sorted(os.listdir(folder))
        for name in reports:
            with open(os.path.join(folder, name), encoding="utf-8", errors="replace") as report:
                print(report.read(), file=sys.stderr)
        return 1 if reports else status


sys.exit(main())
