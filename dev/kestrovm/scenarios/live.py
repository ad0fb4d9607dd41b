# SPDX-License-Identifier: GPL-3.0-or-later
"""No task is pending: a person finds the way through the restore page with mouse and keys, and the machine is reset."""
import pathlib
import re
import time

from kestrolab import checks as check
from kestrolab import pointer
from kestrolab.program import SUCCEEDED
from kestrolab.scenarios.reset import kept_with_personal_files

from .. import layout
from ..recovery import RecoveryRun
from ..story import START_LIMIT, Story

SETTLED = 12  # seconds
# To the second choice and back; where only one is shown, to nowhere else. Each key with the name of its picture.
KEYS = {"plain": (("down", "second-choice"), ("up", "first-choice-again"))}
KEYS_OF_ONE_CHOICE = (("tab", "next"), ("down", "down"), ("down", "down-again"))
# What the program says of the machine when it starts.
FACTS = {"plain": {"isLvm": False, "isLuksCrypt": False}, "lvm": {"isLvm": True, "isLuksCrypt": False},
         "luks": {"isLuksCrypt": True}}
BREAK = f"mount /dev/disk/by-uuid/{layout.ROOT.uuid} /mnt && rm -rf /mnt/usr/lib/systemd && touch /mnt/usr/added && " \
        "umount /mnt"


def live(story: Story):
    """Also where the root lies on LVM or LUKS: there the page offers the reset alone."""
    fresh = story.manifests("root")[0] if story.kind.layout == "plain" else {}
    with story.recovery_system(chosen=True) as program:
        check_facts(story, program)
        program.computer.shell.run(BREAK)
        drive_reset(program, KEYS.get(story.kind.layout, KEYS_OF_ONE_CHOICE))
        program.wait_for("in setJobs", seconds=START_LIMIT)
        story.finish(program, "the reset succeeded")
    with story.system_disk() as view, view.mounted("recovery") as folder:
        check.check_recovery_folder(story.checks, folder, SUCCEEDED)
    if fresh:
        check_delivered(story, fresh)
    story.check_boots("the installed system starts by itself after the reset", lambda computer: story.checks.that(
        "what was changed in the system is gone", computer.shell.attempt("test ! -e /usr/added")[0] == 0))


def check_delivered(story: Story, fresh: dict):
    """But for the starters on desktops, which go because these lie on the same partition."""
    expected = {name: entry for name, entry in fresh.items() if kept_with_personal_files(name)}
    emptied = {str(pathlib.PurePath(name).parent) for name in fresh.keys() - expected.keys()}
    story.checks.same("the system is the delivered one", expected, *story.manifests("root"),
                      check.folder_times(".", *emptied))


def check_facts(story: Story, program: RecoveryRun):
    line = next(line for line in program.text.splitlines() if "MainWindow::initUI isLvm" in line)
    for name, wanted in FACTS[story.kind.layout].items():
        said = re.search(rf'{name}:\W*(\w+)', line)
        story.checks.that(f"the program knows whether {name}", said and said[1] == str(wanted).lower(), line)


def drive_reset(program: RecoveryRun, keys: tuple):
    """With the keys of this machine, then out of the question and into it again."""
    settle(program, "restore-page")
    for key, name in keys:
        program.computer.press(key)
        settle(program, name)
    program.click(pointer.RESTORE_NOW)
    settle(program, "question")
    program.computer.press("esc")
    settle(program, "question-answered-with-no")
    program.click(pointer.RESTORE_NOW)
    settle(program, "question-again")
    program.computer.press("ret")


def settle(program: RecoveryRun, name: str):
    """Time for a page or a dialog to come up on a slow machine, and a picture of it."""
    time.sleep(SETTLED)
    program.computer.picture(name)
