# SPDX-License-Identifier: GPL-3.0-or-later
"""What a program asks of others while it starts: the commands that it runs, and its calls over D-Bus."""
import collections
import contextlib
import pathlib
import re
import subprocess
import time

from .process import stop, wait_until

EXECUTED = re.compile(r'^(\d+) +(\d+\.\d+) execve\("[^"]*", \[([^\]]*)\]')
CALLED = re.compile(r"^method call time=(\d+\.\d+) sender=(\S+) .*member=(\w+)")


def traced(words: list[str], trace: pathlib.Path) -> list[str]:
    """The words that run WORDS and write each program that is executed to the file TRACE."""
    return ["strace", "-f", "--seccomp-bpf", "-qq", "-ttt", "-e", "trace=execve", "-e", "signal=none", "-o", str(trace),
            *words]


def commands(trace: pathlib.Path, until: float) -> collections.Counter:
    """How often each command was started before the time of day UNTIL; the traced program itself does not count."""
    first: dict[str, str] = {}
    for line in trace.read_text(errors="replace").splitlines():
        found = EXECUTED.match(line)
        if found and float(found[2]) < until:
            first.setdefault(found[1], command_name(found[3]))
    return collections.Counter(list(first.values())[1:])


def command_name(arguments: str) -> str:
    """From strace's list of arguments; what runs through sudo keeps its name."""
    words = [pathlib.PurePath(word).name for word in re.findall(r'"([^"]*)"', arguments)]
    return " ".join(words[: 2 if words[0] == "sudo" else 1])


def calls(log: pathlib.Path, until: float) -> collections.Counter:
    """How often each method was called before the time of day UNTIL, by those who came to the bus after the monitor."""
    found = [call for call in map(CALLED.match, log.read_text(errors="replace").splitlines()) if call]
    newcomers = {call[2] for call in found if call[3] == "Hello"}
    return collections.Counter(call[3] for call in found if call[2] in newcomers and float(call[1]) < until)


@contextlib.contextmanager
def monitored(bus: str, log: pathlib.Path):
    """Writes to LOG what is said on a bus ("--system" or "--session") as long as the block runs."""
    with open(log, "wb") as file:
        monitor = subprocess.Popen(["stdbuf", "-oL", "dbus-monitor", bus], stdout=file, stderr=subprocess.DEVNULL)
    try:
        wait_until(lambda: log.stat().st_size > 0, 10, "dbus-monitor starts")
        yield
        time.sleep(0.5)  # what was said last is on its way
    finally:
        stop(monitor)
