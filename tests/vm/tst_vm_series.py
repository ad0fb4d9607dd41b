#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Scenarios that run as a series: none is lost from the table, and none goes on when the series ends."""
import pathlib
import sys
import tempfile
import threading
import time
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrovm import scenarios, series  # noqa: E402

# Leaves its name in the file "order" and a result, as a scenario does; "dies" leaves none.
SCENARIO = """
import json, pathlib, sys, time
folder, name = pathlib.Path(sys.argv[1]), sys.argv[2]
with open(folder / "order", "a") as order:
    print(name, file=order)
if name == "dies":
    sys.exit(7)
if name == "sleeps":
    time.sleep(60)
failed = ["it broke"] if name == "fails" else []
(folder / f"{name}.json").write_text(json.dumps({"scenario": name, "seconds": 1, "failed": failed}))
"""


class SeriesOfScenarios(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        patch = mock.patch.object(series, "WORK", self.folder)
        patch.start()
        self.addCleanup(patch.stop)
        self.series = series.Series([sys.executable, "-c", SCENARIO, str(self.folder)])

    def order(self) -> list[str]:
        path = self.folder / "order"
        return path.read_text().split() if path.exists() else []

    def test_each_is_in_the_table_and_an_old_result_does_not_count(self):
        series.Result("dies", 1, []).save()
        results = self.series.carry_out((("good", "fails"), ("dies",)), 2)
        self.assertEqual([(result.scenario, result.failed) for result in results],
                         [("good", []), ("fails", ["it broke"]), ("dies", ["it ended with exit code 7"])])
        self.assertLess(self.order().index("good"), self.order().index("fails"))

    def test_what_runs_ends_with_the_series(self):
        begun = time.monotonic()

        def stop_when_begun():
            while not self.order() and time.monotonic() - begun < 20:
                time.sleep(0.01)
            self.series.stop()
        threading.Thread(target=stop_when_begun, daemon=True).start()
        failed = [result.failed[0] for result in self.series.carry_out((("sleeps", "good"),), 1)]
        self.assertLess(time.monotonic() - begun, 30)
        self.assertEqual(failed, ["it ended with exit code -15", "it was not begun"])
        self.assertEqual(self.order(), ["sleeps"])

    def test_all_is_every_scenario_once(self):
        self.assertEqual(sorted(sum(scenarios.ALL, ())), sorted(scenarios.SCENARIOS))


if __name__ == "__main__":
    unittest.main()
