#pragma once

#include <cmath>
#include <cstring>

#include "tests/support/Guarded.h"

namespace Zorvan::Test {

/// Bytes are the same but for pixels of which `Pixels::agree(expected, actual)` is true; these are changed in
/// `actual`. For images of floats whose rows lie whole pixels apart, and for images without such pixels.
template <class Pixels>
struct FloatsAgree {
  static bool agree(const Block& expected, Block& actual) {
    for (std::size_t at = 0; at + 4 <= expected.size(); at += 4) {
      float want, got;
      std::memcpy(&want, expected.data() + at, 4);
      std::memcpy(&got, actual.data() + at, 4);
      if (Pixels::agree(want, got)) std::memcpy(actual.data() + at, &want, 4);
    }
    return expected.sameBytes(actual);
  }
};

/// Where two operands are NaN, the result may be either of them, with either sign.
struct AnyNan {
  static bool agree(float expected, float actual) { return std::isnan(expected) && std::isnan(actual); }
};

}  // namespace Zorvan::Test
