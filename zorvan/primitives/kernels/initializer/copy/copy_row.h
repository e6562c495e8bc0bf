#pragma once

// Copies a row with 16-byte stores: the plain copy of the oldest variant.
//
// One unaligned store reaches the destination's first 16-byte boundary, then 64 bytes a turn on it, then the
// last bytes in pieces. Its processors pay dearly for a load that crosses a cache line, so the source's own
// alignment chooses the loads: whole vectors, pairs of 8 bytes, or any address.

#include "zorvan/primitives/kernels/initializer/copy/copy_pieces.h"

namespace Zorvan::Primitives {
namespace {

/// A vector put together from two loads of 8 bytes.
struct JoinedVector16 : Vector16 {
  static JoinedVector16 load(const unsigned char* p) {
    const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    const __m128i high = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + 8));
    return {{_mm_unpacklo_epi64(low, high)}};
  }
};

inline void copyRow(const unsigned char* src, unsigned char* dst, std::int64_t length, bool streaming) {
  CopyRun row{src, dst, length};
  using Block = Twice<Twice<Vector16>>;
  using JoinedBlock = Twice<Twice<JoinedVector16>>;
  if (row.length >= Block::size) {
    row.alignByPiece<Vector16>(16);
    if (streaming) {
      row.takeAll<Block, StreamingStores>();
      fenceStores();
    } else if (isAligned(row.src, 16)) {
      row.takeAllAligned<Block, AlignedStores>();
    } else if (isAligned(row.src, 8)) {
      row.takeAll<JoinedBlock, AlignedStores>();
    } else {
      row.takeAll<Block, AlignedStores>();
    }
  }
  row.takeAll<Bytes8>();
  row.takeBits<Bytes4, Bytes2, Bytes1>(row.length);
}

}  // namespace
}  // namespace Zorvan::Primitives
