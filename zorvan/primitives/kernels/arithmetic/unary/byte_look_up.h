#pragma once

// Look-up in a table of all bytes by shuffles of registers that hold it, where they take more bytes at once
// than single loads do: what becomes of a vector, as an operation on rows of bytes.

#include "zorvan/primitives/kernels/arithmetic/unary/byte_lanes.h"

namespace Zorvan::Primitives {
namespace {

#if defined(__AVX512BW__)
/// Two tables of 64 words are indexed by the low six bits of a byte; the bit above chooses the byte of the
/// word, and the highest bit the table.
class LookUpOfBytes {
 public:
  explicit LookUpOfBytes(const u8* table)
      : table_(table),
        low_{pairs(table, table + 64), pairs(table + 32, table + 96)},
        high_{pairs(table + 128, table + 192), pairs(table + 160, table + 224)} {}

  u8 pixel(u8 x) const { return table_[x]; }

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
    const __m512i above = _mm512_slli_epi16(_mm512_cvtepu8_epi16(loadAs<__m256i>(second)), 8);
    return _mm512_or_si512(_mm512_cvtepu8_epi16(loadAs<__m256i>(first)), above);
  }
  __m512i words(__m512i index, __mmask32 highest) const {
    return _mm512_mask_blend_epi16(highest, _mm512_permutex2var_epi16(low_[0], index, low_[1]),
                                   _mm512_permutex2var_epi16(high_[0], index, high_[1]));
  }

  const u8* table_;
  __m512i low_[2], high_[2];
};
#elif defined(__AVX2__)
inline __m128i shuffle_epi8(__m128i table, __m128i index) { return _mm_shuffle_epi8(table, index); }
inline __m256i shuffle_epi8(__m256i table, __m256i index) { return _mm256_shuffle_epi8(table, index); }
inline __m128i subs_epi8(__m128i a, __m128i b) { return _mm_subs_epi8(a, b); }
inline __m256i subs_epi8(__m256i a, __m256i b) { return _mm256_subs_epi8(a, b); }

/// Sixteen slices of the table, each but the first of a half combined with the one before it. An index that
/// goes down by a slice at a time takes part until it is negative, so that the slice of the byte is left.
class LookUpOfBytes {
 public:
  explicit LookUpOfBytes(const u8* table) : table_(table) {
    for (int i = 0; i < 16; ++i) {
      __m128i slice = loadAs<__m128i>(table + 16 * i);
      if (i % 8 != 0) slice = _mm_xor_si128(slice, loadAs<__m128i>(table + 16 * (i - 1)));
      slices_[i] = _mm256_broadcastsi128_si256(slice);
    }
  }

  u8 pixel(u8 x) const { return table_[x]; }

  template <class I>
  I lanes(I x) const {
    return half(x, slices_) | half(x ^ everyByte<I>(0x80), slices_ + 8);
  }

 private:
  template <class I>
  static I half(I index, const __m256i* slices) {
    I found = everyByte<I>(0);
    for (int i = 0; i < 8; ++i) {
      found ^= shuffle_epi8(loadAs<I>(slices + i), index);
      index = subs_epi8(index, everyByte<I>(16));
    }
    return found;
  }

  const u8* table_;
  __m256i slices_[16];
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives
