#!/usr/bin/env python3
"""Tests of bench/compare.py on stored results, and on programs that print chosen times: compare_test.py COMPARE.PY"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

COMPARE = pathlib.Path(sys.argv.pop(1)).resolve()
RESULTS = pathlib.Path(__file__).parent / "results"
SUFFIX = "/iterations:1/manual_time"

# A benchmark whose rows have the times in rows.json, one after the other. The first two answers only set the number of
# calls.
PROGRAM = """#!/usr/bin/env python3
import json, pathlib, sys
folder = pathlib.Path(__file__).parent
rows = json.loads((folder / "rows.json").read_text())
(folder / "options").write_text(" ".join(sys.argv[1:]))
if "--benchmark_list_tests" in sys.argv:
    print("\\n".join(rows))
    sys.exit()
assert "--serve" in sys.argv
position = folder / "position"
log = folder.parent.parent / "order"
for line in sys.stdin:
    name = line.strip() + "/iterations:1/manual_time"
    if name in rows:
        times, asked = rows[name], 0
        print("ready", flush=True)
        continue
    asked += 1
    if asked <= 2:
        print(times[0], flush=True)
        continue
    index = int(position.read_text()) if position.exists() else 0
    position.write_text(str(index + 1))
    with open(log, "a") as file:
        file.write(folder.parent.name + " ")
    print(times[index % len(times)], flush=True)
"""


def compare(*arguments):
    done = subprocess.run([sys.executable, "-B", COMPARE, *arguments], capture_output=True, text=True, check=False)
    named = re.findall(r"^(slower|faster) +(\S+)", done.stdout, re.MULTILINE)
    return done.returncode, {row: word for word, row in named}, done.stdout + done.stderr


class Results(unittest.TestCase):
    def compare(self, before, after):
        return compare(RESULTS / before, RESULTS / after)

    def test_names_what_differs_by_more_than_its_noise(self):
        status, named, text = self.compare("before.json", "after.json")
        # dilate3x3 has one fast run before the change; mean is slower in half of its runs
        self.assertEqual(named, {"add/u8/64x64/VariantAvx2": "slower", "not/u8/64x64/VariantAvx2": "faster"})
        self.assertIn("5 rows: 1 slower, 1 faster, 1 with a noise above 5 %", text)
        self.assertEqual(status, 1)

    def test_what_is_faster_is_no_failure(self):
        status, named, _ = self.compare("single_after.json", "single_before.json")
        self.assertEqual((status, named), (0, {"add/u8/64x64/VariantAvx2": "faster"}))

    def test_equal_results_name_nothing(self):
        status, named, _ = self.compare("before.json", "before.json")
        self.assertEqual((status, named), (0, {}))

    def test_the_noise_of_a_single_run_is_the_recorded_one(self):
        status, named, _ = self.compare("single_before.json", "single_after.json")
        self.assertEqual(named, {"add/u8/64x64/VariantAvx2": "slower"})
        self.assertEqual(status, 1)

    def test_rows_that_fail_are_named(self):
        status, _, text = self.compare("single_before.json", "single_failed.json")
        self.assertIn("fails after the change: sub/u8/64x64/VariantAvx2: the result is not", text)
        self.assertEqual(status, 1)

    def test_missing_rows_are_named(self):
        status, _, text = self.compare("before.json", "single_after.json")
        self.assertIn("missing after the change: copy/u8/64x64/VariantAvx2", text)
        self.assertEqual(status, 1)

    def test_wrong_arguments(self):
        self.assertEqual(self.compare("before.json", "absent.json")[0], 2)
        self.assertEqual(compare(RESULTS / "before.json", RESULTS / "after.json", "--variant=all")[0], 2)


class Folders(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.root = pathlib.Path(self.scratch.name)

    def tearDown(self):
        self.scratch.cleanup()

    def folder(self, name, rows):
        bench = self.root / name / "bench"
        bench.mkdir(parents=True)
        (bench / "rows.json").write_text(json.dumps({row + SUFFIX: times for row, times in rows.items()}))
        (bench / "zorvan_bench").write_text(PROGRAM)
        (bench / "zorvan_bench").chmod(0o755)
        return self.root / name

    def test_a_slower_row_is_named(self):
        before = self.folder("before", {"add": [40], "copy": [25]})
        after = self.folder("after", {"add": [44], "copy": [25]})
        status, named, _ = compare(before, after, "--rounds=2")
        self.assertEqual((status, named), (1, {"add": "slower"}))

    def test_the_programs_run_alternately_with_the_options(self):
        before, after = self.folder("before", {"add": [40]}), self.folder("after", {"add": [40]})
        status, named, _ = compare(before, after, "--rounds=4", "--variant=VariantAvx2")
        self.assertEqual((status, named), (0, {}))
        order = (self.root / "order").read_text().split()
        self.assertEqual(order, "before after after before before after after before".split())
        options = (after / "bench" / "options").read_text().split()
        self.assertIn("--variant=VariantAvx2", options)

    def test_rows_in_doubt_are_measured_again(self):
        before = self.folder("before", {"add": [40]})
        # the machine is slow during the first two runs
        after = self.folder("after", {"add": [60, 60, 40, 40, 40, 40, 40, 40]})
        status, named, _ = compare(before, after, "--rounds=2")
        self.assertEqual((status, named), (0, {}))
        self.assertGreater((self.root / "order").read_text().split().count("after"), 2)

    def test_a_row_that_vanishes(self):
        before = self.folder("before", {"add": [40], "not": [30]})
        after = self.folder("after", {"add": [40]})
        status, _, text = compare(before, after, "--rounds=2")
        self.assertEqual(status, 1)
        self.assertIn("missing after the change: not", text)

    def test_a_folder_without_a_benchmark(self):
        (self.root / "empty").mkdir()
        status, _, text = compare(self.folder("before", {"add": [40]}), self.root / "empty")
        self.assertEqual(status, 1)
        self.assertIn("is missing; build the target zorvan_bench", text)


if __name__ == "__main__":
    os.environ["PYTHONDONTWRITEBYTECODE"] = "1"
    unittest.main()
