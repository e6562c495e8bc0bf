#pragma once

// A logical operation on a row in blocks of 64 bytes: the complement from SSE4.2 on, the two-image operations
// of the two newest variants.
//
// What lies in front of the first block and behind the last goes in pieces, of which each instruction set has
// its own. No byte is read after it has been written, so that a row may be combined where it lies.

#include "zorvan/primitives/kernels/logical/bitwise/logical_plan.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_rows.h"

namespace Zorvan::Primitives::Bitwise {
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

/// So many bytes of a result, read before they are written.
template <class Vector, int bytes>
struct LogicalBlock {
  static constexpr int count = bytes / Vector::size;
  Vector vectors[count];

  template <class Rows>
  LogicalBlock(const Rows& rows, std::int64_t i) {
    for (int v = 0; v < count; ++v) vectors[v] = rows.template vector<Vector>(i + Vector::size * v);
  }
  template <LogicalStores stores>
  void write(u8* dst) const {
    for (int v = 0; v < count; ++v) {
      u8* const at = dst + Vector::size * v;
      if constexpr (stores == LogicalStores::anywhere) {
        vectors[v].store(at);
      } else if constexpr (stores == LogicalStores::aligned) {
        vectors[v].storeAligned(at);
      } else {
        vectors[v].stream(at);
      }
    }
  }
};

/// Writes whole blocks of `bytes` from offset `i` on and tells where they end. `ahead`: asks for what is read
/// ahead of that.
template <class Vector, int bytes, LogicalStores stores, bool ahead = false, class Rows>
inline std::int64_t writeBlocks(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
  for (; end - i >= bytes; i += bytes) {
    for (int line = 0; ahead && line < bytes; line += 64) rows.prefetch(i + line);
    LogicalBlock<Vector, bytes>(rows, i).template write<stores>(dst + i);
  }
  return i;
}

/// A row that is longer than the way to any boundary. In place, bytes beside a piece that has just been
/// written are slow to read: the first block is read before the head is written, and the tail is written long
/// before the next row's head is read.
template <class Pieces, LogicalStores stores, bool ahead>
inline void xorConstantBlocks(u8 constant, const u8* src, u8* dst, std::int64_t length) {
  using Vector = typename Pieces::Vector;
  constexpr int blockBytes = stores == LogicalStores::streaming ? Pieces::streamedBytes : 64;
  const XoredRow<> row{src, constant};
  const std::int64_t peel = bytesToBoundary(dst, 64), end = peel + ((length - peel) & -blockBytes);
  const LogicalBlock<Vector, blockBytes> first(row, peel);
  Pieces::write(row, dst, 0, peel);
  Pieces::write(row, dst, end, length);
  first.template write<stores>(dst + peel);
  writeBlocks<Vector, blockBytes, stores, ahead>(row, dst, peel + blockBytes, end);
}

/// A row of `length` bytes, from one value of type `Word` up to two of them.
template <class Word, class Rows>
inline void writeWordPair(const Rows& rows, u8* dst, std::int64_t length) {
  const std::int64_t last = length - static_cast<std::int64_t>(sizeof(Word));
  const Word first = rows.template word<Word>(0), second = rows.template word<Word>(last);
  storeAs(dst, first);
  storeAs(dst + last, second);
}
template <class Vector, int bytes, class Rows>
inline void writeBlockPair(const Rows& rows, u8* dst, std::int64_t length) {
  const LogicalBlock<Vector, bytes> first(rows, 0), second(rows, length - bytes);
  first.template write<LogicalStores::anywhere>(dst);
  second.template write<LogicalStores::anywhere>(dst + length - bytes);
}

/// A row from its first byte on, of a number of blocks that is known to the compiler, and a tail. Short rows
/// cost more in counting than in moving. The tail is written by a last block or piece that overlaps the one
/// before it, and both are read before either is written: bytes beside a masked store are slow to read, and
/// the next row may begin there.
template <class Pieces, int blocks, bool tail>
inline void xorConstantShort(u8 constant, const u8* src, u8* dst, std::int64_t length) {
  using Vector = typename Pieces::Vector;
  const XoredRow<> row{src, constant};
  if constexpr (!tail) {
    writeBlocks<Vector, 64, LogicalStores::anywhere>(row, dst, 0, 64 * blocks);
  } else if constexpr (blocks > 0) {
    const auto writeWithLast = [&]<class Last, int bytes>() {
      const LogicalBlock<Last, bytes> last(row, length - bytes);
      writeBlocks<Vector, 64, LogicalStores::anywhere>(row, dst, 0, 64 * blocks);
      last.template write<LogicalStores::anywhere>(dst + length - bytes);
    };
    if (length - 64 * blocks <= 16) return writeWithLast.template operator()<Vector16, 16>();
    writeWithLast.template operator()<Vector, 64>();
  } else {
#ifdef __AVX2__
    if (length >= 32) return writeBlockPair<Vector32, 32>(row, dst, length);
#else
    if (length >= 32) return writeBlockPair<Vector16, 32>(row, dst, length);
#endif
    if (length >= 16) return writeBlockPair<Vector16, 16>(row, dst, length);
    if (length >= 8) return writeWordPair<std::uint64_t>(row, dst, length);
    if (length >= 4) return writeWordPair<std::uint32_t>(row, dst, length);
    for (std::int64_t i = 0; i < length; ++i) storeAs(dst + i, row.word<std::uint8_t>(i));
  }
}

/// The body takes four blocks a turn while it lasts: two loads and a store a block leave no room for
/// counting.
template <class Pieces, class Op, bool ahead>
inline void combineBlocks(const u8* src1, const u8* src2, u8* dst, std::int64_t length) {
  using Vector = typename Pieces::Vector;
  const CombinedRows<Op> rows{src1, src2};
  const std::int64_t toBoundary = bytesToBoundary(dst, 64), peel = toBoundary < length ? toBoundary : length;
  const std::int64_t end = peel + ((length - peel) & ~63);
  Pieces::write(rows, dst, 0, peel);
  Pieces::write(rows, dst, end, length);
  const std::int64_t i = writeBlocks<Vector, 256, LogicalStores::anywhere, ahead>(rows, dst, peel, end);
  writeBlocks<Vector, 64, LogicalStores::anywhere>(rows, dst, i, end);
}

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
