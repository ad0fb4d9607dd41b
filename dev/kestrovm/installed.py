# SPDX-License-Identifier: GPL-3.0-or-later
"""A machine on which the system and its recovery partition are installed, as an installer leaves it."""
import dataclasses
import pathlib
import shutil
import tempfile

from kestrolab.process import run

from . import base, layout
from .emulator import FIRMWARE, KERNEL_PARAMETERS, Computer, Drive
from .product import as_rescue_stick
from .stages import PROJECT, digest, sources, stage

STICK = "KESTROSTICK"
INSTALL_LIMIT = 5400
START_LIMIT = 1800
# The shell and the messages on the serial lines; everything else is what a person's machine gets.
WATCHED = f"{KERNEL_PARAMETERS} systemd.debug_shell=ttyS1"
BUILT_FROM = ("recovery-image", "scripts", "dev/kestrovm/base.py", "dev/kestrovm/emulator.py", "dev/kestrovm/installed.py",
              "dev/kestrovm/layout.py", "dev/kestrovm/install-machine", "dev/kestrolab/content.py")


@dataclasses.dataclass(frozen=True)
class Kind:
    """Which machine: LAYOUT is a key of layout.SYSTEM_DISKS."""
    layout: str = "plain"
    uefi: bool = False

    def name(self) -> str:
        return f"{self.layout}-{'uefi' if self.uefi else 'bios'}"


@dataclasses.dataclass
class Installed:
    """The disks of a machine (raw images, never written to again), and its firmware's memory with UEFI."""
    system: pathlib.Path
    backup: pathlib.Path
    variables: pathlib.Path | None
    recovery_system: pathlib.Path


def installed(kind: Kind, recovery_system: pathlib.Path) -> Installed:
    key = digest(*sources(*BUILT_FROM), recovery_system / "filesystem.squashfs", recovery_system / "initrd.img")
    folder = stage(f"installed-{kind.name()}", key, lambda draft: install(draft, kind, recovery_system))
    return Installed(folder / "system.raw", folder / "backup.raw", folder / "variables" if kind.uefi else None,
                     recovery_system)


def install(folder: pathlib.Path, kind: Kind, recovery_system: pathlib.Path):
    make_disks(folder, kind)
    make_stick(folder / "stick.raw", recovery_system)
    if kind.uefi:
        shutil.copyfile(FIRMWARE / "OVMF_VARS_4M.fd", folder / "variables")
    drives = [Drive(folder / "system.raw", layout.SYSTEM_SERIAL, "raw"), Drive(folder / "stick.raw", STICK, "raw")]
    kernel = as_rescue_stick(recovery_system, STICK, f"{WATCHED} systemd.unit=multi-user.target")
    data = layout.DATA.uuid if kind.layout == "data" else ""
    with Computer(folder, drives, kernel, folder / "variables" if kind.uefi else None) as computer:
        computer.shell.wait_until_ready(START_LIMIT)
        computer.shell.run("systemctl is-system-running --wait || true", START_LIMIT)
        computer.shell.run(f"/run/live/medium/install-machine {layout.ROOT.uuid} {layout.RECOVERY.uuid} '{data}' "
                           f"'{WATCHED}'", INSTALL_LIMIT)
        computer.shell.send("poweroff\r")
        computer.wait_for_end(START_LIMIT)
    (folder / "stick.raw").unlink()


def make_disks(folder: pathlib.Path, kind: Kind):
    with tempfile.TemporaryDirectory(dir=folder) as work:
        root, boot = pathlib.Path(work, "root"), pathlib.Path(work, "boot")
        run("cp", "-a", base.debian(), root)
        base.furnish(root, kind.layout)
        (root / "boot").rename(boot)
        (root / "boot").mkdir()
        layout.make_disk(folder / "system.raw", layout.SYSTEM_DISKS[kind.layout], {"root": root, "boot": boot})
    layout.make_disk(folder / "backup.raw", layout.BACKUP_DISK, {})


def make_stick(image: pathlib.Path, recovery_system: pathlib.Path):
    """The medium from which a machine is installed or rescued: the recovery system and its installer."""
    with tempfile.TemporaryDirectory(dir=image.parent) as work:
        tree = pathlib.Path(work)
        shutil.copytree(recovery_system, tree / "image")
        for folder in ("recovery-image", "scripts"):
            shutil.copytree(PROJECT / folder, tree / folder)
        shutil.copy(pathlib.Path(__file__).with_name("install-machine"), tree)
        size = int(run("du", "-sm", tree).stdout.split()[0]) * 5 // 4 + 64
        run("mkfs.ext4", "-q", "-F", "-d", tree, image, f"{size}M")
