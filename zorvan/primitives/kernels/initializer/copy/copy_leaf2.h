#pragma once

// Copies a row with 16-byte stores, aligned or streaming: the plain copy of variants whose processors may
// describe their caches by leaf-2 descriptors. Each large copy decodes the descriptors again, so that it
// depends on no state of the process.
//
// Aligned: integers up to a 16-byte boundary of the destination, 128 bytes per iteration, then the tail by
// the bits of its length. Streaming: single bytes up to a cache line of the destination, 64 bytes per
// iteration, single bytes again; the caller fences after the last row.

#include <bit>

#include "zorvan/primitives/frame/Leaf2.h"
#include "zorvan/primitives/frame/Vendor.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/initializer/copy/rest_of_row.h"

namespace Zorvan::Primitives::Copy {
namespace {

/// A cache in two bytes: the size is the high nibble shifted left by the low nibble plus 18.
struct Leaf2CopyRow {
  static constexpr int leastShift = 18;
  u8 descriptor;
  u8 size;

  constexpr int bytes() const { return (size >> 4) << ((size & 0xF) + leastShift); }
};

consteval Leaf2CopyRow leaf2CopyRow(int descriptor, int bytes) {
  const int zeros = std::countr_zero(static_cast<unsigned>(bytes));
  const int nibbles = (bytes >> zeros) << 4 | (zeros - Leaf2CopyRow::leastShift);
  return {static_cast<u8>(descriptor), static_cast<u8>(nibbles)};
}

#define LEAF2_CACHE(descriptor, size) \
  static_assert(leaf2CopyRow(descriptor, size).bytes() == size, "this size does not fit in two nibbles");
#define LEAF2_SMALL_CACHE(descriptor, size)
#include "zorvan/primitives/frame/Leaf2Caches.def"

/// Caches of less than 512 KiB are left out: they count as unknown.
constexpr Leaf2CopyRow leaf2CopyRows[] = {
#define LEAF2_CACHE(descriptor, bytes) leaf2CopyRow(descriptor, bytes),
#define LEAF2_SMALL_CACHE(descriptor, bytes)
#include "zorvan/primitives/frame/Leaf2Caches.def"
    {0, 0},
};
static_assert(sizeof leaf2CopyRows == 2 * (43 + 1));

inline CacheAnswer queryLeaf2CacheSize() {
  std::uint32_t regs[4];
  coreCpuid(regs, 0, 0);
  if (!isGenuineIntel(regs)) return {false, 0};
  coreCpuid(regs, 2, 0);
  const Leaf2CopyRow* row = findLeaf2Row(packLeaf2(regs), leaf2CopyRows);
  if (row == nullptr) return {false, 0};
  return {true, row->bytes()};
}

inline void copyRowLeaf2(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow row{src, dst, length};
  using Bytes32 = Twice<Vector16>;
  using Bytes64 = Twice<Bytes32>;
  using Bytes128 = Twice<Bytes64>;
  if (row.length >= Vector16::size) {
    row.copyBits<Bytes1, Bytes2, Bytes4, Bytes8>(bytesToBoundary(row.dst, Vector16::size));
    if (isAligned(row.src, Vector16::size)) {
      row.copyAllAligned<Bytes128>();
    } else {
      row.copyAll<Bytes128, Stores::aligned>();
    }
    const std::int64_t rest = row.length;
    if (rest & 64) row.copyNext<Bytes64, Stores::aligned>();
    if (rest & 32) row.copyNext<Bytes32, Stores::aligned>();
    if (rest & 16) row.copyNext<Vector16, Stores::aligned>();
  }
  row.copyBits<Bytes8, Bytes4>(row.length);
  while (row.length != 0) {
    --row.length;
    row.dst[row.length] = row.src[row.length];
  }
}

/// For rows of at least 64 bytes: the boundary lies within them.
inline void copyRowLeaf2Streaming(const u8* src, u8* dst, std::int64_t length) {
  RestOfRow row{src, dst, length};
  using Bytes64 = Twice<Twice<Vector16>>;
  while (!isAligned(row.dst, Bytes64::size)) row.copyNext<Bytes1>();
  row.copyAll<Bytes64, Stores::streaming>();
  row.copyAll<Bytes1>();
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
