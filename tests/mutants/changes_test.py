#!/usr/bin/env python3
"""Tests which faults are planted in a line, and that texts and comments have none."""

import unittest

import changes


def of(line):
    return {new for _, new in changes.changed(line)}


class Changes(unittest.TestCase):
    def test_comparisons(self):
        self.assertLessEqual({"  if (a <= b) return x;", "  if (a > b) return x;", "  if (!(a < b)) return x;"},
                             of("  if (a < b) return x;"))

    def test_constants_by_one(self):
        self.assertLessEqual({"  x = loadLow<9>(p);", "  x = loadLow<7>(p);", "  ;"}, of("  x = loadLow<8>(p);"))
        self.assertIn("  return bits == 0xfffe;", of("  return bits == 0xFFFF;"))
        self.assertIn("  return x * 3.5F;", of("  return x * 3.0F;"))

    def test_dropped_statements(self):
        self.assertIn("  ;", of("  fenceStores();"))
        self.assertIn("  else ;", of("  else total += rest;"))
        for line in ("  return tail(p);", "  const int n = count();", "  std::int64_t i = 0;", "  using T = u8;"):
            self.assertNotIn("  ;", of(line))

    def test_operands_unless_their_order_does_not_count(self):
        self.assertIn("  return subs_epu8(b, a);", of("  return subs_epu8(a, b);"))
        self.assertNotIn("  return adds_epu8(b, a);", of("  return adds_epu8(a, b);"))

    def test_statuses_and_signs(self):
        self.assertIn("  return ippStsSizeErr;", of("  return ippStsNullPtrErr;"))
        self.assertIn("  x = max_epi16(a, b);", of("  x = max_epu16(a, b);"))
        self.assertIn("_CMP_EQ_UQ", "".join(of("  const __m256 m = _mm256_cmp_ps(a, b, _CMP_EQ_OQ);")))

    def test_comments_and_texts_have_none(self):
        for line in ("// 1 < 2", "#if defined(A) && 1 > 0", '  "a < 1"', "}  // namespace 1", ""):
            self.assertEqual(set(), of(line))
        self.assertEqual({"  f(2);  // 1 < 2", "  f(0);  // 1 < 2", "  ;"}, of("  f(1);  // 1 < 2"))

    def test_each_is_one_line_that_differs(self):
        for line in ("  for (; n >= 16; p += 16, n -= 16) add(p, n);", "  if (a && !b) x |= y << 3;"):
            for new in of(line):
                self.assertNotEqual(line, new)
                self.assertNotIn("\n", new)


if __name__ == "__main__":
    unittest.main()
