#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the real sudo makes of the recovery program's rule, in a mount namespace with accounts of its own."""
import os
import pathlib
import pty
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrolab.root import skip_unless, skip_without_root  # noqa: E402

RULE = pathlib.Path(sys.argv.pop(1))
OPTIONS = pathlib.Path(__file__).resolve().parents[2] / "packaging/environment/tar-options"
SCRIPTS = "/lib/kestro-recovery-gui/scripts/"
# The programs of the rule need to be there for sudo, not to work.
STAGE = """
set -e
mount --make-rprivate /
mkdir -p "$1/bin" "$1/lib" "$1/layers"
mount -t tmpfs none "$1/layers"
for part in bin lib; do
    mkdir "$1/layers/$part.upper" "$1/layers/$part.work"
    mount -t overlay -o "lowerdir=/usr/$part,upperdir=$1/layers/$part.upper,workdir=$1/layers/$part.work" none "/usr/$part"
done
mkdir -p /usr/lib/kestro-recovery-gui/scripts
for name in write-file create-data-info reset-grub resetEFI; do
    ln -s /bin/true "/usr/lib/kestro-recovery-gui/scripts/$name"
done
ln -sf /bin/true /usr/bin/kestro-clone
mount --bind "$1/passwd" /etc/passwd
mount --bind "$1/shadow" /etc/shadow
mount --bind "$1/sudoers" /etc/sudoers
shift
exec "$@"
"""
TAR = ("tar", "--xattrs", "--xattrs-include=*")
LOG = "/home/kestro/kestro-recovery-gui.log"
ALLOWED = (
    ("kestro-clone", "--tui", "/dev/sda3", "/media/kestro/My Backup/backup/system.kim"),
    ("kestro-clone", "--tui", "/media/kestro/My Backup/a.kim", "/dev/mapper/vg-root"),
    ("kestro-clone", "--kim-info", "/run/live/medium/backup/system.kim"),
    ("kestro-clone", "--kim-info", "/media/kestro/b/system.kim", "--json"),
    ("kestro-clone", "--verify", "/media/kestro/b/system.kim"),
    ("kestro-clone", "--write-custom-file", "kim:///media/kestro/b/system.kim/DiskInfo", "DiskInfo"),
    ("kestro-clone", "--read-custom-file", "kim:///media/kestro/b/system.kim/DiskInfo", "DiskInfo"),
    (*TAR, "-cpf", "/media/kestro/b/backup//opt.tar", "-C", "/media/kestro/root", "datainfo"),
    (*TAR, "-rpf", "/media/kestro/b/backup//opt.tar", "-C", "/media/kestro/root", "opt"),
    (*TAR, "-xpf", "/media/kestro/b/var.tar", "-C", "/media/kestro/root", "var"),
    (*TAR, "-xpf", "/media/kestro/b/var.tar", "datainfo"),
    ("tar", "--no-seek", "-tf", "/media/kestro/b/backup//opt.tar"),
    ("tar", "--no-seek", "-tf", "/media/kestro/b/backup//opt.tar", "opt"),
    ("tar", "--occurrence=1", "-xOf", "/media/kestro/b/backup//opt.tar", "datainfo"),
    ("find", "/media/kestro/data/home/", "-mindepth", "1", "-maxdepth", "1", "-inum", "12", "-exec", "rm", "-rf", "{}",
     "+"),
    ("mkdir", "-p", "/media/kestro/My Backup/2024/"),
    ("setfacl", "-m", "o:rwx", "/media/kestro/b/2024/"),
    ("cp", "-a", LOG, "/media/kestro/recovery/"),
    ("cp", "-a", "/media/kestro/root/var", "/media/kestro/data/"),
    ("rm", "-f", "/media/kestro/recovery/backup/recovery.json"),
    ("rm", "-f", "/media/kestro/data/home/ada/Desktop/my game.desktop"),
    ("rm", "-rf", "/media/kestro/root/opt/"),
    ("rm", "-rf", "/media/kestro/data/.dot"),
    ("rm", "-rf", "/media/kestro/data/odd\nname"),
    ("rm", "-rf", "/media/kestro/data/trailing "),
    ("rm", "-rf", "/media/kestro/data/Photos - 2024 (-5 °C)"),
    ("rm", "-rf", "/media/kestro/data/-rf"),
    ("rm", "-rf", "/media/kestro/data/..."),
    ("rm", "/media/kestro/root/datainfo"),
    ("chattr", "-R", "-i", "/media/kestro/root/var/"),
    ("chattr", "-i", "-R", "/media/kestro/data/home/ada"),
    ("sed", "-i", r"s?\/home\/.*\/?\/home\/xxx\/?g", LOG),
    ("blkid",),
    ("dmsetup", "deps", "-o", "blkdevname"),
    ("fsck", "-v", "-n", "/dev/sda3"), ("fsck", "-y", "/dev/mapper/vg-a:b@c+d"),
    ("mkswap", "/dev/nvme0n1p2", "-U", "0d5c-11ab"),
    (SCRIPTS + "write-file", "DiskInfo", r"UUID=1234-ABCD\nVersion=1.1"),
    (SCRIPTS + "create-data-info", "1234-ABCD", "opt", "/media/kestro/root/datainfo"),
    (SCRIPTS + "reset-grub", "/dev/sda1", ""),
    (SCRIPTS + "reset-grub", "", "/dev/sda2"),
    (SCRIPTS + "resetEFI", "/dev/sda1"),
    (SCRIPTS + "resetEFI", "/dev/sda2", "legacy", "/dev/sda"),
    ("reboot", "-f"),
    ("poweroff",),
)
REFUSED = (
    ("find", "/home/", "-mindepth", "1", "-maxdepth", "1", "-inum", "12", "-exec", "rm", "-rf", "{}", "+"),
    ("find", "/media/kestro/data/", "-mindepth", "1", "-maxdepth", "1", "-inum", "12", "-exec", "sh", "-c", "{}", "+"),
    ("tar", "--no-seek", "-tf", "/media/kestro/b/opt.tar", "--to-command=sh"),
    ("bash",), ("reboot",), ("poweroff", "-f"), ("blkid", "-g"), ("dmsetup", "remove_all"),
    ("kestro-clone", "--rescue", "--tui", "/dev/sda3", "/media/a"),
    ("kestro-clone", "--write-custom-file", "kim:///media/a.kim/DiskInfo", "/etc/shadow"),
    ("tar", "-cpf", "/media/kestro/a.tar", "-C", "/", "etc"),
    (*TAR, "-xpf", "/media/kestro/a.tar", "-C", "/", "etc"),
    (*TAR, "-xpf", "/media/kestro/a.tar", "--to-command=sh", "datainfo"),
    ("rm", "-rf", "/media/"), ("rm", "-rf", "/"), ("rm", "-rf", "/home/kestro"), ("rm", "-rf", "opt"),
    ("rm", "-rf", "/media/../etc"), ("rm", "-rf", "/media/kestro/.."), ("rm", "-rf", "/media/kestro/../../etc/"),
    ("rm", "-rf", "/media/kestro/a", "/etc"), ("rm", "-rf", "/media/kestro/a", "--files0-from=x"),
    ("rm", "-rf", "--no-preserve-root", "/media/kestro/a"),
    ("rm", "/media/kestro/root/other"),
    ("cp", "-a", "/media/kestro/a", "/etc"), ("cp", "-a", "/media/kestro/a", "/etc", "/media/kestro/../../etc/"),
    ("mkdir", "-p", "/etc/x"), ("setfacl", "-m", "u:kestro:rwx", "/media/kestro/a"),
    ("chattr", "-R", "+i", "/media/kestro/a"), ("chattr", "-R", "-i", "/etc"),
    ("sed", "-i", "s?a?b?g", LOG), ("sed", "-i", r"s?\/home\/.*\/?\/home\/xxx\/?g", "/etc/shadow"),
    ("fsck", "-y", "/media/kestro/image"), ("fsck", "-y", "/dev/../etc/passwd"), ("mkswap", "/dev/sda2"),
    ("mkswap", "/dev/../etc/passwd", "-U", "0d5c-11ab"), ("mkswap", "/dev/-L", "-U", "0d5c-11ab"),
    (SCRIPTS + "write-file", "/etc/shadow", "x"),
    (SCRIPTS + "create-data-info", "1234", "home", "/media/kestro/root/datainfo"),
    (SCRIPTS + "resetEFI", "/dev/sda1", "modern", "/dev/sda"),
)


class SudoRule(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.folder = pathlib.Path(holder.name)
        (cls.folder / "passwd").write_text("root:x:0:0::/root:/bin/sh\nkestro:x:999:999::/home/kestro:/bin/bash\n")
        (cls.folder / "shadow").write_text("root:*:20000::::::\nkestro:!*:20000::::::\n")
        rule = cls.folder / "sudoers"
        # What Debian's own file has besides.
        rule.write_text("Defaults env_reset, use_pty\n"
                        'Defaults secure_path="/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"\n'
                        + RULE.read_text(encoding="utf-8"))
        rule.chmod(0o440)

    def staged(self, *words, **options):
        return subprocess.run(["unshare", "--mount", "sh", "-c", STAGE, "sh", str(self.folder), *words],
                              text=True, check=False, **options)

    def sudo_allows(self, words):
        result = self.staged("sudo", "-l", "-U", "kestro", "--", *words, capture_output=True)
        self.assertEqual(result.stderr, "", words)
        self.assertIn(result.returncode, (0, 1), words)
        return result.returncode == 0

    def test_rule(self):
        for words, allowed in [(words, True) for words in ALLOWED] + [(words, False) for words in REFUSED]:
            with self.subTest(words):
                self.assertEqual(self.sudo_allows(words), allowed)

    def test_tar_keeps_numbers_and_holes(self):
        """The options come from a file that the rule names: the program's own command lines have none of them."""
        folder = "/usr/lib/kestro-recovery-environment"
        prepare = (f'mkdir -p {folder} && cp "$1" {folder}/tar-options && shift && '
                   "printf '#!/bin/sh\necho \"$TAR_OPTIONS\"\n' >/usr/bin/tar && exec \"$@\"")
        result = self.staged("sh", "-c", prepare, "sh", str(OPTIONS), "setpriv", "--reuid=999", "--regid=999",
                             "--clear-groups", "sudo", "tar", "--no-seek", "-tf", "/media/kestro/b/opt.tar",
                             capture_output=True)
        self.assertEqual((result.returncode, result.stdout), (0, "--numeric-owner --sparse\n"), result.stderr)

    def test_refusal_asks_for_no_password(self):
        """The session has a terminal, at which nobody would ever answer."""
        terminal, other = pty.openpty()
        self.addCleanup(os.close, terminal)
        self.addCleanup(os.close, other)
        result = self.staged("setsid", "--ctty", "--wait", "setpriv", "--reuid=999", "--regid=999", "--clear-groups",
                             "sudo", "rm", "-rf", "/media/kestro/photos -2020", stdin=other, capture_output=True,
                             timeout=60)
        self.assertIn("not allowed to execute", result.stderr)
        self.assertEqual(result.returncode, 1)


if __name__ == "__main__":
    skip_without_root()
    skip_unless(subprocess.run(["unshare", "--mount", "true"], check=False).returncode == 0, "needs mount namespaces")
    unittest.main()
