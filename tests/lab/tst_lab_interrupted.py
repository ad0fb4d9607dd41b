#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A lab that is ended in the middle of a backup leaves no device, mount or process. Usage: FILE BUILD_FOLDER"""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "dev"))

from kestrolab.disk import skip_without_loop_devices  # noqa: E402
from kestrolab.process import wait_until  # noqa: E402

BUILD = pathlib.Path(sys.argv.pop(1))


def namespaces() -> dict[int, str]:
    """The PID namespace of every process that can be asked."""
    found = {}
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            found[int(folder.name)] = os.readlink(folder / "ns/pid")
        except (FileNotFoundError, ProcessLookupError, PermissionError):
            pass
    return found


def descendants(pid: int) -> set[int]:
    """Those that live long enough to be asked for theirs."""
    try:
        children = pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text().split()
    except (FileNotFoundError, ProcessLookupError):
        return set()
    return set().union(*({int(child)} | descendants(int(child)) for child in children))


class Interrupted(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory(dir=BUILD)
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def test_nothing_is_left(self):
        for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143), (signal.SIGKILL, -9)):
            with self.subTest(number.name):
                self.workspace = self.folder / number.name
                lab = subprocess.Popen([PROJECT / "dev/lab", "run", "backup", "--build", BUILD, "--workspace",
                                        self.workspace], stdout=subprocess.DEVNULL)
                self.addCleanup(lab.wait)
                self.addCleanup(lab.kill)
                self.wait_for_a_job(lab)
                inside = {namespaces().get(pid) for pid in descendants(lab.pid)} - {namespaces()[os.getpid()], None}
                self.assertEqual(len(inside), 1)
                lab.send_signal(number)
                self.assertEqual(lab.wait(60), code)
                wait_until(lambda: not inside & set(namespaces().values()), 60, "the processes end")
                wait_until(lambda: not self.devices(), 60, "the loop device is released")
                self.assertNotIn(str(self.workspace), pathlib.Path("/proc/self/mountinfo").read_text())
                if number != signal.SIGKILL:
                    self.assertFalse((self.workspace / "disk.img").exists())

    def wait_for_a_job(self, lab):
        log = self.workspace / "console.log"
        wait_until(lambda: lab.poll() is not None or (log.exists() and "job start:" in log.read_text()), 120,
                   "a job starts")
        self.assertIsNone(lab.poll(), "the lab ended before it could be interrupted")
        self.assertNotEqual(self.devices(), [])

    def devices(self):
        return [file for file in pathlib.Path("/sys/block").glob("loop*/loop/backing_file")
                if file.read_text().startswith(str(self.workspace))]


if __name__ == "__main__":
    skip_without_loop_devices()
    unittest.main()
