#pragma once

// Shared by all searches for masked extremes: the result, the first selected pixel, and the status.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/bits.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_plan.h"
#include "zorvan/primitives/kernels/statistic/selection.h"

namespace Zorvan::Primitives::Statistic {
namespace {

using Ipp::ippStsNoOperation;

template <class T>
using Low = ExtremeLanes<Seek::minimum, T>;
template <class T>
using High = ExtremeLanes<Seek::maximum, T>;

struct MaskedExtremes {
  float minValue = 0, maxValue = 0;
  Point minIndex = {0, 0}, maxIndex = {0, 0};
};

/// The first matching column of a row, or -1: `match16` returns a bit for each of 16 columns, `match` tests
/// one column of the tail.
template <class Match16, class Match>
inline int firstColumn(int width, Match16 match16, Match match) {
  int c = 0;
  for (; width - c >= 16; c += 16) {
    if (const unsigned bits = match16(c); bits != 0) return c + lowestSetBit(bits);
  }
  for (; c < width; ++c) {
    if (match(c)) return c;
  }
  return -1;
}

inline int firstSelected(const u8* mask, int width) {
  return firstColumn(
      width, [=](int c) { return bitsOf(unselected(Vector16::load(mask + c).bits)) ^ 0xFFFFu; },
      [=](int c) { return mask[c] != 0; });
}

struct FirstSelected {
  int row;  ///< the region's height if no pixel is selected
  int column;
};

inline FirstSelected firstSelected(Plane<const u8> mask, Size roi) {
  for (int r = 0; r < roi.height; ++r) {
    const int column = firstSelected(mask.at(r), roi.width);
    if (column >= 0) return {r, column};
  }
  return {roi.height, 0};
}

/// The row after the block of rows that starts with row `from`.
inline int endOfBlock(int from, Size roi) {
  const int rows = rowsOfBlock(roi.width);
  ZORVAN_NOTE_PLAN("rowsOfBlock of all rows", rows >= roi.height);
  return roi.height - from < rows ? roi.height : from + rows;
}

/// `ippStsNoOperation` if no pixel was selected, as far as the outputs that are not null show: a position
/// away from the region's first pixel or a value other than zero proves a selected pixel without the mask.
inline int statusOfExtremes(const MaskedExtremes& found, const float* minValue, const float* maxValue,
                            const Point* minIndex, const Point* maxIndex, Plane<const u8> mask, Size roi) {
  const auto statusOfPosition = [mask](Point at) -> int {
    return at.x == 0 && at.y == 0 && *mask.pixels == 0 ? ippStsNoOperation : ippStsNoErr;
  };
  if (minIndex != nullptr) return statusOfPosition(found.minIndex);
  if (maxIndex != nullptr) return statusOfPosition(found.maxIndex);
  if (minValue == nullptr && maxValue == nullptr) return ippStsNoOperation;
  if (minValue != nullptr && !(found.minValue == 0.0f)) return ippStsNoErr;
  if (maxValue != nullptr && !(found.maxValue == 0.0f)) return ippStsNoErr;
  return firstSelected(mask, roi).row < roi.height ? ippStsNoErr : ippStsNoOperation;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
