#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What is built once is built again when what it is made of changes, and never kept half."""
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrovm import stages  # noqa: E402


class Stages(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.cache = pathlib.Path(holder.name, "cache")
        self.cache.mkdir()
        patch = mock.patch.multiple(stages, CACHE=self.cache, LOCKS=pathlib.Path(holder.name, "locks"))
        patch.start()
        self.addCleanup(patch.stop)
        self.built = []

    def stage(self, name: str, key: str) -> pathlib.Path:
        def build(folder):
            self.built.append(f"{name}-{key}")
            (folder / "file").write_text(key)
        return stages.stage(name, key, build)

    def test_built_once_for_each_key(self):
        self.stage("one", "aa")
        self.stage("one", "aa")
        self.stage("one", "bb")
        self.assertEqual((self.stage("one", "bb") / "file").read_text(), "bb")
        self.assertEqual(self.built, ["one-aa", "one-bb"])

    def test_older_ones_of_the_same_name_go_and_others_stay(self):
        for name, key in (("one", "aa"), ("one-more", "aa"), ("one", "bb")):
            self.stage(name, key)
        self.assertEqual(sorted(folder.name for folder in self.cache.iterdir()), ["one-bb", "one-more-aa"])

    def test_a_failed_build_leaves_nothing(self):
        def build(folder):
            (folder / "half").touch()
            raise OSError("disk full")
        with self.assertRaises(OSError):
            stages.stage("one", "aa", build)
        self.assertEqual(list(self.cache.iterdir()), [])

    def test_digest_follows_values_and_content(self):
        file = self.cache / "file"
        file.write_text("a")
        first = stages.digest(file, "x")
        self.assertEqual(stages.digest(file, "x"), first)
        self.assertNotEqual(stages.digest(file, "y"), first)
        file.write_text("b")
        self.assertNotEqual(stages.digest(file, "x"), first)


if __name__ == "__main__":
    unittest.main()
