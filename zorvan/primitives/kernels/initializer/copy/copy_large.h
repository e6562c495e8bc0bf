#pragma once

// Copies rows of at least 128 bytes with 32-byte streaming stores. One unaligned copy of 64 bytes reaches the
// destination's cache line, 128 bytes per iteration follow, and the tail streams every whole vector too. The
// caller fences after the last row.

#include "zorvan/primitives/kernels/initializer/copy/rest_of_row.h"

#ifdef __AVX__
namespace Zorvan::Primitives::Copy {
namespace {

inline void copyLarge(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow row{src, dst, length};
  using Bytes64 = Twice<Vector32>;
  using Bytes128 = Twice<Bytes64>;
  row.alignTo<Bytes64>(64);
  row.copyAll<Bytes128, Stores::streaming>();
  const std::int64_t rest = row.length;
  if (rest & 64) row.copyNext<Bytes64, Stores::streaming>();
  if (rest & 32) row.copyNext<Vector32, Stores::streaming>();
  if (rest & 16) row.copyNext<Vector16, Stores::streaming>();
  row.copyBits<Bytes8, Bytes4, Bytes2, Bytes1>(rest);
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
#endif
