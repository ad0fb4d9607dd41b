# SPDX-License-Identifier: GPL-3.0-or-later
"""Backups of the system: one that succeeds, and one for which there is no room."""
from .. import checks as check
from .. import compare, content
from ..machine import ROOT, SCRATCH, TARGET, Machine
from ..process import run
from ..program import FAILED, SUCCEEDED
from .story import Lab

BACKUP = "backup/2024-01-01 lab"
IMAGE = "system.kim"
ARCHIVED = ("opt", "var")


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
    outcome = lab.start_machine()
    lab.checks.that(f"the program logged {SUCCEEDED!r}", outcome.succeeded, outcome.error())
    check.check_recovery_partition(lab.checks, lab.machine, SUCCEEDED)
    lab.checks.same("the system is as it was", source, lab.machine.manifest(ROOT), check.root_time)
    with lab.machine.look(TARGET) as target, lab.machine.mounted(SCRATCH) as scratch:
        images = sorted((target / BACKUP).glob("*.kim"))
        lab.checks.that("one image was written", [image.name for image in images] == [IMAGE], str(images))
        for image in images:
            check.check_image(lab.checks, image, f"UUID={lab.machine.uuids[ROOT]}\nVersion=1.1", lab.workspace)
        for name in ARCHIVED:
            check.check_archive(lab.checks, scratch, target / BACKUP / f"{name}.tar", lab.machine.uuids[ROOT],
                                compare.subtree(source, name))
    check.print_backup(lab.machine, BACKUP)


def backup_too_small(lab: Lab):
    """The target has no room for the image: the person is told, and nothing that is there counts as a backup."""
    source = prepare_backup(lab)
    lab.checks.that("the task failed", not lab.start_machine().succeeded)
    check.check_recovery_partition(lab.checks, lab.machine, FAILED)
    lab.checks.same("the system is as it was", source, lab.machine.manifest(ROOT), check.root_time)
    with lab.machine.look(TARGET) as target:
        for image in sorted(target.rglob("*.kim")):
            info = run("kestro-clone", "--kim-info", image, check=False)
            lab.checks.that(f"{image.name} does not pass --kim-info",
                            info.returncode != 0 or "invalid file" in info.stdout + info.stderr, info.stdout)
    check.print_backup(lab.machine, BACKUP)
