# SPDX-License-Identifier: GPL-3.0-or-later
"""What the computer says on its serial line, and a root shell on a second one."""
import codecs
import contextlib
import itertools
import re
import socket
import threading
import time

from kestrolab.process import LabError


RECENT = 500  # characters


class SwitchedOff(LabError):
    """The machine ended while something was expected of it."""


class Line:
    """A serial line. It is read all the time: a line that nobody reads holds the whole machine up."""

    def __init__(self, connection: socket.socket):
        self.socket = connection
        self.changed = threading.Condition()
        self.heard, self.is_on = "", True
        self.recent, self.heard_at = "", time.monotonic()
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        decoder = codecs.getincrementaldecoder("utf-8")("replace")
        with contextlib.suppress(OSError):
            while data := self.socket.recv(65536):
                with self.changed:
                    text = decoder.decode(data)
                    self.heard += text
                    self.recent, self.heard_at = (self.recent + text)[-RECENT:], time.monotonic()
                    self.changed.notify_all()
        with self.changed:
            self.is_on = False
            self.changed.notify_all()

    def last_line(self) -> str:
        """The last one that is not empty, whether or not it was expected; its beginning may be cut off."""
        with self.changed:
            return self.recent.rstrip().rpartition("\n")[2]

    def silence(self) -> float:
        """For how many seconds nothing was said."""
        with self.changed:
            return time.monotonic() - self.heard_at

    def expect(self, *patterns: str, seconds: float) -> re.Match:
        """The first match in what was heard since the last one; the text up to its end is used up."""
        expression = re.compile("|".join(f"(?:{pattern})" for pattern in patterns))
        with self.changed:
            found = self.changed.wait_for(lambda: expression.search(self.heard) or not self.is_on, seconds)
            if isinstance(found, re.Match):
                self.heard = self.heard[found.end():]
                return found
            tail = f"{' or '.join(patterns)}\n{self.heard[-1500:]}"
        if found:
            raise SwitchedOff(f"the machine went off without saying {tail}")
        raise LabError(f"not said within {seconds:g} seconds: {tail}")

    def heard_within(self, seconds: float, *patterns: str) -> str:
        """What of PATTERNS is heard; empty after that time without any."""
        try:
            return self.expect(*patterns, seconds=seconds)[0]
        except SwitchedOff:
            raise
        except LabError:
            return ""

    def send(self, text: str):
        try:
            self.socket.sendall(text.encode())
        except OSError as error:
            raise SwitchedOff(f"the machine is off: {error}") from None

    def close(self):
        self.socket.close()


class Shell(Line):
    """A root shell. Every command is framed by markers that its own echo cannot be taken for."""

    def __init__(self, connection: socket.socket):
        super().__init__(connection)
        self.numbers = itertools.count(1)
        self.is_ready = False

    def wait_until_ready(self, seconds: float):
        """Until a shell answers; asks again because a line that nobody reads yet swallows what is sent."""
        deadline = time.monotonic() + seconds
        for patience in itertools.count(5, 5):
            if self.is_ready:
                return
            self.send("\x15stty -echo cols 500; PS1=; echo READY-$((1000000+1))\r")
            try:
                # Any answer will do: that to an earlier question may come late.
                self.expect("READY-1000001", seconds=patience)
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
        return int(end[1]), end.string[:end.start()].replace("\r\n", "\n")

    def run(self, command: str, seconds: float = 120) -> str:
        code, output = self.attempt(command, seconds)
        if code != 0:
            raise LabError(f"in the machine: {command}: exit code {code}\n{output}")
        return output
