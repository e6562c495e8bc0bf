#pragma once

// Copies rows that are expected to stay in the cache: the plain copy of 8-bit and 16-bit images where 32-byte
// vectors exist but the processor splits them.
//
// From 128 bytes on, one unaligned 16-byte store reaches the destination's boundary, 64 bytes per iteration
// follow, and one overlapping copy ends the row. Shorter rows go by the bits of their length.

#include "zorvan/primitives/kernels/initializer/copy/rest_of_row.h"

namespace Zorvan::Primitives::Copy {
namespace {

inline void copyShort(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow row{src, dst, length};
  using Bytes32 = Twice<Vector16>;
  using Bytes64 = Twice<Bytes32>;
  if (row.length < 128) {
    row.copyBits<Bytes64, Bytes32, Vector16, Bytes8, Bytes4, Bytes2, Bytes1>(row.length);
    return;
  }
  row.alignTo<Vector16>(16);
  row.copyAll<Bytes64, Stores::aligned>();
  if (row.length & 32) row.copyNext<Bytes32, Stores::aligned>();
  if (row.length != 0) row.copyLast<Bytes32>();
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
