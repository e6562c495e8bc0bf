#!/usr/bin/env python3
"""Tests of the scripts that write results into the documentation: publish_test.py BENCH"""

import json
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(sys.argv.pop(1)).resolve()))

import publish  # noqa: E402
import report  # noqa: E402
import results  # noqa: E402

try:
    import matplotlib
except ImportError:
    matplotlib = None


def row(operation="add", size="64x64", variant="VariantAvx2", ns=40.0, limit_ns=20.0, **more):
    compared = {"call_ns": 5.0, "plain_ns": 80.0, "plain_noise": 0.01, "limit_ns": limit_ns, "limit_noise": 0.02,
                "limit_by": "loop"} if limit_ns else {
                    "call_ns": None, "plain_ns": None, "plain_noise": None, "limit_ns": None, "limit_noise": None,
                    "limit_by": ""}
    return results.Row(**{"operation": operation, "pixels": "u8", "size": size, "variant": variant, "layout": "tight",
                          "ns": ns, "noise": 0.01, **compared, **more})


def entry(name, ns, limit_ns=None):
    compared = {"plain_ns": 80.0, "plain_noise": 0, "limit_ns": limit_ns, "limit_noise": 0, "label": "loop"}
    return {"name": f"{name}/iterations:1/manual_time", "run_type": "iteration", "real_time": ns, "ours_noise": 0.01,
            **(compared if limit_ns else {})}


CONTEXT = {"processor": "A Processor", "kind": "AuthenticAMD family 25 model 1", "compiler": "12",
           "command": "./run bench", "date": "2026-11-22T10:00:00",
           "caches": [{"type": "Data", "size": 32768}, {"type": "Unified", "size": 524288}]}


class Scratch(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.root = pathlib.Path(self.scratch.name)

    def tearDown(self):
        self.scratch.cleanup()


class Results(Scratch):
    def test_rows_are_read_as_they_were_written(self):
        rows = [row(ns=41.25), row(size="640x480", ns=123400.0, limit_ns=None)]
        results.write_rows(self.root / "rows.csv", {"processor": "some, with: signs"}, rows)
        self.assertEqual(results.read_rows(self.root / "rows.csv"), ({"processor": "some, with: signs"}, rows))

    def test_shapes_are_read_as_they_were_written(self):
        rows = [row(size="33x480", ns=3.0), row(size="64x480", ns=4.0), row(size="64x480", ns=5.0, layout="odd")]
        results.write_shapes(self.root / "shapes.csv", {}, rows)
        self.assertEqual(results.read_shapes(self.root / "shapes.csv")[1],
                         {("add", "u8", "VariantAvx2", "tight"): {"33x480": 3.0, "64x480": 4.0},
                          ("add", "u8", "VariantAvx2", "odd"): {"64x480": 5.0}})

    def test_of_equal_names_the_fastest_compared_row_counts(self):
        compared, faster, alone = row(ns=40.0), row(ns=39.0), row(ns=30.0, limit_ns=None)
        self.assertEqual(results.fastest([compared, alone, faster]), [faster])

    def test_rows_of_the_library_only_take_the_lowest_limit(self):
        rows = [row(limit_ns=20.0), row(variant="VariantSse2", ns=60.0, limit_ns=None), row("sub", limit_ns=None)]
        self.assertEqual([(c.variant, c.to_limit, c.to_plain) for c in report.contests_of(rows, {})],
                         [("VariantAvx2", 2, 0.5), ("VariantSse2", 3, None)])


class Tables(unittest.TestCase):
    def test_the_worst_shape(self):
        # 33 pixels of bytes are compared with 64, and 65 with 96
        times = {"33x480": 40.0, "64x480": 64.0, "65x480": 195.0, "96x480": 96.0, "5x480": 900.0, "32x480": 32.0}
        ratio, width = publish.worst_ratio(times, "VariantAvx2", "u8")
        self.assertEqual((round(ratio, 6), width), (3, 65))
        lines = list(publish.shape_rows({"variants": "VariantAvx2"}, {("add", "u8", "VariantAvx2", "odd"): times}))
        self.assertEqual(lines[1], ("add", "u8", "odd", "**3.00 at 65**"))

    def test_the_summary_is_of_means_without_floods(self):
        rows = [row(ns=40.0), row("sub", ns=10.0), row("flood_comb", ns=1e6)]
        lines = list(publish.summary_rows({"variants": "VariantAvx2"}, list(report.contests_of(rows, {}))))
        self.assertEqual(lines[1:], [("VariantAvx2", "1.00"), ("plain loop", "4.00")])


@unittest.skipUnless(matplotlib, "no matplotlib")
class Page(Scratch):
    def publish(self):
        sys.argv = ["publish.py", str(self.root / "runs"), "abc123", str(self.root / "docs")]
        return publish.main()

    def setUp(self):
        super().setUp()
        (self.root / "runs").mkdir()
        (self.root / "docs").mkdir()
        (self.root / "docs" / "performance.md").write_text("before\n\n<!-- machines end -->\n")
        runs = {"small": [entry("add/u8/64x64/VariantAvx2", 40.0, 20.0)], "large": [], "chains": [],
                "variants": [entry("add/u8/64x64/VariantSse2", 90.0), entry("add/u8/64x64/VariantAvx2", 41.0)],
                "shapes": [entry(f"add/u8/{width}x480/VariantAvx2", 10.0 * width) for width in range(1, 131)]}
        for name, entries in runs.items():
            (self.root / "runs" / f"{name}.json").write_text(json.dumps({"context": CONTEXT, "benchmarks": entries}))

    def test_a_machine_has_one_section_tables_and_plots(self):
        self.assertEqual((self.publish(), self.publish()), (0, 0))
        page = (self.root / "docs" / "performance.md").read_text()
        self.assertEqual(page.count("### A Processor, family 25, model 1"), 1)
        self.assertIn("2026-11-22, commit abc123", page)
        self.assertIn("| VariantSse2 | 4.50 |", page)
        self.assertIn("| add | u8 | 20 | 4.50 | 2.00 |", (self.root / "docs/performance/amd_25_1.md").read_text())
        for name in ("speed", "variants", "reuse", "shapes"):
            self.assertIn("</svg>", (self.root / f"docs/performance/amd_25_1_{name}.svg").read_text())
            self.assertIn(f"(performance/amd_25_1_{name}.svg)", page)


if __name__ == "__main__":
    unittest.main()
