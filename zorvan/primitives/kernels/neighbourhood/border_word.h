#pragma once

// The word that says what lies around a region: a kind in bits 0 to 3, and a bit for each side that is real
// memory. Entries test the word themselves; they differ in the kinds that they take.

namespace Zorvan::Primitives {
namespace {

enum class BorderType {
  none = 0,          ///< only with all sides in memory
  replicate = 1,     ///< the nearest pixel
  mirror = 3,        ///< k steps outside as k steps inside; the edge itself is not repeated
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
