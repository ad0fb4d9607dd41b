# SPDX-License-Identifier: GPL-3.0-or-later
"""The partitions of the machine's two disks, and how they are made without mounting anything."""
import dataclasses
import pathlib
import tempfile

from kestrolab.process import run

MIB = 1 << 20
# What udev makes drive identities of.
SYSTEM_SERIAL, BACKUP_SERIAL = "KESTROSYSTEM", "KESTROBACKUP"
# GPT partition types (UEFI specification; GRUB's own for the part of it that BIOS reads).
BIOS_BOOT = "21686148-6449-6E6F-744E-656564454649"
EFI_SYSTEM = "C12A7328-F81F-11D2-BA4B-00A0C93EC93B"
LINUX = "0FC63DAF-8483-4772-8E79-3D69D8477DE4"
SWAP = "0657FD6D-A4AB-43C4-84E5-0933C84B4F4F"


@dataclasses.dataclass(frozen=True)
class Partition:
    """UUID is the file system's; without FILE_SYSTEM there is none."""
    name: str
    size: int  # MiB
    kind: str = LINUX
    file_system: str = "ext4"
    uuid: str = ""


BIOS = Partition("bios", 1, BIOS_BOOT, "")
EFI = Partition("efi", 64, EFI_SYSTEM, "vfat", "4B45-5354")
BOOT = Partition("boot", 160, uuid="6b000001-0000-4000-8000-000000000001")
ROOT = Partition("root", 1000, uuid="6b000002-0000-4000-8000-000000000002")
SWAPPED = Partition("swap", 128, SWAP, "swap", "6b000003-0000-4000-8000-000000000003")
RECOVERY = Partition("recovery", 1800, uuid="6b000004-0000-4000-8000-000000000004")
DATA = Partition("data", 400, uuid="6b000005-0000-4000-8000-000000000005")
TARGET = Partition("backups", 4000, uuid="6b000006-0000-4000-8000-000000000006")

# Filled by the installer: the root file system lies on a volume or in a container there.
CONTAINER = Partition("container", ROOT.size + 32, file_system="")
CONTAINER_UUID = "6b000007-0000-4000-8000-000000000007"  # with LUKS

SYSTEM_DISKS = {"plain": (BIOS, EFI, BOOT, ROOT, SWAPPED, RECOVERY),
                "data": (BIOS, EFI, BOOT, ROOT, SWAPPED, RECOVERY, DATA),
                "lvm": (BIOS, EFI, BOOT, CONTAINER, SWAPPED, RECOVERY),
                "luks": (BIOS, EFI, BOOT, CONTAINER, SWAPPED, RECOVERY)}
BACKUP_DISK = (TARGET,)


def size_of(partitions) -> int:
    """Of the disk that holds them, in MiB, with both copies of the table."""
    return sum(partition.size for partition in partitions) + 2


def offsets(partitions) -> list[int]:
    """Where each begins, in MiB; the first MiB is the table's."""
    starts = [1]
    for partition in partitions:
        starts.append(starts[-1] + partition.size)
    return starts[:-1]


def table(partitions) -> str:
    """The partition table in the words of sfdisk(8)."""
    rows = [f"start={start}MiB, size={partition.size}MiB, type={partition.kind}, name={partition.name}"
            for start, partition in zip(offsets(partitions), partitions)]
    return "\n".join(["label: gpt", *rows, ""])


def make_disk(image: pathlib.Path, partitions, trees: dict[str, pathlib.Path]):
    """A sparse raw image; TREES fills partitions, by name."""
    with open(image, "wb") as file:
        file.truncate(size_of(partitions) * MIB)
    run("sfdisk", "--quiet", image, input=table(partitions))
    for start, partition in zip(offsets(partitions), partitions):
        if partition.file_system:
            with tempfile.NamedTemporaryFile(dir=image.parent) as part:
                part.truncate(partition.size * MIB)
                make_file_system(pathlib.Path(part.name), partition, trees.get(partition.name))
                run("dd", f"if={part.name}", f"of={image}", "bs=1M", f"seek={start}", "conv=notrunc,sparse", "status=none")


def make_file_system(file: pathlib.Path, partition: Partition, tree: pathlib.Path | None):
    if partition.file_system == "swap":
        run("mkswap", "-U", partition.uuid, file)
    elif partition.file_system == "vfat":
        run("mkfs.vfat", "-F", "32", "-i", partition.uuid.replace("-", ""), file)
    else:
        fill = ["-d", tree] if tree else []
        run("mkfs.ext4", "-q", "-F", "-U", partition.uuid, "-L", partition.name, *fill, file)


def number_of(partitions, name: str) -> int:
    """The partition's place on its disk, from 1, as in the names of devices."""
    return [partition.name for partition in partitions].index(name) + 1
