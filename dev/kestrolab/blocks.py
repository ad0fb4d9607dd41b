# SPDX-License-Identifier: GPL-3.0-or-later
"""A partition with ext4 block by block, to tell whether anything was written to it.

Mounting is a write too: it changes the superblock and the journal. These blocks, and no others, are left out.
"""
import hashlib
import re

from .disk import LoopDisk
from .process import output_of, run

SUPERBLOCK_PLACE = 1024  # bytes; kernel documentation, filesystems/ext4/overview.rst


def checksums(disk: LoopDisk, number: int) -> dict[int, bytes]:
    """Block number -> checksum, of every block of partition NUMBER but those that a mount changes."""
    device = disk.own(disk.parts[number])
    run("blockdev", "--flushbufs", device)
    size = int(re.search(r"^Block size:\s+(\d+)$", output_of("dumpe2fs", "-h", device), re.MULTILINE)[1])
    bookkeeping = {SUPERBLOCK_PLACE // size, *journal_blocks(device)}
    sums = {}
    with open(device, "rb") as file:
        for place, block in enumerate(iter(lambda: file.read(size), b"")):
            if place not in bookkeeping:
                sums[place] = hashlib.blake2b(block, digest_size=16).digest()
    return sums


def journal_blocks(device: str) -> list[int]:
    """The journal is inode 8; debugfs lists its blocks, those that hold its map included."""
    return [int(word) for word in output_of("debugfs", "-R", "blocks <8>", device).split()]


def changed(before: dict[int, bytes], after: dict[int, bytes]) -> list[str]:
    """One line for each block that differs; empty when nothing was written."""
    return [f"block {place} was written" for place in sorted(before.keys() | after.keys())
            if before.get(place) != after.get(place)]
