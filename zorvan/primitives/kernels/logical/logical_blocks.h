#pragma once

// A logical operation on a row in blocks of 64 bytes: the complement from SSE4.2 on, the two-image operations
// of the two newest variants.
//
// What lies in front of the first block and behind the last goes in pieces, of which each instruction set has
// its own. No byte is done twice, so that a row may be combined where it lies.

#include "zorvan/primitives/kernels/logical/LogicalPlan.h"
#include "zorvan/primitives/kernels/logical/logical_rows.h"

namespace Zorvan::Primitives {
namespace {

struct Pieces32;
struct MaskedPieces;

/// Pieces of 16, 4 and 1 bytes.
struct Pieces16 {
  using Vector = Vector16;
  static constexpr int streamedBytes = 64;  // a step

  template <class Rows>
  static void write(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
    for (; end - i >= 16; i += 16) rows.template vector<Vector16>(i).store(dst + i);
    for (; end - i >= 4; i += 4) storeAs(dst + i, rows.template word<std::uint32_t>(i));
    for (; i < end; ++i) storeAs(dst + i, rows.template word<std::uint8_t>(i));
  }
};

#ifdef __AVX2__
/// Pieces of 32 bytes, then one of whole groups of 4 bytes, then single bytes.
struct Pieces32 {
  using Vector = Vector32;
  static constexpr int streamedBytes = 128;

  template <class Rows>
  static void write(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
    for (; end - i >= 32; i += 32) rows.template vector<Vector32>(i).store(dst + i);
    if (const auto groups = static_cast<int>(end - i) / 4; groups != 0) {
      const __m256i lanes =
          _mm256_cmpgt_epi32(_mm256_set1_epi32(groups), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
      _mm256_maskstore_epi32(reinterpret_cast<int*>(dst + i), lanes, rows.fourByteGroups(i, lanes));
      i += 4 * groups;
    }
    for (; i < end; ++i) storeAs(dst + i, rows.template word<std::uint8_t>(i));
  }
};
#endif

#ifdef __AVX512F__
/// Pieces of 64 bytes, the last one masked.
struct MaskedPieces {
  using Vector = Vector64;
  static constexpr int streamedBytes = 128;

  template <class Rows>
  static void write(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
    for (; end - i >= 64; i += 64) rows.template vector<Vector64>(i).store(dst + i);
    if (i < end) {
      const __mmask64 lanes = _bzhi_u64(~0ULL, static_cast<unsigned>(end - i));
      _mm512_mask_storeu_epi8(dst + i, lanes, rows.bytes(i, lanes));
    }
  }
};
#endif

/// Writes whole blocks of `bytes` from offset `i` on and tells where they end.
template <class Vector, int bytes, LogicalStores stores, class Rows>
inline std::int64_t writeBlocks(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
  constexpr int count = bytes / Vector::size;
  for (; end - i >= bytes; i += bytes) {
    Vector vectors[count];
    for (int v = 0; v < count; ++v) vectors[v] = rows.template vector<Vector>(i + Vector::size * v);
    for (int v = 0; v < count; ++v) {
      u8* const at = dst + i + Vector::size * v;
      if constexpr (stores == LogicalStores::anywhere) {
        vectors[v].store(at);
      } else if constexpr (stores == LogicalStores::aligned) {
        vectors[v].storeAligned(at);
      } else {
        vectors[v].stream(at);
      }
    }
  }
  return i;
}

/// A row that is longer than the way to any boundary.
template <class Pieces, LogicalStores stores>
inline void xorConstantBlocks(u8 constant, const u8* src, u8* dst, std::int64_t length) {
  constexpr int blockBytes = stores == LogicalStores::streaming ? Pieces::streamedBytes : 64;
  const XoredRow<> row{src, constant};
  std::int64_t i = bytesToBoundary(dst, 64);
  Pieces::write(row, dst, 0, i);
  i = writeBlocks<typename Pieces::Vector, blockBytes, stores>(row, dst, i, length);
  Pieces::write(row, dst, i, length);
}

/// A row from its first byte on, of a number of blocks that is known to the compiler, and a tail. Short rows
/// cost more in counting than in moving.
template <class Pieces, int blocks>
inline void xorConstantShort(u8 constant, const u8* src, u8* dst, std::int64_t length) {
  const XoredRow<> row{src, constant};
  writeBlocks<typename Pieces::Vector, 64, LogicalStores::anywhere>(row, dst, 0, 64 * blocks);
  if (length != 64 * blocks) Pieces::write(row, dst, 64 * blocks, length);
}

/// The body takes four blocks a turn while it lasts: two loads and a store a block leave no room for
/// counting.
template <class Pieces, class Op>
inline void combineBlocks(const u8* src1, const u8* src2, u8* dst, std::int64_t length) {
  const CombinedRows<Op> rows{src1, src2};
  std::int64_t i = bytesToBoundary(dst, 64);
  if (i > length) i = length;
  Pieces::write(rows, dst, 0, i);
  i = writeBlocks<typename Pieces::Vector, 256, LogicalStores::anywhere>(rows, dst, i, length);
  i = writeBlocks<typename Pieces::Vector, 64, LogicalStores::anywhere>(rows, dst, i, length);
  Pieces::write(rows, dst, i, length);
}

}  // namespace
}  // namespace Zorvan::Primitives
