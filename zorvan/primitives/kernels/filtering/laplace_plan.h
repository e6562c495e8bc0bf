#pragma once

// The work memory of the Laplace filter, and how it divides a region. Pure functions, so that each limit can
// be tested on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/frame/FilterCodes.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"

namespace Zorvan::Primitives::Laplace {
namespace {

constexpr int workAlignmentBytes = 32;

/// Width and height of the kernel; 0 for an unknown code.
constexpr int extentOfMask(int mask) { return mask == mask3x3 ? 3 : mask == mask5x5 ? 5 : 0; }

/// Bytes of a pixel; 0 for an unknown code.
constexpr int bytesOfType(int dataType) {
  return dataType == dataType8u ? 1 : dataType == dataType16s ? 2 : dataType == dataType32f ? 4 : 0;
}

/// Bytes of a sum of pixels.
constexpr int sumBytesOf(int pixelBytes) { return pixelBytes == 1 ? 2 : 4; }

/// Wraps at 64 bits, as all sizes here do before they are truncated to 32.
constexpr std::uint64_t alignedUp(std::uint64_t bytes) {
  return (bytes + (workAlignmentBytes - 1)) & ~std::uint64_t{workAlignmentBytes - 1};
}

/// Rows of sums: one of columns -1 to `width` for the 3 by 3 kernel, a ring of twelve for the 5 by 5 kernel.
constexpr int sumRows(int extent) { return extent == 3 ? 1 : 12; }

constexpr std::uint64_t sumRowBytes(int width, int extent, int pixelBytes, int channels = 1) {
  const std::int64_t columns = std::int64_t{width} + (extent == 3 ? 2 : 0);
  return alignedUp(static_cast<std::uint64_t>(columns * channels * sumBytesOf(pixelBytes)));
}

/// The largest copy with a border: the whole region where it is not larger than the kernel in some direction,
/// otherwise a stripe along its longer side.
constexpr std::uint64_t expansionBytes(Size roi, int extent, int pixelBytes, int channels = 1) {
  const auto width = static_cast<std::uint64_t>(roi.width), height = static_cast<std::uint64_t>(roi.height);
  const auto more = static_cast<std::uint64_t>(extent - 1);
  const std::uint64_t stripe = (width > height ? width : height) + more;
  const bool whole = extent >= roi.width || extent >= roi.height;
  const std::uint64_t pixels = whole ? (width + more) * (height + more) : stripe * (extent == 3 ? 3 : 6);
  return alignedUp(static_cast<std::uint64_t>(channels) * pixels * static_cast<std::uint64_t>(pixelBytes));
}

/// The work memory by its interface contract: rows of sums, a copy with a border, and room to align both.
/// These filters keep their sums in registers and use only a row of the constant.
constexpr std::uint64_t laplaceWorkBytes(Size roi, int extent, int pixelBytes, int channels = 1) {
  const std::uint64_t rows =
      static_cast<std::uint64_t>(sumRows(extent)) * sumRowBytes(roi.width, extent, pixelBytes, channels);
  return expansionBytes(roi, extent, pixelBytes, channels) + rows + workAlignmentBytes;
}

/// The size that the entry reports: the lowest 32 bits.
constexpr std::int32_t laplaceBufferBytes(Size roi, int extent, int pixelBytes, int channels) {
  return static_cast<std::int32_t>(
      static_cast<std::uint32_t>(laplaceWorkBytes(roi, extent, pixelBytes, channels)));
}

/// The border word that applies to a region. In a region not larger than the kernel in some direction, sides
/// in memory count only if all four are.
constexpr BorderWord readBorder(BorderWord word, Size roi, int extent) {
  const bool small = roi.width <= extent || roi.height <= extent;
  return small && !word.has(BorderWord::allInMemory) ? BorderWord{word.bits & BorderWord::typeBits} : word;
}

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

/// Rows of a band. What neighbouring rows share is computed again in each band, so bands have as many rows as
/// stay in a near cache. With streaming stores the 3 by 3 kernel, whose rows share little, takes fewer long
/// rows: each is a separate stream of writes to memory.
constexpr std::int64_t planBandRows(std::int64_t rowBytes, int reach, bool streams) {
  const int fewest = streams && reach == 1 ? leastStreamedBandRows : leastBandRows;
  const std::int64_t rows = bandBytes / rowBytes;
  return rows > mostBandRows ? mostBandRows : rows < fewest ? fewest : rows;
}

/// Streaming stores are of whole cache lines: the processor's few write-combining buffers cannot hold
/// incomplete lines of all rows of a band.
constexpr int streamedVectorBytes = 64;

/// Whether a large region takes streaming stores: if all rows have the same offset from a vector's boundary.
/// The first aligned vector begins at `peelBytes`; it needs its left neighbours in the row unless it is the
/// first.
constexpr bool planStreaming(Size roi, int pixelBytes, std::int64_t dstStep, std::int64_t peelBytes,
                             int reach) {
  return std::int64_t{roi.width} * roi.height * pixelBytes >= streamFromBytes &&
         dstStep % streamedVectorBytes == 0 && peelBytes % pixelBytes == 0 &&
         (peelBytes == 0 || peelBytes >= reach * pixelBytes);
}

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
