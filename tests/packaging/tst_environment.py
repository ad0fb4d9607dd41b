#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The scripts of the recovery session, on a partition of a loop device that the kernel command line names."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "dev"))

from kestrolab.disk import NO_LOOP_DEVICES, LoopDisk, Mounted, can_make_loop_devices  # noqa: E402

ENVIRONMENT = HERE.parents[1] / "packaging/environment"
# Everything that the scripts write outside the partition lies in a memory of the call's own.
STAGE = """
set -e
mount --make-rprivate /
mount --bind "$1/cmdline" /proc/cmdline
mount -t tmpfs none /run
mkdir -p "$1/etc" /run/live/medium
mount -t tmpfs none "$1/etc"
mkdir "$1/etc/upper" "$1/etc/work"
mount -t overlay -o "lowerdir=/etc,upperdir=$1/etc/upper,workdir=$1/etc/work" none /etc
[ -z "$2" ] || mount -o ro "$2" /run/live/medium
for tool in kestro-clone sudo; do
    [ -x "$1/$tool" ] || continue
    "$1/$tool" 3 &
    # Until then it has the shell's name.
    until grep -qx "$tool" "/proc/$!/comm"; do sleep 0.01; done
done
script=$3
shift 3
"$script"
"$@"
"""
SIZES = ((1024, 600), (1024, 768), (1280, 720), (1366, 768), (1920, 1080), (2560, 1440), (1080, 1920), (3840, 2160),
         (7680, 4320))


class ScaleFactor(unittest.TestCase):
    def factors(self, sizes):
        calls = "\n".join(f"scale_factor {width} {height}" for width, height in sizes)
        output = subprocess.run(["bash", "-ec", f". {ENVIRONMENT}/scale-factor\n{calls}"], check=True, text=True,
                                stdout=subprocess.PIPE).stdout
        return [float(line) for line in output.split()]

    def test_the_window_fits_and_grows_with_the_screen(self):
        for (width, height), factor in zip(SIZES, self.factors(SIZES), strict=True):
            with self.subTest(f"{width} x {height}"):
                self.assertGreaterEqual(factor, 1)
                self.assertLessEqual(800 * factor, width)
                self.assertLessEqual(600 * factor, height)
                # Nowhere smaller than half of what the screen has room for.
                self.assertGreater(2 * (factor + 0.25), min(width / 800, height / 600))

    def test_known_screens(self):
        self.assertEqual(self.factors([(1024, 600), (1920, 1080), (3840, 2160), (7680, 4320)]), [1, 1.25, 2.5, 5.25])


class InitialMemory(unittest.TestCase):
    def test_only_drivers_that_no_local_disk_needs_go(self):
        kept = ("drivers/nvme/host/nvme.ko", "drivers/scsi/sd_mod.ko", "drivers/usb/storage/uas.ko", "fs/ext4/ext4.ko",
                "fs/nfs_format.ko", "drivers/hid/hid-generic.ko", "crypto/xts.ko")
        gone = ("drivers/net/ethernet/intel/e1000/e1000.ko", "drivers/gpu/drm/drm.ko", "fs/nfs/nfs.ko", "net/sunrpc/sunrpc.ko")
        with tempfile.TemporaryDirectory() as folder:
            modules = pathlib.Path(folder, "usr/lib/modules/6.1.0-9-amd64/kernel")
            for name in kept + gone:
                (modules / name).parent.mkdir(parents=True, exist_ok=True)
                (modules / name).touch()
            for words in (["prereqs"], []):
                subprocess.run([HERE.parents[1] / "recovery-image/initramfs-hook", *words], check=True,
                               env={**os.environ, "DESTDIR": folder})
                left = {str(path.relative_to(modules)) for path in modules.rglob("*.ko")}
                self.assertEqual(left, set(kept if not words else kept + gone))


class Session(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # Only this class: what the others found must still be told.
        if not can_make_loop_devices():
            raise unittest.SkipTest(NO_LOOP_DEVICES)

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        self.disk = LoopDisk.create(self.folder / "disk.img", [(16, ["mkfs.ext4", "-q"])])
        self.addCleanup(self.disk.detach)
        (self.folder / "bin").mkdir()
        for name, line in (("journalctl", "echo what happened"), ("udevadm", f'echo "$@" >{self.folder}/settled')):
            (self.folder / "bin" / name).write_text(f"#!/bin/sh\n{line}\n")
            (self.folder / "bin" / name).chmod(0o755)

    def call(self, script, *afterwards, medium="", device=None):
        """The printed text of AFTERWARDS, which runs where SCRIPT ran; self.errors is what both wrote to standard error."""
        (self.folder / "cmdline").write_text(f"BOOT_IMAGE=/kestro/vmlinuz-6 boot=live live-media={device or self.disk.parts[0]}\n")
        environment = {**os.environ, "PATH": f"{self.folder / 'bin'}:/usr/sbin:/usr/bin:/sbin:/bin",
                       "KESTRO_CONSOLE": str(self.folder / "console")}
        result = subprocess.run(["unshare", "--mount", "--pid", "--fork", "--mount-proc", "sh", "-c", STAGE, "sh", str(self.folder), medium,
                                 str(ENVIRONMENT / script), *afterwards], env=environment, text=True,
                                capture_output=True, check=False)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertNotIn(self.disk.device, pathlib.Path("/proc/self/mountinfo").read_text())
        self.errors = result.stderr
        return result.stdout

    def test_a_death_is_told_and_the_journal_kept(self):
        self.call("report-failure", "true")
        self.assertIn("A journal was saved as kestro-recovery-journal.txt", (self.folder / "console").read_text())
        with Mounted(self.disk, 0, self.folder / "point") as partition:
            self.assertEqual((partition / "kestro-recovery-journal.txt").read_text(), "what happened\n")

    def test_a_restore_that_goes_on_is_waited_for(self):
        for tool in ("kestro-clone", "sudo"):
            with self.subTest(tool):
                shutil.copy("/bin/sleep", self.folder / tool)
                self.call("report-failure", "sh", "-c", f"! grep -x {tool} /proc/[0-9]*/comm")
                text = (self.folder / "console").read_text()
                self.assertLess(text.index("Do not switch off"), text.index("Nothing is running any more."))
                (self.folder / tool).unlink()
                (self.folder / "console").unlink()

    def test_a_death_without_recovery_partition_is_told(self):
        self.call("report-failure", "true", device="/dev/disk/by-uuid/gone")
        self.assertIn("The journal could not be saved.", (self.folder / "console").read_text())

    def test_the_system_knows_what_it_was_started_from(self):
        conf = "/etc/kestro/system-recovery.conf"
        self.assertEqual(self.call("prepare", "cat", conf), f"UUID={self.disk.uuid(0)}\n")
        # A task on a disk that is found late would fail.
        self.assertEqual((self.folder / "settled").read_text(), "settle --timeout=30\n")
        self.assertEqual(self.call("prepare", "test", "!", "-e", conf, device="/dev/disk/by-uuid/gone"), "")

    def test_a_medium_on_disk_becomes_writable(self):
        self.call("prepare", "touch", "/run/live/medium/probe", medium=self.disk.parts[0])
        self.assertEqual(self.errors, "")

    def test_a_write_protected_medium_stops_nothing(self):
        part = self.disk.own(self.disk.parts[0])
        subprocess.run(["blockdev", "--setro", part], check=True)
        named = self.call("prepare", "cat", "/etc/kestro/system-recovery.conf", medium=part)
        self.assertEqual(named, f"UUID={self.disk.uuid(0)}\n")
        self.assertIn("prepare: /run/live/medium stays read-only\n", self.errors)


if __name__ == "__main__":
    unittest.main()
