#pragma once

// Areas that are hard on a flood fill: for each, which pixels of an image belong to it.

#include <algorithm>

#include "tests/support/Random.h"
#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Test {

enum class FillShape {
  constant,
  checkerboard,
  sparse,
  half,
  dense,
  fullButFew,
  serpentine,
  uprightSerpentine,
  spiral,
  comb,
  lyingComb,
  rings,
  columns
};

inline constexpr FillShape allFillShapes[] = {
    FillShape::constant, FillShape::checkerboard, FillShape::sparse,     FillShape::half,
    FillShape::dense,    FillShape::fullButFew,   FillShape::serpentine, FillShape::uprightSerpentine,
    FillShape::spiral,   FillShape::comb,         FillShape::lyingComb,  FillShape::rings,
    FillShape::columns};

/// Rows of one pixel, joined at alternating ends.
inline bool isOnSerpentine(int x, int y, int width) {
  return y % 2 == 0 || x == (y % 4 == 1 ? width - 1 : 0);
}

/// A line of one pixel that winds inwards with a wall of one pixel beside it.
inline bool isOnSpiral(int x, int y, Size size) {
  const int ring = std::min({x, y, size.width - 1 - x, size.height - 1 - y});
  // The wall between two rings is open on the left below the ring's start; the line is closed there.
  if (x == ring && y == ring + 1 && ring + 1 < size.height - 1 - ring) return ring % 2 != 0;
  return ring % 2 == 0;
}

inline bool isInShape(FillShape shape, int x, int y, Size size, Random& random) {
  const int percent = random.below(100);
  switch (shape) {
    case FillShape::constant:
      return true;
    case FillShape::checkerboard:
      return (x + y) % 2 == 0;
    case FillShape::sparse:
      return percent < 35;
    case FillShape::half:
      return percent < 55;
    case FillShape::dense:
      return percent < 75;
    case FillShape::fullButFew:
      return percent < 98;
    case FillShape::serpentine:
      return isOnSerpentine(x, y, size.width);
    case FillShape::uprightSerpentine:
      return isOnSerpentine(y, x, size.height);
    case FillShape::spiral:
      return isOnSpiral(x, y, size);
    case FillShape::comb:
      return y == size.height / 2 || x % 2 == 0;
    case FillShape::lyingComb:
      return x == size.width / 2 || y % 2 == 0;
    case FillShape::rings:
      return std::min({x, y, size.width - 1 - x, size.height - 1 - y}) % 2 == 0;
    case FillShape::columns:
      return x % 2 == 0;
  }
  return false;
}

}  // namespace Zorvan::Test
