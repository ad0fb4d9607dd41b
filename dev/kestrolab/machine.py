# SPDX-License-Identifier: GPL-3.0-or-later
"""The machine: partitions with their roles, what the recovery partition knows, and a look at what they hold."""
import json
import pathlib

from . import compare
from .disk import LoopDisk, Mounted
from .process import run

# Partition numbers.
ROOT, RECOVERY, DATA, TARGET, SCRATCH = range(5)
SIZES = {ROOT: 160, RECOVERY: 192, DATA: 96, TARGET: 192, SCRATCH: 160}
# Blanks in a label make blanks in the mount point.
LABELS = {ROOT: "System", RECOVERY: "Recovery", DATA: "_nox_data", TARGET: "My Backup", SCRATCH: "scratch"}
# Nothing is left for the kernel to write by itself after the first mount.
MKFS = ["mkfs.ext4", "-q", "-F", "-E", "lazy_itable_init=0,lazy_journal_init=0"]
LOOKS = pathlib.Path("/mnt/look")


OTHER_DISK = [(48, [*MKFS, "-L", "Elsewhere"])]


def partitions(target_size: int = SIZES[TARGET]):
    """What LoopDisk needs; TARGET_SIZE in MiB."""
    sizes = SIZES | {TARGET: target_size}
    return [(sizes[number], [*MKFS, "-L", LABELS[number]]) for number in sorted(SIZES)]


class Machine:
    """DISK has the partitions above; OTHER is a second disk with one file system that nobody asks for."""

    def __init__(self, disk: LoopDisk, other: LoopDisk):
        self.disk, self.other = disk, other
        self.uuids = [disk.uuid(number) for number in range(len(disk.parts))]

    def mounted(self, number: int, options: str = "rw") -> Mounted:
        return Mounted(self.disk, number, LOOKS / LABELS[number], options)

    def disks(self) -> tuple[LoopDisk, LoopDisk]:
        return self.disk, self.other

    def look(self, number: int) -> Mounted:
        """Mounted without a trace: not even the journal is replayed."""
        return self.mounted(number, "ro,noload")

    def manifest(self, number: int) -> dict:
        with self.look(number) as folder:
            return compare.manifest(folder)

    def schedule(self, kind: str, tasks: list[dict], auto_reboot: bool = False):
        """Leaves a task on the recovery partition, as the desktop does."""
        with self.mounted(RECOVERY) as recovery:
            (recovery / "backup").mkdir(exist_ok=True)
            (recovery / "backup/recovery.json").write_text(json.dumps(
                {"type": kind, "tasks": tasks, "locale": "en_US", "auto_reboot": auto_reboot}), encoding="utf-8")

    def unmount_everything(self):
        """What the program and udisksd left mounted, as a restart would."""
        for disk in self.disks():
            for device in disk.parts:
                for point in mount_points(disk.own(device)):
                    run("umount", point)


def mount_points(device: str) -> list[str]:
    lines = run("findmnt", "--noheadings", "--list", "--output", "TARGET", "--source", device, check=False).stdout
    return [line.rstrip() for line in lines.splitlines()]
