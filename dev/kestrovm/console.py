# SPDX-License-Identifier: GPL-3.0-or-later
"""What the computer says on its serial line, and a root shell on a second one."""
import itertools
import re
import socket
import time

import pexpect
import pexpect.fdpexpect

from kestrolab.process import LabError


class SwitchedOff(LabError):
    """The machine ended while something was expected of it."""


class Line:
    """A serial line."""

    def __init__(self, path: str):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(path)
        self.stream = pexpect.fdpexpect.fdspawn(self.socket.fileno(), encoding="utf-8", codec_errors="replace")
        self.stream.delaybeforesend = None

    def expect(self, *patterns: str, seconds: float) -> re.Match:
        """The match of the pattern that comes first."""
        try:
            self.stream.expect(list(patterns), timeout=seconds)
        except pexpect.TIMEOUT:
            raise LabError(f"not said within {seconds:g} seconds: {' or '.join(patterns)}\n{self.tail()}") from None
        except (pexpect.EOF, OSError):
            raise SwitchedOff(f"the machine went off without saying {' or '.join(patterns)}\n{self.tail()}") from None
        return self.stream.match

    def drain(self):
        """Takes what was said, so that the machine is not held up by a line that nobody reads; it is not expected any more."""
        try:
            while self.stream.read_nonblocking(size=65536, timeout=0):
                pass
        except (pexpect.TIMEOUT, pexpect.EOF, OSError):
            pass

    def tail(self) -> str:
        return (self.stream.before or "")[-1500:] if isinstance(self.stream.before, str) else ""

    def send(self, text: str):
        try:
            self.stream.send(text)
        except OSError as error:
            raise SwitchedOff(f"the machine is off: {error}") from None

    def close(self):
        self.socket.close()


class Shell(Line):
    """A root shell. Every command is framed by markers that its own echo cannot be taken for."""

    def __init__(self, path: str):
        super().__init__(path)
        self.numbers = itertools.count(1)
        self.is_ready = False

    def wait_until_ready(self, seconds: float):
        """Until a shell answers; asks again because a line that nobody reads yet swallows what is sent."""
        deadline = time.monotonic() + seconds
        while not self.is_ready:
            number = next(self.numbers)
            self.send(f"\x15stty -echo cols 500; PS1=; echo READY-$(({number}+1000000))\r")
            try:
                self.expect(f"READY-{number + 1000000}\\b", seconds=5)
                self.is_ready = True
            except SwitchedOff:
                raise
            except LabError:
                if time.monotonic() > deadline:
                    raise

    def attempt(self, command: str, seconds: float = 120) -> tuple[int, str]:
        """Exit code and output, both channels together."""
        number = next(self.numbers)
        self.send(f"echo '<'BEGIN-{number}'>'; {{ {command}\n}} 2>&1 </dev/null; echo '<'END-{number} $?'>'\r")
        self.expect(f"<BEGIN-{number}>\r?\n", seconds=seconds)
        end = self.expect(f"<END-{number} (\\d+)>", seconds=seconds)
        return int(end[1]), self.stream.before.replace("\r\n", "\n")

    def run(self, command: str, seconds: float = 120) -> str:
        code, output = self.attempt(command, seconds)
        if code != 0:
            raise LabError(f"in the machine: {command}: exit code {code}\n{output}")
        return output
