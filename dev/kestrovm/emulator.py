# SPDX-License-Identifier: GPL-3.0-or-later
"""One switched-on computer: QEMU in software emulation, with its screen, keyboard, mouse and plug."""
import dataclasses
import os
import pathlib
import shutil
import struct
import subprocess
import tempfile

from kestrolab.process import LabError, stop, wait_until

from .console import Line, Shell
from .qmp import Control
from .sockets import connected

MEMORY = 2560  # MiB: the recovery system runs from RAM
# Not "max": with it QEMU 7.2 says to be an AMD processor whose idle loop leaves runnable processes waiting for ever, and
# a processor that has "monitor" never sleeps in emulation.
PROCESSOR = "Nehalem,-monitor"
# For every kernel: the emulated processors' counters agree, but the kernel's own test of that says otherwise on a busy
# host, and then every look at the time is an access to an emulated device (half of the processor time of a start). What
# guards real processors costs another quarter.
KERNEL_PARAMETERS = "console=tty0 console=ttyS0,115200 tsc=reliable mitigations=off"
FIRMWARE = pathlib.Path("/usr/share/OVMF")
TABLET_RANGE = 0x7FFF  # the absolute axes of QEMU's tablet


@dataclasses.dataclass
class Drive:
    image: pathlib.Path
    serial: str
    format: str = "qcow2"


@dataclasses.dataclass
class Kernel:
    """Started directly, as from a rescue stick, instead of what the drives hold."""
    kernel: pathlib.Path
    initrd: pathlib.Path
    parameters: str


class Computer:
    """with Computer(…) as computer: …; the plug is pulled at the end of the block at the latest.

    A restart of the guest ends it too, so that the disks can be looked at between two starts.
    """

    def __init__(self, workspace: pathlib.Path, drives: list[Drive], kernel: Kernel | None = None,
                 variables: pathlib.Path | None = None, label: str = ""):
        """VARIABLES: the firmware's memory, for UEFI instead of BIOS. LABEL begins the names of pictures."""
        self.workspace, self.drives, self.kernel, self.variables = workspace, drives, kernel, variables
        self.label = label
        self.sockets = pathlib.Path(tempfile.mkdtemp(prefix="kestro-vm-"))

    def command(self) -> list[str]:
        words = ["qemu-system-x86_64", "-nodefaults", "-no-user-config", "-no-reboot", "-display", "none",
                 "-machine", "q35", "-accel", os.environ.get("KESTRO_VM_ACCEL", "tcg,thread=multi,tb-size=512"),
                 "-cpu", PROCESSOR, "-smp", "2", "-m", str(MEMORY), "-vga", "std", "-device", "virtio-rng-pci",
                 "-device", "virtio-tablet-pci",
                 "-qmp", f"unix:{self.sockets}/qmp,server=on,wait=off"]
        for name in ("console", "shell"):
            words += ["-chardev", f"socket,id={name},path={self.sockets}/{name},server=on,wait=off,"
                      f"logfile={self.workspace / name}.log,logappend=on", "-serial", f"chardev:{name}"]
        for number, drive in enumerate(self.drives):
            words += ["-drive", f"if=none,id=drive{number},file={drive.image},format={drive.format},cache=unsafe,"
                      "discard=unmap,detect-zeroes=unmap",
                      "-device", f"virtio-blk-pci,drive=drive{number},serial={drive.serial}"]
        if self.variables:
            words += ["-drive", f"if=pflash,format=raw,readonly=on,file={FIRMWARE / 'OVMF_CODE_4M.fd'}",
                      "-drive", f"if=pflash,format=raw,file={self.variables}"]
        if self.kernel:
            words += ["-kernel", str(self.kernel.kernel), "-initrd", str(self.kernel.initrd),
                      "-append", self.kernel.parameters]
        return words

    def __enter__(self):
        self.errors = open(self.workspace / "qemu.log", "a", encoding="utf-8")
        self.process = subprocess.Popen(self.command(), stdin=subprocess.DEVNULL, stdout=self.errors, stderr=self.errors)
        try:
            qmp, console, shell = (connected(f"{self.sockets}/{name}", self.is_on) for name in ("qmp", "console", "shell"))
            self.control, self.console, self.shell = Control(qmp), Line(console), Shell(shell)
        except (OSError, LabError) as error:
            self.pull_plug()
            raise LabError(f"{error}; see {self.workspace}/qemu.log") from None
        return self

    def __exit__(self, *_):
        self.pull_plug()
        for part in (self.control, self.console, self.shell, self.errors):
            part.close()
        shutil.rmtree(self.sockets, ignore_errors=True)

    def pull_plug(self):
        """The power is gone at once; what the guest had not written is lost."""
        self.process.kill()
        self.process.wait()

    def is_on(self) -> bool:
        return self.process.poll() is None

    def wait_for_end(self, seconds: float) -> str:
        """Why it went off: "guest-reset" (a restart) or "guest-shutdown"."""
        wait_until(lambda: not self.is_on(), seconds, "the machine restarts or switches itself off")
        return self.control.shutdown_reason()

    def stop(self):
        stop(self.process)

    def picture(self, name: str):
        """Of the screen, into the workspace."""
        self.control.execute("screendump", filename=str(self.workspace / f"{self.label}{name}.png"), format="png")

    def screen_size(self) -> tuple[int, int]:
        """Width and height in pixels, as the head of a picture tells them (PNG specification, IHDR)."""
        self.picture("screen")
        return struct.unpack(">II", (self.workspace / f"{self.label}screen.png").read_bytes()[16:24])

    def choose_recovery_system(self, seconds: float):
        """The last entry of the installed system's boot menu, which is shown and read on the serial line too.

        Where that menu is gone, the machine is expected to go there by itself.
        """
        if self.console.expect("Kestro Recovery", "Linux version", seconds=seconds)[0] == "Kestro Recovery":
            self.console.send("\x05\r")  # Ctrl+E goes to the last entry (GRUB manual, "The menu interface")

    def press(self, *keys: str):
        """Keys pressed together, by their QEMU names (qapi: QKeyCode)."""
        self.control.execute("send-key", keys=[{"type": "qcode", "data": key} for key in keys])

    def click(self, right: float, down: float):
        """RIGHT and DOWN are parts of the screen's width and height, from its top left corner."""
        def move(axis, part):
            return {"type": "abs", "data": {"axis": axis, "value": round(part * TABLET_RANGE)}}

        def button(down):
            return {"type": "btn", "data": {"button": "left", "down": down}}
        self.control.execute("input-send-event", events=[move("x", right), move("y", down)])
        self.control.execute("input-send-event", events=[button(True)])
        self.control.execute("input-send-event", events=[button(False)])
