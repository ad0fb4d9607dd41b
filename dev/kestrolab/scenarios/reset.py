# SPDX-License-Identifier: GPL-3.0-or-later
"""Resets to the initial image, with and without the personal files."""
import pathlib

from .. import checks as check
from .. import content
from ..machine import DATA, RECOVERY, ROOT
from ..program import SUCCEEDED
from .backup import ARCHIVED
from .story import Lab


def reset(lab: Lab, tasks: list[dict], kept_of_data, auto_reboot: bool):
    """A used machine with a separate data partition goes back to its initial image.

    KEPT_OF_DATA(name) tells which entries of the data partition stay as they are.
    """
    content.write_system(lab.machine)
    fresh = lab.machine.manifest(ROOT)
    content.write_recovery(lab.machine, lab.machine.uuids[DATA])
    content.write_initial_image(lab.machine)
    content.write_data(lab.machine)
    content.move_to_data_partition(lab.machine)
    content.damage_system(lab.machine)
    data, recovery = lab.machine.manifest(DATA), lab.machine.manifest(RECOVERY)
    lab.machine.schedule("SystemRestore", tasks, auto_reboot)
    outcome = lab.start_machine(auto_reboot)
    lab.checks.that("the reset succeeded", outcome.succeeded, outcome.error())
    lab.checks.that("the machine was restarted by itself" if auto_reboot else "the machine waits for the person",
                    ("sudo reboot -f" in outcome.calls) == auto_reboot, outcome.calls[-3:])
    check.check_recovery_partition(lab.checks, lab.machine, SUCCEEDED)
    lab.checks.same("the recovery partition is as it was, but for the log", recovery,
                    without(lab.machine.manifest(RECOVERY), {check.LOG}), check.folder_times(".", "backup"))
    check.check_file_system(lab.checks, lab.machine, ROOT)
    check.check_file_system(lab.checks, lab.machine, DATA)
    lab.checks.same("the system is the fresh one, without what moves to the data partition",
                    {name: entry for name, entry in fresh.items() if top_of(name) not in ARCHIVED},
                    lab.machine.manifest(ROOT), check.root_time)
    expected = {name: entry for name, entry in data.items() if top_of(name) not in ARCHIVED and kept_of_data(name)} | \
               {name: entry for name, entry in fresh.items() if top_of(name) in ARCHIVED}
    emptied = {str(pathlib.PurePath(name).parent) for name in data.keys() - expected.keys()}
    lab.checks.same("the data partition holds what was kept and the fresh folders", expected,
                    lab.machine.manifest(DATA), check.folder_times(".", *emptied))


def top_of(name: str) -> str:
    return name.partition("/")[0]


def without(entries: dict, names: set[str]) -> dict:
    return {name: entry for name, entry in entries.items() if name not in names}


def factory_reset(lab: Lab):
    def kept(name: str) -> bool:
        return name in (".", "home") or top_of(name) in ("lost+found", "root")

    reset(lab, [{"command": "refresh-data-partition", "args": []}], kept, auto_reboot=False)


def keep_files(lab: Lab):
    def kept(name: str) -> bool:
        path = pathlib.PurePath(name)
        return path.parent.name != "Desktop" or path.name not in content.OTHER_LAUNCHERS

    reset(lab, [{"command": "restore-partitions", "args": []}], kept, auto_reboot=True)
