# SPDX-License-Identifier: GPL-3.0-or-later
"""The place where the machine is seen: mounts, processes and network of its own, and a root in which nothing is the
host's for writing. Everything in it ends with the first process in it.
"""
import ctypes
import os
import pathlib
import re
import shlex
import signal
import stat
import subprocess

from .disk import LoopDisk
from .process import LabError, run

PLAIN_NODES = {"null": (1, 3), "zero": (1, 5), "full": (1, 7), "random": (1, 8), "urandom": (1, 9), "tty": (5, 0)}
PRIVATE_FOLDERS = {"run": "0755", "tmp": "1777", "media": "0755", "mnt": "0755", "home/kestro": "0755"}
SYSTEM_BUS = "unix:path=/run/dbus/system_bus_socket"
PATH = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"

# What would end the host's session, or ask for a password, is written down instead of executed.
RECORDED = ("usr/sbin/reboot", "usr/sbin/poweroff", "usr/sbin/halt", "usr/sbin/shutdown", "usr/bin/systemctl",
            "usr/bin/pkexec")
RECORDER = '#!/bin/bash\nprintf "%s\\n" "${{0##*/}}${{*:+ $*}}" >>{calls}\n'
# sudo's own ways: few variables get through, and the path is sudo's.
SUDO = ('#!/bin/bash\nprintf "sudo %s\\n" "$*" >>{calls}\n'
        'exec env -i LC_ALL="${{LC_ALL:-}}" DISPLAY="${{DISPLAY:-}}" PATH={path} HOME=/root USER=root LOGNAME=root'
        ' SHELL=/bin/bash "$@"\n')


def spawn_inside(words) -> subprocess.Popen:
    """Starts WORDS as the first process of new namespaces. When this process dies, all of them die."""
    return subprocess.Popen(
        ["unshare", "--mount", "--net", "--pid", "--ipc", "--fork", "--kill-child", "--propagation", "private", "--",
         *words], preexec_fn=die_with_parent, start_new_session=True)


def die_with_parent():
    set_death_signal = 1  # PR_SET_PDEATHSIG
    ctypes.CDLL(None).prctl(set_death_signal, signal.SIGKILL)


class Namespace:
    """To be entered once, by the first process that spawn_inside() started.

    WORKSPACE is the only folder of the host that can be written to, STAGE holds the installed programs.
    """

    def __init__(self, workspace: pathlib.Path, stage: pathlib.Path, project: pathlib.Path):
        self.workspace, self.stage, self.project = workspace, stage, project
        self.calls = workspace / "calls"
        self.layers = workspace / "namespace"
        self.root = self.layers / "root"

    def enter(self, disks: tuple[LoopDisk, ...], command_line: str):
        if os.getpid() != 1:
            raise LabError("the lab is entered by the first process of its namespace only")
        self.layers.mkdir(exist_ok=True)
        mount("tmpfs", self.layers, "-t", "tmpfs")
        for name in ("upper", "work", "root"):
            (self.layers / name).mkdir()
        others = host_mounts()
        mount("overlay", self.root, "-t", "overlay", "-o",
              f"lowerdir=/,upperdir={self.layers / 'upper'},workdir={self.layers / 'work'}")
        for folder in others:
            self.bind(folder, read_only=True)
        self.make_kernel_folders(command_line)
        self.make_devices(disks)
        for folder, mode in PRIVATE_FOLDERS.items():
            (self.root / folder).mkdir(parents=True, exist_ok=True)
            mount("tmpfs", self.root / folder, "-t", "tmpfs", "-o", f"mode={mode}")
        self.bind(self.project, read_only=True)
        self.bind(self.workspace)
        self.bring_display()
        self.install_programs()
        self.change_root()

    def bind(self, folder: pathlib.Path, read_only: bool = False):
        inside = self.root / str(folder).lstrip("/")
        if folder.is_dir():
            inside.mkdir(parents=True, exist_ok=True)
        mount(folder, inside, "--bind")
        if read_only:
            mount("none", inside, "-o", "remount,bind,ro")

    def make_kernel_folders(self, command_line: str):
        mount("proc", self.root / "proc", "-t", "proc")
        mount("sysfs", self.root / "sys", "-t", "sysfs")
        mount("tmpfs", self.root / "sys/firmware", "-t", "tmpfs")
        own = self.layers / "cmdline"
        own.write_text(command_line + "\n", encoding="utf-8")
        mount(own, self.root / "proc/cmdline", "--bind")

    def make_devices(self, disks: tuple[LoopDisk, ...]):
        """Only the nodes that every program needs, and those of the disks: no other device can be opened by name."""
        dev = self.root / "dev"
        mount("tmpfs", dev, "-t", "tmpfs", "-o", "mode=0755")
        for name, (major, minor) in PLAIN_NODES.items():
            os.mknod(dev / name, stat.S_IFCHR | 0o666, os.makedev(major, minor))
            os.chmod(dev / name, 0o666)
        for disk in disks:
            for device in [disk.device, *disk.parts]:
                os.mknod(dev / pathlib.Path(device).name, stat.S_IFBLK | 0o660, os.stat(disk.own(device)).st_rdev)
        for link, target in {"fd": "/proc/self/fd", "stdin": "fd/0", "stdout": "fd/1", "stderr": "fd/2",
                             "ptmx": "pts/ptmx"}.items():
            (dev / link).symlink_to(target)
        for folder, kind, options in (("pts", "devpts", "newinstance,ptmxmode=0666"), ("shm", "tmpfs", "mode=1777")):
            (dev / folder).mkdir()
            mount(kind, dev / folder, "-t", kind, "-o", options)

    def bring_display(self):
        """The display that the lab was started on stays within reach."""
        sockets, authority = pathlib.Path("/tmp/.X11-unix"), os.environ.get("XAUTHORITY", "")
        number = re.match(r"^:(\d+)", os.environ.get("DISPLAY", ""))
        if number is None or not (sockets / f"X{number[1]}").exists():
            os.environ.pop("DISPLAY", None)
            return
        self.bind(sockets)
        if os.path.exists(authority):
            copy = self.root / "run/display-authority"
            copy.write_bytes(pathlib.Path(authority).read_bytes())
            os.environ["XAUTHORITY"] = "/run/display-authority"

    def install_programs(self):
        copy = f"tar -C {shlex.quote(str(self.stage))} -c . | " \
               f"tar -C {shlex.quote(str(self.root))} -x --keep-directory-symlink"
        run("bash", "-o", "pipefail", "-c", copy)
        calls = shlex.quote(str(self.calls))
        for name in RECORDED:
            self.put_program(name, RECORDER.format(calls=calls))
        self.put_program("usr/bin/sudo", SUDO.format(calls=calls, path=PATH))

    def put_program(self, name: str, text: str):
        """A link to the real program is replaced, not followed."""
        path = self.root / name
        path.unlink(missing_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(0o755)

    def change_root(self):
        """Afterwards the host's own tree cannot be reached any more, not even by a wrong path."""
        (self.root / "host").mkdir()
        run("pivot_root", self.root, self.root / "host")
        os.chdir("/")
        run("umount", "--lazy", "/host")
        os.rmdir("/host")
        os.environ.update(PATH=PATH, HOME="/root", LANG="C.UTF-8", LC_ALL="C.UTF-8", DBUS_SYSTEM_BUS_ADDRESS=SYSTEM_BUS,
                          XDG_RUNTIME_DIR="/run/user/0")
        os.makedirs("/run/user/0", 0o700)
        if not pathlib.Path("/etc/machine-id").exists():
            pathlib.Path("/etc/machine-id").write_text("0" * 31 + "1\n", encoding="utf-8")


def mount(source, target, *options):
    run("mount", *options, source, target)


def host_mounts() -> list[pathlib.Path]:
    """Where the host has further disks or folders mounted, which the overlay of its root does not show."""
    hidden = ("/proc", "/sys", "/dev", "/run", "/tmp", "/media", "/mnt")
    points = []
    with open("/proc/self/mountinfo", encoding="utf-8", errors="surrogateescape") as table:
        for line in table:
            words = line.split()
            point = words[4].encode("utf-8", "surrogateescape").decode("unicode_escape")
            source = words[words.index("-") + 2]
            if source.startswith("/dev/") and point != "/" and not point.startswith(hidden):
                points.append(pathlib.Path(point))
    return points
