# SPDX-License-Identifier: GPL-3.0-or-later
"""The stories that the lab can tell, by name. Each gets a machine and a Checks object, and leaves its findings there."""
import dataclasses
import pathlib

from . import checks as check
from . import compare, content
from .machine import DATA, RECOVERY, ROOT, TARGET, Machine
from .program import FAILED, SUCCEEDED, ProgramRun
from .services import Services

BACKUP = "backup/2024-01-01 lab"
IMAGE = "system.kim"
ARCHIVED = ("opt", "var")


@dataclasses.dataclass
class Lab:
    machine: Machine
    checks: check.Checks
    workspace: pathlib.Path

    def start_machine(self, auto_reboot: bool = False) -> bool:
        """One start with a pending task, up to its end page; whether the task succeeded."""
        with Services(self.machine, self.workspace) as services, ProgramRun(services, self.workspace) as program:
            return program.watch_task(auto_reboot)

    def was_called(self, command: str) -> bool:
        """Whether this went through sudo, or would have ended the session."""
        calls = self.workspace / "calls"
        return calls.exists() and command in calls.read_text(encoding="utf-8", errors="replace").splitlines()


def backup_tasks(machine: Machine) -> list[dict]:
    """As the desktop writes them: the UUID with and without its prefix."""
    return [{"command": "create-backup-image",
             "args": [f"UUID:{machine.uuids[ROOT]}", f"UUID:{machine.uuids[TARGET]}", f"/{BACKUP}", IMAGE]},
            {"command": "create-backup-directory",
             "args": [machine.uuids[ROOT], machine.uuids[TARGET], f"/{BACKUP}"]}]


def prepare_backup(lab: Lab) -> dict:
    """A machine with a pending backup; the manifest of what is to be saved."""
    content.write_system(lab.machine)
    content.write_recovery(lab.machine, lab.machine.uuids[ROOT])
    lab.machine.schedule("SystemBackup", backup_tasks(lab.machine))
    return lab.machine.manifest(ROOT)


def backup(lab: Lab):
    source = prepare_backup(lab)
    finished = lab.start_machine()
    lab.checks.that(f"the program logged {SUCCEEDED!r}", finished)
    check.check_recovery_partition(lab.checks, lab.machine, SUCCEEDED)
    lab.checks.same("the system is as it was", source, lab.machine.manifest(ROOT), check.root_time)
    with lab.machine.look(TARGET) as target:
        images = sorted((target / BACKUP).glob("*.kim"))
        lab.checks.that("one image was written", [image.name for image in images] == [IMAGE], str(images))
        for image in images:
            check.check_image(lab.checks, image, f"UUID={lab.machine.uuids[ROOT]}\nVersion=1.1", lab.workspace)
        for name in ARCHIVED:
            check.check_archive(lab.checks, lab.machine, target / BACKUP / f"{name}.tar", lab.machine.uuids[ROOT],
                                compare.subtree(source, name))
    check.print_backup(lab.machine, BACKUP)


def backup_too_small(lab: Lab):
    """The target has no room for the image: the person is told, and nothing that is there counts as a backup."""
    source = prepare_backup(lab)
    finished = lab.start_machine()
    lab.checks.that("the task failed", not finished)
    check.check_recovery_partition(lab.checks, lab.machine, FAILED)
    lab.checks.same("the system is as it was", source, lab.machine.manifest(ROOT), check.root_time)
    with lab.machine.look(TARGET) as target:
        for image in sorted(target.rglob("*.kim")):
            info = check.run("kestro-clone", "--kim-info", image, check=False)
            lab.checks.that(f"{image.name} does not pass --kim-info",
                            info.returncode != 0 or "invalid file" in info.stdout + info.stderr, info.stdout)
    check.print_backup(lab.machine, BACKUP)


def restore(lab: Lab):
    backup(lab)
    source = lab.machine.manifest(ROOT)
    content.damage_system(lab.machine)
    lab.checks.that("the damage can be seen", compare.differences(source, lab.machine.manifest(ROOT)) != [])
    lab.machine.schedule("ManualRestore", [{
        "command": "restore-partitions",
        "args": [f"UUID:{lab.machine.uuids[TARGET]}", f"/{BACKUP}", f"UUID:{lab.machine.uuids[ROOT]}"]}])
    lab.checks.that("the restore succeeded", lab.start_machine())
    check.check_recovery_partition(lab.checks, lab.machine, SUCCEEDED)
    check.check_file_system(lab.checks, lab.machine, ROOT)
    # The folders out of the archives have lost their holes; everything else is as it was.
    lab.checks.same("the system is as it was when it was saved", source, lab.machine.manifest(ROOT),
                    lambda name, fact: check.root_time(name, fact) or
                    (name.startswith(ARCHIVED) and check.holes(name, fact)))


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
    lab.checks.that("the reset succeeded", lab.start_machine(auto_reboot))
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
    lab.checks.that("the machine was restarted by itself", lab.was_called("sudo reboot -f"))


@dataclasses.dataclass
class Scenario:
    tell: object
    target_size: int = 192


SCENARIOS = {
    "backup": Scenario(backup),
    "backup-too-small": Scenario(backup_too_small, target_size=24),
    "restore": Scenario(restore),
    "factory-reset": Scenario(factory_reset),
    "keep-files": Scenario(keep_files),
}
