#pragma once

#include <cmath>
#include <cstring>

#include "tests/support/Guarded.h"

namespace Zorvan::Test {

/// The same bytes, but for pixels that `Pixels::agree(expected, actual)` lets pass. For images of floats
/// whose rows lie whole pixels apart, and images of which every byte is to be the same.
template <class Pixels>
struct FloatsAgree {
  static bool agree(const Block& expected, const Block& actual) {
    for (std::size_t at = 0; at + 4 <= expected.size(); at += 4) {
      float want, got;
      std::memcpy(&want, expected.data() + at, 4);
      std::memcpy(&got, actual.data() + at, 4);
      if (Pixels::agree(want, got)) std::memcpy(actual.data() + at, &want, 4);
    }
    return expected.sameBytes(actual);
  }
};

/// Which of two NaN goes through an operation, and with which sign, is open.
struct AnyNan {
  static bool agree(float expected, float actual) { return std::isnan(expected) && std::isnan(actual); }
};

}  // namespace Zorvan::Test
