#pragma once

// An operation on bytes that looks each byte up in a table of 256. The table is held in registers and indexed
// by shuffles, which is faster than a load per byte.

#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives::Unary {
namespace {

#if defined(__AVX512BW__)
/// Two tables of 64 words are indexed by the low six bits of a byte. Bit 6 selects the byte of the word, bit
/// 7 the table.
class ByteLookup {
 public:
  explicit ByteLookup(const u8* table)
      : low_{pairs(table, table + 64), pairs(table + 32, table + 96)},
        high_{pairs(table + 128, table + 192), pairs(table + 160, table + 224)} {}

  __m512i lanes(__m512i x) const {
    const __m512i even = words(x, _mm512_test_epi16_mask(x, _mm512_set1_epi16(0x80)));
    const __m512i odd = words(_mm512_srli_epi16(x, 8), _mm512_movepi16_mask(x));
    const __mmask32 evenHigh = _mm512_test_epi16_mask(x, _mm512_set1_epi16(0x40));
    const __mmask32 oddLow = _mm512_testn_epi16_mask(x, _mm512_set1_epi16(0x4000));
    return _mm512_mask_blend_epi8(0xAAAAAAAAAAAAAAAA, _mm512_mask_srli_epi16(even, evenHigh, even, 8),
                                  _mm512_mask_slli_epi16(odd, oddLow, odd, 8));
  }

 private:
  static __m512i pairs(const u8* first, const u8* second) {
    const __m512i high = _mm512_slli_epi16(_mm512_cvtepu8_epi16(loadAs<__m256i>(second)), 8);
    return _mm512_cvtepu8_epi16(loadAs<__m256i>(first)) | high;
  }
  __m512i words(__m512i index, __mmask32 highest) const {
    return _mm512_mask_blend_epi16(highest, _mm512_permutex2var_epi16(low_[0], index, low_[1]),
                                   _mm512_permutex2var_epi16(high_[0], index, high_[1]));
  }

  __m512i low_[2], high_[2];
};
#elif defined(__AVX2__)
/// The table in sixteen slices of 16 bytes, two halves of eight. Each slice but the first of a half is stored
/// as its XOR with the slice before it. The index is lowered by 16 per slice, and a shuffle returns 0 for a
/// negative index. The XOR of all shuffles up to the byte's own slice is therefore that slice's entry.
class ByteLookup {
 public:
  explicit ByteLookup(const u8* table) : table_(table) {
    for (int i = 0; i < 16; ++i) {
      __m128i slice = loadAs<__m128i>(table + 16 * i);
      if (i % 8 != 0) slice ^= loadAs<__m128i>(table + 16 * (i - 1));
      slices_[i] = _mm256_broadcastsi128_si256(slice);
    }
  }

  u8 pixel(u8 x) const { return table_[x]; }

  template <class I>
  I lanes(I x) const {
    I low = x, high = x ^ broadcastBytes<I>(0x80), entry = zeroes<I>();
    for (int i = 0; i < 8; ++i) {
      entry ^= shuffle_epi8(loadAs<I>(slices_ + i), low);
      entry ^= shuffle_epi8(loadAs<I>(slices_ + 8 + i), high);
      low = subs_epi8(low, broadcastBytes<I>(16));
      high = subs_epi8(high, broadcastBytes<I>(16));
    }
    return entry;
  }

 private:
  const u8* table_;
  __m256i slices_[16];
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Unary
