# SPDX-License-Identifier: GPL-3.0-or-later
"""A disk of one's own: an image file with a partition table, attached as a loop device.

The device detaches itself when its last user is gone, even when this process is killed. Every other device is
refused, whatever it is called.
"""
import fcntl
import hashlib
import os
import pathlib
import stat
import struct

from .process import LabError, output_of, run, wait_until
from .root import is_root, skip_unless

MIB = 1 << 20
NO_LOOP_DEVICES = "loop devices need root and a kernel that has them"
LOOP_GET_STATUS64 = 0x4C05  # linux/loop.h; the answer begins with device and inode of the file, and has 232 bytes


class LoopDisk:
    """Attributes: image (the file), device, parts (the paths of the partitions).

    A context manager: the end of the block detaches the disk.
    """

    def __init__(self, image: pathlib.Path, device: str, count: int):
        """The disk IMAGE that is attached as DEVICE already and has COUNT partitions; create() makes one."""
        self.image, self.device = image, device
        self.parts = [f"{device}p{number}" for number in range(1, count + 1)]
        self.own(device)
        self._holder = os.open(device, os.O_RDONLY | os.O_CLOEXEC)

    @classmethod
    def create(cls, image: pathlib.Path, partitions) -> "LoopDisk":
        """PARTITIONS are pairs (size in MiB, words of the mkfs command)."""
        with open(image, "wb") as file:
            file.truncate((sum(size for size, _ in partitions) + 4) * MIB)
        run("sfdisk", "--quiet", "--no-reread", image,
            input="label: gpt\n" + "".join(f"size={size}MiB\n" for size, _ in partitions))
        disk = cls.attach(image, len(partitions))
        try:
            for part, (_, mkfs) in zip(disk.parts, partitions):
                run(*mkfs, disk.own(part))
        except BaseException:
            disk.detach()
            raise
        return disk

    @classmethod
    def attach(cls, image: pathlib.Path, count: int) -> "LoopDisk":
        """IMAGE has COUNT partitions already."""
        disk = cls(image, output_of("losetup", "--partscan", "--find", "--show", image), count)
        try:
            # In use, the device is only marked: it detaches itself when the last user is gone.
            run("losetup", "--detach", disk.device)
            # Fails where the kernel has read the table by itself.
            run("partx", "--add", disk.device, check=False)
            for part in disk.parts:
                wait_until(pathlib.Path(part).exists, 10, f"{part} appears")
        except BaseException:
            disk.detach()
            raise
        return disk

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.detach()

    def detach(self):
        os.close(self._holder)
        wait_until(lambda: not self.attached(), 20, f"{self.device} is released")

    def attached(self) -> bool:
        image = os.stat(self.image)
        return file_behind(self.device) == (image.st_dev, image.st_ino)

    def own(self, device: str) -> str:
        """DEVICE itself when it is this disk or one of its partitions; raises for every other one."""
        found = os.stat(device)
        name = pathlib.Path(os.path.realpath(f"/sys/dev/block/{os.major(found.st_rdev)}:{os.minor(found.st_rdev)}"))
        disk = name.parent.name if (name / "partition").exists() else name.name
        if not stat.S_ISBLK(found.st_mode) or f"/dev/{disk}" != self.device or not self.attached():
            raise LabError(f"{device} is not a device of this lab: refused")
        return device

    def probe(self, number: int, value: str) -> str:
        """What blkid reads from partition NUMBER (from 0): UUID, TYPE, PART_ENTRY_UUID …"""
        return output_of("blkid", "-c", "/dev/null", "-p", "-o", "value", "-s", value, self.own(self.parts[number]))

    def uuid(self, number: int) -> str:
        return self.probe(number, "UUID")

    def checksum(self) -> str:
        """Of the whole disk, with everything written that was on its way."""
        run("blockdev", "--flushbufs", self.own(self.device))
        run("sync", self.image)
        digest = hashlib.sha256()
        with open(self.image, "rb") as file:
            while block := file.read(MIB):
                digest.update(block)
        return digest.hexdigest()


def can_make_loop_devices() -> bool:
    return is_root() and run("losetup", "--find", check=False).returncode == 0


def skip_without_loop_devices():
    """For tests: ends the program as skipped, with the reason, where no loop device can be made."""
    skip_unless(can_make_loop_devices(), NO_LOOP_DEVICES)


def file_behind(device: str) -> tuple[int, int]:
    """Device and inode number of the file behind a loop device; zeros when there is none.

    Paths would not do: they read differently in another mount namespace.
    """
    handle = os.open(device, os.O_RDONLY | os.O_CLOEXEC)
    try:
        return struct.unpack_from("<QQ", fcntl.ioctl(handle, LOOP_GET_STATUS64, bytes(232)))
    except OSError:
        return 0, 0
    finally:
        os.close(handle)


class Mounted:
    """with Mounted(disk, 0, folder): a partition of one's own disk, mounted at FOLDER, which is made and removed."""

    def __init__(self, disk: LoopDisk, number: int, folder: pathlib.Path, options: str = "rw"):
        self.device = disk.own(disk.parts[number])
        self.folder = folder
        self.options = options

    def __enter__(self) -> pathlib.Path:
        self.folder.mkdir(parents=True)
        run("mount", "-o", self.options, self.device, self.folder)
        return self.folder

    def __exit__(self, *_):
        run("umount", self.folder)
        self.folder.rmdir()
