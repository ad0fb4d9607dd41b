# SPDX-License-Identifier: GPL-3.0-or-later
"""The whole disk is backed up to the second one, lost with its partition table, and put back from a rescue medium."""
import pathlib

from kestrolab import checks as check
from kestrolab.process import run
from kestrolab.program import SUCCEEDED
from kestrolab.scenarios.backup import BACKUP

from .. import layout
from ..emulator import Drive
from ..installed import STICK, make_stick, rescue_kernel
from ..story import Story, task_text
from .backup import image_task

DISK_IMAGE = "disk.kim"
DRIVE = f"VirtIO_Disk_{layout.SYSTEM_SERIAL}"  # as UDisks2 names it
STATE = ("disk-backed-up", pathlib.Path(__file__))
RESTORE_TASKS = [{"command": "restore-partitions",
                  "args": [f"UUID:{layout.TARGET.uuid}", f"/{BACKUP}", f"UUID:{layout.ROOT.uuid}"]}]


def disk_backup(story: Story):
    make_disk_backup(story)
    story.check_boots("the installed system starts by itself after the backup")


def make_disk_backup(story: Story):
    story.schedule("ManualBackup", [image_task(layout.ROOT, DISK_IMAGE)])
    story.carry_out("the backup of the disk succeeded")
    with story.system_disk() as view, view.mounted("recovery") as folder:
        check.check_recovery_folder(story.checks, folder, SUCCEEDED)
    with story.backup_disk() as view, view.mounted("backups") as target:
        image = target / BACKUP / DISK_IMAGE
        check.check_image(story.checks, image, f"DiskDrive={DRIVE}\nVersion=1.1", story.workspace)
        check.check_verifies(story.checks, image)
    story.keep(*STATE)


def disk_restore(story: Story):
    story.once(*STATE, tell=make_disk_backup)
    names = ("boot", "root", "recovery")
    before, table = story.manifests(*names), table_of(story)
    wipe(story)
    stick = story.workspace / "stick.raw"
    make_stick(stick, story.machine.recovery_system, {"backup/recovery.json": task_text("ManualRestore", RESTORE_TASKS)})
    story.carry_out("the restore of the disk succeeded", Drive(stick, STICK, "raw"),
                    kernel=rescue_kernel(story.machine.recovery_system))
    stick.unlink()
    story.checks.that("the partition table is back", table_of(story) == table, table_of(story))
    for name, wanted, found in zip(names, before, story.manifests(*names)):
        changed_since = ("backup/recovery.json", check.LOG)
        kept = {entry: facts for entry, facts in wanted.items() if entry not in changed_since}
        story.checks.same(f"{name} is as it was", kept, {entry: facts for entry, facts in found.items()
                                                         if entry not in changed_since},
                          check.folder_times(".", "backup"))
    with story.system_disk() as view:
        for name in names:
            check.check_device(story.checks, name, view.device(name))
    story.check_boots("the installed system starts by itself after the restore")


def table_of(story: Story) -> str:
    """With the identifiers of disk and partitions."""
    with story.system_disk() as view:
        dump = run("sfdisk", "--dump", view.disk.device).stdout
        return dump.replace(view.disk.device, "disk")


def wipe(story: Story):
    """An empty disk of the same size and serial number, with a new table: one without any is no disk that was in use."""
    blank = story.workspace / "blank.raw"
    with open(blank, "wb") as file:
        file.truncate(layout.size_of(layout.SYSTEM_DISKS[story.kind.layout]) * layout.MIB)
    run("sfdisk", "--quiet", blank, input="label: gpt\nsize=64MiB\n")
    story.system.unlink()
    run("qemu-img", "convert", "-O", "qcow2", blank, story.system)
    blank.unlink()
