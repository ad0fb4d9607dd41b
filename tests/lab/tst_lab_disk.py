#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The lab touches its own disk only, and leaves no device behind, however it ends."""
import os
import pathlib
import signal
import stat
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrolab import blocks  # noqa: E402
from kestrolab.disk import LoopDisk, Mounted, file_behind, skip_without_loop_devices  # noqa: E402
from kestrolab.machine import MKFS  # noqa: E402
from kestrolab.process import LabError, wait_until  # noqa: E402

PARTITIONS = [(8, ["mkfs.ext4", "-q"]), (8, ["mkfs.ext4", "-q"])]
USER_OF_A_DISK = """
import pathlib, subprocess, sys, time
sys.path.insert(0, sys.argv[1])
from kestrolab.disk import LoopDisk
folder = pathlib.Path(sys.argv[2])
disk = LoopDisk.create(folder / "disk.img", [(8, ["mkfs.ext4", "-q"])])
print(disk.device, flush=True)
time.sleep(60)
"""


class Disk(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def make(self, name: str) -> LoopDisk:
        disk = LoopDisk.create(self.folder / name, PARTITIONS)
        self.addCleanup(disk.detach)
        return disk

    def test_own_devices_only(self):
        disk, other = self.make("disk.img"), self.make("other.img")
        for device in (disk.device, *disk.parts):
            self.assertEqual(disk.own(device), device)
        node = self.folder / "node"
        os.mknod(node, stat.S_IFBLK | 0o600, os.stat(other.parts[0]).st_rdev)
        disguised = self.folder / os.path.basename(disk.parts[0])
        disguised.symlink_to(other.parts[0])
        plain = self.folder / "file"
        plain.write_bytes(b"")
        for device in (other.device, other.parts[0], node, disguised, plain, "/dev/null"):
            with self.subTest(device), self.assertRaises((LabError, FileNotFoundError)):
                disk.own(str(device))

    def test_a_disk_that_was_exchanged_is_refused(self):
        disk = self.make("disk.img")
        os.rename(disk.image, self.folder / "moved.img")
        disk.image.write_bytes(b"another file of the same name")
        with self.assertRaises(LabError):
            disk.own(disk.device)
        os.rename(self.folder / "moved.img", disk.image)

    def test_what_is_mounted_is_what_was_written(self):
        disk = self.make("disk.img")
        with Mounted(disk, 0, self.folder / "point") as point:
            (point / "here").write_text("first partition")
        with Mounted(disk, 1, self.folder / "point") as point:
            self.assertEqual(os.listdir(point), ["lost+found"])
        self.assertFalse((self.folder / "point").exists())

    def test_every_block_that_is_written_is_seen(self):
        disk = LoopDisk.create(self.folder / "disk.img", [(16, MKFS)])
        self.addCleanup(disk.detach)
        with Mounted(disk, 0, self.folder / "point") as point:
            (point / "file").write_bytes(b"x" * 4096)
        before = blocks.checksums(disk, 0)
        with Mounted(disk, 0, self.folder / "point"):
            pass
        self.assertEqual(blocks.changed(before, blocks.checksums(disk, 0)), [])
        with Mounted(disk, 0, self.folder / "point") as point, open(point / "file", "r+b") as file:
            file.write(b"y")
        self.assertNotEqual(blocks.changed(before, blocks.checksums(disk, 0)), [])

    def test_a_killed_user_leaves_no_device(self):
        process = subprocess.Popen([sys.executable, "-B", "-c", USER_OF_A_DISK,
                                    str(pathlib.Path(__file__).resolve().parents[2] / "dev"), str(self.folder)],
                                   stdout=subprocess.PIPE, text=True)
        with process:
            device = process.stdout.readline().strip()
            image = os.stat(self.folder / "disk.img")
            self.assertEqual(file_behind(device), (image.st_dev, image.st_ino))
            process.send_signal(signal.SIGKILL)
        wait_until(lambda: file_behind(device) != (image.st_dev, image.st_ino), 10, "the device is released")


if __name__ == "__main__":
    skip_without_loop_devices()
    unittest.main()
