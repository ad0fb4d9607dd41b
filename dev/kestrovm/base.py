# SPDX-License-Identifier: GPL-3.0-or-later
"""The file tree of the installed system: a small Debian that says when it is up, with content worth keeping."""
import pathlib

from kestrolab.content import Tree, rich_folder, write_home
from kestrolab.process import run

from . import layout
from .emulator import KERNEL_PARAMETERS
from .stages import digest, stage

UP = "KESTRO-INSTALLED-SYSTEM-UP"
PACKAGES = ("linux-image-cloud-amd64", "systemd-sysv", "udev", "dbus", "initramfs-tools", "grub-pc-bin",
            "grub-efi-amd64-bin", "grub2-common", "efibootmgr", "e2fsprogs", "util-linux", "acl", "zstd", "kmod",
            "procps", "lvm2", "cryptsetup-initramfs")
LEFT_OUT = ("/usr/share/doc/*", "/usr/share/man/*", "/usr/share/locale/*")
UNWANTED = ("apt-daily.timer", "apt-daily-upgrade.timer", "dpkg-db-backup.timer", "e2scrub_all.timer",
            "e2scrub_reap.service", "fstrim.timer", "lvm2-monitor.service", "systemd-pstore.service")
BOUND = ("home", "opt", "root", "var")

SAY_UP = f"""#!/bin/sh
# For whoever watches the serial line: the system is up, and what it found.
printf '\\n{UP} swap=[%s] failed=[%s]\\n' "$(swapon --show=UUID --noheadings | tr -d ' \\n')" \\
    "$(systemctl list-units --state=failed --plain --no-legend | awk '{{print $1}}' | tr '\\n' ' ')" >/dev/ttyS0
"""

FILES = {
    "etc/hostname": "machine\n",
    "etc/os-version": "[Version]\nSystemName=Machine\nMinorVersion=1030\n",
    "usr/lib/kestro/desktop-version": "[Release]\nType=Professional\n",
    "etc/default/locale": "LANG=C.UTF-8\nLANGUAGE=en_US\n",
    "etc/default/grub": 'GRUB_DEFAULT=0\nGRUB_TIMEOUT=3\nGRUB_DISTRIBUTOR=Debian\nGRUB_CMDLINE_LINUX_DEFAULT=""\n'
                        f'GRUB_CMDLINE_LINUX="{KERNEL_PARAMETERS}"\nGRUB_TERMINAL="console serial"\n'
                        'GRUB_DISABLE_OS_PROBER=true\n',
    "etc/systemd/system/say-up.service": "[Unit]\nDescription=Says on the serial line that the system is up\n"
                                         "After=multi-user.target\n[Service]\nType=oneshot\n"
                                         "ExecStart=/usr/local/sbin/say-up\n[Install]\nWantedBy=graphical.target\n",
    # An emulated computer may be slow.
    "etc/systemd/system.conf.d/patience.conf":
        "[Manager]\nDefaultTimeoutStartSec=30min\nDefaultDeviceTimeoutSec=30min\n",
    # The shell for whoever drives the machine; the first line stays free for messages.
    "etc/systemd/system/serial-getty@ttyS1.service.d/shell.conf":
        "[Service]\nExecStart=\nExecStart=-/sbin/agetty --autologin root --noclear 115200 %I dumb\n",
}


def fstab(name: str) -> str:
    """NAME is that of a layout. With a data partition people's folders are bound from there."""
    lines = [f"UUID={layout.ROOT.uuid} / ext4 rw,relatime 0 1",
             f"UUID={layout.BOOT.uuid} /boot ext4 rw,relatime 0 2",
             f"UUID={layout.EFI.uuid} /boot/efi vfat umask=0077 0 1",
             f"UUID={layout.SWAPPED.uuid} none swap sw 0 0",
             f"UUID={layout.RECOVERY.uuid} /recovery ext4 noauto 0 0"]
    if name == "data":
        lines.append(f"UUID={layout.DATA.uuid} /data ext4 rw,relatime 0 2")
        lines += [f"/data/{folder} /{folder} none bind 0 0" for folder in BOUND]
    return "\n".join([*lines, ""])


def debian() -> pathlib.Path:
    """The bare distribution; the same for every layout."""
    return stage("debian", digest(PACKAGES, LEFT_OUT), lambda folder: run(
        "mmdebstrap", "--mode=root", "--variant=minbase", f"--include={','.join(PACKAGES)}",
        *(f"--dpkgopt=path-exclude={pattern}" for pattern in LEFT_OUT), "bookworm", folder / "tree")) / "tree"


def prepare_for_encryption(root: pathlib.Path, tree: Tree):
    """The kernel's parameters name the container: nothing of it is there yet that a table could be checked against."""
    tree.file("etc/cryptsetup-initramfs/conf-hook", "CRYPTSETUP=y\n")
    tree.file("etc/default/grub", FILES["etc/default/grub"].replace(
        KERNEL_PARAMETERS, f"{KERNEL_PARAMETERS} cryptopts=source=UUID={layout.CONTAINER_UUID},target=luks_crypt0"))
    run("chroot", root, "update-initramfs", "-u", "-k", "all")


def furnish(root: pathlib.Path, name: str):
    """Makes a machine of the bare distribution at ROOT."""
    tree = Tree(root, 7)
    for file, text in (FILES | {"etc/fstab": fstab(name)}).items():
        tree.file(file, text)
    if name == "luks":
        prepare_for_encryption(root, tree)
    tree.file("usr/local/sbin/say-up", SAY_UP, 0o755)
    for folder in ("recovery", "data", "boot/efi"):
        tree.directory(folder)
    units = root / "etc/systemd/system"
    run("systemctl", f"--root={root}", "--quiet", "enable", "say-up.service", "serial-getty@ttyS1.service")
    run("systemctl", f"--root={root}", "--quiet", "set-default", "graphical.target")
    for unit in UNWANTED:
        (units / unit).symlink_to("/dev/null")
    for number, user in enumerate(("ada", "grace")):
        run("chroot", root, "useradd", "--uid", 1000 + number, "--shell", "/bin/bash", "--no-create-home", user)
        write_home(tree, f"home/{user}", 1000 + number)
    rich_folder(tree, "opt/rich", 4 << 20)
    rich_folder(tree, "var/lib/rich", 2 << 20)
