# SPDX-License-Identifier: GPL-3.0-or-later
"""Resets of a machine in use, with a data partition: everything is as delivered, but for what is promised to stay."""
import dataclasses
import os

from kestrolab import checks as check
from kestrolab.content import Tree
from kestrolab.process import run
from kestrolab.program import SUCCEEDED
from kestrolab.scenarios.backup import ARCHIVED
from kestrolab.scenarios.reset import (data_after_reset, kept_by_factory_reset, kept_with_personal_files, top_of, without)

from ..story import Story
from .restore import break_system


@dataclasses.dataclass
class UsedMachine:
    """What lay on the partitions when it was delivered (FRESH, with the folders that the initial image holds), and later."""
    fresh: dict
    data: dict
    recovery: dict


def factory_reset(story: Story):
    reset(story, [{"command": "refresh-data-partition", "args": []}], kept_by_factory_reset)


def keep_files(story: Story):
    reset(story, [{"command": "restore-partitions", "args": []}], kept_with_personal_files)


def reset(story: Story, tasks: list[dict], kept_of_data):
    before = use_machine(story)
    story.schedule("SystemRestore", tasks)
    story.carry_out("the reset succeeded")
    check_reset(story, before, kept_of_data)
    story.check_boots("the installed system starts by itself after the reset")


def use_machine(story: Story) -> UsedMachine:
    root, data = story.manifests("root", "data")
    fresh = {name: entry for name, entry in root.items() if top_of(name) not in ARCHIVED}
    fresh |= {name: entry for name, entry in data.items() if top_of(name) in ARCHIVED}
    with story.system_disk(writable=True) as view:
        with view.mounted("data") as folder:
            leave_traces(Tree(folder, 13))
            run("chattr", "+i", folder / "home/ada/Documents/report.txt")
        with view.mounted("root") as folder:
            break_system(folder)
    return UsedMachine(fresh, *story.manifests("data", "recovery"))


def leave_traces(tree: Tree):
    """Of people and of programs."""
    tree.file("home/ada/Documents/report.txt", tree.noise(5000), 0o600, (1000, 1000))
    tree.file("home/left over", "no home")
    tree.file("opt/added/program", tree.noise(1 << 16), 0o755)
    tree.file("var/added", "should not be here")
    tree.file("extra/file", "a top-level folder")
    tree.file("odd\nname", "a top-level file")
    os.unlink(tree.path("opt/rich/app/attributed"))


def check_reset(story: Story, before: UsedMachine, kept_of_data):
    with story.system_disk() as view:
        with view.mounted("recovery") as folder:
            check.check_recovery_folder(story.checks, folder, SUCCEEDED)
        for name in ("boot", "root", "data", "recovery"):
            check.check_device(story.checks, name, view.device(name))
    root, data, recovery = story.manifests("root", "data", "recovery")
    story.checks.same("the recovery partition is as it was, but for the log", before.recovery,
                      without(recovery, {check.LOG}), check.folder_times(".", "backup"))
    story.checks.same("the system is the delivered one, without what lies on the data partition",
                      {name: entry for name, entry in before.fresh.items() if top_of(name) not in ARCHIVED}, root,
                      check.root_time)
    expected, emptied = data_after_reset(before, kept_of_data)
    changed = check.folder_times(".", *emptied)
    story.checks.same("the data partition holds what was kept and the delivered folders", expected, data,
                      lambda name, fact: changed(name, fact) or
                      (top_of(name) in ARCHIVED and check.holes(name, fact)))
