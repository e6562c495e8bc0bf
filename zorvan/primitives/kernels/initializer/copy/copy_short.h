#pragma once

// Copies rows that are expected to stay in the cache: the plain copy of 8-bit and 16-bit images where 32-byte
// vectors exist but the processor splits them.
//
// From 128 bytes one unaligned 16-byte store reaches the destination's boundary, 64 bytes a turn follow, and
// the end of the row is copied once more as a whole rather than in small pieces. Below, pieces by the bits
// of the length.

#include "zorvan/primitives/kernels/initializer/copy/copy_pieces.h"

namespace Zorvan::Primitives {
namespace {

inline void copyShort(const unsigned char* src, unsigned char* dst, std::int64_t length) {
  CopyRun row{src, dst, length};
  using Bytes32 = Twice<Vector16>;
  using Bytes64 = Twice<Bytes32>;
  if (row.length < 128) {
    row.takeBits<Bytes64, Bytes32, Vector16, Bytes8, Bytes4, Bytes2, Bytes1>(row.length);
    return;
  }
  row.alignByPiece<Vector16>(16);
  row.takeAll<Bytes64, AlignedStores>();
  if (row.length & 32) row.take<Bytes32, AlignedStores>();
  if (row.length != 0) row.takeLast<Bytes32>();
}

}  // namespace
}  // namespace Zorvan::Primitives
