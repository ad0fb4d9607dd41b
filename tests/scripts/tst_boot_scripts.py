#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The boot-repair scripts on a disk of loop devices, with stand-ins for the firmware and for the system's own GRUB."""
import os
import pathlib
import re
import signal
import subprocess
import sys
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "support"))

import bootdisk  # noqa: E402
from bootdisk import EFI, EXT4, staged  # noqa: E402
from kestrolab.disk import Mounted, skip_without_loop_devices  # noqa: E402

SCRIPTS = HERE.parents[1] / "scripts"
BOOT, ROOT, FOREIGN = range(EFI + 1, EFI + 4)


class BootScripts(bootdisk.BootDisk):
    def setUp(self):
        self.folder = self.make_folder()
        self.work = self.make_folder()
        self.make_disk((16, EXT4), (16, EXT4), (16, EXT4))
        self.install_system()
        self.firmware(entries={"0000": [True, "Windows", r"HD(1,GPT,11-22,0x800,0x1)/File(\EFI\Microsoft\bootmgfw.efi)"]},
                      order=["0000"])
        (self.folder / "cmdline").write_text(f"quiet root=UUID={self.disk.uuid(ROOT)} splash\n")

    def install_system(self):
        with self.mounted(ROOT) as root:
            for folder in ("etc", "boot", "usr/sbin", "dev", "proc", "sys", "run"):
                (root / folder).mkdir(parents=True)
            (root / "etc/fstab").write_text(
                f"# made by the installer\nUUID={self.disk.uuid(ROOT)} / ext4 defaults 0 1\n"
                f"UUID={self.disk.uuid(BOOT)}  /boot  ext4 defaults 0 2\n"
                f"UUID={self.disk.uuid(EFI)}\t/boot/efi\tauto umask=0077 0 2\n")
            (root / "etc/os-release").write_text('NAME="Test OS"\nVERSION_ID=1\nID="testos"\n')
            for tool in ("grub-install", "grub-mkconfig"):
                (root / "usr/sbin" / tool).touch(0o755)
        with self.mounted(BOOT) as boot:
            (boot / "efi").mkdir()
            (boot / "grub").mkdir()

    def put_loaders(self, **files):
        with self.mounted(EFI) as efi:
            for name, text in files.items():
                path = efi / "EFI" / name.replace("__", "/").replace("_efi", ".efi")
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)

    def put_core(self, text):
        """The loader that the installed system's GRUB has built."""
        with self.mounted(BOOT) as boot:
            (boot / "grub/x86_64-efi").mkdir(exist_ok=True)
            (boot / "grub/x86_64-efi/core.efi").write_text(text)

    def loaders(self):
        with self.mounted(EFI) as efi:
            return {str(path.relative_to(efi)): path.read_text() for path in sorted(efi.rglob("*.[eE][fF][iI]"))}

    def command(self, booted, script, *words):
        return staged(booted, (SCRIPTS / script, *words), ("--bind", self.folder / "cmdline", "/proc/cmdline"))

    def call(self, booted, script, *words, **more):
        """The exit code, what the installed system's tools were called with, and the printed text."""
        result = subprocess.run(self.command(booted, script, *words), env=self.environment(bootdisk.FAKES, **more),
                                text=True, capture_output=True, check=False)
        self.assert_nothing_left(result.stderr)
        return result.returncode, self.calls(), result.stdout + result.stderr

    def test_ten_repairs_leave_one_entry_and_a_fallback(self):
        self.put_loaders(testos__shimx64_efi="shim", testos__grubx64_efi="grub", other__grubx64_efi="other")
        own = self.own_entry(r"\EFI\testos\shimx64.efi")
        updater = [True, "Linux-Firmware-Updater", own + r"\.f.w.u.p.d."]
        other_disk = [True, "testos", r"HD(1,GPT,33-44,0x800,0x1)/File(\EFI\testos\shimx64.efi)"]
        self.firmware(entries={"0003": [True, "Windows", "x"], "0001": [False, "testos", own], "0004": updater,
                               "0007": other_disk, "0002": [True, "testos", own.lower()]},
                      order=["0003", "0002", "0004", "0007", "0001"])
        for _ in range(10):
            code, calls, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
            self.assertEqual((code, calls), (0, []), text)
        self.assertEqual(self.firmware(), {
            "entries": {"0003": [True, "Windows", "x"], "0001": [True, "testos", own], "0004": updater,
                        "0007": other_disk},
            "order": ["0001", "0003", "0004", "0007"]})
        self.assertEqual(self.loaders(), {
            "EFI/BOOT/BOOTX64.EFI": "shim", "EFI/BOOT/grubx64.efi": "grub", "EFI/other/grubx64.efi": "other",
            "EFI/testos/grubx64.efi": "grub", "EFI/testos/shimx64.efi": "shim"})

    def test_a_missing_entry_is_made_and_a_fallback_is_never_replaced(self):
        self.put_loaders(testos__grubx64_efi="grub", BOOT__bootx64_efi="somebody's")
        # A number without an entry, too.
        self.firmware(entries=self.firmware()["entries"], order=["0009", "0000"])
        for _ in range(2):
            code, _, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
            self.assertEqual(code, 0, text)
        self.assertEqual(self.firmware()["order"], ["0001", "0000"])
        self.assertEqual(self.firmware()["entries"]["0001"],
                         [True, "testos", self.own_entry(r"\EFI\testos\grubx64.efi")])
        self.assertEqual(self.loaders()["EFI/BOOT/bootx64.efi"], "somebody's")
        self.assertEqual(len(self.loaders()), 2)

    def test_an_empty_efi_partition_gets_grub(self):
        code, calls, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
        self.assertEqual((code, calls), (0, ["grub-install --target=x86_64-efi --efi-directory=/boot/efi "
                                             "--bootloader-id=testos --no-nvram --recheck"]), text)
        self.assertEqual(self.loaders(), {"EFI/BOOT/BOOTX64.EFI": "new\n", "EFI/testos/grubx64.efi": "new\n"})
        self.assertEqual(self.firmware()["order"], ["0001", "0000"])

    def test_a_loader_of_another_system_is_left_alone(self):
        self.put_loaders(other__grubx64_efi="other")
        self.put_core("own")
        code, calls, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
        self.assertEqual((code, len(calls)), (0, 1), text)
        self.assertIn("--bootloader-id=testos", calls[0])
        self.assertEqual(self.loaders(), {"EFI/BOOT/BOOTX64.EFI": "new\n", "EFI/other/grubx64.efi": "other",
                                          "EFI/testos/grubx64.efi": "new\n"})
        self.assertEqual(self.firmware()["order"], ["0001", "0000"])

    def test_a_loader_in_a_folder_of_another_name(self):
        self.put_loaders(another__grubx64_efi="other", base__grubx64_efi="own")
        for mark in ("built by its GRUB", "reads its menu"):
            with self.subTest(mark):
                if mark == "reads its menu":
                    with self.mounted(BOOT) as boot:
                        (boot / "grub/x86_64-efi/core.efi").unlink()
                    self.put_loaders(**{"base__grub.cfg": f"search.fs_uuid {self.disk.uuid(BOOT)} root\n"})
                else:
                    self.put_core("own")
                code, calls, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
                self.assertEqual((code, calls), (0, []), text)
                self.assertEqual(self.firmware()["entries"]["0001"],
                                 [True, "base", self.own_entry(r"\EFI\base\grubx64.efi")])

    def test_a_full_efi_partition_has_no_fallback(self):
        self.put_loaders(testos__grubx64_efi="grub" * 100000, BOOT__other_efi="other")
        with self.mounted(EFI) as efi, open(efi / "filling", "wb", buffering=0) as filling:
            with self.assertRaises(OSError):
                while filling.write(bytes(1 << 16)):
                    os.fsync(filling)
        code, _, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
        self.assertEqual(code, 0, text)
        self.assertEqual(self.firmware()["order"], ["0001", "0000"])
        with self.mounted(EFI) as efi:
            self.assertEqual([path.name for path in (efi / "EFI/BOOT").iterdir()], ["other.efi"])

    def test_a_disk_with_an_mbr(self):
        self.put_loaders(testos__grubx64_efi="grub")
        self.make_mbr(0)
        code, _, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
        self.assertNotEqual(code, 0)
        self.assertIn("has no partition UUID", text)
        self.make_mbr(0x12abcd)
        code, _, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
        self.assertEqual(code, 0, text)
        self.assertEqual(self.firmware()["order"], ["0001", "0000"])
        self.assertEqual(self.firmware()["entries"]["0001"],
                         [True, "testos", r"HD(1,MBR,0x12abcd,0x800,0x100000)/File(\EFI\testos\grubx64.efi)"])

    def test_grub_that_cannot_be_installed(self):
        for loader, code in ((None, 1), ("old", 0)):
            with self.subTest(loader):
                if loader:
                    self.put_loaders(testos__grubx64_efi=loader)
                self.assertEqual(self.call("uefi", "reset-grub", self.disk.parts[EFI], self.disk.parts[BOOT],
                                           GRUB_FAILS="1")[0], code)
        self.assertEqual(self.loaders()["EFI/testos/grubx64.efi"], "old")

    def test_bios(self):
        expected = [f"grub-install --target=i386-pc --recheck {self.disk.device}",
                    "grub-mkconfig -o /boot/grub/grub.cfg"]
        boot = self.disk.parts[BOOT]
        for script, words in (("resetEFI", (boot, "legacy", self.disk.device)), ("reset-grub", ("", boot)),
                              ("reset-grub", ("", ""))):
            with self.subTest(words):
                code, calls, text = self.call("bios", script, *words)
                self.assertEqual((code, calls), (0, expected), text)
        self.assertEqual(self.call("bios", "reset-grub", "", boot, GRUB_FAILS="1")[:2], (1, expected[:1]))

    def test_the_loader_of_the_recovery_partition_stays_in_front(self):
        self.put_loaders(testos__grubx64_efi="grub", **{"kestro-recovery__grubx64_efi": "recovery"})
        for _ in range(2):
            code, _, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
            self.assertEqual(code, 0, text)
        self.assertEqual(self.firmware()["order"], ["0002", "0001", "0000"])
        self.assertEqual(self.firmware()["entries"]["0002"],
                         [True, "Kestro Recovery", self.own_entry(r"\EFI\kestro-recovery\grubx64.efi")])
        with self.mounted(EFI) as efi:
            (efi / "EFI/testos/grubx64.efi").unlink()
        code, calls, text = self.call("uefi", "resetEFI", self.disk.parts[EFI])
        self.assertEqual((code, len(calls)), (0, 1), text)
        self.assertEqual(self.loaders()["EFI/testos/grubx64.efi"], "new\n")

    def test_the_grub_of_the_recovery_partition_is_put_back(self):
        words = (self.disk.parts[BOOT], "legacy", self.disk.device)
        with self.mounted(ROOT) as root:
            (root / "etc/kestro").mkdir()
            (root / "etc/kestro/system-recovery.conf").write_text(f"UUID={self.disk.uuid(FOREIGN)}\n")
        self.assertEqual(len(self.call("bios", "resetEFI", *words)[1]), 2)
        with self.mounted(FOREIGN) as recovery:
            (recovery / "boot/grub/i386-pc").mkdir(parents=True)
            (recovery / "boot/grub/i386-pc/core.img").touch()
        # The boot sector is never the system's for a moment, unless that is all that can be written there.
        for failure, option in ({}, " --no-bootsector"), ({"EMBEDDING_FAILS": "1"}, ""):
            code, calls, text = self.call("bios", "resetEFI", *words, **failure)
            self.assertEqual((code, calls[:2]), (0, [
                f"grub-bios-setup {self.disk.device}",
                f"grub-install --target=i386-pc --recheck{option} {self.disk.device}"]), text)

    def test_a_look_replays_no_journal(self):
        output = subprocess.run(["bash", "-ec", f'. {SCRIPTS}/boot-system.sh; declare -f candidate_devices;'
                                 'for type in "${!look_options[@]}"; do echo "look $type ${look_options[$type]}"; done'],
                                text=True, check=True, stdout=subprocess.PIPE).stdout
        options = dict(re.findall(r"^look (\S+) (\S+)$", output, re.M))
        pattern = re.search(r"/(\^\(ext\[234\].*\)\$)/", output)[1]
        known = ("ext2", "ext3", "ext4", "xfs", "btrfs", "f2fs")
        self.assertEqual(pattern.count("|"), 3, "a type that this test does not know")
        self.assertEqual({name for name in known if re.match(pattern, name)}, set(options))
        self.assertEqual([name for name, words in options.items() if words == "ro"], ["ext2"])
        self.assertTrue(all(words.startswith("ro") for words in options.values()))
        # The kernel takes them.
        part = self.disk.own(self.disk.parts[FOREIGN])
        for name in ("ext2", "ext3", "ext4"):
            subprocess.run([f"mkfs.{name}", "-qF", part], check=True)
            with Mounted(self.disk, FOREIGN, self.folder / "point", options[name]):
                pass

    def test_a_loader_that_does_not_fit_its_modules_is_replaced(self):
        self.put_loaders(testos__grubx64_efi="newer")
        for core, count in (("newer", 0), ("older", 1)):
            with self.subTest(core):
                self.put_core(core)
                code, calls, text = self.call("uefi", "resetEFI", self.disk.parts[EFI], GRUB_FAILS="1")
                self.assertEqual((code, len(calls)), (0, count), text)
        self.assertEqual(self.loaders()["EFI/testos/grubx64.efi"], "newer")
        self.assertEqual(self.call("uefi", "resetEFI", self.disk.parts[EFI])[0], 0)
        self.assertEqual(self.loaders()["EFI/testos/grubx64.efi"], "new\n")

    def test_the_system_is_found_without_the_command_line(self):
        (self.folder / "cmdline").write_text("quiet\n")
        code, _, text = self.call("bios", "reset-grub", "", self.disk.parts[BOOT])
        self.assertEqual(code, 0, text)

    def test_refusals_change_nothing(self):
        before = self.disk.checksum()
        efi, boot, _, foreign = self.disk.parts
        for booted, script, words in (
                ("uefi", "resetEFI", (foreign,)), ("uefi", "resetEFI", ("/dev/null",)), ("uefi", "resetEFI", ("",)),
                ("uefi", "resetEFI", (f"{efi};reboot",)), ("uefi", "resetEFI", ()), ("uefi", "reset-grub", ("", boot)),
                ("bios", "resetEFI", (boot, "legacy", boot)), ("bios", "resetEFI", (foreign, "legacy", self.disk.device)),
                ("bios", "resetEFI", (boot, "modern", self.disk.device)), ("bios", "reset-grub", (boot, efi))):
            with self.subTest(f"{booted} {script} {words}"):
                code, calls, text = self.call(booted, script, *words)
                self.assertNotEqual(code, 0)
                self.assertEqual(calls, [])
                self.assertNotEqual(text, "")
        self.assertEqual(self.disk.checksum(), before)
        self.assertEqual(self.firmware()["order"], ["0000"])

    def test_a_dry_run_only_prints(self):
        self.put_loaders(testos__grubx64_efi="grub")
        before = self.disk.checksum()
        for booted, script, words, expected in (
                ("uefi", "resetEFI", (self.disk.parts[EFI],), "would run: 'efibootmgr' '--quiet' '--create-only'"),
                ("uefi", "reset-grub", (self.disk.parts[EFI], self.disk.parts[BOOT]), "'--target=x86_64-efi'"),
                ("bios", "reset-grub", ("", self.disk.parts[BOOT]), "'--target=i386-pc'")):
            with self.subTest(script):
                code, calls, text = self.call(booted, script, "--dry-run", *words)
                self.assertEqual((code, calls), (0, []), text)
                self.assertIn(expected, text)
        self.assertEqual(self.disk.checksum(), before)
        self.assertEqual(len(self.firmware()["entries"]), 1)

    def test_an_interrupted_repair_leaves_nothing(self):
        started = self.folder / "started"
        process = subprocess.Popen(self.command("bios", "reset-grub", "", self.disk.parts[BOOT]), text=True,
                                   env=self.environment(bootdisk.FAKES, GRUB_WAITS=str(started)),
                                   start_new_session=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        deadline = time.monotonic() + 30
        while not started.exists() and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertTrue(started.exists(), "the repair never came to GRUB")
        os.killpg(process.pid, signal.SIGTERM)
        text = process.communicate(timeout=30)[0]
        self.assertEqual(process.returncode, 143, text)
        self.assert_nothing_left(text)


if __name__ == "__main__":
    skip_without_loop_devices()
    unittest.main()
