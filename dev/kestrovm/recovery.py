# SPDX-License-Identifier: GPL-3.0-or-later
"""The recovery system in the computer: its program's log as it grows, pictures of its pages, its end."""
import time

from kestrolab.pointer import REBOOT_NOW
from kestrolab.process import LabError
from kestrolab.program import FAILED, JOB_STARTED, SAVED, SUCCEEDED

from .console import SwitchedOff
from .emulator import Computer

LOG = "/home/kestro/kestro-recovery-gui.log"
SCALE = "/usr/lib/kestro-recovery-environment/scale-factor"
LOOK_EVERY = 3


class RecoveryRun:
    """Follows the program in a computer that starts the recovery system."""

    def __init__(self, computer: Computer):
        self.computer = computer
        self.lines = 0
        self.text = ""
        self.pictured = 0

    def wait_for_program(self, seconds: float):
        """Until the program has shown its window."""
        self.computer.shell.wait_until_ready(seconds)
        self.wait_for("MainWindow::initUI isLvm", seconds=seconds)

    def look(self):
        """Takes the lines that the log has got since the last look. Their number stays when names are removed from them."""
        new = self.computer.shell.attempt(f"tail -n +{self.lines + 1} {LOG} 2>/dev/null || true")[1]
        new = new[:new.rfind("\n") + 1]
        self.lines += new.count("\n")
        self.text += new
        with open(self.computer.workspace / "program.log", "a", encoding="utf-8") as log:
            log.write(new)
        started = len(JOB_STARTED.findall(self.text))
        if started > self.pictured:
            self.pictured = started
            self.computer.picture(f"working-page-{started}")

    def wait_for(self, *texts: str, seconds: float) -> str:
        """The first of TEXTS in the log. When the machine goes off before that, the error is SwitchedOff."""
        deadline = time.monotonic() + seconds
        while True:
            self.look()
            heard = next((text for text in texts if text in self.text), None)
            if heard:
                return heard
            if time.monotonic() > deadline:
                self.computer.picture("waited-in-vain")
                raise LabError(f"the program did not log {' or '.join(texts)} within {seconds:g} seconds\n"
                               f"{self.text[-1500:]}")
            time.sleep(LOOK_EVERY)

    def watch_task(self, seconds: float) -> bool:
        """Follows a task whose end page stays; whether it succeeded."""
        ending = self.wait_for(SUCCEEDED, FAILED, seconds=seconds)
        self.wait_for(SAVED, seconds=120)
        time.sleep(LOOK_EVERY)
        self.computer.picture("end-page")
        return ending == SUCCEEDED

    def error(self) -> str:
        """The sentence that the person is shown; empty after a success."""
        return next((line.partition(FAILED)[2] for line in self.text.splitlines() if FAILED in line), "")

    def click(self, place: tuple[int, int]):
        """PLACE as in kestrolab.pointer: pixels of the window's own scale, from the middle of the screen."""
        width, height = self.computer.screen_size()
        scale = float(self.computer.shell.run(f". {SCALE}; scale_factor {width} {height}"))
        self.computer.click(0.5 + place[0] * scale / width, 0.5 + place[1] * scale / height)

    def click_button(self):
        """The one of the end page."""
        self.click(REBOOT_NOW)

    def watch_until_restart(self, seconds: float) -> str:
        """Follows a task after which the machine restarts by itself; why it went off."""
        deadline = time.monotonic() + seconds
        try:
            self.wait_for("\0never logged", seconds=seconds)
        except SwitchedOff:
            pass
        return self.computer.wait_for_end(max(10, deadline - time.monotonic()))
