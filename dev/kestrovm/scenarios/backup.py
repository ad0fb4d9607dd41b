# SPDX-License-Identifier: GPL-3.0-or-later
"""A scheduled backup of the system, after which the machine restarts by itself."""
import pathlib
import tempfile

from kestrolab import checks as check
from kestrolab import compare
from kestrolab.program import SUCCEEDED
from kestrolab.scenarios.backup import ARCHIVED, BACKUP, IMAGE

from .. import layout
from ..story import TASK_LIMIT, Story

BOOT_IMAGE = "boot.kim"
STATE = ("backed-up", pathlib.Path(__file__))


def image_task(partition: layout.Partition, name: str) -> dict:
    return {"command": "create-backup-image",
            "args": [f"UUID:{partition.uuid}", f"UUID:{layout.TARGET.uuid}", f"/{BACKUP}", name]}


def backup_tasks() -> list[dict]:
    """An image of each partition that the system starts from, and the archives."""
    return [image_task(layout.BOOT, BOOT_IMAGE), image_task(layout.ROOT, IMAGE),
            {"command": "create-backup-directory", "args": [layout.ROOT.uuid, layout.TARGET.uuid, f"/{BACKUP}"]}]


def backup(story: Story):
    make_backup(story)
    story.check_boots("the installed system starts by itself after the backup")


def with_backup(story: Story):
    """The machine as a backup leaves it."""
    story.once(*STATE, tell=make_backup)


def make_backup(story: Story):
    """Up to the restart."""
    with story.installed_system() as (computer, _):
        story.restart_with_task(computer, "SystemBackup", backup_tasks())
    with story.recovery_system() as program:
        reason = program.watch_until_restart(TASK_LIMIT)
        story.checks.that("the machine restarts by itself when the backup is done", reason == "guest-reset", reason)
    check_backup(story)
    story.keep(*STATE)


def check_backup(story: Story):
    with story.system_disk() as view:
        with view.mounted("recovery") as folder:
            check.check_recovery_folder(story.checks, folder, SUCCEEDED)
        check.check_device(story.checks, "root", view.device("root"))
        with view.mounted("root") as folder:
            source = compare.manifest(folder)
    with story.backup_disk() as view, view.mounted("backups") as target, \
            tempfile.TemporaryDirectory(dir=story.workspace) as scratch:
        records = {BOOT_IMAGE: layout.BOOT, IMAGE: layout.ROOT}
        images = sorted(image.name for image in (target / BACKUP).glob("*.kim"))
        story.checks.that("both images were written", images == sorted(records), str(images))
        for name in images:
            check.check_image(story.checks, target / BACKUP / name, f"UUID={records[name].uuid}\nVersion=1.1",
                              story.workspace)
            check.check_verifies(story.checks, target / BACKUP / name)
        for name in ARCHIVED:
            check.check_archive(story.checks, pathlib.Path(scratch), target / BACKUP / f"{name}.tar", layout.ROOT.uuid,
                                compare.subtree(source, name))
