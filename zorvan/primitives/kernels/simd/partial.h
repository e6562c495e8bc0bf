#pragma once

// Loads and stores of the first bytes of a vector: a number that is known when the code is compiled, a number
// below the vector's width, or the lanes of a mask register. No other byte of memory is touched.

#include <cstdint>
#include <type_traits>

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// 1, 2, 4, 8 or 16 bytes; the rest of the vector is zero.
template <int bytes>
inline __m128i loadLow(const void* p) {
  if constexpr (bytes == 16) return _mm_loadu_si128(static_cast<const __m128i*>(p));
  if constexpr (bytes == 8) return _mm_cvtsi64_si128(loadAs<std::int64_t>(p));
  if constexpr (bytes == 4) return _mm_cvtsi32_si128(loadAs<std::int32_t>(p));
  if constexpr (bytes == 2) return _mm_cvtsi32_si128(loadAs<u16>(p));
  if constexpr (bytes == 1) return _mm_cvtsi32_si128(*static_cast<const unsigned char*>(p));
}
template <int bytes>
inline void storeLow(void* p, __m128i x) {
  if constexpr (bytes == 16) _mm_storeu_si128(static_cast<__m128i*>(p), x);
  if constexpr (bytes == 8) storeAs(p, _mm_cvtsi128_si64(x));
  if constexpr (bytes == 4) storeAs(p, _mm_cvtsi128_si32(x));
  if constexpr (bytes == 2) storeAs(p, static_cast<u16>(_mm_cvtsi128_si32(x)));
  if constexpr (bytes == 1) storeAs(p, static_cast<u8>(_mm_cvtsi128_si32(x)));
}

/// 4 or 8 bytes; the rest of the vector is that of `filler`.
template <int bytes>
inline __m128i loadLow(const void* p, __m128i filler) {
  const __m128i low = loadLow<bytes>(p);
  if constexpr (bytes == 8) {
    return _mm_castpd_si128(_mm_move_sd(_mm_castsi128_pd(filler), _mm_castsi128_pd(low)));
  } else {
    static_assert(bytes == 4);
    return _mm_castps_si128(_mm_move_ss(_mm_castsi128_ps(filler), _mm_castsi128_ps(low)));
  }
}

/// The first `bytes` bytes, below 16; the rest of the vector is zero.
inline __m128i loadFirst16(const void* address, std::int64_t bytes) {
  const auto* p = static_cast<const unsigned char*>(address);
  if (bytes >= 8) {
    const std::uint64_t low = loadAs<std::uint64_t>(p);
    const std::uint64_t last = loadAs<std::uint64_t>(p + bytes - 8);
    const std::uint64_t high = bytes == 8 ? 0 : last >> (8 * (16 - bytes));
    return _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
  }
  std::uint64_t low = 0;
  if (bytes >= 4) {
    low = loadAs<std::uint32_t>(p) | std::uint64_t{loadAs<std::uint32_t>(p + bytes - 4)} << (8 * (bytes - 4));
  } else if (bytes > 0) {
    const std::int64_t middle = bytes >> 1, end = bytes - 1;
    low = p[0] | std::uint64_t{p[middle]} << (8 * middle) | std::uint64_t{p[end]} << (8 * end);
  }
  return _mm_set_epi64x(0, static_cast<long long>(low));
}

/// Stores the first `bytes` bytes, below 16.
inline void storeFirst(void* address, Vector16 vector, std::int64_t bytes) {
  auto* dst = static_cast<unsigned char*>(address);
  __m128i rest = vector.bits;
  if (bytes & 8) {
    _mm_storeu_si64(dst, rest);
    dst += 8;
    rest = _mm_srli_si128(rest, 8);
  }
  if (bytes & 4) {
    storeAs(dst, _mm_cvtsi128_si32(rest));
    dst += 4;
    rest = _mm_srli_si128(rest, 4);
  }
  const int last = _mm_cvtsi128_si32(rest);
  if (bytes & 2) {
    storeAs(dst, static_cast<u16>(last));
    dst += 2;
  }
  if (bytes & 1) *dst = static_cast<unsigned char>(last >> (8 * (bytes & 2)));
}

#ifdef __AVX__
/// The floats whose lanes have all bits set; the others are zero.
inline __m256 loadMaskedFloats(__m256i lanes, const void* p) {
  return _mm256_maskload_ps(static_cast<const float*>(p), lanes);
}

inline Vector32 joinHalves(Vector16 low, Vector16 high) {
  return {_mm256_insertf128_si256(_mm256_castsi128_si256(low.bits), high.bits, 1)};
}
inline Vector16 lowHalf(Vector32 x) { return {_mm256_castsi256_si128(x.bits)}; }
inline Vector16 highHalf(Vector32 x) { return {_mm256_extractf128_si256(x.bits, 1)}; }

/// The first `bytes` bytes, below 32; the rest of the vector is zero.
inline __m256i loadFirst32(const void* address, std::int64_t bytes) {
  if (bytes < 16) return _mm256_zextsi128_si256(loadFirst16(address, bytes));
  const auto* p = static_cast<const unsigned char*>(address);
  return joinHalves(Vector16::load(p), {loadFirst16(p + 16, bytes - 16)}).bits;
}
inline void storeFirst(void* address, Vector32 vector, std::int64_t bytes) {
  auto* p = static_cast<unsigned char*>(address);
  if (bytes < 16) return storeFirst(p, lowHalf(vector), bytes);
  lowHalf(vector).store(p);
  storeFirst(p + 16, highHalf(vector), bytes - 16);
}
#endif

#ifdef __AVX2__
/// A mask with the first `count` bytes set, from none to all.
inline __m256i firstBytes32(std::int64_t count) {
  const __m256i numbers = _mm256_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18,
                                           19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31);
  return _mm256_cmpgt_epi8(_mm256_set1_epi8(static_cast<char>(count)), numbers);
}
#endif

/// The first `bytes` bytes, fewer than the vector has; the rest is zero.
template <class Vector>
inline Vector loadFirst(const void* address, std::int64_t bytes) {
  if constexpr (Vector::size == 16) return {loadFirst16(address, bytes)};
#ifdef __AVX__
  if constexpr (Vector::size == 32) return {loadFirst32(address, bytes)};
#endif
}

#ifdef __AVX2__
/// The first `count` of 8 dwords, as a mask for `loadMasked` and `storeMasked`.
inline __m256i firstDwords(int count) {
  return _mm256_cmpgt_epi32(_mm256_set1_epi32(count), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}
inline __m256i loadMasked(__m256i lanes, const void* p) {
  return _mm256_maskload_epi32(static_cast<const int*>(p), lanes);
}
inline void storeMasked(__m256i lanes, void* p, __m256i x) {
  _mm256_maskstore_epi32(static_cast<int*>(p), lanes, x);
}
#endif

#ifdef __AVX512BW__
/// The first `count` lanes of a mask register of type `Mask`, from none to all.
template <class Mask>
inline Mask firstLanes(std::int64_t count) {
  const auto n = static_cast<unsigned>(count);
  if constexpr (sizeof(Mask) == 8) {
    return _bzhi_u64(~std::uint64_t{0}, n);
  } else {
    return static_cast<Mask>(_bzhi_u32((std::uint64_t{1} << (8 * sizeof(Mask))) - 1, n));
  }
}

/// The mask register with a lane for each pixel of 64 bytes.
template <class Pixel>
using MaskOf = std::conditional_t<sizeof(Pixel) == 1, __mmask64,
                                  std::conditional_t<sizeof(Pixel) == 2, __mmask32, __mmask16>>;

/// The chosen lanes of bytes, words or dwords, by the width of the mask register; the others are zero.
inline __m512i loadMasked(__mmask64 lanes, const void* p) { return _mm512_maskz_loadu_epi8(lanes, p); }
inline __m512i loadMasked(__mmask32 lanes, const void* p) { return _mm512_maskz_loadu_epi16(lanes, p); }
inline __m512i loadMasked(__mmask16 lanes, const void* p) { return _mm512_maskz_loadu_epi32(lanes, p); }
inline void storeMasked(__mmask64 lanes, void* p, __m512i x) { _mm512_mask_storeu_epi8(p, lanes, x); }
inline void storeMasked(__mmask32 lanes, void* p, __m512i x) { _mm512_mask_storeu_epi16(p, lanes, x); }
inline void storeMasked(__mmask16 lanes, void* p, __m512i x) { _mm512_mask_storeu_epi32(p, lanes, x); }
inline __m256i loadMaskedWords(__mmask16 lanes, const void* p) { return _mm256_maskz_loadu_epi16(lanes, p); }
inline __m512i loadMaskedBytes(__mmask64 lanes, const void* p) { return _mm512_maskz_loadu_epi8(lanes, p); }
inline __m256i loadMaskedBytes(__mmask32 lanes, const void* p) { return _mm256_maskz_loadu_epi8(lanes, p); }
inline __m128i loadMaskedBytes(__mmask16 lanes, const void* p) { return _mm_maskz_loadu_epi8(lanes, p); }
inline void storeMasked(__mmask32 lanes, void* p, __m256i x) { _mm256_mask_storeu_epi8(p, lanes, x); }
inline void storeMasked(__mmask16 lanes, void* p, __m128i x) { _mm_mask_storeu_epi8(p, lanes, x); }
inline void storeMasked(__mmask8 lanes, void* p, __m256i x) { _mm256_mask_storeu_epi32(p, lanes, x); }
/// The chosen bytes; the others are those of `rest`.
inline __m512i loadMasked(__mmask64 lanes, const void* p, __m512i rest) {
  return _mm512_mask_loadu_epi8(rest, lanes, p);
}
inline __m512 loadMaskedFloats(__mmask16 lanes, const void* p) { return _mm512_maskz_loadu_ps(lanes, p); }
inline __m256 loadMaskedFloats(__mmask8 lanes, const void* p) { return _mm256_maskz_loadu_ps(lanes, p); }
/// The chosen lanes; the others are those of `others`.
inline __m512 loadMaskedFloats(__mmask16 lanes, const void* p, __m512 others) {
  return _mm512_mask_loadu_ps(others, lanes, p);
}
inline void storeMasked(__mmask16 lanes, void* p, __m512 x) { _mm512_mask_storeu_ps(p, lanes, x); }

/// The chosen ones of 16 bytes, words or floats, by the width of `others`, which holds the other lanes.
inline __m128i loadMasked(__mmask16 lanes, const void* p, __m128i others) {
  return _mm_mask_loadu_epi8(others, lanes, p);
}
inline __m256i loadMasked(__mmask16 lanes, const void* p, __m256i others) {
  return _mm256_mask_loadu_epi16(others, lanes, p);
}
inline __m512 loadMasked(__mmask16 lanes, const void* p, __m512 others) {
  return _mm512_mask_loadu_ps(others, lanes, p);
}

/// Stores the chosen dwords as words, or as bytes that saturate unsigned dwords: as the instructions are
/// named.
inline void storeMasked_cvtepi32_epi16(__mmask16 lanes, void* p, __m512i x) {
  _mm512_mask_cvtepi32_storeu_epi16(p, lanes, x);
}
inline void storeMasked_cvtusepi32_epi8(__mmask16 lanes, void* p, __m512i x) {
  _mm512_mask_cvtusepi32_storeu_epi8(p, lanes, x);
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives
