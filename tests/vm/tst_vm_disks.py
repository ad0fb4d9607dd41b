#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The machine's disks are made as they are laid out, and every identifier on them is one that fstab names."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrovm import base, layout  # noqa: E402

SMALL = (layout.Partition("first", 1, layout.BIOS_BOOT, ""),
         layout.Partition("swap", 1, layout.SWAP, "swap", layout.SWAPPED.uuid),
         layout.Partition("esp", 34, layout.EFI_SYSTEM, "vfat", layout.EFI.uuid),
         layout.Partition("files", 4, uuid=layout.ROOT.uuid))


class Disks(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def test_disk(self):
        tree = self.folder / "tree"
        tree.mkdir()
        (tree / "hello").write_text("content")
        image = self.folder / "disk.raw"
        layout.make_disk(image, SMALL, {"files": tree})
        table = json.loads(subprocess.run(["sfdisk", "--json", image], check=True, capture_output=True).stdout)
        parts = table["partitiontable"]["partitions"]
        self.assertEqual([(part["name"], part["type"], part["size"] >> 11) for part in parts],
                         [(part.name, part.kind, part.size) for part in SMALL])
        for part, planned in zip(parts, SMALL):
            with self.subTest(planned.name):
                self.assertEqual(self.probe(image, part["start"] * 512, part["size"] * 512),
                                 {"UUID": planned.uuid, "TYPE": planned.file_system} if planned.file_system else {})
        inside = f"{image}?offset={parts[3]['start'] * 512}"
        shown = subprocess.run(["debugfs", "-R", "cat hello", inside], check=True, capture_output=True, text=True)
        self.assertEqual(shown.stdout, "content")

    def probe(self, image, offset: int, size: int) -> dict:
        words = ["blkid", "-c", "/dev/null", "-p", "-o", "export", "-O", str(offset), "-S", str(size), image]
        lines = subprocess.run(words, check=False, capture_output=True, text=True).stdout.splitlines()
        pairs = dict(line.split("=", 1) for line in lines)
        return {key: pairs[key] for key in ("UUID", "TYPE") if key in pairs}

    def test_fstab_names_partitions_of_its_layout(self):
        for name, partitions in layout.SYSTEM_DISKS.items():
            lines = [line.split() for line in base.fstab(name).splitlines()]
            named = {fields[0].removeprefix("UUID="): fields[2] for fields in lines if fields[2] != "none"}
            # The root may lie inside another partition.
            expected = {part.uuid: part.file_system for part in (*partitions, layout.ROOT) if part.uuid}
            self.assertEqual(named, expected)
            self.assertTrue(all(len(fields) == 6 for fields in lines))


if __name__ == "__main__":
    unittest.main()
