# SPDX-License-Identifier: GPL-3.0-or-later
"""One run of the program: streams its log, notices how it goes, takes pictures of its pages."""
import pathlib
import re
import subprocess
import sys
import threading
import time

from .process import LabError, stop, wait_until
from .services import Services

PROGRAM = "/usr/bin/kestro-recovery-gui"
SUCCEEDED, FAILED = "task finished!", "MainWindow::onFailed(), saveLogToRecovery"
SAVED = "saved log to recovery gui"
JOB_STARTED = re.compile(r"\] job start:")
JOB_LIMIT = 600


class ProgramRun:
    """with ProgramRun(services, workspace) as run: …; the program ends with the block at the latest."""

    def __init__(self, services: Services, workspace: pathlib.Path):
        self.services, self.workspace = services, workspace
        self.lines: list[str] = []
        self.process: subprocess.Popen | None = None

    def __enter__(self):
        self.process = subprocess.Popen([PROGRAM], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, cwd="/root", text=True, errors="replace")
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()
        return self

    def __exit__(self, *_):
        stop(self.process)
        self.reader.join(5)

    def read(self):
        with open(self.workspace / "console.log", "a", encoding="utf-8") as log:
            for line in self.process.stdout:
                self.lines.append(line.rstrip("\n"))
                log.write(line)
                sys.stdout.write(line)
                sys.stdout.flush()

    def said(self, text: str) -> bool:
        return any(text in line for line in self.lines)

    def wait_for(self, *texts: str, seconds: float = 60) -> str:
        """The first of TEXTS that the program has logged. Its end before that is an error."""
        def found():
            heard = next((text for text in texts if self.said(text)), None)
            if heard is None and self.process.poll() is not None:
                self.reader.join(5)
                heard = next((text for text in texts if self.said(text)), None)
                if heard is None:
                    raise LabError(f"the program ended with code {self.process.returncode}, without saying {texts[0]!r}")
            return heard
        return wait_until(found, seconds, f"the program says {' or '.join(map(repr, texts))}")

    def picture(self, name: str):
        self.services.screenshot(self.workspace / f"{name}.png")

    def watch_task(self, auto_reboot: bool = False) -> bool:
        """Follows a task to its end, with pictures of the working page and of the end page; whether it succeeded."""
        watcher = threading.Thread(target=self.picture_work, daemon=True)
        watcher.start()
        ending = self.wait_for(SUCCEEDED, FAILED, seconds=JOB_LIMIT)
        self.wait_for(SAVED)
        watcher.join(10)
        time.sleep(1)
        if not auto_reboot:
            self.picture("end-page")
        return ending == SUCCEEDED

    def picture_work(self):
        """While a job runs; the latest job that ran long enough is the one that is seen."""
        seen = 0
        while not self.said(SUCCEEDED) and not self.said(FAILED) and self.process.poll() is None:
            started = sum(1 for line in self.lines if JOB_STARTED.search(line))
            if started > seen:
                seen = started
                time.sleep(0.4)
                self.picture("working-page")
            time.sleep(0.1)
