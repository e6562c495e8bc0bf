#pragma once

// Loops over a row in blocks of one vector. `block(column, lanes)` computes one block; it passes `lanes` to
// its loads and stores.

#include <cstdint>

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/morphology/pixel_lanes.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// Whole blocks, then one for the tail. With mask registers that one is limited to the tail. Without, it ends
/// with the row and computes some pixels again; in a row shorter than a vector it has the first lanes only.
template <class Lanes, class Block>
inline void alongRow(std::int64_t width, Block block, std::int64_t column = 0) {
  for (; column + Lanes::count <= width; column += Lanes::count) block(column, AllLanes{});
  if (column == width) return;
  if constexpr (!Lanes::hasMasks) {
    if (width >= Lanes::count) return block(width - Lanes::count, AllLanes{});
  }
  block(column, Lanes::first(width - column));
}

/// Work memory for the ring of rows, and the bytes of the whole result, of which a kernel may compute a part.
/// 0 bytes for an intermediate image, which the next pass reads from the caches: no streaming stores.
struct MorphWork {
  unsigned char* ring;
  std::int64_t resultBytes;
};

/// Stores of a result, through the caches.
template <class Lanes, bool areLines = Lanes::areLines>
struct ResultStores {
  using Pixel = typename Lanes::Pixel;
  static constexpr std::int64_t peel = 0;

  ResultStores() = default;
  ResultStores(Plane<Pixel>, Size, MorphWork) {}

  template <class Active>
  void store(Lanes result, Pixel* at, Active lanes) const {
    result.store(at, lanes);
  }
  void finish() const {}
};

/// Blocks of whole cache lines: streaming stores where the plan chooses them. These take aligned blocks, so a
/// row begins with a peel of `peel` pixels.
template <class Lanes>
struct ResultStores<Lanes, true> {
  using Pixel = typename Lanes::Pixel;
  static_assert(Lanes::count * sizeof(Pixel) == streamedBlockBytes);
  bool streaming = false;
  std::int64_t peel = 0;

  ResultStores() = default;
  ResultStores(Plane<Pixel> dst, Size roi, MorphWork work) {
    const std::int64_t peelBytes = bytesToBoundary(dst.pixels, streamedBlockBytes);
    streaming = peelBytes % std::int64_t{sizeof(Pixel)} == 0 &&
                planStreaming(work.resultBytes, roi.width * std::int64_t{sizeof(Pixel)}, dst.step);
    if (streaming) peel = peelBytes / std::int64_t{sizeof(Pixel)};
    ZORVAN_NOTE_PLAN("planStreaming", streaming);
  }

  void store(Lanes result, Pixel* at, AllLanes) const {
    if (streaming) {
      result.stream(at);
    } else {
      result.store(at);
    }
  }
  void store(Lanes result, Pixel* at, typename Lanes::Partial lanes) const { result.store(at, lanes); }
  void finish() const {
    if (streaming) fenceStores();
  }
};

/// The same where no pixel may be computed twice, with a block of `peel` pixels before the whole ones.
template <class Lanes, class Block>
inline void alongRowOnce(std::int64_t width, std::int64_t peel, Block block) {
  std::int64_t column = peel;
  if (peel != 0) block(std::int64_t{0}, Lanes::first(peel));
  for (; column + Lanes::count <= width; column += Lanes::count) block(column, AllLanes{});
  if (column != width) block(column, Lanes::first(width - column));
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
