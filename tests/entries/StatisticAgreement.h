#pragma once

// When two results of a statistic agree. Integers and exact sums: byte for byte. The effects of NaNs and
// infinities on extremes differ by variant and have their own tests. The bytes around a result are always the
// same.

#include <cmath>
#include <cstring>
#include <limits>
#include <tuple>

#include "tests/reference/Statistic.h"
#include "tests/support/EntryCheck.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Test {

template <class T>
T valueOf(const Block& block) {
  T value;
  std::memcpy(&value, block.data(), sizeof value);
  return value;
}

/// Whether the block is a result of type T; the others are images.
template <class T>
bool isResult(const Block& block) {
  return block.size() == sizeof(T);
}

/// A float extreme. Older variants return the largest finite value instead of infinity; zeros are equal.
struct SameExtreme {
  static bool agree(const Block& expected, Block& actual) {
    if (!isResult<float>(expected) || expected.sameBytes(actual)) return expected.sameBytes(actual);
    const auto want = valueOf<float>(expected), got = valueOf<float>(actual);
    const float finite = std::copysign(std::numeric_limits<float>::max(), want);
    const bool agrees = std::isnan(want) || want == got || (std::isinf(want) && got == finite);
    return agrees && sameAround(expected, actual);
  }
};

/// A float value; zeros are equal.
struct SameValue {
  static bool agree(const Block& expected, Block& actual) {
    if (!isResult<float>(expected) || expected.sameBytes(actual)) return expected.sameBytes(actual);
    return valueOf<float>(expected) == valueOf<float>(actual) && sameAround(expected, actual);
  }
};

/// A double within the tolerance that follows from the pixels.
struct NearMean {
  template <class Arguments>
  static bool agree(const Block& expected, Block& actual, const Arguments& arguments) {
    if (!isResult<double>(expected) || expected.sameBytes(actual)) return expected.sameBytes(actual);
    return isNear(valueOf<double>(expected), valueOf<double>(actual), arguments) &&
           sameAround(expected, actual);
  }

 private:
  template <class Arguments>
  static bool isNear(double want, double got, const Arguments& arguments) {
    if (std::isnan(want)) return std::isnan(got);
    const double tolerance =
        std::apply([](auto... argument) { return Reference::toleranceOf(argument...); }, arguments);
    return std::isinf(tolerance) || want == got || std::fabs(want - got) <= tolerance;
  }
};

template <class Routine>
struct AgreementOf {
  using type = SameBytes;
};
template <>
struct AgreementOf<int(const float*, int, Size, float*)> {
  using type = SameExtreme;
};
template <>
struct AgreementOf<int(const float*, int, Size, double*, int)> {
  using type = NearMean;
};
template <>
struct AgreementOf<int(const float*, int, const u8*, int, Size, double*)> {
  using type = NearMean;
};
template <class T>
struct AgreementOf<int(const T*, int, const u8*, int, Size, double*, double*)> {
  using type = NearMean;
};
template <>
struct AgreementOf<int(const float*, int, const u8*, int, Size, float*, float*, Point*, Point*)> {
  using type = SameValue;
};

}  // namespace Zorvan::Test
