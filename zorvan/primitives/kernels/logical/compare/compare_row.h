#pragma once

// Compares a row with 16-byte vectors: the four older variants, and signed words in all.
//
// One step makes 16 bytes of the outcome from as many pixels, 64 where pixels are bytes themselves; the rest
// goes in groups of half the size each. Whether rows lie on boundaries is known for all of them beforehand,
// so a row is never cut to reach one.

#include "zorvan/primitives/kernels/logical/compare/compare_lanes.h"

namespace Zorvan::Primitives::Compare {
namespace {

/// The outcome for pixels side by side, as bytes in the low end of a vector.
template <class Lanes>
struct CompareGroups {
  static constexpr int pixelBytes = sizeof(typename Lanes::Pixel);

  template <bool aligned>
  static __m128i sixteen(Lanes compare, const u8* src) {
    const auto lanes = [&](int i) { return compare.lanes(load<aligned>(src + 16 * i)); };
    if constexpr (pixelBytes == 1) return lanes(0);
    if constexpr (pixelBytes == 2) return _mm_packs_epi16(lanes(0), lanes(1));
    if constexpr (pixelBytes == 4) {
      return _mm_packs_epi16(_mm_packs_epi32(lanes(0), lanes(1)), _mm_packs_epi32(lanes(2), lanes(3)));
    }
  }
  template <bool aligned>
  static __m128i eight(Lanes compare, const u8* src) {
    if constexpr (pixelBytes == 1) return compare.lanes(_mm_loadu_si64(src));
    if constexpr (pixelBytes == 2) {
      const __m128i words = compare.lanes(load<aligned>(src));
      return _mm_packs_epi16(words, words);
    }
    if constexpr (pixelBytes == 4) {
      const __m128i words =
          _mm_packs_epi32(compare.lanes(load<aligned>(src)), compare.lanes(load<aligned>(src + 16)));
      return _mm_packs_epi16(words, words);
    }
  }
  template <bool aligned>
  static __m128i four(Lanes compare, const u8* src) {
    if constexpr (pixelBytes == 1) return compare.lanes(_mm_cvtsi32_si128(loadAs<int>(src)));
    if constexpr (pixelBytes == 2) {
      const __m128i words = compare.lanes(_mm_loadu_si64(src));
      return _mm_packs_epi16(words, words);
    }
    if constexpr (pixelBytes == 4) {
      const __m128i lanes = compare.lanes(load<aligned>(src));
      const __m128i words = _mm_packs_epi32(lanes, lanes);
      return _mm_packs_epi16(words, words);
    }
  }
  static u8 one(Lanes compare, const u8* src) {
    return compare.one(loadAs<typename Lanes::Pixel>(src)) ? 255 : 0;
  }

  /// Fewer than 16 pixels, in groups of 8, 4, 2 and 1. The last three go one by one.
  template <bool aligned>
  static void finish(Lanes compare, const u8* src, u8* dst, std::int64_t pixels) {
    if (pixels & 8) {
      _mm_storeu_si64(dst, eight<aligned>(compare, src));
      src += 8 * pixelBytes;
      dst += 8;
    }
    if (pixels & 4) {
      storeAs(dst, _mm_cvtsi128_si32(four<aligned>(compare, src)));
      src += 4 * pixelBytes;
      dst += 4;
    }
    if (pixels & 2) {
      dst[0] = one(compare, src);
      dst[1] = one(compare, src + pixelBytes);
      src += 2 * pixelBytes;
      dst += 2;
    }
    if (pixels & 1) *dst = one(compare, src);
  }

 private:
  template <bool aligned>
  static __m128i load(const u8* src) {
    return (aligned ? Vector16::loadAligned(src) : Vector16::load(src)).bits;
  }
};

template <CompareAccess access, class Lanes>
inline void compareRow(Lanes compare, const u8* src, u8* dst, std::int64_t pixels) {
  using Groups = CompareGroups<Lanes>;
  constexpr bool aligned = access != CompareAccess::unaligned;
  constexpr int stepPixels = Groups::pixelBytes == 1 ? 64 : 16;
  const auto sixteen = [&] {
    const Vector16 bytes{Groups::template sixteen<aligned>(compare, src)};
    if constexpr (access == CompareAccess::unaligned) bytes.store(dst);
    if constexpr (access == CompareAccess::aligned) bytes.storeAligned(dst);
    if constexpr (access == CompareAccess::streaming) bytes.stream(dst);
    src += 16 * Groups::pixelBytes;
    dst += 16;
  };
  for (; pixels >= stepPixels; pixels -= stepPixels) {
    for (int i = 0; i < stepPixels; i += 16) sixteen();
  }
  if constexpr (stepPixels == 64) {
    if (pixels & 32) sixteen(), sixteen();
    if (pixels & 16) sixteen();
  }
  Groups::template finish<aligned>(compare, src, dst, pixels & 15);
}

}  // namespace
}  // namespace Zorvan::Primitives::Compare
