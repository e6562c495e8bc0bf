#pragma once

// Compares a row with 32-byte stores: the two newest variants.
//
// A peel reaches the destination's next 32-byte boundary, 32 pixels per iteration follow, then the tail. No
// stores stream.

#include "zorvan/primitives/kernels/logical/compare/compare_row16.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Compare {
namespace {

/// 32 pixels in vectors of lanes; fewer in groups of 16, 8 and 4 and one by one.
template <class Lanes>
struct GroupedCompare {
  using Pixel = typename Lanes::Pixel;
  using Groups = CompareGroups<Lanes>;
  static constexpr int pixelBytes = sizeof(Pixel);
  Lanes compare;

  explicit GroupedCompare(Pixel value) : compare{value} {}

  __m256i whole(const u8* src) const {
    const auto lanes = [&](int i) { return compare.lanes(Vector32::load(src + 32 * i).bits); };
    // Packing works within halves of a vector: the permutation restores the order.
    if constexpr (pixelBytes == 1) return lanes(0);
    if constexpr (pixelBytes == 2)
      return _mm256_permute4x64_epi64(_mm256_packs_epi16(lanes(0), lanes(1)), 0xD8);
    if constexpr (pixelBytes == 4) {
      const __m256i bytes =
          _mm256_packs_epi16(_mm256_packs_epi32(lanes(0), lanes(1)), _mm256_packs_epi32(lanes(2), lanes(3)));
      return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
    }
  }
  void part(const u8* src, u8* dst, std::int64_t pixels) const {
    if (pixels & 16) {
      Vector16{Groups::template sixteen<false>(compare, src)}.store(dst);
      src += 16 * pixelBytes;
      dst += 16;
    }
    Groups::template finish<false>(compare, src, dst, pixels & 15);
  }
};

#ifdef __AVX512F__
/// Floats by mask registers, the only outcome of a comparison of 512-bit vectors. Mask registers also limit
/// the loads and the store of a part of 32 pixels.
template <Operator op>
struct MaskedFloatCompare {
  using Pixel = float;
  static constexpr int pixelBytes = sizeof(Pixel);
  static constexpr int predicate = NanAboveFloats<op>::predicate;
  __m512 value;

  explicit MaskedFloatCompare(float constant) : value(_mm512_set1_ps(constant)) {}

  /// Each half is expanded to bytes on its own: joining mask registers is slow.
  __m256i whole(const u8* src) const {
    const __m128i low = _mm_movm_epi8(sixteen(src)), high = _mm_movm_epi8(sixteen(src + 64));
    return _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
  }
  void part(const u8* src, u8* dst, std::int64_t pixels) const {
    const auto lanes = firstLanes<__mmask32>(pixels);
    const auto low = static_cast<__mmask16>(lanes), high = static_cast<__mmask16>(lanes >> 16);
    const __mmask16 lowHolds = _mm512_cmp_ps_mask(loadMaskedFloats(low, src), value, predicate);
    const __mmask16 highHolds = _mm512_cmp_ps_mask(loadMaskedFloats(high, src + 64), value, predicate);
    storeMasked(lanes, dst, _mm256_movm_epi8(_mm512_kunpackw(highHolds, lowHolds)));
  }

 private:
  __mmask16 sixteen(const u8* src) const {
    return _mm512_cmp_ps_mask(_mm512_castsi512_ps(Vector64::load(src).bits), value, predicate);
  }
};
#endif

template <class Compare>
inline void compareRow32(const Compare& compare, const u8* src, u8* dst, std::int64_t pixels) {
  std::int64_t peel = bytesToBoundary(dst, 32);
  if (peel > pixels) peel = pixels;
  if (peel != 0) {
    compare.part(src, dst, peel);
    src += peel * Compare::pixelBytes;
    dst += peel;
    pixels -= peel;
  }
  for (; pixels >= 32; pixels -= 32) {
    Vector32{compare.whole(src)}.store(dst);
    src += 32 * Compare::pixelBytes;
    dst += 32;
  }
  if (pixels != 0) compare.part(src, dst, pixels);
}

}  // namespace
}  // namespace Zorvan::Primitives::Compare
#endif
