#pragma once

// Copies one contiguous run of bytes with 32-byte stores, forward, backward or streaming: the plain copy of
// images without gaps in the two newest variants.

#include "zorvan/primitives/kernels/initializer/copy/rest_of_row.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Copy {
namespace {

using Bytes256 = Twice<Twice<Halves64>>;

/// From one vector to two.
template <class Vector>
inline void copyBothEnds(const u8* src, u8* dst, std::int64_t length) {
  const Vector first = Vector::load(src);
  const Vector last = Vector::load(src + length - Vector::size);
  first.store(dst);
  last.store(dst + length - Vector::size);
}

/// At most 128 bytes.
inline void copyFew(const u8* src, u8* dst, std::int64_t length) {
  if (length >= 64) return copyBothEnds<Halves64>(src, dst, length);
  if (length >= 32) return copyBothEnds<Vector32>(src, dst, length);
  if (length >= 16) return copyBothEnds<Vector16>(src, dst, length);
  if (length >= 8) return copyBothEnds<Bytes8>(src, dst, length);
  if (length >= 4) return copyBothEnds<Bytes4>(src, dst, length);
  RestOfRow{src, dst, length}.copyBits<Bytes2, Bytes1>(length);
}

/// Any length. Unaligned stores at both ends, aligned ones between them.
inline void copyForward(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow row{src, dst, length};
  if (length <= 2 * Halves64::size) return copyFew(src, dst, length);
  row.alignTo<Halves64>(64);
  row.copyAll<Bytes256, Stores::aligned>();
  row.copyAll<Halves64, Stores::aligned>();
  if (row.length != 0) row.copyLast<Halves64>();
}

/// `length` bytes, a multiple of 64, from the end to the start. The destination is 32-byte aligned.
[[gnu::always_inline]] inline void copyLinesBackward(const u8* src, u8* dst, std::int64_t length) {
  for (; length >= Bytes256::size; length -= Bytes256::size) {
    Bytes256::load(src + length - Bytes256::size).storeAligned(dst + length - Bytes256::size);
  }
  for (; length != 0; length -= Halves64::size) {
    Halves64::load(src + length - Halves64::size).storeAligned(dst + length - Halves64::size);
  }
}

/// At least 64 bytes.
inline void copyBackward(const u8* src, u8* dst, std::int64_t length) {
  const std::int64_t peel = bytesToBoundary(dst, 64);
  const std::int64_t lines = (length - peel) & ~std::int64_t{63};
  const std::int64_t tail = peel + lines;
  copyFew(src + tail, dst + tail, length - tail);
  copyLinesBackward(src + peel, dst + peel, lines);
  copyFew(src, dst, peel);
}

/// At least 64 bytes. The caller fences.
inline void copyStreaming(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow run{src, dst, length};
  const std::int64_t peel = bytesToBoundary(run.dst, 64);
  copyFew(src, dst, peel);
  run.skip(peel);
  run.copyAll<Bytes256, Stores::streaming>();
  run.copyAll<Halves64, Stores::streaming>();
  copyFew(run.src, run.dst, run.length);
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
#endif
