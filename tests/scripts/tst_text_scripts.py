#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The scripts that write the records of a backup, and the one that adapts the displays."""
import os
import pathlib
import subprocess
import tempfile
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"


class ScriptTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def call(self, script, *words, **environment):
        return subprocess.run([SCRIPTS / script, *map(str, words)], cwd=self.folder, text=True, capture_output=True,
                              check=False, umask=0o077, env={**os.environ, **environment})


class WriteFile(ScriptTest):
    def test_text(self):
        for text, content in ((r"UUID=1234-ABCD\nVersion=1.1", "UUID=1234-ABCD\nVersion=1.1"),
                              (r"\n\n", "\n\n"), (r"100%s \t $HOME", r"100%s \t $HOME"), ("", ""), ("-n", "-n")):
            with self.subTest(text):
                self.assertEqual(self.call("write-file", "DiskInfo", text).returncode, 0)
                self.assertEqual((self.folder / "DiskInfo").read_text(), content)
                self.assertEqual((self.folder / "DiskInfo").stat().st_mode & 0o777, 0o644)
                self.assertEqual(os.listdir(self.folder), ["DiskInfo"])

    def test_a_link_is_replaced_and_not_followed(self):
        (self.folder / "precious").write_text("kept")
        (self.folder / "DiskInfo").symlink_to("precious")
        self.assertEqual(self.call("write-file", "DiskInfo", "new").returncode, 0)
        self.assertEqual((self.folder / "precious").read_text(), "kept")
        self.assertFalse((self.folder / "DiskInfo").is_symlink())

    def test_refusals(self):
        (self.folder / "directory").mkdir()
        for words in ((), ("DiskInfo",), ("DiskInfo", "a", "b"), ("", "a"), ("directory", "a"), ("none/DiskInfo", "a")):
            with self.subTest(words):
                result = self.call("write-file", *words)
                self.assertEqual(result.returncode, 2)
                self.assertNotEqual(result.stderr, "")
                self.assertEqual(os.listdir(self.folder), ["directory"])


class CreateDataInfo(ScriptTest):
    def test_the_two_lines(self):
        for _ in range(2):
            self.assertEqual(self.call("create-data-info", "1234-ABCD", "opt", "datainfo").returncode, 0)
            self.assertEqual((self.folder / "datainfo").read_text(), "UUID=1234-ABCD\nDirectory=opt\n")

    def test_refusals(self):
        for words in (("1234", "opt"), ("", "opt", "o"), ("12 34", "opt", "o"), ("a=b", "opt", "o"), ("1234", "", "o"),
                      ("1234", "a/b", "o"), ("1234", "..", "o"), ("1234", "a=b", "o"), ("1234", "a\\nb", "o"),
                      ("1234", "a\nUUID=x", "o")):
            with self.subTest(words):
                self.assertEqual(self.call("create-data-info", *words).returncode, 2)
                self.assertEqual(os.listdir(self.folder), [])


class AutoAdapterScreen(ScriptTest):
    PREFERRED_IN_USE = "eDP-1 connected primary 1920x1080+0+0 (normal left) 309mm x 174mm\n" \
                       "   1920x1080     60.02*+  48.00\n   1024x768      60.00\n"
    OTHER_IN_USE = "HDMI-1 connected 1024x768+0+0 (normal left) 510mm x 290mm\n" \
                   "   1920x1080     60.00 +  59.94\n   1024x768      60.00*\n"
    DARK = "DP-1 connected (normal left inverted right x axis y axis)\n   2560x1440     59.95 +\n"
    NO_PREFERENCE = "screen connected 1280x800+0+0 0mm x 0mm\n   1280x800      0.00*\n   800x600       0.00\n"
    PULLED_OUT = "VGA-1 disconnected 800x600+0+0 (normal left)\n  800x600 (0x49) 40.000MHz +HSync +VSync\n" \
                 "        h: width   800 start  840 end  968 total 1056 skew    0 clock  37.88KHz\n"
    ABSENT = "DP-2 disconnected (normal left inverted right x axis y axis)\n"
    HEAD = "Screen 0: minimum 320 x 200, current 1920 x 1080, maximum 16384 x 16384\n"

    def adapt(self, report, status=0):
        fake = self.folder / "xrandr"
        fake.write_text(f'#!/bin/sh\n[ "$1" = --query ] || {{ echo "$*" >>{self.folder}/calls; exit; }}\n'
                        f'cat {self.folder}/report\nexit {status}\n')
        fake.chmod(0o755)
        (self.folder / "report").write_text(report)
        (self.folder / "calls").write_text("")
        result = self.call("autoAdapterScreen.sh", DISPLAY=":7", PATH=f"{self.folder}:{os.environ['PATH']}")
        return result.returncode, (self.folder / "calls").read_text()

    def test_what_is_corrected(self):
        for report, call in ((self.PREFERRED_IN_USE + self.ABSENT, ""), (self.NO_PREFERENCE, ""),
                             (self.OTHER_IN_USE, "--output HDMI-1 --auto\n"),
                             (self.DARK + self.ABSENT, "--output DP-1 --auto\n"),
                             (self.PREFERRED_IN_USE + self.PULLED_OUT + self.DARK,
                              "--output VGA-1 --off --output DP-1 --auto\n")):
            with self.subTest(report):
                self.assertEqual(self.adapt(self.HEAD + report), (0, call))

    def test_without_a_display_nothing_happens(self):
        self.assertEqual(self.adapt("", status=1), (0, ""))
        self.assertEqual(self.call("autoAdapterScreen.sh", DISPLAY="").returncode, 0)


if __name__ == "__main__":
    unittest.main()
