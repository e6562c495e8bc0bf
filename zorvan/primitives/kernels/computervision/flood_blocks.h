#pragma once

// A flood fill along a row in blocks of 16 pixels, for the variants without mask registers and for float
// pixels in all of them.
//
// A block is compared as a whole, its matches become 16 bits. No block reaches beyond the region's last
// column: the pixels there may hold the old value, or be unreadable. The end of a run is searched first and
// the run filled afterwards.
//
// A run that begins at the first column of the search, or ends with the region, has a branch of its own: a
// column that is computed from a comparison would delay the next row, whose search begins there.

#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"
#include "zorvan/primitives/kernels/computervision/flood_window.h"
#include "zorvan/primitives/kernels/simd/bits.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

template <int vectors, class Vector>
inline void storeVectors(u8* p, Vector value) {
  for (int i = 0; i < vectors; ++i) value.store(p + Vector::size * i);
}

/// Fills parts of `vectors`, the last of which overlaps the one before. In rows that follow each other the
/// number of parts changes less often than that of vectors, and is predicted better.
template <int vectors, class Vector>
inline void fillParts(u8* p, std::int64_t bytes, Vector value) {
  constexpr std::int64_t partBytes = Vector::size * vectors;
  u8* const last = p + bytes - partBytes;
  for (; p < last; p += partBytes) storeVectors<vectors>(p, value);
  storeVectors<vectors>(last, value);
}

/// Vectors of the old and of the new value of 8-bit pixels.
struct ByteBlock {
  using Pixel = u8;
  __m128i old, value;

  ByteBlock(u8 oldPixel, u8 newPixel)
      : old(Vector16::broadcast(oldPixel).bits), value(Vector16::broadcast(newPixel).bits) {}

  unsigned matches(const u8* p) const {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(Vector16::load(p).bits, old)));
  }

  void fillBlock(u8* p) const { Vector16{value}.store(p); }

  /// Two stores of 8 bytes reach a boundary, stores of 16 bytes follow, then single bytes.
  void fill(u8* p, std::int64_t count) const {
    if (count >= 16) {
      u8* const boundary = p + bytesToBoundary(p, 16);
      if (p != boundary) {
        storeLow<8>(p, value);
        storeLow<8>(p + 8, value);
        count -= boundary - p;
        p = boundary;
      }
      for (; count >= 16; p += 16, count -= 16) Vector16{value}.storeAligned(p);
    }
    const auto pixel = static_cast<u8>(_mm_cvtsi128_si32(value));
    for (; count > 0; ++p, --count) *p = pixel;
  }

  void fillRun(u8* p, std::int64_t count) const {
    if (count >= 32) {
      fillParts<2>(p, count, Vector16{value});
    } else if (count >= 16) {
      fillParts<1>(p, count, Vector16{value});
    } else if (count >= 8) {
      fillTwice<8>(p, count);
    } else if (count >= 4) {
      fillTwice<4>(p, count);
    } else {
      p[0] = p[count / 2] = p[count - 1] = static_cast<u8>(_mm_cvtsi128_si32(value));
    }
  }

 private:
  template <int bytes>
  void fillTwice(u8* p, std::int64_t count) const {
    storeLow<bytes>(p, value);
    storeLow<bytes>(p + count - bytes, value);
  }
};

/// The matches of four vectors of four pixels, as 16 bits.
inline unsigned joinMatches(__m128i a, __m128i b, __m128i c, __m128i d) {
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_packs_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d))));
}

/// Fills 32-bit pixels with stores of 16 bytes.
inline void fillDwords(u8* p, std::int64_t count, __m128i value) {
  for (; count >= 4; p += 16, count -= 4) Vector16{value}.store(p);
  const int pixel = _mm_cvtsi128_si32(value);
  for (; count > 0; p += 4, --count) storeAs<int>(p, pixel);
}

inline void fillDwordRun(u8* p, std::int64_t count, __m128i value) {
  if (count >= 16) {
    fillParts<4>(p, 4 * count, Vector16{value});
  } else if (count >= 8) {
    fillParts<2>(p, 4 * count, Vector16{value});
  } else if (count >= 4) {
    fillParts<1>(p, 4 * count, Vector16{value});
  } else {
    const int pixel = _mm_cvtsi128_si32(value);
    storeAs<int>(p, pixel);
    storeAs<int>(p + count / 2 * 4, pixel);
    storeAs<int>(p + (count - 1) * 4, pixel);
  }
}

struct IntBlock {
  using Pixel = int;
  __m128i old, value;

  IntBlock(int oldPixel, int newPixel) : old(_mm_set1_epi32(oldPixel)), value(_mm_set1_epi32(newPixel)) {}

  unsigned matches(const u8* p) const {
    return joinMatches(
        _mm_cmpeq_epi32(Vector16::load(p).bits, old), _mm_cmpeq_epi32(Vector16::load(p + 16).bits, old),
        _mm_cmpeq_epi32(Vector16::load(p + 32).bits, old), _mm_cmpeq_epi32(Vector16::load(p + 48).bits, old));
  }
  void fillBlock(u8* p) const { fill(p, 16); }
  void fill(u8* p, std::int64_t count) const { fillDwords(p, count, value); }
  void fillRun(u8* p, std::int64_t count) const { fillDwordRun(p, count, value); }
};

/// Compares as floating-point numbers, like the comparison of a single pixel, for NaN and for both zeros.
struct FloatBlock {
  using Pixel = float;
  __m128 old, value;

  FloatBlock(float oldPixel, float newPixel) : old(_mm_set1_ps(oldPixel)), value(_mm_set1_ps(newPixel)) {}

  unsigned matches(const u8* p) const {
    const auto match = [this](const u8* four) {
      return _mm_castps_si128(_mm_cmpeq_ps(_mm_castsi128_ps(Vector16::load(four).bits), old));
    };
    return joinMatches(match(p), match(p + 16), match(p + 32), match(p + 48));
  }
  void fillBlock(u8* p) const { fill(p, 16); }
  void fill(u8* p, std::int64_t count) const { fillDwords(p, count, _mm_castps_si128(value)); }
  void fillRun(u8* p, std::int64_t count) const { fillDwordRun(p, count, _mm_castps_si128(value)); }
};

#ifdef __AVX512VL__
/// Float pixels filled with stores of 32 bytes, and compared as one vector.
struct FloatBlock32 : FloatBlock {
  using FloatBlock::FloatBlock;

  unsigned matches(const u8* p) const {
    return _mm512_cmp_ps_mask(loadAs<__m512>(p), _mm512_broadcastss_ps(old), _CMP_EQ_OQ);
  }

  void fillBlock(u8* p) const { fill(p, 16); }
  void fill(u8* p, std::int64_t count) const {
    const __m256i eight = _mm256_broadcastd_epi32(_mm_castps_si128(value));
    for (; count >= 8; p += 32, count -= 8) Vector32{eight}.store(p);
    storeMasked(firstLanes<__mmask8>(count), p, eight);
  }
  void fillRun(u8* p, std::int64_t count) const {
    const __m256i eight = _mm256_broadcastd_epi32(_mm_castps_si128(value));
    if (count >= 16) {
      fillParts<2>(p, 4 * count, Vector32{eight});
    } else if (count >= 8) {
      fillParts<1>(p, 4 * count, Vector32{eight});
    } else {
      storeMasked(firstLanes<__mmask8>(count), p, eight);
    }
  }
};
#endif

template <class Block>
struct BlockRow : FillPixels<typename Block::Pixel> {
  using T = typename Block::Pixel;
  using Pixels = FillPixels<T>;
  using Pixels::at;
  using Pixels::isOld;
  using Pixels::last;
  static constexpr bool hasWindows = false;
  static constexpr unsigned allMatch = 0xFFFF;

  Block block;

  BlockRow(T oldPixel, T newPixel, std::int64_t lastColumn)
      : Pixels{oldPixel, newPixel, lastColumn}, block(oldPixel, newPixel) {}

  std::int64_t find(u8* row, std::int64_t x, std::int64_t right) const {
    if (right - x + 1 < vectorScanPixels) return Pixels::find(row, x, right);
    for (; x <= right; x += 16) {
      if (last - x < 15) return Pixels::find(row, x, right);
      const unsigned matches = block.matches(at(row, x));
      if (matches & 1) return x;
      if (matches != 0) return x + lowestSetBit(matches);
    }
    return x;
  }

  std::int64_t extendLeft(u8* row, std::int64_t x) const {
    if (x == 0 || !isOld(row, x - 1)) return x;
    for (; x >= 16; x -= 16) {
      const unsigned others = block.matches(at(row, x - 16)) ^ allMatch;
      if (others != 0) {
        const int run = __builtin_clz(others) - 16;
        block.fill(at(row, x - run), run);
        return x - run;
      }
      block.fillBlock(at(row, x - 16));
    }
    return Pixels::extendLeft(row, x);
  }

  std::int64_t extendRight(u8* row, std::int64_t x, std::int64_t scanRight) const {
    if (!searchesByVectors(x, scanRight)) return Pixels::extendRight(row, x);
    const std::int64_t end = endOfRun(row, x);
    block.fill(at(row, x), end - x);
    return end - 1;
  }

 private:
  /// The column after the run from `x`, which at least 16 columns follow. The last block ends with the region
  /// and overlaps the one before.
  std::int64_t endOfRun(u8* row, std::int64_t x) const {
    for (; last - x > 15; x += 16) {
      const unsigned others = block.matches(at(row, x)) ^ allMatch;
      if (others != 0) return x + lowestSetBit(others);
    }
    x = last - 15;
    const unsigned others = block.matches(at(row, x)) ^ allMatch;
    if (__builtin_expect(others != 0, 0)) return x + lowestSetBit(others);
    return last + 1;
  }
};

/// Rows of at least 16 pixels, compared in windows of two blocks.
template <class Block>
struct BlockWindowRow : BlockRow<Block> {
  using Blocks = BlockRow<Block>;
  using Blocks::allMatch;
  using Blocks::at;
  using Blocks::last;
  using T = typename Blocks::T;
  static constexpr bool hasWindows = true;

  int secondBlock;  ///< the place of a window's second block, which overlaps the first in narrower regions

  BlockWindowRow(T oldPixel, T newPixel, std::int64_t lastColumn)
      : Blocks(oldPixel, newPixel, lastColumn),
        secondBlock(lastColumn < windowPixels - 1 ? static_cast<int>(lastColumn) - 15 : 16) {}

  std::uint32_t window(u8* row, std::int64_t x) const {
    return matches(row, x) | matches(row, x + secondBlock) << secondBlock;
  }

  /// The first column of a run that goes on before column `x`, or `x`.
  std::int64_t startOfRun(u8* row, std::int64_t x) const {
    for (; x >= 16; x -= 16) {
      const unsigned others = matches(row, x - 16) ^ allMatch;
      if (others != 0) return x - 15 + highestSetBit(others);
    }
    const unsigned others = (matches(row, 0) ^ allMatch) & static_cast<unsigned>(bitsBefore(x));
    return others == 0 ? 0 : highestSetBit(others) + 1;
  }

  /// The last column of a run that goes on from column `x`, or `x - 1`.
  std::int64_t endOfRun(u8* row, std::int64_t x) const {
    for (; last - x > 15; x += 16) {
      const unsigned others = matches(row, x) ^ allMatch;
      if (others != 0) return x + lowestSetBit(others) - 1;
    }
    // The last block ends with the region and overlaps what is known.
    const std::int64_t first = last - 15;
    const unsigned others = (matches(row, first) ^ allMatch) & ~static_cast<unsigned>(bitsBefore(x - first));
    return others == 0 ? last : first + lowestSetBit(others) - 1;
  }

  /// Whether all pixels of the blocks from `x` up to `end` hold the old value. Prefetches those `ahead` bytes
  /// further.
  bool isOldFrom(u8* row, std::int64_t x, std::int64_t end, std::int64_t ahead) const {
    for (; x < end; x += 16) {
      prefetch(at(row, x), ahead);
      if (matches(row, x) != allMatch) return false;
    }
    return true;
  }

  void fillRun(u8* row, std::int64_t x, std::int64_t count) const { this->block.fillRun(at(row, x), count); }

 private:
  unsigned matches(u8* row, std::int64_t x) const { return this->block.matches(at(row, x)); }
};

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
