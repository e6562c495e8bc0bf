#pragma once

// What work memory the Laplace filter tells, and which rows and columns it takes at a time. Pure, so that
// each limit can be tested on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/frame/FilterCodes.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"

namespace Zorvan::Primitives {
namespace {

constexpr int workAlignmentBytes = 32;

/// The kernel is this many pixels wide and high. 0 for a code that stands for none.
constexpr int extentOfMask(int mask) { return mask == mask3x3 ? 3 : mask == mask5x5 ? 5 : 0; }

/// Bytes of a pixel; 0 for a code that stands for no type.
constexpr int bytesOfType(int dataType) {
  return dataType == dataType8u ? 1 : dataType == dataType16s ? 2 : dataType == dataType32f ? 4 : 0;
}

/// Bytes of a sum of pixels.
constexpr int sumBytesOf(int pixelBytes) { return pixelBytes == 1 ? 2 : 4; }

/// Wraps on 64 bits, as all sizes here do before they are cut to 32.
constexpr std::uint64_t alignedUp(std::uint64_t bytes) {
  return (bytes + (workAlignmentBytes - 1)) & ~std::uint64_t{workAlignmentBytes - 1};
}

/// Rows of sums: one of columns -1 to `width` for the 3 by 3 kernel, a ring of twelve for the 5 by 5 kernel.
constexpr int sumRows(int extent) { return extent == 3 ? 1 : 12; }

constexpr std::uint64_t sumRowBytes(int width, int extent, int pixelBytes, int channels = 1) {
  const std::int64_t columns = std::int64_t{width} + (extent == 3 ? 2 : 0);
  return alignedUp(static_cast<std::uint64_t>(columns * channels * sumBytesOf(pixelBytes)));
}

/// The largest image that is built with a border: the whole region where it is no larger than the kernel in
/// some direction, otherwise a stripe along its longer side.
constexpr std::uint64_t expansionBytes(Size roi, int extent, int pixelBytes, int channels = 1) {
  const auto width = static_cast<std::uint64_t>(roi.width), height = static_cast<std::uint64_t>(roi.height);
  const auto more = static_cast<std::uint64_t>(extent - 1);
  const std::uint64_t stripe = (width > height ? width : height) + more;
  const bool whole = extent >= roi.width || extent >= roi.height;
  const std::uint64_t pixels = whole ? (width + more) * (height + more) : stripe * (extent == 3 ? 3 : 6);
  return alignedUp(static_cast<std::uint64_t>(channels) * pixels * static_cast<std::uint64_t>(pixelBytes));
}

/// The work memory: the rows of sums, the expansion, and room to align both. Callers are told so much; the
/// filters keep their sums in registers and need no more of it than a row of the constant.
constexpr std::uint64_t laplaceWorkBytes(Size roi, int extent, int pixelBytes, int channels = 1) {
  const std::uint64_t rows =
      static_cast<std::uint64_t>(sumRows(extent)) * sumRowBytes(roi.width, extent, pixelBytes, channels);
  return expansionBytes(roi, extent, pixelBytes, channels) + rows + workAlignmentBytes;
}

/// What the size entry tells of it: the lowest 32 bits.
constexpr std::int32_t laplaceBufferBytes(Size roi, int extent, int pixelBytes, int channels) {
  return static_cast<std::int32_t>(
      static_cast<std::uint32_t>(laplaceWorkBytes(roi, extent, pixelBytes, channels)));
}

/// The sides that are read from memory, and the kind of the others. A region that is no larger than the
/// kernel in some direction has all sides made unless all are in memory.
constexpr BorderWord readBorder(BorderWord word, Size roi, int extent) {
  const bool small = roi.width <= extent || roi.height <= extent;
  return small && !word.has(BorderWord::allInMemory) ? BorderWord{word.bits & BorderWord::typeBits} : word;
}

/// Whether rows have room for vectors of a size: for exactly one, which has both ends of the row, or for two
/// that have an end each.
constexpr bool laplaceSweepsIn(int vectorBytes, int width, int reach, int pixelBytes) {
  const std::int64_t bytes = std::int64_t{width} * pixelBytes;
  return bytes == vectorBytes || bytes >= vectorBytes + reach * pixelBytes;
}

/// The vectors between the one at a row's start and the one at its end, with their neighbours in the row.
struct LaplaceInside {
  std::int64_t first;  ///< where the first of them begins, in bytes
  std::int64_t count;  ///< of those that follow one another
  bool overlaps;       ///< whether one more, at the reach in front of the row's last, makes what is left
};

/// `peelBytes` lie in front of the first vector, if not 0.
constexpr LaplaceInside planLaplaceInside(std::int64_t rowBytes, std::int64_t reachBytes,
                                          std::int64_t peelBytes, std::int64_t vectorBytes) {
  const std::int64_t first = peelBytes != 0 ? peelBytes : vectorBytes;
  const std::int64_t last = rowBytes - vectorBytes, room = last - reachBytes - first;
  const std::int64_t count = room < 0 ? 0 : room / vectorBytes + 1;
  // Where there are none, the vector at the row's start has made more than lies in front of the first.
  const std::int64_t made = count == 0 ? vectorBytes : first + count * vectorBytes;
  return {first, count, made < last};
}

/// Rows of a band. What neighbouring rows share is made anew in each band, so it has more rows the shorter
/// they are, while its lines stay in a near cache. Of long rows that are stored past the caches the 3 by 3
/// kernel, with little to share, takes fewer: each is a place of its own that memory is written to.
constexpr std::int64_t laplaceBandRows(std::int64_t rowBytes, int reach, bool streams) {
  const int fewest = streams && reach == 1 ? leastStreamedBandRows : leastBandRows;
  const std::int64_t rows = bandBytes / rowBytes;
  return rows > mostBandRows ? mostBandRows : rows < fewest ? fewest : rows;
}

/// Vectors that may be stored past the caches are whole lines. The few buffers in which such stores gather do
/// not hold the parts of lines of a band's rows until they are whole.
constexpr int streamedVectorBytes = 64;

/// Whether a region is stored past the caches, in such vectors: a large one whose rows lie alike in them,
/// with `peelBytes` in front of the first. A vector that is not at the row's end needs its neighbours there.
constexpr bool planLaplaceStreaming(Size roi, int pixelBytes, std::int64_t dstStep, std::int64_t peelBytes,
                                    int reach) {
  return std::int64_t{roi.width} * roi.height * pixelBytes >= streamFromBytes &&
         dstStep % streamedVectorBytes == 0 && peelBytes % pixelBytes == 0 &&
         (peelBytes == 0 || peelBytes >= reach * pixelBytes);
}

}  // namespace
}  // namespace Zorvan::Primitives
