#pragma once

// A logical operation on a row in blocks of 64 bytes: the complement from SSE4.2 on, the two-image operations
// of the two newest variants.
//
// Each instruction set has its own stores for the ends of a row before the first block and after the last. No
// byte is read after it has been written, so that a row may be combined in place.

#include "zorvan/primitives/kernels/logical/bitwise/logical_plan.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_rows.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/stores.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

struct Ends32;
struct Ends64;

/// Stores of 16, 4 and 1 bytes.
struct Ends16 {
  using Vector = Vector16;
  static constexpr int streamedBytes = 64;  // per iteration

  template <class Rows>
  static void write(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
    for (; end - i >= 16; i += 16) rows.template vector<Vector16>(i).store(dst + i);
    for (; end - i >= 4; i += 4) storeAs(dst + i, rows.template word<std::uint32_t>(i));
    for (; i < end; ++i) storeAs(dst + i, rows.template word<u8>(i));
  }
};

#ifdef __AVX2__
/// Stores of 32 bytes, then a masked one of whole dwords, then single bytes.
struct Ends32 {
  using Vector = Vector32;
  static constexpr int streamedBytes = 128;

  template <class Rows>
  static void write(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
    for (; end - i >= 32; i += 32) rows.template vector<Vector32>(i).store(dst + i);
    if (const auto dwords = static_cast<int>(end - i) / 4; dwords != 0) {
      const __m256i lanes = firstDwords(dwords);
      storeMasked(lanes, dst + i, rows.template masked<Vector32>(i, lanes).bits);
      i += 4 * dwords;
    }
    for (; i < end; ++i) storeAs(dst + i, rows.template word<u8>(i));
  }
};
#endif

#ifdef __AVX512F__
/// Stores of 64 bytes, the last one masked.
struct Ends64 {
  using Vector = Vector64;
  static constexpr int streamedBytes = 128;

  template <class Rows>
  static void write(const Rows& rows, u8* dst, std::int64_t i, std::int64_t end) {
    for (; end - i >= 64; i += 64) rows.template vector<Vector64>(i).store(dst + i);
    if (i < end) {
      const auto lanes = firstLanes<__mmask64>(end - i);
      storeMasked(lanes, dst + i, rows.template masked<Vector64>(i, lanes).bits);
    }
  }
};
#endif

/// `bytes` of a result, all computed before they are written.
template <class Vector, int bytes>
struct LogicalBlock {
  static constexpr int count = bytes / Vector::size;
  Vector vectors[count];

  template <class Rows>
  LogicalBlock(const Rows& rows, std::int64_t i) {
    for (int v = 0; v < count; ++v) vectors[v] = rows.template vector<Vector>(i + Vector::size * v);
  }
  template <Stores stores>
  void write(u8* dst) const {
    for (int v = 0; v < count; ++v) storeVector<stores>(vectors[v], dst + Vector::size * v);
  }
};

/// Writes whole blocks of `bytes` from offset `i` on and returns the offset of their end.
template <class Vector, int bytes, Stores stores, bool prefetching = false, class Rows>
[[gnu::always_inline]] inline std::int64_t writeBlocks(const Rows& rows, u8* dst, std::int64_t i,
                                                       std::int64_t end) {
  for (; end - i >= bytes; i += bytes) {
    for (int line = 0; prefetching && line < bytes; line += 64) rows.prefetch(i + line);
    LogicalBlock<Vector, bytes>(rows, i).template write<stores>(dst + i);
  }
  return i;
}

/// A row that is longer than any peel. In place, bytes next to a recent store are slow to load: the first
/// block is loaded before the peel is written, and the tail is written long before the next row's peel is
/// loaded.
template <class Ends, Stores stores, bool prefetching>
[[gnu::always_inline]] inline void xorConstantBlocks(u8 constant, const u8* src, u8* dst,
                                                     std::int64_t length) {
  using Vector = typename Ends::Vector;
  constexpr int blockBytes = stores == Stores::streaming ? Ends::streamedBytes : 64;
  const XoredRow<> row{src, constant};
  const std::int64_t peel = bytesToBoundary(dst, 64), end = peel + ((length - peel) & -blockBytes);
  const LogicalBlock<Vector, blockBytes> first(row, peel);
  Ends::write(row, dst, 0, peel);
  Ends::write(row, dst, end, length);
  first.template write<stores>(dst + peel);
  writeBlocks<Vector, blockBytes, stores, prefetching>(row, dst, peel + blockBytes, end);
}

/// A row of one or two values of type `Word`, which may overlap.
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
  first.template write<Stores::plain>(dst);
  second.template write<Stores::plain>(dst + length - bytes);
}

/// A row from its first byte on: a number of blocks that is known to the compiler, since loops cost more than
/// the bytes of a short row, and a tail. The tail is a last vector or block that overlaps the block before
/// it, and is loaded before that is written. A masked store would make loads of the bytes next to it slow,
/// where the next row may begin.
template <class Ends, int blocks, bool tail>
inline void xorConstantShort(u8 constant, const u8* src, u8* dst, std::int64_t length) {
  using Vector = typename Ends::Vector;
  const XoredRow<> row{src, constant};
  if constexpr (!tail) {
    writeBlocks<Vector, 64, Stores::plain>(row, dst, 0, 64 * blocks);
  } else if constexpr (blocks > 0) {
    const auto writeWithLast = [&]<class Last, int bytes>() {
      const LogicalBlock<Last, bytes> last(row, length - bytes);
      writeBlocks<Vector, 64, Stores::plain>(row, dst, 0, 64 * blocks);
      last.template write<Stores::plain>(dst + length - bytes);
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
    for (std::int64_t i = 0; i < length; ++i) storeAs(dst + i, row.word<u8>(i));
  }
}

/// Unrolled by 4: two loads and a store per block leave no time for the loop's own instructions. Each block
/// is stored before the next is loaded, so that loads and stores share the time.
template <class Ends, class Op, bool prefetching>
[[gnu::always_inline]] inline void combineBlocks(const u8* src1, const u8* src2, u8* dst,
                                                 std::int64_t length) {
  using Vector = typename Ends::Vector;
  const CombinedRows<Op> rows{src1, src2};
  const std::int64_t toBoundary = bytesToBoundary(dst, 64), peel = toBoundary < length ? toBoundary : length;
  const std::int64_t end = peel + ((length - peel) & ~63);
  Ends::write(rows, dst, 0, peel);
  Ends::write(rows, dst, end, length);
  std::int64_t i = peel;
  for (; end - i >= 256; i += 256) {
    for (int line = 0; prefetching && line < 256; line += 64) rows.prefetch(i + line);
    for (int line = 0; line < 256; line += 64) {
      LogicalBlock<Vector, 64>(rows, i + line).template write<Stores::plain>(dst + i + line);
    }
  }
  writeBlocks<Vector, 64, Stores::plain>(rows, dst, i, end);
}

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
