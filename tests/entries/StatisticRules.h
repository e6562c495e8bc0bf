#pragma once

// Calls of one variant's routines, for rules that the general cases do not test.

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

#include "tests/support/EntryTests.h"
#include "tests/support/Faults.h"
#include "tests/support/Guarded.h"
#include "tests/support/VariantTests.h"
#include "zorvan/primitives/frame/Table.h"

namespace Zorvan::Test {

/// The indices of the variants in the order of their list.
enum Variant { sse2, ssse3, sse42, avx, avx2, avx512 };

/// The result of a routine without a mask.
template <class R, class T, class... Hint>
R found(int (*routine)(const T*, int, Size, R*, Hint...), const T* src, int step, Size roi, Hint... hint) {
  R result{};
  EXPECT_EQ(routine(src, step, roi, &result, hint...), 0);
  return result;
}

template <class R, class T, class... Hint>
R found(int (*routine)(const T*, int, Size, R*, Hint...), const std::vector<T>& pixels, Size roi,
        Hint... hint) {
  return found(routine, pixels.data(), roi.width * static_cast<int>(sizeof(T)), roi, hint...);
}

#define ROUTINE(entry, variant) Primitives::table.entry.routine[1 + (variant)]

}  // namespace Zorvan::Test
