#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The installer of the recovery partition on a disk of loop devices, with stand-ins for GRUB and the firmware."""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "support"))

import bootdisk  # noqa: E402
from bootdisk import EFI, EXT4, staged  # noqa: E402
from kestrolab.disk import skip_without_loop_devices  # noqa: E402

INSTALL = HERE.parents[1] / "recovery-image/install"
CLONE = pathlib.Path(sys.argv.pop(1)).parent
FAKES = f"{HERE / 'fakes'}:{bootdisk.FAKES}"
BOOT, ROOT, DATA, RECOVERY, SMALL, GRUB = range(EFI + 1, EFI + 7)
BIOS_BOOT, LINUX = "21686148-6449-6E6F-744E-656564454649", "0FC63DAF-8483-4772-8E79-3D69D8477DE4"
MEMORY = "/dev/shm"
KERNEL = "6.1.0-9-amd64"


def can_mount_btrfs():
    subprocess.run(["modprobe", "--quiet", "btrfs"], check=False)
    kinds = pathlib.Path("/proc/filesystems").read_text(encoding="ascii").split()
    return "btrfs" in kinds and shutil.which("mkfs.btrfs") is not None


class RecoveryInstall(bootdisk.BootDisk):
    def setUp(self):
        # In memory: the installer waits for every write to arrive.
        self.folder = self.make_folder(MEMORY if os.path.isdir(MEMORY) else None)
        # Not below /dev, which is mounted into the installed system.
        self.work = self.make_folder()
        (self.folder / "busy").mkdir()
        self.make_disk((16, EXT4), (48, EXT4), (24, EXT4), (160, EXT4), (48, EXT4), (1, ["true"]))
        self.set_type(GRUB, BIOS_BOOT)
        for name in ("image", "modules/i386-pc", "modules/x86_64-efi"):
            (self.folder / name).mkdir(parents=True)
        for name in ("vmlinuz", "initrd.img", "filesystem.squashfs"):
            (self.folder / "image" / name).write_text(f"content of {name}\n")
        (self.folder / "image/manifest.txt").write_text(f"bash 5\nlinux-image-{KERNEL} 6.1.1\nlinux-image-amd64 6.1.1\n")
        self.firmware(entries={"0000": [True, "testos", self.own_entry(r"\EFI\testos\grubx64.efi")]}, order=["0000"])
        self.install_system()

    def set_type(self, number, value):
        subprocess.run(["sfdisk", "--quiet", "--no-reread", "--no-tell-kernel", "--part-type",
                        self.disk.own(self.disk.device), str(number + 1), value], check=True)

    def write(self, number, files):
        with self.mounted(number) as folder:
            for name, text in files.items():
                (folder / name).parent.mkdir(parents=True, exist_ok=True)
                (folder / name).write_text(text)

    def read(self, number):
        """Path → text of the partition's files, but for the contents of images."""
        with self.mounted(number) as folder:
            return {str(path.relative_to(folder)): "" if path.suffix == ".kim" else path.read_text()
                    for path in sorted(folder.rglob("*")) if path.is_file()}

    def install_system(self):
        uuid = self.disk.uuid
        self.write(ROOT, {
            "etc/fstab": f"UUID={uuid(ROOT)} / ext4 defaults 0 1\nUUID={uuid(BOOT)} /boot ext4 defaults 0 2\n"
                         f"UUID={uuid(EFI)} /boot/efi auto umask=0077 0 2\nUUID={uuid(DATA)} /data ext4 defaults 0 2\n",
            "etc/os-release": 'ID=testos\nPRETTY_NAME="Test $(reboot) OS \'1\'"\n', "etc/grub.d/00_header": "#!/bin/sh\n"})
        with self.mounted(ROOT) as root:
            for name in ("boot", "usr/sbin", "dev", "proc", "sys", "run", "opt", "var"):
                (root / name).mkdir(parents=True)
            (root / "usr/sbin/grub-mkconfig").touch(0o755)
        self.write(BOOT, {"efi/.keep": "", "grub/i386-pc/core.img": "core", "grub/grub.cfg": "menu"})
        self.write(EFI, {"EFI/testos/grubx64.efi": "grub"})
        self.write(DATA, {"var/lib/status": "packages", "opt/app/run": "program", "home/ada/letter": "dear"})

    def call(self, booted, *words, busy=None, **more):
        """The exit code, the calls of the stand-ins, and the printed text; the device BUSY is mounted meanwhile."""
        mounts = [("-o", "ro,noload", busy, self.folder / "busy")] if busy else []
        environment = self.environment(f"{FAKES}:{CLONE}", **{"KESTRO_GRUB_MODULES": str(self.folder / "modules"), **more})
        result = subprocess.run(staged(booted, (INSTALL, *words), *mounts), env=environment, text=True,
                                capture_output=True, check=False)
        text = result.stdout + result.stderr
        if result.returncode == -signal.SIGKILL:
            self.remove_empty_folders()
        self.assert_nothing_left(text)
        return result.returncode, self.calls(), text

    def remove_empty_folders(self):
        for folder in sorted(self.work.rglob("*"), reverse=True):
            folder.rmdir()

    def image_tool(self, script):
        """The search path on which SCRIPT stands for kestro-clone."""
        (self.folder / "bin").mkdir()
        (self.folder / "bin/kestro-clone").write_text(f"#!/bin/sh\n{script}\n")
        (self.folder / "bin/kestro-clone").chmod(0o755)
        return f"{self.folder / 'bin'}:{FAKES}:/usr/sbin:/usr/bin:/sbin:/bin"

    def words(self, root=ROOT, recovery=RECOVERY, data=DATA):
        return ("--root", self.disk.uuid(root), "--recovery", self.disk.parts[recovery], "--data", self.disk.uuid(data),
                "--image", str(self.folder / "image"))

    def assert_laid_out(self, files):
        uuid, parameters = self.disk.uuid, (
            "boot=live live-media-path=recovery_live live-media=/dev/disk/by-uuid/{} toram=filesystem.squashfs root=UUID={} "
            "quiet loglevel=3 nomodeset").format(self.disk.uuid(RECOVERY), self.disk.uuid(ROOT))
        self.assertEqual({name: text for name, text in files.items() if not name.startswith("boot/")}, {
            "backup/_nox_data.info": uuid(DATA) + "\n",
            "backup/part-boot.info": uuid(BOOT) + "\n", "backup/part-boot.kim": "",
            "backup/system.info": uuid(ROOT) + "\n", "backup/system.kim": "",
            "kestro/boot.cfg": f"linux /kestro/vmlinuz-{KERNEL} {parameters}\ninitrd /kestro/initrd.img-{KERNEL}\n",
            f"kestro/initrd.img-{KERNEL}": "content of initrd.img\n", f"kestro/vmlinuz-{KERNEL}": "content of vmlinuz\n",
            "recovery_live/filesystem.squashfs": "content of filesystem.squashfs\n", "someone's": "file"})

    def restored(self):
        """The files of the root partition after its initial image was put onto the spare partition."""
        image = self.folder / "system.kim"
        with self.mounted(RECOVERY) as recovery:
            image.write_bytes((recovery / "backup/system.kim").read_bytes())
        subprocess.run([CLONE / "kestro-clone", "--tui", image, self.disk.parts[SMALL]], check=True,
                       stdout=subprocess.DEVNULL)
        return self.read(SMALL)

    def test_bios_with_a_data_partition(self):
        self.write(RECOVERY, {"someone's": "file", "kestro/vmlinuz-old": "old", "kestro/initrd.img-old": "old"})
        before = self.read(DATA)
        code, calls, text = self.call("bios", *self.words(), "--append", "nomodeset")
        self.assertEqual((code, calls), (0, [
            "grub-mkconfig -o /boot/grub/grub.cfg",
            f"grub-install --target=i386-pc --boot-directory=RECOVERY/boot --recheck {self.disk.device}"]), text)
        files = self.read(RECOVERY)
        self.assert_laid_out(files)
        menu = files["boot/grub/grub.cfg"]
        self.assertIn("menuentry 'Test (reboot) OS 1' --id system", menu)
        self.assertIn("    set root=$menu\n    multiboot ($menu)/grub/i386-pc/core.img\n", menu)
        self.assertIn('if [ -n "$menu" -a -s "($menu)/grub/grub.cfg" -a -s "($menu)/grub/i386-pc/core.img" ]; then', menu)
        # When the first entry fails GRUB takes the second, by its number: it ignores names here.
        self.assertIn("set fallback=1\n", menu)
        self.assertEqual(re.findall(r"--id ([\w-]+)", menu), ["system", "kestro-recovery"])
        self.assertIn(f"--set=menu {self.disk.uuid(BOOT)}", menu)
        root = self.read(ROOT)
        self.assertEqual(root["etc/kestro/system-recovery.conf"], f"UUID={self.disk.uuid(RECOVERY)}\n")
        self.assertIn("--id kestro-recovery", root["etc/grub.d/45_kestro-recovery"])
        # The copies that the image needs are gone from the system; nothing of the data changed.
        self.assertEqual([name for name in root if name.startswith(("opt", "var"))], [])
        self.assertEqual(self.read(DATA), before)
        self.assertEqual(self.restored(), root | {"opt/app/run": "program", "var/lib/status": "packages"})

    def test_uefi_and_renewal(self):
        self.assertEqual(self.call("uefi", *self.words())[0], 0)
        (self.folder / "image/manifest.txt").write_text("linux-image-7.0 7\n")
        with self.mounted(RECOVERY) as recovery:
            made = (recovery / "backup/system.kim").stat().st_mtime_ns
        code, calls, text = self.call("uefi", *self.words(), "--keep-images")
        self.assertEqual((code, len(calls)), (0, 2), text)
        self.assertRegex(calls[1], "--target=x86_64-efi .*--bootloader-id=kestro-recovery --no-nvram .*--no-uefi-secure-boot$")
        files = self.read(RECOVERY)
        self.assertEqual([name for name in files if name.startswith("kestro/")],
                         ["kestro/boot.cfg", "kestro/initrd.img-7.0", "kestro/vmlinuz-7.0"])
        self.assertIn("chainloader /EFI/testos/grubx64.efi", files["boot/grub/grub.cfg"])
        with self.mounted(RECOVERY) as recovery:
            self.assertEqual((recovery / "backup/system.kim").stat().st_mtime_ns, made)
        self.assertEqual(self.firmware(), {
            "entries": {"0000": [True, "testos", self.own_entry(r"\EFI\testos\grubx64.efi")],
                        "0001": [True, "Kestro Recovery", self.own_entry(r"\EFI\kestro-recovery\grubx64.efi")]},
            "order": ["0001", "0000"]})

    def test_folders_of_the_system_are_imaged_as_they_are(self):
        self.write(ROOT, {"var/own": "own", "opt/own": "own"})
        code, _, text = self.call("bios", *self.words(data=ROOT), SUBVOLUME="/snapshots/1")
        self.assertEqual(code, 0, text)
        self.assertEqual(self.read(ROOT)["var/own"], "own")
        files = self.read(RECOVERY)
        self.assertEqual(files["backup/_nox_data.info"], self.disk.uuid(ROOT) + "\n")
        self.assertIn("multiboot ($menu)/snapshots/1/grub/i386-pc/core.img", files["boot/grub/grub.cfg"])
        self.assertIn('-s "($menu)/snapshots/1/grub/grub.cfg"', files["boot/grub/grub.cfg"])

    def test_a_failing_image_leaves_everything_as_it_was(self):
        path = self.image_tool('echo half >"$3"; case $3 in *system*) exit 10; esac')
        names = ("part-boot.info", "part-boot.kim", "system.info", "system.kim")
        images = {f"backup/{name}": f"old {name}" for name in names}
        for before in ({}, images):
            with self.subTest(before):
                self.write(RECOVERY, before)
                code, calls, text = self.call("bios", *self.words(), PATH=path)
                self.assertNotEqual(code, 0, text)
                self.assertEqual(len(calls), 1)
                self.assertEqual([name for name in self.read(ROOT) if name.startswith(("opt", "var"))], [])
                self.assertNotIn("boot/grub/grub.cfg", self.read(RECOVERY))
                with self.mounted(RECOVERY) as recovery:
                    self.assertEqual({f"backup/{file.name}": file.read_text() for file in (recovery / "backup").iterdir()
                                      if file.name != "_nox_data.info"}, before)

    def test_copies_of_a_run_that_died_are_made_anew(self):
        code, _, text = self.call("bios", *self.words(), PATH=self.image_tool('echo half >"$3"; kill -9 "$PPID"'))
        self.assertEqual(code, -signal.SIGKILL, text)
        with self.mounted(ROOT) as root:
            (root / "var/lib/status").unlink()
        code, _, text = self.call("bios", *self.words())
        self.assertEqual(code, 0, text)
        root = self.read(ROOT)
        self.assertEqual([name for name in root if name.startswith(("opt", "var"))], [])
        self.assertEqual([name for name in self.read(RECOVERY) if name.startswith("backup/.")], [])
        self.assertEqual(self.restored(), root | {"opt/app/run": "program", "var/lib/status": "packages"})

    @unittest.skipUnless(can_mount_btrfs(), "the kernel has no btrfs, or there is no mkfs.btrfs")
    def test_a_system_in_a_subvolume_is_refused(self):
        subprocess.run(["mkfs.btrfs", "-qf", self.disk.own(self.disk.parts[RECOVERY])], check=True)
        with self.mounted(RECOVERY) as root:
            subprocess.run(["btrfs", "--quiet", "subvolume", "create", root / "@"], check=True)
        self.write(RECOVERY, {"@/etc/fstab": f"UUID={self.disk.uuid(RECOVERY)} / btrfs subvol=@ 0 0\n"})
        code, calls, text = self.call("bios", *self.words(root=RECOVERY, recovery=SMALL, data=RECOVERY))
        self.assertNotEqual(code, 0)
        self.assertEqual(calls, [])
        self.assertIn("lies in the subvolume @", text)

    def test_refusals_write_nothing(self):
        self.set_type(GRUB, LINUX)
        self.assertIn("has no partition for GRUB", self.call("bios", *self.words())[2])
        self.set_type(GRUB, BIOS_BOOT)
        before = self.disk.checksum()
        unknown = ("--root", "0d5cb1a4-0000-0000-0000-000000000000", *self.words()[2:])
        for booted, words, reason in (
                ("bios", (), "Usage"), ("bios", self.words()[:2], "Usage"), ("bios", (*self.words(), "--force"), "Usage"),
                ("bios", unknown, "no file system has the UUID"),
                ("bios", ("--root", "x;reboot", *self.words()[2:]), "not the UUID"),
                ("bios", self.words(recovery=ROOT), "belongs to the installed system"),
                ("bios", self.words(recovery=DATA), "belongs to the installed system"),
                ("bios", self.words(recovery=BOOT), f"mounts {self.disk.parts[BOOT]} at /boot"),
                ("bios", self.words(recovery=SMALL), "is too small"),
                ("bios", self.words(root=DATA, data=DATA), "holds no installed system"),
                ("bios", self.words(data=SMALL), "is not a data partition"),
                ("bios", (*self.words()[:2], "--recovery", self.disk.device, *self.words()[4:]), "is not a partition"),
                ("bios", (*self.words()[:-1], "/nowhere"), "vmlinuz is missing")):
            with self.subTest(reason):
                code, calls, text = self.call(booted, *words)
                self.assertNotEqual(code, 0)
                self.assertEqual(calls, [])
                self.assertIn(reason, text)
        for booted, more, reason in (("bios", {"LAYERS": "lvm cryptodisk luks2"}, "is encrypted"),
                                     ("uefi", {"LAYERS": "unknown"}, "does not know"),
                                     ("bios", {"BELOW": "raid1"}, "software RAID"),
                                     ("bios", {"BELOW": "mpath"}, "multipath"),
                                     ("bios", {"PATH": f"{FAKES}:/usr/sbin:/usr/bin:/sbin:/bin"}, "kestro-clone is missing")):
            with self.subTest(reason):
                code, calls, text = self.call(booted, *self.words(), **more)
                self.assertNotEqual(code, 0)
                self.assertEqual(calls, [])
                self.assertIn(reason, text)
        self.assertEqual(self.disk.checksum(), before)
        with self.mounted(BOOT) as boot:
            (boot / "grub").rename(boot / "gone")
        self.assertIn("boot menu was not found", self.call("uefi", *self.words())[2])
        with self.mounted(BOOT) as boot:
            (boot / "gone").rename(boot / "grub")
        before = self.disk.checksum()
        for number in (RECOVERY, ROOT, DATA):
            with self.subTest(f"mounted {number}"):
                part = self.disk.own(self.disk.parts[number])
                code, calls, text = self.call("bios", *self.words(), busy=part)
                self.assertNotEqual(code, 0)
                self.assertEqual(calls, [])
                self.assertIn(f"{part} is mounted", text)
        self.assertEqual(self.disk.checksum(), before)


if __name__ == "__main__":
    skip_without_loop_devices()
    unittest.main()
