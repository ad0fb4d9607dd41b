# SPDX-License-Identifier: GPL-3.0-or-later
"""The packages and the recovery system of this very checkout, built when anything that goes into them has changed."""
import os
import pathlib
import shutil

from kestrolab.process import LabError, run

from .emulator import Kernel
from .stages import PROJECT, digest, sources, stage

PRODUCT = ("CMakeLists.txt", "CMakePresets.json", "cmake", "docs", "packaging", "recovery-image", "resources", "scripts",
           "src", "translations", "dev/package")
FILES = ("vmlinuz", "initrd.img", "filesystem.squashfs", "manifest.txt")


def recovery_system(ready_made: pathlib.Path | None) -> pathlib.Path:
    """The folder with the recovery system: READY_MADE, or one of the current sources."""
    if ready_made:
        missing = [name for name in FILES if not (ready_made / name).exists()]
        if missing:
            raise LabError(f"{ready_made} lacks {', '.join(missing)}")
        return ready_made
    return stage("recovery-system", digest(*sources(*PRODUCT)), build)


def build(folder: pathlib.Path):
    environment = os.environ | {"KESTRO_SKIP_INSTALL": "1"}
    for command in (["dev/package"], ["recovery-image/build"]):
        print(f"running {command[0]} …", flush=True)
        run(PROJECT / command[0], *command[1:], env=environment)
    for name in FILES:
        shutil.copyfile(PROJECT / "build/recovery-image" / name, folder / name)


def as_rescue_stick(system: pathlib.Path, serial: str, parameters: str) -> Kernel:
    """The recovery system started from the drive with that serial number, whose folder "image" holds it."""
    return Kernel(system / "vmlinuz", system / "initrd.img",
                  f"boot=live live-media-path=image live-media=/dev/disk/by-id/virtio-{serial} {parameters}")
