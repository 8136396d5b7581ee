#!/usr/bin/python3
"""Runs a test whose programs are built with sanitizers, and fails it when one of them reports anything,
whatever the test itself makes of that program's end. Usage: sanitized.py COMMAND..."""

import os
import subprocess
import sys
import tempfile


def main():
    with tempfile.TemporaryDirectory(prefix="vigilo-reports-") as folder:
        # Some programs run as another user.
        os.chmod(folder, 0o777)
        # Shims are loaded before the sanitizer, which knows what it replaces.
        options = "verify_asan_link_order=0:fast_unwind_on_malloc=0:log_path=" + os.path.join(folder, "report")
        status = subprocess.run(
            sys.argv[1:],
            env=os.environ | {"ASAN_OPTIONS": options, "UBSAN_OPTIONS": options + ":print_stacktrace=1"},
            check=False,
        ).returncode
        reports = sorted(os.listdir(folder))
        for name in reports:
            with open(os.path.join(folder, name), encoding="utf-8", errors="replace") as report:
                print(report.read(), file=sys.stderr)
        return 1 if reports else status


sys.exit(main())
