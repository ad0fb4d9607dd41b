# SPDX-License-Identifier: GPL-3.0-or-later
"""The stories that the lab can tell, by name. Each leaves its findings in the Checks of the Lab it is given."""
import dataclasses
import typing

from ..machine import SIZES, TARGET
from .backup import backup, backup_too_small
from .reset import factory_reset, keep_files, live
from .restore import restore, restore_refused
from .startup import startup
from .story import Lab


@dataclasses.dataclass
class Scenario:
    tell: typing.Callable[[Lab], None]
    target_size: int = SIZES[TARGET]  # MiB


SCENARIOS = {
    "backup": Scenario(backup),
    "backup-too-small": Scenario(backup_too_small, target_size=24),
    "restore": Scenario(restore),
    "restore-refused": Scenario(restore_refused, target_size=256),
    "factory-reset": Scenario(factory_reset),
    "keep-files": Scenario(keep_files),
    "live": Scenario(live),
    "startup": Scenario(startup),
}
