# SPDX-License-Identifier: GPL-3.0-or-later
"""Resets to the initial image, with and without the personal files."""
import dataclasses
import pathlib

from .. import checks as check
from .. import content, pointer
from ..machine import DATA, RECOVERY, ROOT
from ..process import wait_until
from ..program import SUCCEEDED, ProgramRun
from .backup import ARCHIVED
from .story import Lab, Outcome

RESTART = "sudo reboot -f"


@dataclasses.dataclass
class UsedMachine:
    """What lay on the partitions before the reset, and on the root when the initial image was made."""
    fresh: dict
    data: dict
    recovery: dict


def used_machine(lab: Lab) -> UsedMachine:
    """A machine with an initial image and a separate data partition, after some use."""
    content.write_system(lab.machine)
    fresh = lab.machine.manifest(ROOT)
    content.write_recovery(lab.machine, lab.machine.uuids[DATA])
    content.write_initial_image(lab.machine)
    content.write_data(lab.machine)
    content.move_to_data_partition(lab.machine)
    content.damage_system(lab.machine)
    return UsedMachine(fresh, lab.machine.manifest(DATA), lab.machine.manifest(RECOVERY))


def check_reset(lab: Lab, before: UsedMachine, outcome: Outcome, kept_of_data):
    """KEPT_OF_DATA(name) tells which entries of the data partition stay as they are."""
    lab.checks.that("the reset succeeded", outcome.succeeded, outcome.error())
    check.check_recovery_partition(lab.checks, lab.machine, SUCCEEDED)
    lab.checks.same("the recovery partition is as it was, but for the log", before.recovery,
                    without(lab.machine.manifest(RECOVERY), {check.LOG}), check.folder_times(".", "backup"))
    check.check_file_system(lab.checks, lab.machine, ROOT)
    check.check_file_system(lab.checks, lab.machine, DATA)
    lab.checks.same("the system is the fresh one, without what moves to the data partition",
                    {name: entry for name, entry in before.fresh.items() if top_of(name) not in ARCHIVED},
                    lab.machine.manifest(ROOT), check.root_time)
    expected, emptied = data_after_reset(before, kept_of_data)
    lab.checks.same("the data partition holds what was kept and the fresh folders", expected,
                    lab.machine.manifest(DATA), check.folder_times(".", *emptied))


def data_after_reset(before, kept_of_data) -> tuple[dict, set[str]]:
    """The manifest that the data partition must have, and the folders out of which entries went.

    BEFORE tells in "data" what lay there, and in "fresh" what the initial image holds.
    """
    kept = {name: entry for name, entry in before.data.items() if top_of(name) not in ARCHIVED and kept_of_data(name)}
    expected = kept | {name: entry for name, entry in before.fresh.items() if top_of(name) in ARCHIVED}
    return expected, {str(pathlib.PurePath(name).parent) for name in before.data.keys() - expected.keys()}


def top_of(name: str) -> str:
    return name.partition("/")[0]


def without(entries: dict, names: set[str]) -> dict:
    return {name: entry for name, entry in entries.items() if name not in names}


def kept_by_factory_reset(name: str) -> bool:
    return name in (".", "home") or top_of(name) in ("lost+found", "root")


def kept_with_personal_files(name: str) -> bool:
    path = pathlib.PurePath(name)
    return path.parent.name != "Desktop" or path.name not in content.OTHER_LAUNCHERS


def factory_reset(lab: Lab):
    before = used_machine(lab)
    lab.machine.schedule("SystemRestore", [{"command": "refresh-data-partition", "args": []}])
    outcome = lab.start_machine()
    check_reset(lab, before, outcome, kept_by_factory_reset)
    lab.checks.that("the machine waits for the person", RESTART not in outcome.calls, outcome.calls)


def keep_files(lab: Lab):
    before = used_machine(lab)
    lab.machine.schedule("SystemRestore", [{"command": "restore-partitions", "args": []}], auto_reboot=True)
    outcome = lab.start_machine(auto_reboot=True)
    check_reset(lab, before, outcome, kept_with_personal_files)
    lab.checks.that("the machine restarted by itself", RESTART in outcome.calls, outcome.calls)


def live(lab: Lab):
    """No pending task: a reset that keeps personal files is chosen with the mouse and confirmed with the keyboard."""
    before = used_machine(lab)
    outcome = lab.use_machine(lambda program: drive_reset(lab, program))
    check_reset(lab, before, outcome, kept_with_personal_files)
    lab.checks.that("the last button restarts the machine", RESTART in outcome.calls, outcome.calls)


def drive_reset(lab: Lab, program: ProgramRun) -> bool:
    pointer.settle()
    program.picture("restore-page")
    pointer.click(*pointer.RESTORE_NOW)
    pointer.settle()
    program.picture("confirmation")
    pointer.press("Return")
    program.wait_for("in setJobs", seconds=30)
    succeeded = program.watch_task()
    pointer.press("Return")
    wait_until(lambda: RESTART in lab.calls(), 10, "the last button is pressed")
    return succeeded
