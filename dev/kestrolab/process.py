# SPDX-License-Identifier: GPL-3.0-or-later
"""Running tools, and the one way in which the lab gives up."""
import subprocess
import time


class LabError(Exception):
    """The lab itself could not go on; its text is for a person."""


def run(*words, check=True, **options) -> subprocess.CompletedProcess:
    """Runs a tool with its output captured as text; a failure tells the command and what it said."""
    command = [str(word) for word in words]
    result = subprocess.run(command, check=False, text=True, errors="surrogateescape", capture_output=True, **options)
    if check and result.returncode != 0:
        raise LabError(f"{' '.join(command)}: exit code {result.returncode}\n{result.stdout}{result.stderr}".rstrip())
    return result


def output_of(*words) -> str:
    return run(*words).stdout.strip()


def wait_until(condition, seconds: float, what: str):
    """The first true value of condition(); raises after SECONDS, saying that WHAT did not happen."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise LabError(f"{what}: not within {seconds:g} seconds")
        time.sleep(0.05)


def stop(process: subprocess.Popen, seconds: float = 5):
    """Ends a process that the lab started, politely first."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
