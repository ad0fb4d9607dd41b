# SPDX-License-Identifier: GPL-3.0-or-later
"""A disk of a test's own: an image file with partitions, attached as a loop device and detached again."""
import hashlib
import os
import pathlib
import subprocess
import sys
import tempfile

SKIPPED = 77  # the exit code that the test runner counts as "skipped"


def run(*words, **options):
    return subprocess.run([str(word) for word in words], check=True, text=True, capture_output=True, **options)


def skip_without_loop_devices():
    """Ends the program as skipped, with the reason, where no loop device can be made."""
    if os.geteuid() != 0 or subprocess.run(["losetup", "--find"], capture_output=True, check=False).returncode != 0:
        print("skipped: loop devices need root and a kernel that has them")
        sys.exit(SKIPPED)


class LoopDisk:
    """PARTITIONS are pairs (size in MiB, mkfs command words); attributes: device, parts (device paths), image."""

    def __init__(self, folder: pathlib.Path, partitions):
        self.image = folder / "disk.img"
        with open(self.image, "wb") as image:
            image.truncate((sum(size for size, _ in partitions) + 4) << 20)
        table = "label: gpt\n" + "".join(f"size={size}MiB\n" for size, _ in partitions)
        run("sfdisk", "--quiet", "--no-reread", self.image, input=table)
        self.device = run("losetup", "--find", "--show", self.image).stdout.strip()
        self.parts = [f"{self.device}p{number + 1}" for number in range(len(partitions))]
        try:
            subprocess.run(["partx", "--add", self.device], check=False, capture_output=True)
            for part, (_, mkfs) in zip(self.parts, partitions):
                run(*mkfs, part)
        except BaseException:
            self.detach()
            raise

    def detach(self):
        subprocess.run(["partx", "--delete", self.device], check=False, capture_output=True)
        run("losetup", "--detach", self.device)

    def uuid(self, number: int) -> str:
        return run("blkid", "-c", "/dev/null", "-o", "value", "-s", "UUID", self.parts[number]).stdout.strip()

    def partition_uuid(self, number: int) -> str:
        return run("blkid", "-c", "/dev/null", "-p", "-o", "value", "-s", "PART_ENTRY_UUID",
                   self.parts[number]).stdout.strip()

    def checksum(self) -> str:
        run("blockdev", "--flushbufs", self.device)
        run("sync", self.image)
        return hashlib.sha256(self.image.read_bytes()).hexdigest()

    def mounted(self, number: int):
        return MountedPartition(self.parts[number])


class MountedPartition:
    """with disk.mounted(0) as folder: …"""

    def __init__(self, device: str):
        self.device = device

    def __enter__(self) -> pathlib.Path:
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="kestro-loop."))
        run("mount", self.device, self.folder)
        return self.folder

    def __exit__(self, *_):
        run("umount", self.folder)
        self.folder.rmdir()
