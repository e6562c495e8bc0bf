#pragma once

// The walk along a row in blocks of a vector. `block(column, lanes)` computes one block; `lanes` goes into
// its loads and stores.

#include <cstdint>

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/morphology/pixel_lanes.h"

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

/// What a kernel gets beside the images: room for the ring of a separable pass, and how large the result is
/// of which it makes a part; 0 for one that a further pass reads, and had better find in the caches.
struct MorphWork {
  unsigned char* ring;
  std::int64_t resultBytes;
};

/// Stores of a result, into the caches.
template <class Lanes, bool areLines = Lanes::areLines>
struct ResultStores {
  using Pixel = typename Lanes::Pixel;
  static constexpr std::int64_t peel = 0;

  ResultStores() = default;
  ResultStores(Plane<Pixel>, Size, MorphWork) {}

  template <class Which>
  void store(Lanes result, Pixel* at, Which lanes) const {
    result.store(at, lanes);
  }
  void finish() const {}
};

/// In blocks that are whole lines also past the caches, where the plan says so. Those take blocks on their
/// own boundaries; a row begins with the `peel` pixels in front of the first.
template <class Lanes>
struct ResultStores<Lanes, true> {
  using Pixel = typename Lanes::Pixel;
  static_assert(Lanes::count * sizeof(Pixel) == morphStreamedBlockBytes);
  bool streaming = false;
  std::int64_t peel = 0;

  ResultStores() = default;
  ResultStores(Plane<Pixel> dst, Size roi, MorphWork work) {
    const std::int64_t peelBytes = bytesToBoundary(dst.pixels, morphStreamedBlockBytes);
    streaming = peelBytes % std::int64_t{sizeof(Pixel)} == 0 &&
                planStreaming(work.resultBytes, roi.width * std::int64_t{sizeof(Pixel)}, dst.step);
    if (streaming) peel = peelBytes / std::int64_t{sizeof(Pixel)};
    ZORVAN_NOTE_PLAN("planStreaming", streaming);
  }

  void store(Lanes result, Pixel* at, All) const {
    if (streaming) {
      result.stream(at);
    } else {
      result.store(at);
    }
  }
  void store(Lanes result, Pixel* at, typename Lanes::Some lanes) const { result.store(at, lanes); }
  void finish() const {
    if (streaming) fenceStores();
  }
};

/// The same where no pixel may be computed twice, with a block of `peel` pixels in front of the whole ones.
template <class Lanes, class Block>
inline void alongRowOnce(std::int64_t width, std::int64_t peel, Block block) {
  std::int64_t column = peel;
  if (peel != 0) block(std::int64_t{0}, Lanes::some(peel));
  for (; column + Lanes::count <= width; column += Lanes::count) block(column, All{});
  if (column != width) block(column, Lanes::some(width - column));
}

}  // namespace
}  // namespace Zorvan::Primitives
