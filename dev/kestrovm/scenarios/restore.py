# SPDX-License-Identifier: GPL-3.0-or-later
"""A system that does not start any more is put back from its backup, also when the boot loaders are gone."""
import pathlib
import shutil

from kestrolab import checks as check
from kestrolab.content import Tree
from kestrolab.process import run
from kestrolab.program import SUCCEEDED
from kestrolab.scenarios.backup import ARCHIVED, BACKUP

from .. import layout
from ..installed import FIRMWARE_MEMORY
from ..story import START_LIMIT, Story
from .backup import with_backup

DOES_NOT_START = r"No init found|Kernel panic|\(initramfs\)|can't find /sbin/init"
RESTORE_TASKS = [{"command": "restore-partitions",
                  "args": [f"UUID:{layout.TARGET.uuid}", f"/{BACKUP}", f"UUID:{layout.ROOT.uuid}"]}]
BOOT_CODE = 440  # bytes of the first sector, before the partition table


def restore(story: Story):
    with_backup(story)
    source, = story.manifests("root")
    damage_system(story)
    story.check_does_not_start(DOES_NOT_START)
    story.schedule("ManualRestore", RESTORE_TASKS)
    story.carry_out("the restore succeeded")
    check_restored(story, source)
    story.check_boots("the installed system starts by itself after the restore")


def restore_with_loaders(story: Story):
    """The same when nothing of what starts the machine is left, which the program repairs."""
    with_backup(story)
    source, = story.manifests("root")
    damage_system(story)
    (lose_efi_loaders if story.kind.uefi else lose_bios_loaders)(story)
    story.schedule("ManualRestore", RESTORE_TASKS)
    story.carry_out("the restore succeeded", kernel=story.recovery_kernel())
    check_restored(story, source)
    story.check_boots("the installed system starts by itself after the restore")


def damage_system(story: Story):
    """Nothing is left that could start, and what an archive holds is damaged too."""
    with story.system_disk(writable=True) as view, view.mounted("root") as folder:
        break_system(folder)
        tree = Tree(folder, 11)
        for name in ("opt/rich/linked", "var/lib/rich/app/attributed"):
            run("rm", "-rf", folder / name)
        tree.file("opt/rich/app/program", tree.noise(1 << 20), 0o600, (1234, 1234))
        tree.file("opt/added", "should not be here")
        run("chattr", "+i", folder / "opt/added")


def break_system(folder: pathlib.Path):
    for name in ("usr/bin", "usr/lib/systemd", "usr/lib64"):
        run("rm", "-rf", folder / name)
    (folder / "usr/added").write_text("should not be here", encoding="utf-8")


def lose_bios_loaders(story: Story):
    """First the system's menu, without which the machine starts the recovery system by itself; then the boot sector."""
    with story.system_disk(writable=True) as view, view.mounted("boot") as folder:
        shutil.rmtree(folder / "grub")
    with story.computer() as computer:
        computer.shell.wait_until_ready(START_LIMIT)
        words = computer.shell.run("cat /proc/cmdline")
        story.checks.that("without the system's menu the recovery system starts", "boot=live" in words, words)
    with story.system_disk(writable=True) as view:
        for device, size in ((view.disk.device, BOOT_CODE), (view.device("bios"), layout.BIOS.size << 20)):
            with open(view.disk.own(device), "r+b") as file:
                file.write(bytes(size))
    story.check_nothing_starts()


def lose_efi_loaders(story: Story):
    """Also in the firmware's memory."""
    with story.system_disk(writable=True) as view:
        # Not every kernel has FAT.
        run("mdeltree", "-i", view.device("efi"), "::/EFI")
    shutil.copyfile(FIRMWARE_MEMORY, story.variables)
    story.check_nothing_starts()


def check_restored(story: Story, source: dict):
    with story.system_disk() as view:
        with view.mounted("recovery") as folder:
            check.check_recovery_folder(story.checks, folder, SUCCEEDED)
        for name in ("boot", "root", "recovery"):
            check.check_device(story.checks, name, view.device(name))
    # The folders out of the archives have lost their holes; everything else is as it was.
    story.checks.same("the system is as it was when it was saved", source, *story.manifests("root"),
                      lambda name, fact: check.root_time(name, fact) or
                      (name.startswith(ARCHIVED) and check.holes(name, fact)))
