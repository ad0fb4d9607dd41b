# SPDX-License-Identifier: GPL-3.0-or-later
"""What every scenario works with: the machine, the findings, and one start of the machine."""
import dataclasses
import pathlib
import typing

from ..checks import Checks
from ..machine import Machine
from ..program import FAILED, ProgramRun
from ..services import Services


@dataclasses.dataclass
class Lab:
    machine: Machine
    checks: Checks
    workspace: pathlib.Path

    def start_machine(self, auto_reboot: bool = False) -> "Outcome":
        """One start with a pending task, up to its end page."""
        return self.use_machine(lambda program: program.watch_task(auto_reboot))

    def use_machine(self, use: typing.Callable[[ProgramRun], bool]) -> "Outcome":
        """One start; USE does what a person would do, and tells whether the task succeeded."""
        earlier = len(self.calls())
        with Services(self.machine, self.workspace) as services, ProgramRun(services, self.workspace) as program:
            succeeded = use(program)
        return Outcome(succeeded, program.lines, self.calls()[earlier:])

    def calls(self) -> list[str]:
        """What went through sudo, or would have ended the session, since the scenario began."""
        file = self.workspace / "calls"
        return file.read_text(encoding="utf-8", errors="replace").splitlines() if file.exists() else []


@dataclasses.dataclass
class Outcome:
    succeeded: bool
    lines: list[str]
    calls: list[str]

    def error(self) -> str:
        """The sentence that the person is shown; empty after a success."""
        return next((line.partition(FAILED)[2] for line in self.lines if FAILED in line), "")
