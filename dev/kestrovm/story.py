# SPDX-License-Identifier: GPL-3.0-or-later
"""What every scenario works with: the machine's disks, its starts, and the findings."""
import contextlib
import dataclasses
import json
import pathlib
import re
import shutil

from kestrolab.checks import Checks

from . import base, layout
from .emulator import Computer, Drive, Kernel
from .installed import Installed, Kind
from .recovery import RecoveryRun
from .view import View, make_layer

START_LIMIT = 1800
TASK_LIMIT = 5400
RECOVERY_ENTRY = "kestro-recovery"


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
        self.system, self.backup = workspace / "system.qcow2", workspace / "backup.qcow2"
        make_layer(self.system, machine.system)
        make_layer(self.backup, machine.backup)
        self.variables = None
        if machine.variables:
            self.variables = workspace / "variables"
            shutil.copyfile(machine.variables, self.variables)

    def computer(self, kernel: Kernel | None = None, *further: Drive) -> Computer:
        drives = [Drive(self.system, layout.SYSTEM_SERIAL), Drive(self.backup, layout.BACKUP_SERIAL), *further]
        return Computer(self.workspace, drives, kernel, self.variables)

    @contextlib.contextmanager
    def installed_system(self):
        """A start of the installed system, up and with a shell; gives (computer, Up)."""
        with self.computer() as computer:
            said = computer.console.expect(rf"{base.UP} swap=\[(.*?)\] failed=\[(.*?)\]", seconds=START_LIMIT)
            computer.shell.wait_until_ready(START_LIMIT)
            yield computer, Up(said[1], said[2].strip())

    @contextlib.contextmanager
    def recovery_system(self):
        """A start of whatever the boot menu has been told to start, expected to be the recovery system."""
        with self.computer() as computer:
            run = RecoveryRun(computer)
            run.wait_for_program(START_LIMIT)
            yield run

    def leave_task(self, computer: Computer, kind: str, tasks: list[dict], auto_reboot: bool = False):
        """On the recovery partition, as the desktop does."""
        task = json.dumps({"type": kind, "tasks": tasks, "locale": "en_US", "auto_reboot": auto_reboot})
        computer.shell.run(f"mount /recovery && printf %s '{task}' >/recovery/backup/recovery.json && umount /recovery")

    def restart_into_recovery(self, computer: Computer):
        """Once, as the desktop does."""
        computer.shell.run(f"grub-reboot {RECOVERY_ENTRY}")
        computer.shell.send("systemctl reboot\r")
        reason = computer.wait_for_end(START_LIMIT)
        self.checks.that("the installed system restarts", reason == "guest-reset", reason)

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

    def system_disk(self, writable: bool = False) -> View:
        return View(self.system, layout.SYSTEM_DISKS[self.kind.layout], writable)

    def backup_disk(self, writable: bool = False) -> View:
        return View(self.backup, layout.BACKUP_DISK, writable)

    def keep_recovery_log(self):
        """A copy of the log that the recovery partition holds."""
        with self.system_disk() as view, view.mounted("recovery") as folder:
            for log in folder.glob("kestro-recovery-*"):
                shutil.copy(log, self.workspace / f"recovery-partition-{re.sub('[^a-z.-]', '', log.name)}")
