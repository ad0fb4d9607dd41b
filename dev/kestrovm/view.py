# SPDX-License-Identifier: GPL-3.0-or-later
"""The disks of a computer that is switched off, looked at from outside, with the kernel's own file systems.

A disk is a chain of images. The storage daemon shows it as one file (through FUSE), which becomes a loop device.
"""
import pathlib
import shutil
import subprocess
import tempfile

from kestrolab.disk import LoopDisk, Mounted
from kestrolab.process import LabError, run, stop, wait_until

from .layout import number_of


class View:
    """with View(image, partitions) as view: …

    A look changes nothing: what the look itself writes (a replayed journal) goes into a layer that is thrown away.
    """

    def __init__(self, image: pathlib.Path, partitions, writable: bool = False):
        self.image, self.partitions, self.writable = image, partitions, writable

    def __enter__(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="kestro-view-", dir=self.image.parent))
        self.daemon = None
        try:
            self.disk = LoopDisk.attach(self.export(), len(self.partitions))
        except BaseException:
            self.clear_up()
            raise
        return self

    def __exit__(self, *_):
        try:
            self.disk.detach()
        finally:
            self.clear_up()

    def export(self) -> pathlib.Path:
        """The whole disk as one file."""
        image = self.image
        if not self.writable:
            image = self.work / "layer.qcow2"
            make_layer(image, self.image)
        shown = self.work / "disk.raw"
        shown.touch()
        self.daemon = subprocess.Popen(
            ["qemu-storage-daemon", "--blockdev", f"driver=file,node-name=file,filename={image}",
             "--blockdev", "driver=qcow2,node-name=disk,file=file",
             "--export", f"type=fuse,id=show,node-name=disk,mountpoint={shown},writable=on"],
            stdin=subprocess.DEVNULL)
        wait_until(lambda: shown.stat().st_size > 0 or self.daemon.poll() is not None, 30, "the disk is shown")
        if self.daemon.poll() is not None:
            raise LabError(f"qemu-storage-daemon could not show {image}")
        return shown

    def clear_up(self):
        if self.daemon:
            stop(self.daemon, 30)
        shutil.rmtree(self.work)

    def device(self, name: str) -> str:
        return self.disk.own(self.disk.parts[number_of(self.partitions, name) - 1])

    def mounted(self, name: str) -> Mounted:
        """The partition's files."""
        return Mounted(self.disk, number_of(self.partitions, name) - 1, self.work / "mount" / name,
                       "rw" if self.writable else "ro")


def make_layer(layer: pathlib.Path, below: pathlib.Path):
    """A new image that shows BELOW until it is written to."""
    form = "raw" if below.suffix == ".raw" else "qcow2"
    run("qemu-img", "create", "-q", "-f", "qcow2", "-F", form, "-b", below.resolve(), layer)
