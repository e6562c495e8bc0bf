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
#include "zorvan/primitives/kernels/simd/bits.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

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
};

#ifdef __AVX512VL__
/// Float pixels filled with stores of 32 bytes.
struct FloatBlock32 : FloatBlock {
  using FloatBlock::FloatBlock;

  void fillBlock(u8* p) const { fill(p, 16); }
  void fill(u8* p, std::int64_t count) const {
    const __m256i eight = _mm256_broadcastd_epi32(_mm_castps_si128(value));
    for (; count >= 8; p += 32, count -= 8) Vector32{eight}.store(p);
    storeMasked(firstLanes<__mmask8>(count), p, eight);
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

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
