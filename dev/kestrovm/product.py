# SPDX-License-Identifier: GPL-3.0-or-later
"""The packages and the recovery system of this very checkout, built when anything that goes into them has changed."""
import os
import pathlib
import shutil

from kestrolab.process import LabError, run

from .emulator import Kernel
from .stages import PROJECT, digest, sources, stage

# Without the documents, which the image is stripped of.
PRODUCT = ("CMakeLists.txt", "CMakePresets.json", "cmake", "docs/CMakeLists.txt", "packaging", "recovery-image", "resources",
           "scripts", "src", "translations", "dev/package")
TOOL = "usr/bin/kestro-clone"
FILES = ("vmlinuz", "initrd.img", "filesystem.squashfs", "manifest.txt")


def recovery_system(ready_made: pathlib.Path | None) -> pathlib.Path:
    """The folder with the recovery system: READY_MADE, or one of the current sources."""
    if ready_made:
        missing = [name for name in FILES if not (ready_made / name).exists()]
        if missing:
            raise LabError(f"{ready_made} lacks {', '.join(missing)}")
        return ready_made
    return stage("recovery-system", digest(*sources(*PRODUCT)), build)


def image_tool(system: pathlib.Path) -> pathlib.Path:
    """The folder with the image tool of the recovery system, for looks at images from outside."""
    squashfs = system / "filesystem.squashfs"
    return stage("image-tool", digest(squashfs), lambda folder: run(
        "unsquashfs", "-quiet", "-no-progress", "-force", "-dest", folder, squashfs, TOOL)) / pathlib.Path(TOOL).parent


def build(folder: pathlib.Path):
    environment = os.environ | {"KESTRO_SKIP_INSTALL": "1"}
    for command in (["dev/package"], ["recovery-image/build"]):
        print(f"running {command[0]} …", flush=True)
        run(PROJECT / command[0], *command[1:], env=environment)
    for name in FILES:
        shutil.copyfile(PROJECT / "build/recovery-image" / name, folder / name)


def as_rescue_stick(system: pathlib.Path, serial: str, parameters: str) -> Kernel:
    """The recovery system started from the drive with that serial number, whose folder "recovery_live" holds it."""
    return Kernel(system / "vmlinuz", system / "initrd.img",
                  f"boot=live live-media-path=recovery_live live-media=/dev/disk/by-id/virtio-{serial} {parameters}")
