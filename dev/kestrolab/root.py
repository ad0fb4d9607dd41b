# SPDX-License-Identifier: GPL-3.0-or-later
"""Who may do what only root may, for tests."""
import os
import pathlib
import sys

SKIPPED = 77  # the exit code that the test runner counts as "skipped"


def is_root() -> bool:
    """Of the machine: root of a user namespace only makes no loop device, and gives no file to anybody."""
    users = pathlib.Path("/proc/self/uid_map").read_text(encoding="ascii").split()
    return os.geteuid() == 0 and users == ["0", "0", "4294967295"]


def skip_unless(possible: bool, reason: str):
    """Ends the program as skipped, with the reason, when it is not possible."""
    if not possible:
        print(f"skipped: {reason}")
        sys.exit(SKIPPED)


def skip_without_root():
    skip_unless(is_root(), "needs root of the whole machine")
