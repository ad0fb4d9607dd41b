# SPDX-License-Identifier: GPL-3.0-or-later
"""Restores of a backup: onto a damaged system, and of backups that must be refused."""
import os
import pathlib
import re
import shutil

from .. import checks as check
from .. import blocks, compare, content
from ..machine import ROOT, TARGET, Machine
from ..process import run
from ..program import SUCCEEDED
from .backup import ARCHIVED, BACKUP, IMAGE, backup
from .story import Lab


def schedule_restore(machine: Machine):
    machine.schedule("ManualRestore", [{
        "command": "restore-partitions",
        "args": [f"UUID:{machine.uuids[TARGET]}", f"/{BACKUP}", f"UUID:{machine.uuids[ROOT]}"]}])


def restore(lab: Lab):
    backup(lab)
    source = lab.machine.manifest(ROOT)
    content.damage_system(lab.machine)
    lab.checks.that("the damage can be seen", compare.differences(source, lab.machine.manifest(ROOT)) != [])
    schedule_restore(lab.machine)
    outcome = lab.start_machine()
    lab.checks.that("the restore succeeded", outcome.succeeded, outcome.error())
    check.check_recovery_partition(lab.checks, lab.machine, SUCCEEDED)
    check.check_file_system(lab.checks, lab.machine, ROOT)
    # The folders out of the archives have lost their holes; everything else is as it was.
    lab.checks.same("the system is as it was when it was saved", source, lab.machine.manifest(ROOT),
                    lambda name, fact: check.root_time(name, fact) or
                    (name.startswith(ARCHIVED) and check.holes(name, fact)))


def flip_bit(image: pathlib.Path, _: Lab):
    with open(image, "r+b") as file:
        file.seek(image.stat().st_size // 2)
        byte = file.read(1)[0]
        file.seek(-1, os.SEEK_CUR)
        file.write(bytes([byte ^ 0x10]))


def cut_off(image: pathlib.Path, _: Lab):
    os.truncate(image, image.stat().st_size * 2 // 3)


def give_record_of_another_machine(image: pathlib.Path, lab: Lab):
    record = lab.workspace / "DiskInfo"
    record.write_text("UUID=12345678-1234-1234-1234-123456789abc\nVersion=1.1", encoding="utf-8")
    run("kestro-clone", "--write-custom-file", f"kim://{image}/DiskInfo", record)


def exchange_with_another_directory(image: pathlib.Path, lab: Lab):
    """The image that lies there now was made of a partition of the second disk."""
    other = lab.machine.other
    image.unlink()
    record = lab.workspace / "DiskInfo"
    record.write_text(f"UUID={other.uuid(0)}\nVersion=1.1", encoding="utf-8")
    run("kestro-clone", "--write-custom-file", f"kim://{image}/DiskInfo", record)
    run("kestro-clone", "--tui", other.own(other.parts[0]), image)


OTHER_MACHINE = "Your disk info and the backup info do not match, so you cannot restore now"
DAMAGES = {
    flip_bit: "There is something wrong with your backup file",
    cut_off: "There is something wrong with your backup file",
    give_record_of_another_machine: OTHER_MACHINE,
    exchange_with_another_directory: OTHER_MACHINE,
}
WRITING = re.compile(r"^sudo (kestro-clone --tui|mkswap|chattr|rm -rf|tar .* -xpf (?!.* datainfo$))")


def restore_refused(lab: Lab):
    """A backup that is not whole, or not of this machine: the person is told, and nothing is written."""
    backup(lab)
    content.damage_system(lab.machine)
    for damage, sentence in DAMAGES.items():
        with lab.machine.mounted(ROOT) as folder:
            system = compare.manifest(folder)  # read on purpose while mounted for writing: settles the times of access
        before = blocks.checksums(lab.machine.disk, ROOT)
        with lab.machine.mounted(TARGET) as target:
            image = target / BACKUP / IMAGE
            shutil.copyfile(image, target / "sound")
            damage(image, lab)
        schedule_restore(lab.machine)
        outcome = lab.start_machine()
        lab.checks.that(f"{damage.__name__}: refused", not outcome.succeeded and sentence in outcome.error(),
                        outcome.error())
        written = list(filter(WRITING.match, outcome.calls))
        lab.checks.that(f"{damage.__name__}: nothing was started that writes", not written, written)
        lab.checks.same(f"{damage.__name__}: the system is untouched", system, lab.machine.manifest(ROOT))
        written = blocks.changed(before, blocks.checksums(lab.machine.disk, ROOT))
        lab.checks.that(f"{damage.__name__}: not one of {len(before)} blocks was written", not written, written)
        with lab.machine.mounted(TARGET) as target:
            os.replace(target / "sound", target / BACKUP / IMAGE)
