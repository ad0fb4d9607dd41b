# SPDX-License-Identifier: GPL-3.0-or-later
"""The stories that the whole machine can tell, by name. Each leaves its findings in the Checks of its Story."""
import dataclasses
import typing

from ..installed import Kind
from ..story import Story
from .backup import backup
from .restore import restore


@dataclasses.dataclass
class Scenario:
    tell: typing.Callable[[Story], None]
    kind: Kind = Kind()


SCENARIOS = {
    "backup": Scenario(backup),
    "restore": Scenario(restore),
}
# A backup, and a restore of it.
SMOKE = "restore"
