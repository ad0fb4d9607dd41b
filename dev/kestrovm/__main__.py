# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs scenarios of the whole machine; dev/vm calls it."""
import argparse
import os
import pathlib
import shutil
import signal
import sys
import time

from kestrolab.process import LabError

from . import product
from .installed import installed
from .scenarios import ALL, SCENARIOS, SMOKE
from .series import Result, Series, table, this_program
from .stages import WORK
from .story import Story


def tell(name: str, recovery_system: pathlib.Path) -> Result:
    scenario = SCENARIOS[name]
    machine = installed(scenario.kind, recovery_system)
    workspace = WORK / name
    shutil.rmtree(workspace, ignore_errors=True)
    workspace.mkdir(parents=True)
    print(f"logs and pictures in {workspace}", flush=True)
    begun = time.monotonic()
    story = Story(workspace, scenario.kind, machine)
    try:
        scenario.tell(story)
    except LabError as error:
        story.checks.that("the scenario came to its end", False, str(error))
    story.keep_recovery_log()
    result = Result(name, time.monotonic() - begun, story.checks.failed)
    result.save()
    return result


def main() -> int:
    parser = argparse.ArgumentParser(prog="dev/vm", description=__doc__)
    parser.add_argument("scenario", choices=[*SCENARIOS, "smoke", "all"])
    parser.add_argument("--image", type=pathlib.Path,
                        help="folder with a recovery system that is built already (default: builds that of this checkout)")
    parser.add_argument("--at-once", type=int, default=1, metavar="N", help="how many machines of a series run at a time")
    options = parser.parse_args()
    # Also where an interrupt was ignored from the beginning, as in the background of a shell.
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda received, _: sys.exit(128 + received))
    recovery_system = product.recovery_system(options.image)
    os.environ["PATH"] = f"{product.image_tool(recovery_system)}:{os.environ['PATH']}"
    rows = {"all": ALL, "smoke": SMOKE}.get(options.scenario)
    if rows:
        results = Series(this_program("--image", recovery_system)).carry_out(rows, options.at_once)
        (WORK / f"{options.scenario}.md").write_text(table(results) + "\n", encoding="utf-8")
        print(f"\n{table(results)}")
    else:
        results = [tell(options.scenario, recovery_system)]
    failed = any(result.failed for result in results)
    print("FAIL" if failed else "PASS")
    return 1 if failed else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except LabError as problem:
        sys.exit(f"dev/vm: {problem}")
