# SPDX-License-Identifier: GPL-3.0-or-later
"""A machine on which the system and its recovery partition are installed, as an installer leaves it."""
import dataclasses
import pathlib
import shutil
import tempfile

from kestrolab.process import run

from . import base, layout
from .emulator import FIRMWARE, KERNEL_PARAMETERS, Computer, Drive, Kernel
from .product import as_rescue_stick
from .stages import PROJECT, digest, sources, stage
from .starting import started

STICK = "KESTROSTICK"
INSTALL_LIMIT = 5400
START_LIMIT = 1800
# The shell and the messages on the serial lines, and patience; everything else is what a person's machine gets.
WATCHED = f"{KERNEL_PARAMETERS} loglevel=6 systemd.debug_shell=ttyS1 systemd.default_timeout_start_sec=1800"
# What a machine's firmware remembers when it is new.
FIRMWARE_MEMORY = FIRMWARE / "OVMF_VARS_4M.fd"
PASSPHRASE = "kestro"
BUILT_FROM = ("recovery-image", "scripts", "dev/kestrovm/base.py", "dev/kestrovm/installed.py", "dev/kestrovm/layout.py",
              "dev/kestrovm/install-machine", "dev/kestrolab/content.py")


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
    key = digest(KERNEL_PARAMETERS, *sources(*BUILT_FROM),
                 *(recovery_system / name for name in ("filesystem.squashfs", "initrd.img")))
    folder = stage(f"installed-{kind.name()}", key, lambda draft: install(draft, kind, recovery_system))
    return Installed(folder / "system.raw", folder / "backup.raw", folder / "variables" if kind.uefi else None,
                     recovery_system)


def install(folder: pathlib.Path, kind: Kind, recovery_system: pathlib.Path):
    make_disks(folder, kind, recovery_system)
    if kind.uefi:
        shutil.copyfile(FIRMWARE_MEMORY, folder / "variables")
    drives = [Drive(folder / "system.raw", layout.SYSTEM_SERIAL, "raw"), Drive(folder / "stick.raw", STICK, "raw")]
    kernel = rescue_kernel(recovery_system, "systemd.unit=multi-user.target")
    data = layout.DATA.uuid if kind.layout == "data" else ""
    variables = folder / "variables" if kind.uefi else None
    with started(lambda: Computer(folder, drives, kernel, variables),
                 lambda computer, _: computer.shell.wait_until_ready(START_LIMIT)) as (computer, _):
        computer.shell.run("systemctl is-system-running --wait || true", START_LIMIT)
        computer.shell.run(f"/run/live/medium/install-machine {layout.ROOT.uuid} {layout.RECOVERY.uuid} '{data}' "
                           f"'{WATCHED}' {kind.layout} {layout.CONTAINER_UUID} {PASSPHRASE}", INSTALL_LIMIT)
        computer.shell.send("poweroff\r")
        computer.wait_for_end(START_LIMIT)
    (folder / "stick.raw").unlink()


def rescue_kernel(recovery_system: pathlib.Path, parameters: str = "") -> Kernel:
    """The recovery system started from the rescue medium of make_stick()."""
    return as_rescue_stick(recovery_system, STICK, f"{WATCHED} {parameters}".rstrip())


def make_disks(folder: pathlib.Path, kind: Kind, recovery_system: pathlib.Path):
    """Also the medium from which the machine is installed."""
    further = {}
    with tempfile.TemporaryDirectory(dir=folder) as work:
        root, boot, root_image = (pathlib.Path(work, name) for name in ("root", "boot", "root.img"))
        run("cp", "-a", base.debian(), root)
        base.furnish(root, kind.layout)
        (root / "boot").rename(boot)
        (root / "boot").mkdir()
        partitions = layout.SYSTEM_DISKS[kind.layout]
        if layout.CONTAINER in partitions:
            with open(root_image, "wb") as file:
                file.truncate(layout.ROOT.size * layout.MIB)
            layout.make_file_system(root_image, layout.ROOT, root)
            further["root.img"] = root_image
        layout.make_disk(folder / "system.raw", partitions, {"root": root, "boot": boot})
        make_stick(folder / "stick.raw", recovery_system, further)
    layout.make_disk(folder / "backup.raw", layout.BACKUP_DISK, {})


def make_stick(image: pathlib.Path, recovery_system: pathlib.Path, further: dict[str, pathlib.Path | str]):
    """The medium from which a machine is installed or rescued: the recovery system and its installer.

    FURTHER names files to put there, by their places: files or texts.
    """
    with tempfile.TemporaryDirectory(dir=image.parent) as work:
        tree = pathlib.Path(work)
        shutil.copytree(recovery_system, tree / "recovery_live")
        for folder in ("recovery-image", "scripts"):
            shutil.copytree(PROJECT / folder, tree / folder)
        shutil.copy(pathlib.Path(__file__).with_name("install-machine"), tree)
        for name, content in further.items():
            (tree / name).parent.mkdir(exist_ok=True)
            if isinstance(content, str):
                (tree / name).write_text(content, encoding="utf-8")
            else:
                run("cp", "--sparse=always", content, tree / name)
        size = int(run("du", "-sm", tree).stdout.split()[0]) * 5 // 4 + 64
        run("mkfs.ext4", "-q", "-F", "-d", tree, image, f"{size}M")
