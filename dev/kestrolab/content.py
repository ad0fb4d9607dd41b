# SPDX-License-Identifier: GPL-3.0-or-later
"""The file trees that the machine's partitions hold: small, but with everything that a copy can lose."""
import os
import pathlib
import random
import struct

from .machine import DATA, RECOVERY, ROOT, Machine
from .process import run

DAY = 86_400_000_000_000
NEW_YEAR_2024 = 1_704_067_200_000_000_000
# A file capability (cap_net_raw+ep) as the kernel stores it: revision 2 with the effective flag, permitted, inheritable.
CAPABILITY = struct.pack("<5I", 0x02000001, 1 << 13, 0, 0, 0)
ODD_NAMES = (b"with blank", b" leading", b"trailing ", b"line\nbreak", b"-rf", b"*", b"%1%2", b'"quoted"', b"it's",
             b"back\\slash", b"$(echo)", b"caf\xc3\xa9", b"latin1-\xe9", b".hidden", b"opt", b"x" * 255)
DOCUMENTS = ("Documents/letter.txt", "Documents/.draft", ".config/settings.ini", ".bashrc", "notes with blank.txt")
KEPT_LAUNCHERS = ("nox-computer.desktop", "nox-trash.desktop", "nox-home.desktop")
OTHER_LAUNCHERS = ("browser.desktop", "my game.desktop", "NOX-TRASH.desktop")


class Tree:
    """Writes entries under a folder. Times are settled at the end, when no entry comes to their folders any more."""

    def __init__(self, root: pathlib.Path, seed: int):
        self.root = root
        self.random = random.Random(seed)

    def file(self, name, content: bytes | str = b"", mode: int = 0o644, owner=(0, 0), attributes=None, acl="") -> bytes:
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content.encode() if isinstance(content, str) else content)
        os.chown(path, *owner)
        os.chmod(path, mode)
        for key, value in (attributes or {}).items():
            os.setxattr(path, key, value)
        if acl:
            run("setfacl", "-m", acl, os.fsdecode(path))
        return path

    def directory(self, name, mode: int = 0o755, owner=(0, 0), acl: str = ""):
        path = self.path(name)
        os.makedirs(path, exist_ok=True)
        os.chown(path, *owner)
        os.chmod(path, mode)
        if acl:
            run("setfacl", "-m", acl, os.fsdecode(path))

    def path(self, name) -> bytes:
        return os.path.join(os.fsencode(self.root), os.fsencode(name))

    def noise(self, size: int) -> bytes:
        """Bytes that no tool can make smaller, the same in every run."""
        return self.random.randbytes(size)

    def settle_times(self):
        """Every entry gets its own time with nanoseconds; folders after what they hold."""
        for folder, directories, files in os.walk(os.fsencode(self.root), topdown=False):
            for name in files + directories:
                moment = NEW_YEAR_2024 - self.random.randrange(900 * DAY)
                os.utime(os.path.join(folder, name), ns=(moment, moment), follow_symlinks=False)


def rich_folder(tree: Tree, top: str, noise: int):
    """A folder with every kind of entry and property; NOISE bytes of content that cannot be compressed."""
    tree.file(f"{top}/app/program", tree.noise(noise), 0o755)
    tree.file(f"{top}/app/setuid", b"\x7fELF" + tree.noise(4000), 0o4755)
    tree.file(f"{top}/app/pinger", b"\x7fELF", 0o755, attributes={"security.capability": CAPABILITY})
    tree.file(f"{top}/app/empty")
    tree.file(f"{top}/app/attributed", "x", 0o640, (1000, 1000),
              {"user.comment": "caf\u00e9".encode(), "user.empty": b"", "trusted.note": b"\x00\xff"})
    tree.file(f"{top}/app/shared", "x", 0o640, (1000, 1001), acl="u:1002:rw-,g:1003:r--")
    tree.directory(f"{top}/app/inheriting", 0o2775, (0, 1000), "d:u:1002:rwx,d:o::---,g:1003:r-x")
    tree.directory(f"{top}/sticky", 0o1777)
    tree.directory(f"{top}/empty", 0o700, (33, 33))
    for name in ODD_NAMES:
        tree.file(os.fsencode(f"{top}/odd/") + name, name)
    tree.directory(f"{top}/odd/folder with blank\nand line")
    first = tree.file(f"{top}/linked/first", "three names, one file")
    for other in ("linked/second", "sticky/third"):
        os.link(first, tree.path(f"{top}/{other}"))
    for target, name in (("first", "relative"), (f"/{top}/app/empty", "absolute"), ("nowhere", "dangling"), (".", "self")):
        os.symlink(target, tree.path(f"{top}/linked/{name}"))
        os.lchown(tree.path(f"{top}/linked/{name}"), 1000, 1000)
    os.mkfifo(tree.path(f"{top}/app/pipe"))
    sparse_file(tree, f"{top}/app/sparse")


def sparse_file(tree: Tree, name: str):
    with open(tree.file(name, "begin"), "r+b") as file:
        file.seek(8 << 20)
        file.write(b"middle")
        file.truncate(16 << 20)


def write_system(machine: Machine):
    """The root partition: what says which machine this is, and folders worth keeping."""
    root, recovery, data = machine.uuids[ROOT], machine.uuids[RECOVERY], machine.uuids[DATA]
    with machine.mounted(ROOT) as folder:
        tree = Tree(folder, 1)
        tree.file("etc/fstab", f"# <file system> <mount point> <type> <options> <dump> <pass>\n"
                  f"UUID={root} / ext4 rw,relatime 0 1\n\n"
                  f"UUID={recovery} /recovery ext4 noauto 0 0\n"
                  f"UUID={data}\t/data\text4\trw,relatime 0\t2\n")
        tree.file("etc/os-version", "[Version]\nSystemName=Lab\nMinorVersion=1030\n")
        tree.file("etc/os-release", "ID=lab\nNAME=Lab\n")
        tree.file("usr/lib/kestro/desktop-version", "[Release]\nType=Professional\n")
        tree.file("etc/kestro/system-recovery.conf", f"UUID={recovery}\n")
        tree.file("etc/default/locale", "LANG=en_US.UTF-8\nLANGUAGE=en_US\n")
        tree.file("etc/shadow", "root:*:19000:0:99999:7:::\n", 0o640, (0, 42))
        for name in ("boot", "dev", "home", "media", "proc", "run", "sys", "root", "data"):
            tree.directory(name)
        tree.directory("tmp", 0o1777)
        rich_folder(tree, "usr", 24 << 20)
        rich_folder(tree, "opt", 6 << 20)
        rich_folder(tree, "var", 3 << 20)
        tree.settle_times()


def write_recovery(machine: Machine, data_uuid: str):
    """DATA_UUID is the root's own on a machine without a separate data partition."""
    with machine.mounted(RECOVERY) as folder:
        Tree(folder, 2).file("backup/_nox_data.info", data_uuid + "\n")


def write_initial_image(machine: Machine):
    """What the installer leaves for a reset: an image of the fresh system, and where it belongs."""
    with machine.mounted(RECOVERY) as folder:
        Tree(folder, 5).file("backup/system.info", machine.uuids[ROOT] + "\n")
        run("kestro-clone", "--tui", machine.disk.own(machine.disk.parts[ROOT]), folder / "backup/system.kim")


def write_data(machine: Machine):
    """The data partition: people's homes, old folders of the system, and things that lie about."""
    with machine.mounted(DATA) as folder:
        tree = Tree(folder, 3)
        for owner, user in ((1000, "ada"), (1001, "grace with blank")):
            write_home(tree, f"home/{user}", owner)
        tree.directory("home/empty user", owner=(1002, 1002))
        tree.file("home/.hidden file", "not a home")
        os.symlink("nowhere", tree.path("home/dangling"))
        rich_folder(tree, "opt", 1 << 20)
        rich_folder(tree, "var", 1 << 20)
        tree.file("opt/only on data", "old")
        tree.file("root/.profile", "root's own")
        tree.file("extra/file", "a top-level folder")
        tree.file("odd\nname", "a top-level file")
        tree.file(".dot", "a top-level dot file")
        tree.settle_times()
        run("chattr", "+i", folder / "home/ada/Documents/letter.txt")


def move_to_data_partition(machine: Machine):
    """On a machine in use these folders live on the data partition, and the system's own are gone."""
    with machine.mounted(ROOT) as folder:
        for name in ("opt", "var"):
            run("rm", "-rf", folder / name)


def write_home(tree: Tree, home: str, owner: int):
    tree.directory(home, 0o700, (owner, owner))
    for name in DOCUMENTS:
        tree.file(f"{home}/{name}", tree.noise(3000), 0o600, (owner, owner))
    for name in KEPT_LAUNCHERS + OTHER_LAUNCHERS + ("report.odt", ".hidden.txt"):
        tree.file(f"{home}/Desktop/{name}", f"[Desktop Entry]\nName={name}\n", 0o755, (owner, owner))
    tree.file(f"{home}/Desktop/folder.desktop/inside.desktop", "a folder is no launcher", owner=(owner, owner))
    tree.file(f"{home}/Documents/copy.desktop", "not on the desktop", owner=(owner, owner))


def damage_system(machine: Machine):
    """Files changed, deleted and added, permissions and owners broken, in every part of the root partition."""
    with machine.mounted(ROOT) as folder:
        tree = Tree(folder, 4)
        for top in filter(lambda name: (folder / name).exists(), ("usr", "opt", "var")):
            tree.file(f"{top}/app/program", tree.noise(1 << 20), 0o600, (1234, 1234))
            tree.file(f"{top}/app/added", "should not be here")
            os.unlink(tree.path(f"{top}/app/attributed"))
            os.chmod(tree.path(f"{top}/app/setuid"), 0o777)
            run("setfacl", "-b", tree.root / top / "app/shared")
            os.removexattr(tree.path(f"{top}/app/pinger"), "security.capability")
            os.rename(tree.path(f"{top}/linked"), tree.path(f"{top}/moved"))
            os.utime(tree.path(f"{top}/app/empty"))
            run("chattr", "+i", folder / top / "app/added")
        tree.file("etc/os-version", "")
