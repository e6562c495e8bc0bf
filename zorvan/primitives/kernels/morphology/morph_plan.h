#pragma once

// What an erosion or dilation decides before it touches a pixel: by which algorithm a mask is walked, and how
// the work is cut. Pure, so that each limit can be tested from both sides.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/frame/MorphSpec.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"

namespace Zorvan::Primitives {
namespace {

enum class MorphForm { fused, separable, known3, known5, known7, cross, cellList, cellTable, runs, scan };

/// From this number of set cells on they are walked in their table; below, a list of offsets holds them.
constexpr int kListedCells = 128;

/// The newer variants choose by what the analysis found. Only masks without any such form have their cells
/// counted.
template <class CountCells>
constexpr MorphForm planMorphForm(Size mask, std::uint32_t flags, CountCells countCells) {
  if (flags & MorphSpec::allSet) {
    return mask.width == 3 && mask.height == 3 ? MorphForm::fused : MorphForm::separable;
  }
  if (flags & MorphSpec::knownShape) {
    if ((flags & MorphSpec::knownShape7) == MorphSpec::knownShape7) return MorphForm::known7;
    if ((flags & MorphSpec::knownShape5) == MorphSpec::knownShape5) return MorphForm::known5;
    return MorphForm::known3;
  }
  if (flags & MorphSpec::cross) return MorphForm::cross;
  if (!(flags & MorphSpec::contiguous)) {
    return countCells() < kListedCells ? MorphForm::cellList : MorphForm::cellTable;
  }
  return MorphForm::runs;
}

/// The two oldest know solid masks and others.
constexpr MorphForm planOldMorphForm(std::uint32_t flags) {
  return flags & MorphSpec::allSet ? MorphForm::separable : MorphForm::scan;
}

constexpr std::int64_t ringRowBytes(int width, int pixelBytes) {
  return (std::int64_t{width} * pixelBytes + 31) & ~std::int64_t{31};
}

/// Columns of a band, a multiple of 64 bytes, or all of a region whose ring is small enough.
constexpr int planRingColumns(int width, int maskHeight, int pixelBytes) {
  if (ringRowBytes(width, pixelBytes) * maskHeight <= morphRingBytes) return width;
  const std::int64_t fitting = morphRingBytes / maskHeight & ~std::int64_t{63};
  const std::int64_t bytes = fitting < morphLeastBandBytes ? morphLeastBandBytes : fitting;
  const std::int64_t columns = bytes / pixelBytes;
  return columns < width ? static_cast<int>(columns) : width;
}

/// Columns of a strip in which a result is made straight from the rows, a multiple of 64 bytes, or all.
constexpr std::int64_t planStripColumns(int width, int readRows, int pixelBytes) {
  const std::int64_t fitting = morphStripBytes / readRows & ~std::int64_t{63};
  const std::int64_t bytes = fitting < morphLeastBandBytes ? morphLeastBandBytes : fitting;
  return width * std::int64_t{pixelBytes} <= bytes ? width : bytes / pixelBytes;
}

/// The usual solid masks are squares up to this one, whose reach is inside a vector of any width.
constexpr int kLargestBordered = 9;
/// As the least of them: none.
constexpr int kNoneBordered = kLargestBordered + 1;

/// Whether a solid mask takes its border from registers, which a variant does from masks of `least` by
/// `least` on.
constexpr bool planBordered(Size mask, BorderType type, bool allInMemory, int least) {
  const bool usual = mask.width == mask.height && mask.width % 2 == 1 && mask.width >= least &&
                     mask.width <= kLargestBordered;
  return usual && (allInMemory || type == BorderType::replicate || type == BorderType::constant);
}

/// Bytes between the rows of the ring, which holds one row less than the mask is high in room for as many as
/// that, at 32 bytes' rounding: whole vectors where the rows are long enough to make room for them.
constexpr std::int64_t planRingStep(int width, int maskHeight, int pixelBytes) {
  const std::int64_t least = ringRowBytes(width, pixelBytes), whole = (least + 63) & ~std::int64_t{63};
  return (maskHeight - 1) * whole <= maskHeight * least ? whole : least;
}

constexpr std::int64_t resultBytes(Size roi, int pixelBytes) {
  return std::int64_t{roi.width} * pixelBytes * roi.height;
}

/// Blocks that may be stored past the caches are whole lines. The few buffers in which such stores gather do
/// not hold the parts of lines of several rows at a time until they are whole.
constexpr int morphStreamedBlockBytes = 64;

/// Whether a part's rows of results are stored past the caches, in such blocks: in a large result, if the
/// rows lie alike in their blocks and have at least two each.
constexpr bool planStreaming(std::int64_t bytes, std::int64_t rowBytes, std::int64_t dstStep) {
  return bytes >= morphStreamFromBytes && dstStep % morphStreamedBlockBytes == 0 &&
         rowBytes >= 2 * morphStreamedBlockBytes;
}

/// Whether an operation may read beside its region. Any bit beyond the kind can say so: bits 4 to 7 in every
/// entry, bits 8 to 11 in one of them; negative words are taken too.
constexpr bool planReadsBeside(int borderWord) { return (borderWord & ~BorderWord::typeBits) != 0; }

/// Bands of rows in which two passes follow each other, one if the region is not divided. Each is twice as
/// high as the mask, so that both passes have room for the stripes of their borders, the second too, which
/// stays behind by its reach. A region no wider than the mask is built with its border as a whole.
constexpr int planBands(Size roi, Size mask, std::int64_t betweenStep) {
  if (mask.width >= roi.width) return 1;
  const std::int64_t least = 2 * std::int64_t{mask.height};
  const std::int64_t fitting = morphBetweenBytes / betweenStep - (mask.height - 1);
  const std::int64_t rows = fitting < least ? least : fitting;
  return roi.height < rows ? 1 : static_cast<int>(roi.height / rows);
}

/// The row behind band number `band`, counted from 1: bands are equally high, or one row higher.
constexpr int planBandEnd(int height, int bands, int band) {
  return static_cast<int>(std::int64_t{height} * band / bands);
}

/// Rows up to this length are worth computing as one long row.
constexpr std::int64_t kPackedRowBytes = 64;

/// Whether the neighbourhoods of a region `width` pixels wide lie in rows without a gap, and in short ones.
constexpr bool planPackedRows(std::int64_t step, int width, int maskWidth, int pixelBytes) {
  return step <= kPackedRowBytes && step == (std::int64_t{width} + maskWidth - 1) * pixelBytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
