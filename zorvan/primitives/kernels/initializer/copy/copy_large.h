#pragma once

// Copies rows of at least 128 bytes past the cache with 32-byte stores. One unaligned 64-byte block reaches
// the destination's cache line, 128 bytes a turn follow, and the tail still streams what a whole vector
// holds. The caller fences after the last row.

#include "zorvan/primitives/kernels/initializer/copy/copy_pieces.h"

#ifdef __AVX__
namespace Zorvan::Primitives {
namespace {

inline void copyLarge(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  CopyRun row{src, dst, length};
  using Bytes64 = Twice<Vector32>;
  using Bytes128 = Twice<Bytes64>;
  row.alignByPiece<Bytes64>(64);
  row.takeAll<Bytes128, StreamingStores>();
  const std::int64_t rest = row.length;
  if (rest & 64) row.take<Bytes64, StreamingStores>();
  if (rest & 32) row.take<Vector32, StreamingStores>();
  if (rest & 16) row.take<Vector16, StreamingStores>();
  row.takeBits<Bytes8, Bytes4, Bytes2, Bytes1>(rest);
}

}  // namespace
}  // namespace Zorvan::Primitives
#endif
