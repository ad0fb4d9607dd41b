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


def backup_tasks() -> list[dict]:
    """An image of each partition that the system starts from, and the archives."""
    def image(partition, name):
        return {"command": "create-backup-image",
                "args": [f"UUID:{partition.uuid}", f"UUID:{layout.TARGET.uuid}", f"/{BACKUP}", name]}
    return [image(layout.BOOT, BOOT_IMAGE), image(layout.ROOT, IMAGE),
            {"command": "create-backup-directory", "args": [layout.ROOT.uuid, layout.TARGET.uuid, f"/{BACKUP}"]}]


def backup(story: Story):
    make_backup(story)
    story.check_boots("the installed system starts by itself after the backup")


def make_backup(story: Story) -> dict:
    """Up to the restart; the manifest of the root file system at that moment."""
    with story.installed_system() as (computer, _):
        story.leave_task(computer, "SystemBackup", backup_tasks(), auto_reboot=True)
        story.restart_into_recovery(computer)
    with story.recovery_system() as run:
        reason = run.watch_until_restart(TASK_LIMIT)
        story.checks.that("the machine restarts by itself when the backup is done", reason == "guest-reset", reason)
    return check_backup(story)


def check_backup(story: Story) -> dict:
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
    return source
