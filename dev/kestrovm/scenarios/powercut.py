# SPDX-License-Identifier: GPL-3.0-or-later
"""The power goes at different moments of a backup and of a restore, and each time the machine is started again.

A moment is taken without ending the task: the machine stops, its disks are copied as they are, and it goes on. A copy
holds what the disks of a machine hold that is killed then.
"""
import os
import pathlib
import shutil
import time

from kestrolab.process import run
from kestrolab.program import FAILED, SUCCEEDED
from kestrolab.scenarios.backup import BACKUP

from .. import layout
from ..recovery import RecoveryRun
from ..story import TASK_LIMIT, Story
from ..view import View
from .backup import backup_tasks, with_backup
from .restore import RESTORE_TASKS, check_restored, damage_system

MOMENTS = int(os.environ.get("KESTRO_VM_MOMENTS", "10"))  # of each task
FIRST_DISTANCE = 3  # seconds
DISKS = ("system", "backup")


def powercut(story: Story):
    story.schedule("SystemBackup", backup_tasks())
    for moment in moments_of_task(story, "backup"):
        check_images(story, moment)
        lay_over(story, moment)
        story.check_boots(f"{moment.name}: the installed system starts by itself")
    story.lay_over(story.machine.system, story.machine.backup, None)
    with_backup(story)
    source, = story.manifests("root")
    damage_system(story)
    story.schedule("ManualRestore", RESTORE_TASKS)
    moments = moments_of_task(story, "restore")
    for moment in moments:
        check_images(story, moment)
        check_reaches_recovery(story, moment)
    restore_again(story, moments[len(moments) // 2], source)


def moments_of_task(story: Story, name: str) -> list[pathlib.Path]:
    """Folders with the disks at MOMENTS of the pending task, in equal distances from its first second to its last."""
    with story.recovery_system(chosen=True) as program:
        begun, distance, moments = time.monotonic(), FIRST_DISTANCE, []
        while not any(text in program.text for text in (SUCCEEDED, FAILED)) and time.monotonic() < begun + TASK_LIMIT:
            moments.append(copy_disks(story, program, f"{name}-{time.monotonic() - begun:04.0f}"))
            if len(moments) == 2 * MOMENTS:
                thin_out(moments)
                distance *= 2
            time.sleep(distance)
            program.look()
        story.checks.that(f"the {name} that is not cut off succeeds", SUCCEEDED in program.text, program.error())
    return [moments[place * (len(moments) - 1) // max(1, MOMENTS - 1)] for place in range(min(MOMENTS, len(moments)))]


def copy_disks(story: Story, program: RecoveryRun, name: str) -> pathlib.Path:
    folder = story.workspace / "moments" / name
    folder.mkdir(parents=True)
    program.computer.control.execute("stop")
    for disk in DISKS:
        run("cp", "--reflink=auto", "--sparse=always", story.workspace / f"{disk}.qcow2", folder)
    program.computer.control.execute("cont")
    (folder / "program.log").write_text(program.text, encoding="utf-8")
    return folder


def thin_out(moments: list[pathlib.Path]):
    """Every second one goes."""
    for moment in moments[1::2]:
        shutil.rmtree(moment)
    del moments[1::2]


def lay_over(story: Story, moment: pathlib.Path):
    story.lay_over(*(moment / f"{disk}.qcow2" for disk in DISKS), None)


def check_images(story: Story, moment: pathlib.Path):
    """What is no whole image does not count as one."""
    with View(moment / "backup.qcow2", layout.BACKUP_DISK) as view, view.mounted("backups") as target:
        for image in sorted((target / BACKUP).glob("*.kim")):
            info = run("kestro-clone", "--kim-info", image, check=False)
            counts = info.returncode == 0 and "invalid file" not in info.stdout + info.stderr
            whole = run("kestro-clone", "--verify", image, check=False).returncode == 0
            story.checks.that(f"{moment.name}: {image.name} {'counts and is whole' if counts else 'does not count'}",
                              whole or not counts, info.stdout + info.stderr)


def check_reaches_recovery(story: Story, moment: pathlib.Path):
    lay_over(story, moment)
    with story.recovery_system(chosen=True) as program:
        story.checks.that(f"{moment.name}: the machine reaches the recovery system", True)
        program.computer.picture(f"after-{moment.name}")


def restore_again(story: Story, moment: pathlib.Path, source: dict):
    lay_over(story, moment)
    story.schedule("ManualRestore", RESTORE_TASKS)
    story.carry_out(f"{moment.name}: a second restore succeeds")
    check_restored(story, source)
    story.check_boots("the installed system starts by itself after the second restore")
