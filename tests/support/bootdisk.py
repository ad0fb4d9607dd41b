# SPDX-License-Identifier: GPL-3.0-or-later
"""For tests of scripts that make a machine start: a disk of loop devices, and stand-ins for the firmware."""
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import unittest

TESTS = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(TESTS.parent / "dev"))

from kestrolab.disk import LoopDisk, Mounted  # noqa: E402

# The stand-ins for the installed system's tools and for the firmware.
FAKES = TESTS / "scripts/fakes"
EFI = 0
EXT4 = ["mkfs.ext4", "-q"]


def efi_file_system():
    """The mkfs command: what firmware reads, where the kernel has it."""
    # A module that nobody has used so far is in no list.
    subprocess.run(["modprobe", "--quiet", "vfat"], check=False)
    kinds = pathlib.Path("/proc/filesystems").read_text(encoding="ascii").split()
    return ["mkfs.vfat"] if "vfat" in kinds else EXT4


def staged(booted, command, *mounts):
    """COMMAND in a namespace of its own, on a machine started through BOOTED, after each of MOUNTS (words of mount)."""
    stage = ["set -e", "mount --make-rprivate /", "mount -t tmpfs none /sys/firmware"]
    if booted == "uefi":
        stage.append("mkdir /sys/firmware/efi")
    stage += [shlex.join(["mount", *map(str, words)]) for words in mounts]
    return ["unshare", "--mount", "sh", "-c", "\n".join([*stage, 'exec "$@"']), "sh", *map(str, command)]


class BootDisk(unittest.TestCase):
    """A test with a disk whose first partition is the EFI partition.

    Attributes: folder (for what the test needs), work (the TMPDIR of the scripts, which they leave empty), disk.
    """

    def make_folder(self, parent=None) -> pathlib.Path:
        holder = tempfile.TemporaryDirectory(dir=parent)
        self.addCleanup(holder.cleanup)
        return pathlib.Path(holder.name)

    def make_disk(self, *partitions):
        """Beside the EFI partition, pairs as those of LoopDisk."""
        self.disk = LoopDisk.create(self.folder / "disk.img", [(40, efi_file_system()), *partitions])
        self.addCleanup(self.disk.detach)

    def make_mbr(self, signature):
        """Writes an MBR over the disk's partition table (GPT); the partitions stay where they are."""
        device = self.disk.own(self.disk.device)
        table = subprocess.run(["sfdisk", "--dump", device], check=True, text=True, stdout=subprocess.PIPE).stdout
        places = re.findall(r"start= *\d+, size= *\d+", table)
        subprocess.run(["sfdisk", "--quiet", "--no-reread", "--no-tell-kernel", "--wipe", "always", device], check=True,
                       text=True, input="\n".join(["label: dos", f"label-id: {signature:#x}", *places, ""]))

    def mounted(self, number):
        return Mounted(self.disk, number, self.folder / "point")

    def firmware(self, **content):
        """The entries and their order, after CONTENT has replaced them."""
        file = self.folder / "firmware"
        if content:
            file.write_text(json.dumps(content))
        return json.loads(file.read_text())

    def own_entry(self, loader):
        return f"HD(1,GPT,{self.disk.probe(EFI, 'PART_ENTRY_UUID')},0x800,0x100000)/File({loader})"

    def calls(self):
        """What the stand-ins were called with."""
        return (self.folder / "calls").read_text().splitlines()

    def environment(self, path, **more):
        """That of a script, whose search path begins with PATH; forgets the calls of those before."""
        (self.folder / "calls").write_text("")
        return {**os.environ, "PATH": f"{path}:/usr/sbin:/usr/bin:/sbin:/bin", "CALLS": str(self.folder / "calls"),
                "FIRMWARE": str(self.folder / "firmware"), "DISK": self.disk.device, "TMPDIR": str(self.work), **more}

    def assert_nothing_left(self, text):
        self.assertNotIn(self.disk.device, pathlib.Path("/proc/self/mountinfo").read_text(), text)
        self.assertEqual(os.listdir(self.work), [], text)
