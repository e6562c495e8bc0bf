#pragma once

// The word that describes the border of a region: a type in bits 0 to 3, and a bit for each side where the
// operation reads memory. Entries test the word themselves; they differ in the types that they accept.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {
namespace {

/// Whether a region is not larger than the mask in some direction. Then it has a border on every side: sides
/// in memory count only if all four are.
constexpr bool isSmall(Size roi, Size mask) { return mask.width >= roi.width || mask.height >= roi.height; }

enum class BorderType {
  none = 0,          ///< only with all sides in memory
  replicate = 1,     ///< the nearest pixel
  mirror = 3,        ///< the pixel as far inside as the border pixel is outside; the edge is not repeated
  defaultValue = 5,  ///< a constant that the operation chooses
  constant = 6
};

struct BorderWord {
  static constexpr int typeBits = 0xF;
  static constexpr int aboveInMemory = 0x10;
  static constexpr int belowInMemory = 0x20;
  static constexpr int leftInMemory = 0x40;
  static constexpr int rightInMemory = 0x80;
  static constexpr int allInMemory = 0xF0;

  int bits;

  constexpr BorderType type() const { return static_cast<BorderType>(bits & typeBits); }
  constexpr bool has(int side) const { return (bits & side) == side; }
  /// The word that applies to a region.
  constexpr BorderWord of(Size roi, Size mask) const {
    return isSmall(roi, mask) && !has(allInMemory) ? BorderWord{bits & typeBits} : *this;
  }
};

/// The index below `n` that mirrors index `i`. The first and the last are not repeated.
constexpr std::int64_t mirrored(std::int64_t i, std::int64_t n) {
  if (i < 0) i = -i;
  if (i < n) return i;
  if (n == 1) return 0;
  const std::int64_t period = 2 * n - 2;
  i %= period;
  return i < n ? i : period - i;
}

}  // namespace
}  // namespace Zorvan::Primitives
