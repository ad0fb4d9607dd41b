# SPDX-License-Identifier: GPL-3.0-or-later
"""What must hold at the end of a scenario: one line each, and the evidence where it does not hold."""
import pathlib
import tarfile

from . import compare
from .machine import LABELS, RECOVERY, TARGET, Machine
from .process import run

EVIDENCE_LINES = 20
LOG = "kestro-recovery-gui.log"


class Checks:
    def __init__(self):
        self.failed: list[str] = []

    def that(self, text: str, holds: bool, evidence=""):
        """Prints how it is; EVIDENCE is a text or a list of lines, shown only when it does not hold."""
        print(f"{'ok  ' if holds else 'FAIL'} {text}", flush=True)
        if holds:
            return
        self.failed.append(text)
        lines = evidence.splitlines() if isinstance(evidence, str) else evidence
        for line in lines[:EVIDENCE_LINES]:
            print(f"       {line}")
        if len(lines) > EVIDENCE_LINES:
            print(f"       … and {len(lines) - EVIDENCE_LINES} more")

    def same(self, text: str, expected: dict, actual: dict, ignored=lambda name, fact: False):
        """Two manifests; an empty one would make the comparison worthless."""
        found = compare.differences(expected, actual, ignored)
        self.that(f"{text} ({len(expected)} entries)", len(expected) > 1 and not found, found or "nothing to compare")


def root_time(name: str, fact: str) -> bool:
    """The top folder's own time changes when an entry of it is written anew."""
    return name == "." and fact == "modified"


def folder_times(*names: str):
    """The times of these folders change because entries of them go or come."""
    return lambda name, fact: name in names and fact == "modified"


def holes(_: str, fact: str) -> bool:
    """An archive keeps what a sparse file holds, not where its holes are."""
    return fact == "holes"


def check_recovery_partition(checks: Checks, machine: Machine, ending: str):
    with machine.look(RECOVERY) as folder:
        check_recovery_folder(checks, folder, ending)


def check_recovery_folder(checks: Checks, folder: pathlib.Path, ending: str):
    """The task was taken once, and the log of the run is where the person is told to look."""
    log = folder / LOG
    text = log.read_text(encoding="utf-8", errors="replace") if log.exists() else ""
    checks.that("the pending task was deleted", not (folder / "backup/recovery.json").exists())
    checks.that(f"the log on the recovery partition holds {ending!r}", ending in text, text[-2000:])


def check_file_system(checks: Checks, machine: Machine, number: int):
    check_device(checks, LABELS[number], machine.disk.own(machine.disk.parts[number]))


def check_device(checks: Checks, name: str, device: str):
    """What a restore leaves must be sound, not only readable."""
    result = run("e2fsck", "-fn", device, check=False)
    checks.that(f"the file system {name!r} is sound", result.returncode == 0, result.stdout + result.stderr)


def check_image(checks: Checks, image: pathlib.Path, record: str, work: pathlib.Path):
    """The image tool calls the image good, and what it says about itself is right."""
    info = run("kestro-clone", "--kim-info", image, check=False)
    checks.that(f"{image.name} passes --kim-info", info.returncode == 0 and "invalid file" not in info.stdout + info.stderr,
                f"exit code {info.returncode}\n{info.stdout}{info.stderr}")
    copy = work / "DiskInfo"
    copy.unlink(missing_ok=True)
    read = run("kestro-clone", "--read-custom-file", f"kim://{image}/DiskInfo", copy, check=False)
    text = copy.read_text(encoding="utf-8") if copy.exists() else f"no record: {read.stdout}{read.stderr}"
    checks.that(f"the record in {image.name} is right", text.rstrip("\n") == record, text)


def check_verifies(checks: Checks, image: pathlib.Path):
    """Every byte of the image is read and compared with its checksums."""
    result = run("kestro-clone", "--verify", image, check=False)
    checks.that(f"{image.name} passes --verify", result.returncode == 0, result.stdout + result.stderr)


def check_archive(checks: Checks, scratch: pathlib.Path, archive: pathlib.Path, uuid: str, source: dict):
    """Begins with the description, and extracts into SCRATCH to what SOURCE, a manifest, tells of the folder."""
    name = archive.name.removesuffix(".tar")
    if not archive.exists():
        checks.that(f"{archive.name} was written", False)
        return
    with tarfile.open(archive) as members:
        first = members.next()
        text = members.extractfile(first).read().decode() if first and first.isfile() else ""
        checks.that(f"{archive.name} begins with datainfo", first is not None and first.name == "datainfo",
                    str(first))
        checks.that(f"datainfo of {archive.name} is right", text == f"UUID={uuid}\nDirectory={name}\n", text)
    run("tar", "--xattrs", "--xattrs-include=*", "-xpf", archive, "-C", scratch, name)
    checks.same(f"{archive.name} extracts to what was backed up", source, compare.manifest(scratch / name), holes)
    run("rm", "-rf", scratch / name)


def print_backup(machine: Machine, directory: str):
    with machine.look(TARGET) as target:
        print(f"\nThe backup directory {directory} holds:")
        print(run("ls", "-l", "--", target / directory, check=False).stdout)
