# SPDX-License-Identifier: GPL-3.0-or-later
"""What every scenario works with: disks, starts of the machine, findings."""
import contextlib
import dataclasses
import json
import pathlib
import re
import shutil

from kestrolab import compare
from kestrolab.checks import Checks
from kestrolab.process import run

from . import base, layout
from .emulator import Computer, Drive, Kernel
from .installed import PASSPHRASE, Installed, Kind
from .recovery import RecoveryRun
from .stages import CACHE, digest, stage
from .starting import started
from .view import View, make_layer

START_LIMIT = 1800
TASK_LIMIT = 5400
RECOVERY_ENTRY = "kestro-recovery"
ASKED = "Please unlock disk"
SILENCE = 60  # seconds; a boot menu comes up in less than ten


@dataclasses.dataclass
class Up:
    """What the installed system says about itself when it is up."""
    swap: str
    failed: str


class Story:
    """WORKSPACE takes the disks' layers, logs and pictures; the installed machine itself is never written to."""

    def __init__(self, workspace: pathlib.Path, kind: Kind, machine: Installed):
        self.workspace, self.kind, self.machine = workspace, kind, machine
        self.checks = Checks()
        self.starts = 0
        self.system, self.backup = workspace / "system.qcow2", workspace / "backup.qcow2"
        self.variables = workspace / "variables" if kind.uefi else None
        self.lay_over(machine.system, machine.backup, machine.variables)

    def lay_over(self, system: pathlib.Path, backup: pathlib.Path, variables: pathlib.Path | None):
        """The disks become those, until they are written to."""
        for layer, below in ((self.system, system), (self.backup, backup)):
            layer.unlink(missing_ok=True)
            make_layer(layer, below)
        if variables:
            shutil.copyfile(variables, self.variables)

    def once(self, name: str, *made_by, tell):
        """The disks as TELL(story) leaves them: told now, or as it was told earlier for the same machine."""
        saved = self.saved(name, *made_by)
        if saved.exists():
            self.lay_over(saved / "system.qcow2", saved / "backup.qcow2", saved / "variables" if self.variables else None)
        else:
            tell(self)

    def keep(self, name: str, *made_by):
        """For once(); nothing is kept of a story in which something did not hold."""
        if self.checks.failed:
            return
        shutil.rmtree(self.saved(name, *made_by), ignore_errors=True)
        stage(f"{name}-{self.kind.name()}", self.key(*made_by), self.copy_disks)

    def saved(self, name: str, *made_by) -> pathlib.Path:
        return CACHE / f"{name}-{self.kind.name()}-{self.key(*made_by)}"

    def key(self, *made_by) -> str:
        return digest(self.machine.system.parent.name, pathlib.Path(__file__), *made_by)

    def copy_disks(self, folder: pathlib.Path):
        for file in filter(None, (self.system, self.backup, self.variables)):
            run("cp", "--reflink=auto", "--sparse=always", file, folder)

    def computer(self, kernel: Kernel | None = None, *further: Drive) -> Computer:
        self.starts += 1
        drives = [Drive(self.system, layout.SYSTEM_SERIAL), Drive(self.backup, layout.BACKUP_SERIAL), *further]
        return Computer(self.workspace, drives, kernel, self.variables, f"{self.starts}-")

    def unlock(self, computer: Computer):
        """Types the passphrase of an encrypted root, as the person must at each start."""
        if self.kind.layout == "luks":
            computer.console.expect(ASKED, seconds=START_LIMIT)
            computer.console.send(f"{PASSPHRASE}\r")

    @contextlib.contextmanager
    def installed_system(self):
        """A start of the installed system, up and with a shell; gives (computer, Up)."""
        def begin(computer: Computer, _is_second: bool) -> Up:
            self.unlock(computer)
            said = computer.console.expect(rf"{base.UP} swap=\[(.*?)\] failed=\[(.*?)\]", seconds=START_LIMIT)
            computer.shell.wait_until_ready(START_LIMIT)
            return Up(said[1], said[2].strip())
        with started(self.computer, begin) as up:
            yield up

    @contextlib.contextmanager
    def recovery_system(self, *drives: Drive, kernel: Kernel | None = None, chosen: bool = False):
        """A start of the recovery system: by KERNEL, CHOSEN in the boot menu, or as the boot menu was told."""
        def begin(computer: Computer, is_second: bool) -> RecoveryRun:
            if chosen or (is_second and kernel is None):
                computer.choose_recovery_system(START_LIMIT)
            self.unlock(computer)
            run_of_program = RecoveryRun(computer)
            run_of_program.wait_for_program(START_LIMIT)
            return run_of_program
        with started(lambda: self.computer(kernel, *drives), begin) as (_, run_of_program):
            yield run_of_program

    def schedule(self, kind: str, tasks: list[dict]):
        """Leaves a task on the recovery partition of the machine, which is off."""
        with self.system_disk(writable=True) as view, view.mounted("recovery") as folder:
            (folder / "backup/recovery.json").write_text(task_text(kind, tasks), encoding="utf-8")

    def restart_with_task(self, computer: Computer, kind: str, tasks: list[dict]):
        """As the desktop does: a task that needs nobody, and one start of the recovery system."""
        text = task_text(kind, tasks, auto_reboot=True)
        computer.shell.run(f"mount /recovery && printf %s '{text}' >/recovery/backup/recovery.json && umount /recovery")
        computer.shell.run(f"grub-reboot {RECOVERY_ENTRY}")
        computer.shell.send("systemctl reboot\r")
        reason = computer.wait_for_end(START_LIMIT)
        self.checks.that("the installed system restarts", reason == "guest-reset", reason)

    def carry_out(self, text: str, *drives: Drive, kernel: Kernel | None = None):
        """A start of the recovery system with a pending task, which succeeds (TEXT says so), and its last button."""
        with self.recovery_system(*drives, kernel=kernel, chosen=not kernel) as run_of_program:
            self.finish(run_of_program, text)

    def finish(self, run_of_program: RecoveryRun, text: str):
        succeeded = run_of_program.watch_task(TASK_LIMIT)
        self.checks.that(text, succeeded, run_of_program.error())
        run_of_program.click_button()
        reason = run_of_program.computer.wait_for_end(START_LIMIT)
        wanted = "guest-reset" if succeeded else "guest-shutdown"
        self.checks.that("the last button ends the session as it says", reason == wanted, reason)

    def check_boots(self, text: str, use=lambda computer: None):
        """The installed system starts by itself, with its swap and without failures; USE(computer) works with it then."""
        with self.installed_system() as (computer, up):
            self.checks.that(text, True)
            self.checks.that("its swap has the UUID that fstab names", up.swap == layout.SWAPPED.uuid, up.swap)
            self.checks.that("no unit of it failed", up.failed == "", up.failed)
            computer.picture("installed-system")
            use(computer)
            computer.shell.send("poweroff\r")
            computer.wait_for_end(START_LIMIT)

    def check_does_not_start(self, *signs: str):
        """One of SIGNS appears on the console."""
        with self.computer() as computer:
            computer.console.expect(*signs, seconds=START_LIMIT)
            computer.picture("damaged-system")
        self.checks.that("the damaged system does not start", True)

    def check_nothing_starts(self):
        """Neither a boot menu nor a kernel appears on the console."""
        with self.computer() as computer:
            said = computer.console.heard_within(SILENCE, "GRUB", "Linux version")
            computer.picture("nothing-starts")
        self.checks.that("without its boot loaders the machine starts nothing", not said, said)

    def recovery_kernel(self) -> Kernel:
        """The recovery system of the disk, started past the disk's boot loaders, as from a rescue medium."""
        with self.system_disk() as view, view.mounted("recovery") as folder:
            linux, initrd = (folder / "kestro/boot.cfg").read_text(encoding="utf-8").splitlines()
            _, kernel, parameters = linux.split(" ", 2)
            for name, path in (("vmlinuz", kernel), ("initrd.img", initrd.split()[1])):
                shutil.copyfile(folder / path.lstrip("/"), self.workspace / name)
        return Kernel(self.workspace / "vmlinuz", self.workspace / "initrd.img", f"BOOT_IMAGE={kernel} {parameters}")

    def system_disk(self, writable: bool = False) -> View:
        return View(self.system, layout.SYSTEM_DISKS[self.kind.layout], writable)

    def backup_disk(self, writable: bool = False) -> View:
        return View(self.backup, layout.BACKUP_DISK, writable)

    def manifests(self, *names: str) -> list[dict]:
        """Of these partitions of the system's disk."""
        found = []
        with self.system_disk() as view:
            for name in names:
                with view.mounted(name) as folder:
                    found.append(compare.manifest(folder))
        return found

    def keep_recovery_log(self):
        """A copy of the log that the recovery partition holds."""
        with self.system_disk() as view, view.mounted("recovery") as folder:
            for log in folder.glob("kestro-recovery-*"):
                shutil.copy(log, self.workspace / f"recovery-partition-{re.sub('[^a-z.-]', '', log.name)}")


def task_text(kind: str, tasks: list[dict], auto_reboot: bool = False) -> str:
    return json.dumps({"type": kind, "tasks": tasks, "locale": "en_US", "auto_reboot": auto_reboot})
