#pragma once

// Copies rows of whole 32-byte vectors, or rows of any length past the cache: the plain copy
// of images with gaps in the two newest variants.

#include "zorvan/primitives/kernels/initializer/copy/copy_pieces.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_run.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

/// Whole 32-byte vectors, the destination aligned to them.
template <class Stores>
inline void copyVectors(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  CopyRun row{src, dst, length};
  row.takeAll<WideBytes256, Stores>();
  row.takeAll<WideBytes64, Stores>();
  if (row.length != 0) row.take<Vector32, Stores>();
}

inline void copyVectorsBackward(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  const std::int64_t blocks = length & ~std::int64_t{63};
  if (length & 32) Vector32::load(src + blocks).storeAligned(dst + blocks);
  copyBlocksBackward(src, dst, blocks);
}

/// A row of any length past the cache; also one that ends before the boundary.
inline void copyRowStreaming(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  CopyRun row{src, dst, length};
  const std::int64_t toBoundary = bytesToBoundary(dst, 64);
  row.takeBits<Bytes1, Bytes2, Bytes4, Bytes8, Vector16, Vector32>(toBoundary < length ? toBoundary : length);
  row.takeAll<WideBytes256, StreamingStores>();
  row.takeAll<WideBytes64, StreamingStores>();
  row.takeBits<Vector32, Vector16, Bytes8, Bytes4, Bytes2, Bytes1>(row.length);
}

}  // namespace
}  // namespace Zorvan::Primitives
#endif
