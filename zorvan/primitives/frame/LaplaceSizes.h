#pragma once

// The codes that the entries of the Laplace filter take, and the work memory that callers provide, by its
// interface contract: more than these filters use. Entries report the lowest 32 bits; the facade needs the
// exact size to allocate.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {

/// The size of a filter's kernel, as the entries take it.
enum MaskCode : int { mask3x3 = 33, mask5x5 = 55 };

/// The type of pixels, as the entries take it.
enum DataType : int { dataType8u = 1, dataType16s = 7, dataType32f = 13 };

namespace Laplace {
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

/// The work memory: rows of sums, a copy with a border, and room to align both.
constexpr std::uint64_t workBytes(Size roi, int extent, int pixelBytes, int channels = 1) {
  const std::uint64_t rows =
      static_cast<std::uint64_t>(sumRows(extent)) * sumRowBytes(roi.width, extent, pixelBytes, channels);
  return expansionBytes(roi, extent, pixelBytes, channels) + rows + workAlignmentBytes;
}

/// The size that the entry reports.
constexpr std::int32_t reportedWorkBytes(Size roi, int extent, int pixelBytes, int channels) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(workBytes(roi, extent, pixelBytes, channels)));
}

}  // namespace
}  // namespace Laplace
}  // namespace Zorvan::Primitives
