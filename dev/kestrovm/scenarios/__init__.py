# SPDX-License-Identifier: GPL-3.0-or-later
"""The stories that the whole machine can tell, by name. Each leaves its findings in the Checks of its Story."""
import dataclasses
import typing

from ..installed import Kind
from ..story import Story
from .backup import backup
from .disk import disk_backup, disk_restore
from .live import live
from .powercut import powercut
from .reset import factory_reset, keep_files
from .restore import restore, restore_with_loaders


@dataclasses.dataclass
class Scenario:
    tell: typing.Callable[[Story], None]
    kind: Kind = Kind()


SCENARIOS = {
    "backup": Scenario(backup),
    "restore": Scenario(restore),
    "bios": Scenario(restore_with_loaders),
    "uefi": Scenario(restore_with_loaders, Kind(uefi=True)),
    "disk-backup": Scenario(disk_backup),
    "disk-restore": Scenario(disk_restore),
    "factory-reset": Scenario(factory_reset, Kind("data")),
    "keep-files": Scenario(keep_files, Kind("data")),
    "live": Scenario(live),
    "lvm": Scenario(live, Kind("lvm")),
    "luks": Scenario(live, Kind("luks")),
    "powercut": Scenario(powercut),
}
# Rows that do not touch each other's disks. Each scenario of a row begins with what the first one left.
SMOKE = (("backup", "restore"),)
ALL = (("backup", "restore", "bios", "powercut"), ("uefi",), ("disk-backup", "disk-restore"),
       ("factory-reset", "keep-files"), ("live",), ("lvm",), ("luks",))
