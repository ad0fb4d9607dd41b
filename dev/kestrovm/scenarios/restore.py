# SPDX-License-Identifier: GPL-3.0-or-later
"""A system that does not start any more is put back from its backup."""
from kestrolab import checks as check
from kestrolab import compare
from kestrolab.content import Tree
from kestrolab.process import run
from kestrolab.program import SUCCEEDED
from kestrolab.scenarios.backup import ARCHIVED, BACKUP

from .. import layout
from ..recovery import RecoveryRun
from ..story import START_LIMIT, TASK_LIMIT, Story
from .backup import make_backup

DOES_NOT_START = r"No init found|Kernel panic|\(initramfs\)"
RESTORE_TASKS = [{"command": "restore-partitions",
                  "args": [f"UUID:{layout.TARGET.uuid}", f"/{BACKUP}", f"UUID:{layout.ROOT.uuid}"]}]


def restore(story: Story):
    source = make_backup(story)
    story.check_boots("the installed system starts by itself after the backup",
                      lambda computer: story.leave_task(computer, "ManualRestore", RESTORE_TASKS))
    damage_system(story)
    check_does_not_start(story)
    restore_and_restart(story)
    check_restored(story, source)
    story.check_boots("the installed system starts by itself after the restore")


def damage_system(story: Story):
    """Nothing is left that could start, and what an archive holds is damaged too."""
    with story.system_disk(writable=True) as view, view.mounted("root") as folder:
        tree = Tree(folder, 11)
        for name in ("usr/bin", "usr/lib/systemd", "usr/lib64", "opt/rich/linked", "var/lib/rich/app/attributed"):
            run("rm", "-rf", folder / name)
        tree.file("opt/rich/app/program", tree.noise(1 << 20), 0o600, (1234, 1234))
        tree.file("opt/added", "should not be here")
        tree.file("usr/added", "should not be here")
        run("chattr", "+i", folder / "opt/added")


def check_does_not_start(story: Story):
    with story.computer() as computer:
        computer.console.expect(DOES_NOT_START, seconds=START_LIMIT)
        computer.picture("damaged-system")
    story.checks.that("the damaged system does not start", True)


def restore_and_restart(story: Story):
    """The recovery system is chosen in the boot menu, and its last button pressed."""
    with story.computer() as computer:
        computer.choose_last_menu_entry(START_LIMIT)
        program = RecoveryRun(computer)
        program.wait_for_program(START_LIMIT)
        succeeded = program.watch_task(TASK_LIMIT)
        story.checks.that("the restore succeeded", succeeded, program.error())
        program.click_button()
        reason = computer.wait_for_end(START_LIMIT)
        story.checks.that("the last button restarts the machine", reason == "guest-reset", reason)


def check_restored(story: Story, source: dict):
    with story.system_disk() as view:
        with view.mounted("recovery") as folder:
            check.check_recovery_folder(story.checks, folder, SUCCEEDED)
        for name in ("boot", "root", "recovery"):
            check.check_device(story.checks, name, view.device(name))
        with view.mounted("root") as folder:
            # The folders out of the archives have lost their holes; everything else is as it was.
            story.checks.same("the system is as it was when it was saved", source, compare.manifest(folder),
                              lambda name, fact: check.root_time(name, fact) or
                              (name.startswith(ARCHIVED) and check.holes(name, fact)))
