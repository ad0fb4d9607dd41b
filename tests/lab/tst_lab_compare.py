#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The comparison behind every PASS of the lab finds each kind of difference, and nothing in equal trees."""
import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrolab import compare  # noqa: E402
from kestrolab.root import skip_without_root  # noqa: E402

# system.posix_acl_access as the kernel has it: version 2, then (tag, permissions, id) of owner, user 1000, group,
# mask and others.
ACL = struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in (
    (0x01, 6, 0xFFFFFFFF), (0x02, 4, 1000), (0x04, 4, 0xFFFFFFFF), (0x10, 4, 0xFFFFFFFF), (0x20, 4, 0xFFFFFFFF)))


def add_nanosecond(path: pathlib.Path):
    status = path.lstat()
    os.utime(path, ns=(status.st_atime_ns, status.st_mtime_ns + 1), follow_symlinks=False)


def rewrite(path: pathlib.Path, content: bytes):
    status = path.stat()
    path.write_bytes(content)
    os.utime(path, ns=(status.st_atime_ns, status.st_mtime_ns))


def break_hard_link(path: pathlib.Path):
    copy = path.with_name("copy")
    subprocess.run(["cp", "-a", path, copy], check=True)
    os.rename(copy, path)


def retarget(path: pathlib.Path):
    path.unlink()
    path.symlink_to("elsewhere")


CHANGES = {
    "content": ("file", lambda path: rewrite(path, b"fILE")),
    "size": ("file", lambda path: rewrite(path, b"files")),
    "mode": ("file", lambda path: path.chmod(0o640)),
    "sticky bit of a folder": ("folder", lambda path: path.chmod(0o1755)),
    "owner": ("file", lambda path: os.chown(path, 1, -1)),
    "group of a link": ("link", lambda path: os.chown(path, -1, 1, follow_symlinks=False)),
    "time of a file": ("file", add_nanosecond),
    "time of a link": ("link", add_nanosecond),
    "time of a folder": ("folder/inner", add_nanosecond),
    "attribute changed": ("file", lambda path: os.setxattr(path, "trusted.kestro", b"y")),
    "attribute lost": ("file", lambda path: os.removexattr(path, "trusted.kestro")),
    "ACL added": ("file", lambda path: os.setxattr(path, "system.posix_acl_access", ACL)),
    "hard link broken": ("second", break_hard_link),
    "target of a link": ("link", retarget),
    "hole filled": ("sparse", lambda path: rewrite(path, bytes(1 << 20))),
    "file missing": ("file", os.unlink),
    "file added": ("folder/new", lambda path: path.write_bytes(b"")),
    "name that is no UTF-8": (os.fsdecode(b"bad-\xff"), os.unlink),
    "kind": ("folder/inner/empty", lambda path: (path.unlink(), path.mkdir())),
}


class Compare(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.one, self.other = pathlib.Path(holder.name, "one"), pathlib.Path(holder.name, "other")
        (self.one / "folder/inner").mkdir(parents=True)
        for name in ("file", "first", "folder/inner/empty", os.fsdecode(b"bad-\xff")):
            (self.one / name).write_bytes(os.fsencode(pathlib.Path(name).name))
        os.setxattr(self.one / "file", "trusted.kestro", b"x")
        os.link(self.one / "first", self.one / "second")
        (self.one / "link").symlink_to("nowhere")
        with open(self.one / "sparse", "wb") as file:
            file.truncate(1 << 20)
        subprocess.run(["cp", "-a", self.one, self.other], check=True)

    def test_equal_trees(self):
        self.assertEqual(compare.differences(compare.manifest(self.one), compare.manifest(self.other)), [])

    def test_every_kind_of_difference_is_found(self):
        before = compare.manifest(self.one)
        for number, (kind, (name, change)) in enumerate(CHANGES.items()):
            with self.subTest(kind):
                changed = self.other.with_name(f"changed{number}")
                subprocess.run(["cp", "-a", self.other, changed], check=True)
                change(changed / name)
                found = compare.differences(before, compare.manifest(changed))
                self.assertTrue(any(repr(name) in line for line in found), found)

    def test_part_of_a_tree(self):
        part = compare.subtree(compare.manifest(self.one), "folder")
        self.assertEqual(compare.differences(part, compare.manifest(self.other / "folder")), [])
        self.assertEqual(sorted(part), [".", "inner", "inner/empty"])


if __name__ == "__main__":
    skip_without_root()
    unittest.main()
