# SPDX-License-Identifier: GPL-3.0-or-later
"""When a started program shows itself on the display, measured from outside: by what the X server tells.

Needs the Debian package python3-xlib.
"""
import contextlib
import dataclasses
import os
import pathlib
import select
import signal
import subprocess
import threading
import time

from Xlib import X, display, error
from Xlib.ext import damage

from .process import LabError, wait_until

SMALLEST_SIDE = 100  # pixels; smaller windows are helpers
LONGEST_START = 120  # seconds
SETTLED = 1.0  # seconds after the first frame, when the peak of memory is read


@dataclasses.dataclass
class Start:
    """One start of a program. Times are in seconds since just before it was executed."""
    begun: float  # that moment, as the time of day
    frame: float  # the first picture was in its window
    own: float  # processor time of its threads until then; that of its child processes does not count
    peak: float  # MiB of its largest resident set
    marks: dict[str, float]  # when a line of its output with that text was read


class Display:
    """What is drawn in the windows of the display that DISPLAY names."""

    def __init__(self):
        self.connection = display.Display()
        self.root = self.connection.screen().root
        self.connection.damage_query_version()
        self.root.damage_create(damage.DamageReportRawRectangles)

    def forget(self):
        """What was drawn until now."""
        self.connection.sync()
        self.take_events()

    def take_events(self) -> int:
        count = self.connection.pending_events()
        for _ in range(count):
            self.connection.next_event()
        return count

    def wait_for_picture(self, seconds: float) -> float:
        """The first moment at which something was drawn and a window shows a picture, by the monotonic clock."""
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            select.select([self.connection.fileno()], [], [], 0.2)
            drawn = time.monotonic()
            if self.take_events() and any(map(shows_picture, self.root.query_tree().children)):
                return drawn
        raise LabError(f"no window within {seconds:g} seconds")


def shows_picture(window) -> bool:
    """Whether more is to be seen than one colour and another for a frame."""
    try:
        place = window.get_geometry()
        if min(place.width, place.height) < SMALLEST_SIDE or window.get_attributes().map_state != X.IsViewable:
            return False
        picture = window.get_image(0, 0, place.width, place.height, X.ZPixmap, 0xFFFFFF).data
    except error.XError:  # it is gone, or not wholly on the screen
        return False
    return len(set(memoryview(picture).cast("I")[::31])) > 2


class StartedProgram:
    """with StartedProgram(screen, words, mark) as program: …; it and its children end with the block.

    MARKS are texts in its output of which the time is wanted.
    """

    def __init__(self, screen: Display, words: list[str], marks: tuple[str, ...] = ()):
        self.screen, self.words = screen, words
        self.marks: dict[str, float | None] = dict.fromkeys(marks)

    def __enter__(self):
        self.screen.forget()
        self.clock, self.begun = time.time(), time.monotonic()
        self.process = subprocess.Popen(self.words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, errors="replace", cwd="/root",
                                        process_group=0)
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()
        return self

    def __exit__(self, *_):
        end_group(self.process)
        self.reader.join(5)

    def read(self):
        for line in self.process.stdout:
            now = time.monotonic() - self.begun
            for mark, moment in self.marks.items():
                if moment is None and mark in line:
                    self.marks[mark] = now

    def measure(self, settle: float = SETTLED) -> Start:
        """Waits for the first frame, for all marks, and then SETTLE seconds."""
        frame = self.screen.wait_for_picture(LONGEST_START) - self.begun
        own = processor_time(self.process.pid)
        wait_until(lambda: None not in self.marks.values(), LONGEST_START, f"{self.words[0]} says {list(self.marks)}")
        time.sleep(settle)
        return Start(self.clock, frame, own, peak_memory(self.process.pid), dict(self.marks))

    def pause_children(self):
        """Stops what the program started, as if it took for ever."""
        children = [pid for pid in processes_of_group(self.process.pid) if pid != self.process.pid]
        for pid in children:
            os.kill(pid, signal.SIGSTOP)
        if not children:
            raise LabError(f"{self.words[0]} runs nothing")

    def use(self, seconds: float) -> float:
        """The share of one processor core that the program itself takes meanwhile."""
        before = processor_time(self.process.pid)
        time.sleep(seconds)
        return (processor_time(self.process.pid) - before) / seconds


def processes_of_group(group: int) -> list[int]:
    found = []
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(ProcessLookupError, FileNotFoundError):
            if os.getpgid(int(folder.name)) == group:
                found.append(int(folder.name))
    return found


def processor_time(pid: int) -> float:
    """Of all threads that a process has now, in seconds."""
    threads = pathlib.Path(f"/proc/{pid}/task").iterdir()
    return sum(int((thread / "schedstat").read_text().split()[0]) for thread in threads) / 1e9


def peak_memory(pid: int) -> float:
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmHWM:"):
            return int(line.split()[1]) / 1024
    raise LabError("the program ended too early")


def end_group(process: subprocess.Popen):
    """Ends a process and all that it started: orphans become children of this one, the first of its namespace."""
    with contextlib.suppress(ProcessLookupError):
        os.killpg(process.pid, signal.SIGKILL)
    process.wait()
    with contextlib.suppress(ChildProcessError):
        while True:
            os.waitpid(-process.pid, 0)
