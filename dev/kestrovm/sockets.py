# SPDX-License-Identifier: GPL-3.0-or-later
"""Sockets on which the emulator listens."""
import contextlib
import socket

from kestrolab.process import LabError, wait_until


def connected(path: str, is_on, seconds: float = 60) -> socket.socket:
    """A connection to the emulator, which has its sockets, bound and then listened on, some time after it was started.

    IS_ON(): whether it still runs; when it does not, nobody will ever listen.
    """
    line = socket.socket(socket.AF_UNIX)

    def answers():
        with contextlib.suppress(FileNotFoundError, ConnectionRefusedError):
            line.connect(path)
            return "yes"
        return "" if is_on() else "no"
    try:
        answer = wait_until(answers, seconds, "the emulator listens")
        if answer == "no":
            raise LabError("the emulator did not start")
    except LabError:
        line.close()
        raise
    return line
