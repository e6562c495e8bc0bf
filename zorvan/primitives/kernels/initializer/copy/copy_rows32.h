#pragma once

// Copies rows of whole 32-byte vectors, or rows of any length with streaming stores: the plain copy of images
// with gaps in the two newest variants.

#include "zorvan/primitives/kernels/initializer/copy/copy_run32.h"
#include "zorvan/primitives/kernels/initializer/copy/rest_of_row.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Copy {
namespace {

/// Whole 32-byte vectors, the destination aligned to them.
template <Stores stores>
inline void copyVectors(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow row{src, dst, length};
  row.copyAll<Bytes256, stores>();
  row.copyAll<Halves64, stores>();
  if (row.length != 0) row.copyNext<Vector32, stores>();
}

inline void copyVectorsBackward(const u8* src, u8* dst, std::int64_t length) {
  const std::int64_t lines = length & ~std::int64_t{63};
  if (length & 32) Vector32::load(src + lines).storeAligned(dst + lines);
  copyLinesBackward(src, dst, lines);
}

/// A row of any length, also one that ends before the boundary.
inline void copyRowStreaming(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow row{src, dst, length};
  const std::int64_t toBoundary = bytesToBoundary(dst, 64);
  row.copyBits<Bytes1, Bytes2, Bytes4, Bytes8, Vector16, Vector32>(toBoundary < length ? toBoundary : length);
  row.copyAll<Bytes256, Stores::streaming>();
  row.copyAll<Halves64, Stores::streaming>();
  row.copyBits<Vector32, Vector16, Bytes8, Bytes4, Bytes2, Bytes1>(row.length);
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
#endif
