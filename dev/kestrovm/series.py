# SPDX-License-Identifier: GPL-3.0-or-later
"""Several scenarios, each in a process of its own, and what became of them."""
import concurrent.futures
import dataclasses
import json
import pathlib
import subprocess
import sys
import threading

from .stages import WORK


@dataclasses.dataclass
class Result:
    scenario: str
    seconds: float
    failed: list[str]

    @staticmethod
    def file(scenario: str) -> pathlib.Path:
        return WORK / f"{scenario}.json"

    def save(self):
        self.file(self.scenario).write_text(json.dumps(dataclasses.asdict(self)), encoding="utf-8")


def table(results: list[Result]) -> str:
    """In Markdown."""
    rows = [f"| `{result.scenario}` | {'FAIL' if result.failed else 'PASS'} | {result.seconds / 60:.1f} | "
            f"{'; '.join(result.failed)} |" for result in results]
    return "\n".join(["| scenario | result | minutes | what did not hold |", "|---|---|---|---|", *rows])


class Series:
    """Carries out rows of scenarios, some rows at the same time; COMMAND is that of a scenario without its name."""

    def __init__(self, command: list[str]):
        self.command = command
        self.lock = threading.Lock()
        self.running: list[subprocess.Popen] | None = []

    def carry_out(self, rows: tuple[tuple[str, ...], ...], at_once: int) -> list[Result]:
        """The scenarios of a row follow each other. However this ends, no process of them goes on."""
        with concurrent.futures.ThreadPoolExecutor(at_once) as threads:
            try:
                return sum(threads.map(lambda row: [self.one(name) for name in row], rows), [])
            finally:
                self.stop()

    def one(self, scenario: str) -> Result:
        Result.file(scenario).unlink(missing_ok=True)
        with self.lock:
            if self.running is None:
                return Result(scenario, 0, ["it was not begun"])
            process = subprocess.Popen([*self.command, scenario], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                       text=True, errors="replace")
            self.running.append(process)
        with process:
            for line in filter(str.strip, process.stdout):
                print(f"{scenario}: {line}", end="", flush=True)
        if not Result.file(scenario).exists():
            return Result(scenario, 0, [f"it ended with exit code {process.returncode}"])
        return Result(**json.loads(Result.file(scenario).read_text(encoding="utf-8")))

    def stop(self):
        with self.lock:
            running, self.running = self.running, None
        for process in running or []:
            if process.poll() is None:
                process.terminate()


def this_program(*words) -> list[str]:
    return [sys.executable, "-m", "kestrovm", *map(str, words)]
