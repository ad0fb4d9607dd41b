# SPDX-License-Identifier: GPL-3.0-or-later
"""Starts a computer up to where somebody can use it, once more when the emulation itself stood still.

Once in 49 starts of a whole run the emulated processors did not leave the first seconds of Debian's kernel. Nothing of the
recovery system has run by then, and nothing was written to a disk.
"""
import contextlib
import re
import threading

from .console import Line, SwitchedOff
from .emulator import Computer

KERNEL_TIME = re.compile(r"\[ *(\d+)\.\d{6}\] ")
EARLY = 10  # seconds of the kernel's clock; a usual start says something after this
SILENCE = 300  # seconds
LOOK_EVERY = 5


def stands_still(line: Line) -> bool:
    """When the last that was said is the kernel's, of its first seconds, and long ago."""
    kernel = KERNEL_TIME.match(line.last_line())
    return kernel is not None and int(kernel[1]) < EARLY and line.silence() > SILENCE


class Watch:
    """with Watch(computer) as watch: …; pulls the plug of a computer that stands still, so that nobody waits for it."""

    def __init__(self, computer: Computer):
        self.computer, self.is_over, self.stood_still = computer, threading.Event(), False
        self.thread = threading.Thread(target=self.look, daemon=True)

    def look(self):
        while not self.stood_still and not self.is_over.wait(LOOK_EVERY):
            if stands_still(self.computer.console):
                self.stood_still = True
                self.computer.pull_plug()

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.is_over.set()
        self.thread.join()


@contextlib.contextmanager
def started(switched_on, begin, tell=print):
    """Gives (computer, what BEGIN returned).

    SWITCHED_ON makes a Computer. BEGIN is given it, and whether this is the second try: what the boot loader was told for
    one start is used up then. TELL is given the sentence that a second try is worth.
    """
    with contextlib.ExitStack() as power:
        for is_second in (False, True):
            computer = power.enter_context(switched_on())
            watch = Watch(computer)
            try:
                with watch:
                    begun = begin(computer, is_second)
                break
            except SwitchedOff:
                if is_second or not watch.stood_still:
                    raise
                tell("note: the emulated processors stood still in the kernel's first seconds; started once more")
                power.close()
        yield computer, begun
