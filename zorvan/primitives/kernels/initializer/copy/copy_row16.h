#pragma once

// Copies a row with 16-byte stores: the plain copy of the oldest variant.
//
// One unaligned store reaches the destination's first 16-byte boundary, 64 bytes per iteration follow, then
// the last bytes in integers. Its processors are slow at loads that cross a cache line, so the source's own
// alignment chooses the loads: aligned vectors, pairs of 8 bytes, or unaligned vectors.

#include "zorvan/primitives/kernels/initializer/copy/rest_of_row.h"
#include "zorvan/primitives/kernels/simd/partial.h"

namespace Zorvan::Primitives::Copy {
namespace {

/// A vector that is loaded as two halves of 8 bytes.
struct JoinedVector16 : Vector16 {
  static JoinedVector16 load(const u8* p) { return {{_mm_unpacklo_epi64(loadLow<8>(p), loadLow<8>(p + 8))}}; }
};

[[gnu::always_inline]] inline void copyRow16(const u8* src, u8* dst, std::int64_t length, bool streaming) {
  RestOfRow row{src, dst, length};
  using Bytes64 = Twice<Twice<Vector16>>;
  using JoinedBytes64 = Twice<Twice<JoinedVector16>>;
  if (row.length >= Bytes64::size) {
    row.alignTo<Vector16>(16);
    if (streaming) {
      row.copyAll<Bytes64, Stores::streaming>();
      fenceStores();
    } else if (isAligned(row.src, 16)) {
      row.copyAllAligned<Bytes64>();
    } else if (isAligned(row.src, 8)) {
      row.copyAll<JoinedBytes64, Stores::aligned>();
    } else {
      row.copyAll<Bytes64, Stores::aligned>();
    }
  }
  row.copyAll<Bytes8>();
  row.copyBits<Bytes4, Bytes2, Bytes1>(row.length);
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
