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

/// Bytes of the whole images, of which a kernel may compute a part; 0 for an intermediate image, which stays
/// in the caches.
struct FarBytes {
  std::int64_t read, written;
};

struct MorphWork {
  unsigned char* ring;  ///< memory for the ring of rows
  FarBytes bytes;
};

/// How a kernel accesses images in near caches: by plain loads and stores.
template <class Lanes>
struct NearAccess {
  static constexpr bool isFar = false, streams = false;
  static constexpr std::int64_t peel = 0;

  template <class Active>
  void store(Lanes result, typename Lanes::Pixel* at, Active lanes) const {
    result.store(at, lanes);
  }
};

/// How it accesses those that lie in far caches or in memory.
template <class Lanes>
struct FarAccess {
  using Pixel = typename Lanes::Pixel;
  static constexpr bool isFar = true;

  bool prefetches = false;  ///< the rows that are read or written next
  bool streams = false;     ///< stores whole lines past the caches
  std::int64_t peel = 0;    ///< pixels before the first of these lines

  FarAccess() = default;
  FarAccess(Plane<Pixel> dst, Size roi, FarBytes bytes) {
    prefetches = ZORVAN_PLANNED("planPrefetch", planPrefetch(bytes.read));
    const std::int64_t peelBytes = bytesToBoundary(dst.pixels, streamedBlockBytes);
    const std::int64_t rowBytes = roi.width * std::int64_t{sizeof(Pixel)};
    streams = ZORVAN_PLANNED("planStreaming",
                             peelBytes % std::int64_t{sizeof(Pixel)} == 0 &&
                                 planStreaming(bytes.written, rowBytes, dst.step, Lanes::Vector::size));
    if (streams) peel = peelBytes / std::int64_t{sizeof(Pixel)};
  }

  /// A block, which is a line if it is whole.
  void store(Lanes result, Pixel* at, AllLanes) const {
    static_assert(Lanes::areLines);
    if (streams) {
      result.stream(at);
    } else {
      result.store(at);
    }
  }
  void store(Lanes result, Pixel* at, typename Lanes::Partial lanes) const { result.store(at, lanes); }
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
