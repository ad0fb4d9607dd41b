# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures how the program starts, beside others of its kind on the same machine."""
import contextlib
import os
import pathlib
import shutil
import statistics

from .. import content, startcount
from ..machine import DATA, TARGET
from ..process import wait_until
from ..program import PROGRAM
from ..services import Services
from .backup import backup_tasks
from .story import Lab

ROUNDS = int(os.environ.get("KESTRO_BENCH_ROUNDS", "10"))
JOB = "] job start:"
LIVE, PENDING = "no pending task", "pending backup"
STARTS = {LIVE: [PROGRAM], PENDING: [PROGRAM], "GNOME Disks": ["gnome-disks"], "GParted": ["/usr/libexec/gpartedbin"],
          "Timeshift": ["timeshift-gtk"]}
OWN_GOAL, PEAK_GOAL, WORKING_GOAL = 150, 80, 3  # milliseconds, MiB, per cent
WATCHED = 20  # seconds
SESSION_BUS = "unix:path=/run/user/0/bus"


def startup(lab: Lab):
    # The other scenarios do without the package that this needs.
    from ..firstframe import Display
    os.environ.pop("DISPLAY", None)
    content.write_system(lab.machine)
    content.write_recovery(lab.machine, lab.machine.uuids[DATA])
    content.write_initial_image(lab.machine)
    with Services(lab.machine, lab.workspace) as services:
        start_session(services)
        screen = Display()
        for name in STARTS:  # what is read from the disk once stays in memory
            measure(lab, screen, name)
        starts = {name: [] for name in STARTS}
        for _ in range(ROUNDS):
            for name, measured in starts.items():
                measured.append(measure(lab, screen, name))
        for name, measured in starts.items():
            print_times(name, measured)
        for name in (LIVE, PENDING):
            print_requests(lab, screen, name)
        print_working_page(lab, screen)


def start_session(services: Services):
    """As the session of the recovery environment is."""
    os.environ.update(DBUS_SESSION_BUS_ADDRESS=SESSION_BUS, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb")
    services.start("dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={SESSION_BUS}")
    wait_until(pathlib.Path(SESSION_BUS.partition("=")[2]).exists, 10, "the session bus starts")


def measure(lab: Lab, screen, name: str, words=None):
    """One start with a machine that is in the same state each time."""
    with start(lab, screen, name, words) as program:
        return program.measure()


def start(lab: Lab, screen, name: str, words=None):
    from ..firstframe import StartedProgram
    lab.machine.unmount_everything()
    if name == PENDING:
        with lab.machine.mounted(TARGET) as target:
            shutil.rmtree(target / "backup", ignore_errors=True)
        lab.machine.schedule("SystemBackup", backup_tasks(lab.machine))
    return StartedProgram(screen, words or STARTS[name], (JOB,) if name == PENDING else ())


def print_times(name: str, starts):
    """Medians, with the fastest and the slowest first frame."""
    frames = [start.frame for start in starts]
    line = f"{name:16} first frame {middle(frames):5.0f} ms ({min(frames) * 1000:.0f} to {max(frames) * 1000:.0f}), " \
           f"own {middle(start.own for start in starts):4.0f} ms, peak {statistics.median(s.peak for s in starts):4.0f} MiB"
    if starts[0].marks:
        line += f", first job {middle(start.marks[JOB] for start in starts):.0f} ms"
    if name in (LIVE, PENDING):
        line += f" (goals: own {OWN_GOAL} ms, peak {PEAK_GOAL} MiB)"
    print(line, flush=True)


def middle(seconds) -> float:
    return statistics.median(seconds) * 1000


def print_requests(lab: Lab, screen, name: str):
    """One more start, slower than the measured ones because it is looked at."""
    trace = lab.workspace / f"{name}.commands"
    buses = {bus: lab.workspace / f"{name}.{bus}-bus" for bus in ("system", "session")}
    with contextlib.ExitStack() as monitors:
        for bus, log in buses.items():
            monitors.enter_context(startcount.monitored(f"--{bus}", log))
        start = measure(lab, screen, name, startcount.traced(STARTS[name], trace))
    until = start.begun + max(start.frame, *start.marks.values(), 0)
    print_counter(f"{name}: commands", startcount.commands(trace, until))
    for bus, log in buses.items():
        print_counter(f"{name}: calls on the {bus} bus", startcount.calls(log, until))


def print_working_page(lab: Lab, screen):
    """What the water takes while a job runs that says nothing."""
    with start(lab, screen, PENDING) as program:
        program.measure(settle=0)
        program.pause_children()
        share = program.use(WATCHED)
    print(f"working page: {share * 100:.1f} % of one core in {WATCHED} s (goal {WORKING_GOAL} %)", flush=True)


def print_counter(title: str, counted):
    listed = ", ".join(f"{name} {count}" for name, count in counted.most_common())
    print(f"{title}: {counted.total()}{listed and f' ({listed})'}", flush=True)
