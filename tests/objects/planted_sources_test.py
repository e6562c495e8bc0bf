#!/usr/bin/env python3
"""Plants violations of the checks of sources into a small tree."""

import os
import tempfile
import unittest

import sources

KERNEL = "zorvan/primitives/kernels/copy/copy_row.h"
LAYER = "zorvan/primitives/kernels/simd/vectors.h"
LOAD = "auto v = _mm_loadu_si128(p);\n"


class Planted(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = folder.name

    def plant(self, path, code):
        file = os.path.join(self.root, path)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "w", encoding="utf-8") as out:
            out.write(code)


class Vectors(Planted):
    def test_each_form(self):
        for code in ("_mm_loadu_si128(p)", "_mm_loadl_epi64(p)", "_mm256_maskload_ps(p, m)", "_mm512_maskz_loadu_epi8(m, p)",
                     "_mm512_mask_storeu_epi16(p, m, v)", "_mm_store_ss(p, v)", "_mm256_stream_si256(p, v)",
                     "_mm512_mask_cvtepi32_storeu_epi8(p, m, v)", "_mm_prefetch(p, _MM_HINT_T0)",
                     "__builtin_prefetch(p, 1)", "_bzhi_u64(~0, n)"):
            self.plant(KERNEL, f"void f() {{ {code}; }}\n")
            self.assertEqual(len(sources.vectors(self.root)), 1, code)

    def test_arithmetic_and_comments_pass(self):
        self.plant(KERNEL, "// _mm_loadu_si128(p)\n/* _mm_prefetch */ auto v = _mm_add_epi8(_mm_set1_epi8(1), w);\n")
        self.assertEqual(sources.vectors(self.root), [])

    def test_the_vector_layer_passes(self):
        self.plant(LAYER, LOAD)
        self.assertEqual(sources.vectors(self.root), [])


class Names(Planted):
    def test_what_the_rule_allows(self):
        self.plant(KERNEL, "")
        self.plant("zorvan/foundation/IppIMemory.h", "")
        self.plant("zorvan/primitives/frame/Entries.def", "")
        self.plant("tests/frame/selection_test.cpp", "TEST(Selection, Works) {}\n")
        self.plant("tests/entries/copy_test.cpp", "void registerEntryTests() {\n}\n")
        self.plant("tests/support/EntryTests.h", "void registerEntryTests();\n")
        self.plant("examples/coins/main.cpp", "int main() {}\n")
        self.assertEqual(sources.names(self.root), [])

    def test_what_it_does_not(self):
        for path, code in ((KERNEL.replace("copy_row", "CopyRow"), ""), (KERNEL.replace("copy_row", "copy-row"), ""),
                           ("tests/frame/SelectionTest.cpp", "TEST(Selection, Works) {}\n"),
                           ("tests/frame/Selection_test.cpp", ""),
                           ("tests/frame/selection.cpp", "TYPED_TEST(Selection, Works) {}\n"),
                           ("tests/entries/copy.cpp", "void Zorvan::Test::registerEntryTests() {\n}\n"),
                           ("bench/Main.cpp", "int main() {}\n")):
            with self.subTest(path):
                self.plant(path, code)
                self.assertEqual(len(sources.names(self.root)), 1)
                os.remove(os.path.join(self.root, path))


if __name__ == "__main__":
    unittest.main()
