#pragma once

// The word that describes the border of a region: a type in bits 0 to 3, and a bit for each side where the
// operation reads memory. Entries test the word themselves; they differ in the types that they accept.

namespace Zorvan::Primitives {
namespace {

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
};

}  // namespace
}  // namespace Zorvan::Primitives
