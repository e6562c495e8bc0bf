#pragma once

// The walk along a row in blocks of a vector. `block(column, lanes)` computes one block; `lanes` goes into
// its loads and stores.

#include <cstdint>

#include "zorvan/primitives/kernels/morphology/PixelLanes.h"

namespace Zorvan::Primitives {
namespace {

/// Whole blocks, then one for the rest: limited by a mask, or else placed so that it ends with the row and
/// computes some pixels again, or else the first lanes of one.
template <class Lanes, class Block>
inline void alongRow(std::int64_t width, Block block, std::int64_t column = 0) {
  for (; column + Lanes::count <= width; column += Lanes::count) block(column, All{});
  if (column == width) return;
  if constexpr (!Lanes::hasMasks) {
    if (width >= Lanes::count) return block(width - Lanes::count, All{});
  }
  block(column, Lanes::some(width - column));
}

/// The same where no pixel may be computed twice.
template <class Lanes, class Block>
inline void alongRowOnce(std::int64_t width, Block block) {
  std::int64_t column = 0;
  for (; column + Lanes::count <= width; column += Lanes::count) block(column, All{});
  if (column != width) block(column, Lanes::some(width - column));
}

}  // namespace
}  // namespace Zorvan::Primitives
