#pragma once

// Compares a row with 16-byte vectors: the four older variants, and signed words in all.
//
// An iteration compares 16 pixels, 64 if they are bytes; the tail is compared in groups of half the size
// each. The plan decides for all rows whether they are aligned: no row has a peel.

#include "zorvan/primitives/kernels/logical/compare/compare_lanes.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/stores.h"

namespace Zorvan::Primitives::Compare {
namespace {

/// The outcomes of 16, 8 or 4 pixels, as the low bytes of a vector.
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
    if constexpr (pixelBytes == 1) return compare.lanes(loadLow<8>(src));
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
    if constexpr (pixelBytes == 1) return compare.lanes(loadLow<4>(src));
    if constexpr (pixelBytes == 2) {
      const __m128i words = compare.lanes(loadLow<8>(src));
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

  /// Fewer than 16 pixels, in groups of 8 and 4 and one by one.
  template <bool aligned>
  static void finish(Lanes compare, const u8* src, u8* dst, std::int64_t pixels) {
    if (pixels & 8) {
      storeLow<8>(dst, eight<aligned>(compare, src));
      src += 8 * pixelBytes;
      dst += 8;
    }
    if (pixels & 4) {
      storeLow<4>(dst, four<aligned>(compare, src));
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
    return loadVector<Vector16, aligned>(src).bits;
  }
};

template <Stores stores, class Lanes>
inline void compareRow16(Lanes compare, const u8* src, u8* dst, std::int64_t pixels) {
  using Groups = CompareGroups<Lanes>;
  constexpr bool aligned = stores != Stores::plain;
  constexpr int iterationPixels = Groups::pixelBytes == 1 ? 64 : 16;
  const auto sixteen = [&] {
    storeVector<stores>(Vector16{Groups::template sixteen<aligned>(compare, src)}, dst);
    src += 16 * Groups::pixelBytes;
    dst += 16;
  };
  for (; pixels >= iterationPixels; pixels -= iterationPixels) {
    for (int i = 0; i < iterationPixels; i += 16) sixteen();
  }
  if constexpr (iterationPixels == 64) {
    if (pixels & 32) sixteen(), sixteen();
    if (pixels & 16) sixteen();
  }
  Groups::template finish<aligned>(compare, src, dst, pixels & 15);
}

}  // namespace
}  // namespace Zorvan::Primitives::Compare
