#pragma once

// Which algorithm an erosion or dilation takes for a mask, and how it divides the region. Pure functions, so
// that each limit can be tested from both sides.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/frame/MorphSpec.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"
#include "zorvan/primitives/kernels/neighbourhood/streaming_plan.h"

namespace Zorvan::Primitives::Morphology {
namespace {

enum class MorphForm { separable, known3, known5, known7, cross, cellList, cellTable, runs, scan };

/// Masks with fewer set cells are a list of offsets on the stack; others are read from their table.
constexpr int listedCells = 128;

/// The four newer variants. `countCells` is called for masks of no other form only.
template <class CountCells>
constexpr MorphForm planMorphForm(std::uint32_t flags, CountCells countCells) {
  if (flags & MorphSpec::allSet) return MorphForm::separable;
  if (flags & MorphSpec::knownShape) {
    if ((flags & MorphSpec::knownShape7) == MorphSpec::knownShape7) return MorphForm::known7;
    if ((flags & MorphSpec::knownShape5) == MorphSpec::knownShape5) return MorphForm::known5;
    return MorphForm::known3;
  }
  if (flags & MorphSpec::cross) return MorphForm::cross;
  if (!(flags & MorphSpec::contiguous)) {
    return countCells() < listedCells ? MorphForm::cellList : MorphForm::cellTable;
  }
  return MorphForm::runs;
}

/// The two oldest variants distinguish solid masks from others only.
constexpr MorphForm planOldMorphForm(std::uint32_t flags) {
  return flags & MorphSpec::allSet ? MorphForm::separable : MorphForm::scan;
}

constexpr std::int64_t ringRowBytes(int width, int pixelBytes) {
  return (std::int64_t{width} * pixelBytes + 31) & ~std::int64_t{31};
}

/// Columns of a band: a multiple of 64 bytes, or the whole width if its ring is small enough.
constexpr int planRingColumns(int width, int maskHeight, int pixelBytes) {
  if (ringRowBytes(width, pixelBytes) * maskHeight <= morphRingBytes) return width;
  const std::int64_t fitting = morphRingBytes / maskHeight & ~std::int64_t{63};
  const std::int64_t bytes = fitting < morphLeastBandBytes ? morphLeastBandBytes : fitting;
  const std::int64_t columns = bytes / pixelBytes;
  return columns < width ? static_cast<int>(columns) : width;
}

/// Columns of a strip, for the algorithm without a ring: a multiple of 64 bytes, or the whole width.
constexpr std::int64_t planStripColumns(int width, int readRows, int pixelBytes) {
  const std::int64_t fitting = morphStripBytes / readRows & ~std::int64_t{63};
  const std::int64_t bytes = fitting < morphLeastBandBytes ? morphLeastBandBytes : fitting;
  return width * std::int64_t{pixelBytes} <= bytes ? width : bytes / pixelBytes;
}

/// The side of the largest square mask with a kernel of its own. Its reach is not longer than any vector.
constexpr int largestBordered = 9;
/// As the side of the least mask: no mask.
constexpr int noneBordered = largestBordered + 1;

/// Whether the border of a solid mask may be made in registers. `least` is the side of the smallest mask for
/// which the variant does so.
constexpr bool planBordered(Size mask, int least) {
  return mask.width == mask.height && mask.width % 2 == 1 && mask.width >= least &&
         mask.width <= largestBordered;
}

/// Whether rows are long enough for that: they are a vector, or longer by the reach at both ends at least,
/// since all loads are of whole vectors within the row. Mirrored columns are mirrored once.
constexpr bool planBorderedRows(int width, int maskWidth, int vectorPixels) {
  return width >= maskWidth && (width == vectorPixels || width >= vectorPixels + maskWidth - 1);
}

/// Bytes between the rows of the ring. Its memory has room for `maskHeight` rows rounded up to 32 bytes, and
/// it has one row less: rows are rounded up to 64 bytes where the room allows it, so that they end in whole
/// vectors.
constexpr std::int64_t planRingStep(int width, int maskHeight, int pixelBytes) {
  const std::int64_t least = ringRowBytes(width, pixelBytes), whole = (least + 63) & ~std::int64_t{63};
  return (maskHeight - 1) * whole <= maskHeight * least ? whole : least;
}

constexpr std::int64_t resultBytes(Size roi, int pixelBytes) {
  return std::int64_t{roi.width} * pixelBytes * roi.height;
}

/// Whether a result takes streaming stores: rows need at least two lines.
constexpr bool planStreaming(std::int64_t bytes, std::int64_t rowBytes, std::int64_t dstStep,
                             int vectorBytes) {
  return mayStream(bytes, dstStep, vectorBytes) && rowBytes >= 2 * streamedBlockBytes;
}

/// Whether to prefetch the rows of a source.
constexpr bool planPrefetch(std::int64_t bytes) { return bytes >= morphPrefetchFromBytes; }

/// Whether an operation may read outside its region. Any bit above the type can allow it: bits 4 to 7 in
/// every entry, bits 8 to 11 in one of them. Negative words are valid too.
constexpr bool planReadsBeside(int borderWord) { return (borderWord & ~BorderWord::typeBits) != 0; }

/// The number of bands of rows for two passes that alternate, 1 if the region is not divided. Bands are at
/// least twice as high as the mask: both passes need room for the stripes of their borders, and the second
/// one trails the first by its reach. A region not wider than the mask is copied as a whole and not divided.
constexpr int planBands(Size roi, Size mask, std::int64_t betweenStep) {
  if (mask.width >= roi.width) return 1;
  const std::int64_t least = 2 * std::int64_t{mask.height};
  const std::int64_t fitting = morphBetweenBytes / betweenStep - (mask.height - 1);
  const std::int64_t rows = fitting < least ? least : fitting;
  return roi.height < rows ? 1 : static_cast<int>(roi.height / rows);
}

/// The row after band number `band`, counted from 1. Heights of bands differ by one row at most.
constexpr int planBandEnd(int height, int bands, int band) {
  return static_cast<int>(std::int64_t{height} * band / bands);
}

/// Longer rows fill vectors well enough by themselves.
constexpr std::int64_t packedRowBytes = 64;

/// Whether rows are computed together as one long row: short ones without a gap between their neighbourhoods.
constexpr bool planPackedRows(std::int64_t step, int width, int maskWidth, int pixelBytes) {
  return step <= packedRowBytes && step == (std::int64_t{width} + maskWidth - 1) * pixelBytes;
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
