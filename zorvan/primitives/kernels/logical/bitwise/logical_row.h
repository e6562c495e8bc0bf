#pragma once

// A logical operation on a row in 16-byte vectors, with the destination on a 16-byte boundary: the two-image
// operations of the four older variants, the complement of the two oldest.
//
// The peel is single bytes; a row that ends before the boundary has none. Whole blocks follow, then the tail
// in blocks of half the size each, down to a byte. Sources that are aligned after the peel have aligned
// loads in a loop of their own: unaligned loads are slow on old processors, even from aligned addresses.

#include "zorvan/primitives/kernels/logical/bitwise/logical_rows.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

template <int bytes, class Rows>
inline void writeAlignedBlock(const Rows& rows, u8* dst, std::int64_t i) {
  Vector16 vectors[bytes / 16];
  for (int v = 0; v < bytes / 16; ++v) vectors[v] = rows.template vector<Vector16>(i + 16 * v);
  for (int v = 0; v < bytes / 16; ++v) vectors[v].storeAligned(dst + i + 16 * v);
}

template <class Word, class Rows>
inline void writeWord(const Rows& rows, u8* dst, std::int64_t i) {
  storeAs(dst + i, rows.template word<Word>(i));
}

/// `dst` is aligned, or `length` is less than a vector.
template <int blockBytes, class Rows>
inline void writeOnBoundary(const Rows& rows, u8* dst, std::int64_t length) {
  std::int64_t i = 0;
  for (; length - i >= blockBytes; i += blockBytes) writeAlignedBlock<blockBytes>(rows, dst, i);
  const std::int64_t rest = length - i;
  if (blockBytes > 64 && (rest & 64)) writeAlignedBlock<64>(rows, dst, i), i += 64;
  if ((rest & 63) == 0) return;  // narrow rows would notice the tests below
  if (rest & 32) writeAlignedBlock<32>(rows, dst, i), i += 32;
  if (rest & 16) writeAlignedBlock<16>(rows, dst, i), i += 16;
  if (rest & 8) writeWord<std::uint64_t>(rows, dst, i), i += 8;
  if (rest & 4) writeWord<std::uint32_t>(rows, dst, i), i += 4;
  if (rest & 2) writeWord<u16>(rows, dst, i), i += 2;
  if (rest & 1) writeWord<u8>(rows, dst, i);
}

/// Writes the bytes up to the boundary and returns their number.
template <class Rows>
inline std::int64_t writePeel(const Rows& rows, u8* dst, std::int64_t length) {
  const std::int64_t peel = bytesToBoundary(dst, 16);
  if (peel > length) return 0;
  for (std::int64_t i = 0; i < peel; ++i) writeWord<u8>(rows, dst, i);
  return peel;
}

inline void xorConstantRow(u8 constant, const u8* src, u8* dst, std::int64_t length) {
  constexpr int blockBytes = 64;
  const std::int64_t peel = writePeel(XoredRow<>{src, constant}, dst, length);
  src += peel;
  dst += peel;
  length -= peel;
  if (isAligned(src, 16)) return writeOnBoundary<blockBytes>(XoredRow<true>{src, constant}, dst, length);
  writeOnBoundary<blockBytes>(XoredRow<false>{src, constant}, dst, length);
}

template <class Op>
inline void combineRow(const u8* src1, const u8* src2, u8* dst, std::int64_t length) {
  constexpr int blockBytes = 128;
  const std::int64_t peel = writePeel(CombinedRows<Op>{src1, src2}, dst, length);
  src1 += peel;
  src2 += peel;
  dst += peel;
  length -= peel;
  if (isAligned(src1, 16)) {
    if (isAligned(src2, 16)) {
      return writeOnBoundary<blockBytes>(CombinedRows<Op, true, true>{src1, src2}, dst, length);
    }
    return writeOnBoundary<blockBytes>(CombinedRows<Op, true, false>{src1, src2}, dst, length);
  }
  if (isAligned(src2, 16)) {
    return writeOnBoundary<blockBytes>(CombinedRows<Op, false, true>{src1, src2}, dst, length);
  }
  writeOnBoundary<blockBytes>(CombinedRows<Op, false, false>{src1, src2}, dst, length);
}

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
