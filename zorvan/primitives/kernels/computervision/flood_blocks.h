#pragma once

// The steps of a flood fill along a row in blocks of 16 pixels, for the variants without mask registers and
// for float pixels in all of them.
//
// A block is compared as a whole, its matches become 16 bits. No block reaches behind the region's last
// column: what lies there may hold the old value, or be unreadable. The end of a run is searched first and
// the run filled afterwards.
//
// A run that begins where it is looked for, or ends with the region, is told by a branch of its own: a column
// counted out of a comparison would hold up the next row, which is looked through from there.

#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"
#include "zorvan/primitives/kernels/simd/bits.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// Vectors of the old and of the new value of 8-bit pixels.
struct ByteBlock {
  using Pixel = u8;
  __m128i old, value;

  ByteBlock(u8 oldPixel, u8 newPixel)
      : old(Vector16::broadcast(oldPixel).bits), value(Vector16::broadcast(newPixel).bits) {}

  unsigned matches(const unsigned char* p) const {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(Vector16::load(p).bits, old)));
  }

  void fillBlock(unsigned char* p) const { Vector16{value}.store(p); }

  /// Stores of 8 bytes up to a boundary, then of 16 bytes, then single bytes.
  void fill(unsigned char* p, std::int64_t count) const {
    if (count >= 16) {
      unsigned char* const boundary = p + bytesToBoundary(p, 16);
      if (p != boundary) {
        _mm_storeu_si64(p, value);
        _mm_storeu_si64(p + 8, value);
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
inline void fillDwords(unsigned char* p, std::int64_t count, __m128i value) {
  for (; count >= 4; p += 16, count -= 4) Vector16{value}.store(p);
  const int pixel = _mm_cvtsi128_si32(value);
  for (; count > 0; p += 4, --count) storeAs<int>(p, pixel);
}

struct IntBlock {
  using Pixel = int;
  __m128i old, value;

  IntBlock(int oldPixel, int newPixel) : old(_mm_set1_epi32(oldPixel)), value(_mm_set1_epi32(newPixel)) {}

  unsigned matches(const unsigned char* p) const {
    return joinMatches(
        _mm_cmpeq_epi32(Vector16::load(p).bits, old), _mm_cmpeq_epi32(Vector16::load(p + 16).bits, old),
        _mm_cmpeq_epi32(Vector16::load(p + 32).bits, old), _mm_cmpeq_epi32(Vector16::load(p + 48).bits, old));
  }
  void fillBlock(unsigned char* p) const { fill(p, 16); }
  void fill(unsigned char* p, std::int64_t count) const { fillDwords(p, count, value); }
};

/// Compares as floating-point numbers, so that it agrees with the single pixel on NaN and on both zeros.
struct FloatBlock {
  using Pixel = float;
  __m128 old, value;

  FloatBlock(float oldPixel, float newPixel) : old(_mm_set1_ps(oldPixel)), value(_mm_set1_ps(newPixel)) {}

  unsigned matches(const unsigned char* p) const {
    const auto match = [this](const unsigned char* four) {
      return _mm_castps_si128(_mm_cmpeq_ps(_mm_castsi128_ps(Vector16::load(four).bits), old));
    };
    return joinMatches(match(p), match(p + 16), match(p + 32), match(p + 48));
  }
  void fillBlock(unsigned char* p) const { fill(p, 16); }
  void fill(unsigned char* p, std::int64_t count) const { fillDwords(p, count, _mm_castps_si128(value)); }
};

#ifdef __AVX512VL__
/// Float pixels filled with stores of 32 bytes.
struct WideFilledFloatBlock : FloatBlock {
  using FloatBlock::FloatBlock;

  void fillBlock(unsigned char* p) const { fill(p, 16); }
  void fill(unsigned char* p, std::int64_t count) const {
    const __m256i eight = _mm256_broadcastd_epi32(_mm_castps_si128(value));
    for (; count >= 8; p += 32, count -= 8) Vector32{eight}.store(p);
    _mm256_mask_storeu_epi32(p, static_cast<__mmask8>((1u << count) - 1), eight);
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

  std::int64_t find(unsigned char* row, std::int64_t x, std::int64_t right) const {
    if (right - x + 1 < vectorScanPixels) return Pixels::find(row, x, right);
    for (; x <= right; x += 16) {
      if (last - x < 15) return Pixels::find(row, x, right);
      const unsigned matches = block.matches(at(row, x));
      if (matches & 1) return x;
      if (matches != 0) return x + lowestSetBit(matches);
    }
    return x;
  }

  std::int64_t extendLeft(unsigned char* row, std::int64_t x) const {
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

  std::int64_t extendRight(unsigned char* row, std::int64_t x, std::int64_t scanRight) const {
    if (!searchesByVectors(x, scanRight)) return Pixels::extendRight(row, x);
    const std::int64_t end = endOfRun(row, x);
    block.fill(at(row, x), end - x);
    return end - 1;
  }

 private:
  /// The column behind the run from `x`, which has 16 more columns ahead of it at least. The last block ends
  /// with the region and overlaps the one before.
  std::int64_t endOfRun(unsigned char* row, std::int64_t x) const {
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
}  // namespace Zorvan::Primitives
