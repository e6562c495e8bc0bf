#pragma once

// How a region is divided for an operation that reads a neighbourhood of each pixel: a centre that is read in
// place, and up to four stripes, each copied with its border into work memory. Pure functions: which pixels
// are copied, and which pixels of the result are computed from the copy.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"

namespace Zorvan::Primitives {
namespace {

/// How many pixels an operation reads on each side of a pixel.
struct Reach {
  int left, above, right, below;

  static constexpr Reach ofMask(Size mask) {
    const int left = (mask.width - 1) >> 1, above = (mask.height - 1) >> 1;
    return {left, above, mask.width - left - 1, mask.height - above - 1};
  }
  constexpr Size mask() const { return {left + right + 1, above + below + 1}; }
};

/// Part of an image. Row and column of its first pixel are relative to the region; they are negative where
/// the part begins in memory above or to the left of the region.
struct Part {
  int row, column;
  Size size;
};

/// A copy with its border: `from` of the source, `above` rows of border above it and `left` columns to its
/// left; the rest of `built` is border below and to the right. The operation computes `to` from the copy.
struct BorderPiece {
  Part from;
  int above, left;
  Size built;
  Part to;
};

struct BorderPlan {
  int count = 0;
  BorderPiece pieces[4];  ///< of which `count` are used
  bool hasCentre = true;
  Part centre;  ///< read in place
};

/// A side on which the operation reads nothing needs no border: it counts as memory.
constexpr BorderWord withUnreadSides(BorderWord word, Reach reach) {
  if (reach.left == 0) word.bits |= BorderWord::leftInMemory;
  if (reach.left == 0 && reach.right == 0) word.bits |= BorderWord::rightInMemory;
  if (reach.above == 0) word.bits |= BorderWord::aboveInMemory;
  if (reach.above == 0 && reach.below == 0) word.bits |= BorderWord::belowInMemory;
  return word;
}

/// A small region is copied as a whole, with a border on every side.
/// Otherwise the stripes above and below have the full width with the corners, and the stripes to the left
/// and right the rows between. A corner beside a side in memory extends the pixels of that memory.
constexpr BorderPlan planBorder(Size roi, Reach reach, BorderWord given) {
  const BorderWord word = withUnreadSides(given, reach);
  const Size mask = reach.mask();
  BorderPlan plan{};
  plan.centre = {0, 0, roi};
  if (word.has(BorderWord::allInMemory)) return plan;

  if (isSmall(roi, mask)) {
    const Size built{roi.width + mask.width - 1, roi.height + mask.height - 1};
    plan.pieces[plan.count++] = {{0, 0, roi}, reach.above, reach.left, built, {0, 0, roi}};
    plan.hasCentre = false;
    return plan;
  }

  const int memoryLeft = word.has(BorderWord::leftInMemory) ? reach.left : 0;
  const int memoryRight = word.has(BorderWord::rightInMemory) ? reach.right : 0;
  const int fullWidth = roi.width + memoryLeft + memoryRight;
  const int borderLeft = reach.left - memoryLeft;
  const int builtWidth = roi.width + mask.width - 1;
  Part& rest = plan.centre;

  if (!word.has(BorderWord::aboveInMemory)) {
    plan.pieces[plan.count++] = {{0, -memoryLeft, {fullWidth, mask.height - 1}},
                                 reach.above,
                                 borderLeft,
                                 {builtWidth, mask.height - 1 + reach.above},
                                 {0, 0, {roi.width, reach.above}}};
    rest.row += reach.above;
    rest.size.height -= reach.above;
  }
  if (!word.has(BorderWord::belowInMemory)) {
    plan.pieces[plan.count++] = {{roi.height - (mask.height - 1), -memoryLeft, {fullWidth, mask.height - 1}},
                                 0,
                                 borderLeft,
                                 {builtWidth, mask.height - 1 + reach.below},
                                 {roi.height - reach.below, 0, {roi.width, reach.below}}};
    rest.size.height -= reach.below;
  }
  const int firstRow = rest.row - reach.above, rows = rest.size.height + mask.height - 1;
  if (!word.has(BorderWord::leftInMemory)) {
    plan.pieces[plan.count++] = {{firstRow, 0, {mask.width - 1, rows}},
                                 0,
                                 reach.left,
                                 {mask.width - 1 + reach.left, rows},
                                 {rest.row, 0, {reach.left, rest.size.height}}};
    rest.column += reach.left;
    rest.size.width -= reach.left;
  }
  if (!word.has(BorderWord::rightInMemory)) {
    plan.pieces[plan.count++] = {{firstRow, roi.width - (mask.width - 1), {mask.width - 1, rows}},
                                 0,
                                 0,
                                 {mask.width - 1 + reach.right, rows},
                                 {rest.row, roi.width - reach.right, {reach.right, rest.size.height}}};
    rest.size.width -= reach.right;
  }
  return plan;
}

}  // namespace
}  // namespace Zorvan::Primitives
