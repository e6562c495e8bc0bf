#pragma once

// How the Laplace filter divides a region. Pure functions, so that each limit can be tested on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/neighbourhood/streaming_plan.h"

namespace Zorvan::Primitives::Laplace {
namespace {

/// Whether vectors of a size fit the rows: exactly one, which has both ends of the row, or two, which have
/// one end each.
constexpr bool vectorsFit(int vectorBytes, int width, int reach, int pixelBytes) {
  const std::int64_t bytes = std::int64_t{width} * pixelBytes;
  return bytes == vectorBytes || bytes >= vectorBytes + reach * pixelBytes;
}

/// The vectors between the first and the last of a row, whose neighbours are all in the row.
struct VectorsInside {
  std::int64_t first;  ///< offset of the first of them in bytes
  std::int64_t count;  ///< of adjacent vectors
  bool overlaps;       ///< whether one more, the reach before the row's last vector, fills the rest
};

/// The first vector begins at `peelBytes`, if not 0.
constexpr VectorsInside planInside(std::int64_t rowBytes, std::int64_t reachBytes, std::int64_t peelBytes,
                                   std::int64_t vectorBytes) {
  const std::int64_t first = peelBytes != 0 ? peelBytes : vectorBytes;
  const std::int64_t last = rowBytes - vectorBytes, room = last - reachBytes - first;
  const std::int64_t count = room < 0 ? 0 : room / vectorBytes + 1;
  // Without any, the vector at the row's start has filled more than the peel.
  const std::int64_t made = count == 0 ? vectorBytes : first + count * vectorBytes;
  return {first, count, made < last};
}

/// Whether rows compete for the same lines of a nearest cache. Streaming stores need none.
constexpr bool planColliding(std::int64_t srcStep, std::int64_t dstStep, bool streams) {
  return !streams && srcStep % collidingStepBytes == 0 && dstStep % collidingStepBytes == 0;
}

/// Columns of vectors that go from the top of a region to its bottom before the next ones, by the size of the
/// sums of one.
constexpr int planColumns(int sumBytes) { return laplaceCarriedBytes / sumBytes; }

/// Rows of a band, by the size of the result and whether the rows of both images collide in a nearest cache.
constexpr int planBandRows(std::int64_t resultBytes, bool collide) {
  if (collide) return laplaceCollidingBandRows;
  return resultBytes <= laplaceNearestBytes ? laplaceNearestBandRows : laplaceBandRows;
}

/// Whether a region takes streaming stores. The first aligned vector begins at `peelBytes`; it needs its left
/// neighbours in the row unless it is the first.
constexpr bool planStreaming(Size roi, int pixelBytes, std::int64_t dstStep, std::int64_t peelBytes,
                             int reach, int vectorBytes) {
  return mayStream(std::int64_t{roi.width} * roi.height * pixelBytes, dstStep, vectorBytes) &&
         peelBytes % pixelBytes == 0 && (peelBytes == 0 || peelBytes >= reach * pixelBytes);
}

/// Whether images are so large that they lie in far caches or in memory.
constexpr bool planPrefetch(Size roi, int pixelBytes) {
  return std::int64_t{roi.width} * roi.height * pixelBytes >= laplacePrefetchFromBytes;
}

/// How many of the columns of vectors prefetch for writing: none for lines after the row, which may belong to
/// another thread. `bytesToLast` lie between the first column and the row's last vector.
constexpr std::int64_t planPrefetchedColumns(std::int64_t bytesToLast, std::int64_t columns,
                                             std::int64_t vectorBytes) {
  const std::int64_t room = bytesToLast - laplacePrefetchDistance;
  const std::int64_t fit = room < 0 ? 0 : room / vectorBytes + 1;
  return fit < columns ? fit : columns;
}

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
