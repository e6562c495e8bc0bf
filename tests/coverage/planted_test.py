#!/usr/bin/env python3
"""Plants lines and branches that have not run, and wrong lists."""

import os
import tempfile
import unittest

from counts import CODE, COMMON, EXPANSION, GAP, Counts
from holes import Exceptions, Hole, Sources, holesOf, unusedFunctions

VARIANTS = ["VariantAvx", "VariantAvx2"]
PATH = "zorvan/kernels/f.h"
SOURCE = """\
template <int width> int f(int x) {
  if (x > width) {
    // a comment
    return x;
  }
  auto next = [](int y) {
    return y + 1;
  };
  return next(x);
}
int g() { return 0; }
ENTRY(h)
void s(E e) {
#ifdef __AVX__
  switch (e) {
    case E::a: g();
  }
#endif
}
"""


class Planted(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = folder.name
        self.file = os.path.join(self.root, PATH)
        self.write(PATH, SOURCE)
        self.sources = Sources(self.root)

    def write(self, path, text):
        file = os.path.join(self.root, path)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "w", encoding="utf-8") as out:
            out.write(text)
        return file

    def record(self, name, regions, branches=()):
        return {"name": name, "filenames": [self.file, self.file],
                "regions": [[*region, 0, 0, CODE] if len(region) == 5 else region for region in regions],
                "branches": [[*branch, 0, 0, 4] for branch in branches]}

    def f(self, unit, times, timesTrue, suffix=""):
        """f without its lambda."""
        return self.record(f"{unit}:_Z1f{suffix}",
                           [(1, 35, 10, 2, times), (2, 7, 2, 16, times), (2, 17, 2, 18, timesTrue, 0, 0, GAP),
                            (2, 18, 5, 4, timesTrue), (5, 4, 6, 3, times - timesTrue, 0, 0, GAP),
                            (6, 3, 10, 2, times - timesTrue)],
                           [(2, 7, 2, 16, timesTrue, times - timesTrue)])

    def next(self, unit, times):
        return self.record(f"{unit}:_Z1fUl", [(6, 25, 8, 4, times)])

    def holes(self, records, unit, counted=None):
        counts = Counts(VARIANTS, records, counted or {record["name"] for record in records})
        files = self.sources.ofLibrary(counts.units[unit])
        return {(hole.what, line) for hole, lines in holesOf(self.sources, files).items() for line in lines}


class Holes(Planted):
    def test_what_runs(self):
        records = [self.f("VariantAvx", 5, 2), self.next("VariantAvx", 3)]
        self.assertEqual(self.holes(records, "VariantAvx"), set())

    def test_a_path(self):
        records = [self.f("VariantAvx", 5, 0), self.next("VariantAvx", 5)]
        self.assertEqual(self.holes(records, "VariantAvx"), {("line", 4), ("never true", 2)})

    def test_the_rest_of_a_function(self):
        records = [self.f("VariantAvx", 5, 5), self.next("VariantAvx", 0)]
        self.assertEqual(self.holes(records, "VariantAvx"),
                         {("never false", 2), ("line", 6), ("line", 7), ("line", 9)})

    def test_a_lambda(self):
        records = [self.f("VariantAvx", 5, 2), self.next("VariantAvx", 0)]
        self.assertEqual(self.holes(records, "VariantAvx"), {("line", 6), ("line", 7)})

    def test_any_instantiation_is_enough(self):
        records = [self.f("VariantAvx", 5, 0, "A"), self.f("VariantAvx", 2, 2, "B"), self.next("VariantAvx", 5)]
        self.assertEqual(self.holes(records, "VariantAvx"), set())

    def test_another_variant_is_not(self):
        records = [self.f("VariantAvx", 5, 0), self.f("VariantAvx2", 2, 1),
                   self.next("VariantAvx", 5), self.next("VariantAvx2", 1)]
        self.assertEqual(self.holes(records, "VariantAvx"), {("line", 4), ("never true", 2)})
        self.assertEqual(self.holes(records, "VariantAvx2"), set())

    def test_lowered_limits_are(self):
        records = [self.f("VariantAvx", 5, 0), self.f("lowered.VariantAvx", 2, 1), self.next("VariantAvx", 5)]
        self.assertEqual(self.holes(records, "VariantAvx"), set())

    def test_routines_belong_to_their_variant(self):
        for name, unit in (("_ZN8RoutinesINS0_10VariantAvxEE1gEv", "VariantAvx"),
                           ("_ZN8RoutinesINS0_11VariantAvx2EE1gEv", "VariantAvx2"), ("_Z1gv", COMMON)):
            records = [self.record(name, [(11, 9, 11, 22, 0)])]
            self.assertEqual(self.holes(records, unit), {("line", 11)}, name)

    def test_a_function_of_a_macro(self):
        records = [self.record("VariantAvx:_Z1h", [(12, 1, 12, 6, 0, 0, 1, EXPANSION), (11, 9, 11, 22, 0, 1, 0, CODE)])]
        self.assertEqual(self.holes(records, "VariantAvx"), {("line", 11), ("line", 12)})

    def test_an_unused_function(self):
        records = [self.f("VariantAvx", 1, 0), self.record("VariantAvx:_Z1g", [(11, 9, 11, 22, 0)])]
        self.assertNotIn(("line", 11), self.holes(records, "VariantAvx", {"VariantAvx:_Z1f"}))
        self.assertEqual(Counts(VARIANTS, records, {"VariantAvx:_Z1f"}).unused, {(self.file, (11, 9, 11, 22))})
        self.assertEqual(unusedFunctions(self.sources, {(self.file, (11, 9, 11, 22))}),
                         {Hole(PATH, "unused", "int g() { return 0; }"): [11]})
        records.append(self.record("VariantAvx2:_Z1g", [(11, 9, 11, 22, 0)]))
        self.assertEqual(Counts(VARIANTS, records, {"VariantAvx2:_Z1g"}).unused, {(self.file, (1, 35, 10, 2))})


    def test_what_is_no_code(self):
        records = [self.record("VariantAvx:_Z1s", [(13, 13, 19, 2, 3), (16, 5, 16, 20, 3)],
                               [(15, 11, 15, 12, 0, 3), (16, 5, 16, 14, 3, 0)])]
        self.assertEqual(self.holes(records, "VariantAvx"), {("never false", 16)})
        records = [self.record("VariantAvx:_Z1s", [(13, 13, 19, 2, 0), (16, 5, 16, 20, 0)])]
        self.assertEqual(self.holes(records, "VariantAvx"), {("line", 13), ("line", 15), ("line", 16)})


class List(Planted):
    units = [*VARIANTS, COMMON]
    hole = Hole(PATH, "never true", "x > width")
    line = f"VariantAvx | {PATH} | never true | x > width\n"

    def complaints(self, text, holes):
        list_ = Exceptions(self.write("list.txt", text), VARIANTS, self.units)
        return list_.complaints + list_.compare("VariantAvx", holes)

    def test_a_list_that_agrees(self):
        self.assertEqual(self.complaints("# A reason\n# in two lines.\n" + self.line, {self.hole: [2]}), [])
        self.assertEqual(self.complaints("# A reason.\n" + self.line.replace("VariantAvx", "all variants"),
                                         {self.hole: [2]}), [])

    def test_what_is_on_one_side(self):
        self.assertEqual(self.complaints("", {self.hole: [2]}),
                         [f"VariantAvx: {PATH}:2: never true: x > width"])
        self.assertEqual(self.complaints("# A reason.\n" + self.line.replace("VariantAvx", "VariantAvx2"),
                                         {self.hole: [2]}), [f"VariantAvx: {PATH}:2: never true: x > width"])
        self.assertEqual(self.complaints("# A reason.\n" + self.line, {}),
                         [f"VariantAvx: {PATH}: is on the list, but runs: never true: x > width"])

    def test_wrong_lines(self):
        self.assertIn("no reason", self.complaints(self.line, {})[0])
        self.assertIn("no reason", self.complaints("# Of others.\n\n" + self.line, {})[0])
        self.assertIn("not of the form", self.complaints("# A reason.\nVariantAvx | f.h\n", {})[0])
        self.assertIn("no such units", self.complaints("# A reason.\n" + self.line.replace("Avx", "Avx1"), {})[0])


if __name__ == "__main__":
    unittest.main()
