# SPDX-License-Identifier: GPL-3.0-or-later
"""What runs on the machine besides the program: udevd, the system bus, udisksd, and a display to look at."""
import os
import pathlib
import shutil
import subprocess

from .machine import Machine
from .namespace import SYSTEM_BUS
from .process import LabError, output_of, run, stop, wait_until

UDEVD = "/lib/systemd/systemd-udevd"
FORGOTTEN = ("/home/kestro", "/media")
UDISKSD = ("/usr/libexec/udisks2/udisksd", "/usr/lib/udisks2/udisksd")
BUS_CONFIGURATION = f"""<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>{SYSTEM_BUS}</listen>
  <policy context="default">
    <allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/><allow user="*"/>
  </policy>
</busconfig>
"""


class Services:
    """with Services(machine, logs): one start of the machine, from udevd to the display."""

    def __init__(self, machine: Machine, logs: pathlib.Path):
        self.machine, self.logs = machine, logs
        self.processes: list[subprocess.Popen] = []
        self.own_display = False

    def __enter__(self):
        try:
            self.forget_earlier_starts()
            self.start_udev()
            self.start_bus()
            self.start_udisks()
            self.start_display()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            stop(process)
        self.processes.clear()
        self.machine.unmount_everything()

    def start(self, *words, **options) -> subprocess.Popen:
        with open(self.logs / f"{pathlib.Path(words[0]).name}.log", "ab") as log:
            process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=log, stderr=log, **options)
        self.processes.append(process)
        return process

    def forget_earlier_starts(self):
        """The recovery system starts from the same state each time: what an earlier start logged proves nothing."""
        for folder in FORGOTTEN:
            for entry in os.scandir(folder):
                if entry.is_dir(follow_symlinks=False):
                    shutil.rmtree(entry.path)
                else:
                    os.unlink(entry.path)

    def start_udev(self):
        """In a network namespace of its own udevd speaks to the lab's programs only."""
        self.start(UDEVD)
        wait_until(pathlib.Path("/run/udev/control").exists, 10, "udevd starts")
        run("udevadm", "trigger", "--action=add",
            *(f"/sys/class/block/{pathlib.Path(device).name}"
              for disk in self.machine.disks() for device in [disk.device, *disk.parts]))
        run("udevadm", "settle", "--timeout=20")

    def start_bus(self):
        configuration = pathlib.Path("/run/dbus/lab.conf")
        configuration.parent.mkdir(exist_ok=True)
        configuration.write_text(BUS_CONFIGURATION, encoding="utf-8")
        socket = pathlib.Path(SYSTEM_BUS.partition("=")[2])
        socket.unlink(missing_ok=True)
        self.start("dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile")
        wait_until(socket.exists, 10, "the system bus starts")

    def start_udisks(self):
        daemon = next((path for path in UDISKSD if os.path.exists(path)), None)
        if daemon is None:
            raise LabError("udisksd is not installed")
        self.start(daemon)
        for disk in self.machine.disks():
            for number, part in enumerate(disk.parts):
                uuid = disk.uuid(number)
                wait_until(lambda: known_uuid(part) == uuid, 20, f"udisksd knows {part}")

    def start_display(self):
        """The display that the lab was started on, if it could be brought in; else one that nobody sees."""
        if os.environ.get("DISPLAY") and run("xdotool", "getdisplaygeometry", check=False).returncode == 0:
            return
        self.own_display = True
        os.makedirs("/tmp/.X11-unix", 0o1777, exist_ok=True)
        os.environ["DISPLAY"] = ":77"
        os.environ.pop("XAUTHORITY", None)
        self.start("Xvfb", ":77", "-screen", "0", "1280x800x24", "-nolisten", "tcp")
        wait_until(lambda: run("xdotool", "getdisplaygeometry", check=False).returncode == 0, 20, "Xvfb starts")

    def screenshot(self, file: pathlib.Path):
        """The whole display when it is the lab's own, else the program's window only."""
        window = "root"
        if not self.own_display:
            window = output_of("xdotool", "search", "--onlyvisible", "--class", "kestro").partition("\n")[0]
        run("import", "-window", window, file)


def known_uuid(device: str) -> str:
    """What udisksd says about a device; empty while it does not know it."""
    name = pathlib.Path(device).name
    answer = run("busctl", "--system", "get-property", "org.freedesktop.UDisks2",
                 f"/org/freedesktop/UDisks2/block_devices/{name}", "org.freedesktop.UDisks2.Block", "IdUUID",
                 check=False).stdout
    return answer.partition('"')[2].rstrip('"\n')
