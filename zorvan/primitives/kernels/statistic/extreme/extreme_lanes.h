#pragma once

// One direction of search over one pixel type: the better of two values, as pixels and in vectors of every
// width that the variant being built has.

#include <limits>
#include <type_traits>

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Statistic {
namespace {

enum class Seek { minimum, maximum };

template <Seek seek, class T>
struct ExtremeOf {
  using Pixel = T;
  static constexpr bool low = seek == Seek::minimum;

  /// No value is better: the search ends where it is found.
  static constexpr T limit = low ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();
  /// Every other value is better: accumulators and lanes without a pixel start with it.
  static constexpr T neutral = low ? std::numeric_limits<T>::max() : std::numeric_limits<T>::lowest();

  /// A candidate that is equal or NaN replaces the current float, as in the processor's instructions.
  static T better(T current, T candidate) {
    return (low ? current < candidate : current > candidate) ? current : candidate;
  }
};

/// Vectors of integers; the pixel type decides what a lane is.
template <Seek seek, class T>
struct ExtremeLanes : ExtremeOf<seek, T> {
  using ExtremeOf<seek, T>::low;
  using ExtremeOf<seek, T>::limit;
  using ExtremeOf<seek, T>::better;
  static constexpr int lanes16 = 16 / sizeof(T);

  template <class Vector>
  static auto spread(T value) {
    return Vector::broadcast(static_cast<std::make_unsigned_t<T>>(value)).bits;
  }
  static __m128i better(__m128i a, __m128i b) {
    if constexpr (std::is_same_v<T, std::uint8_t>) {
      return low ? _mm_min_epu8(a, b) : _mm_max_epu8(a, b);
    } else if constexpr (std::is_same_v<T, std::int16_t>) {
      return low ? _mm_min_epi16(a, b) : _mm_max_epi16(a, b);
    } else {
#ifdef __SSE4_1__
      return low ? _mm_min_epu16(a, b) : _mm_max_epu16(a, b);
#else
      static_assert(!sizeof(T), "no unsigned comparison of words before SSE4.1");
#endif
    }
  }
  static bool holds(__m128i lanes, T value) {
    const __m128i values = spread<Vector16>(value);
    return _mm_movemask_epi8(sizeof(T) == 1 ? _mm_cmpeq_epi8(lanes, values)
                                            : _mm_cmpeq_epi16(lanes, values)) != 0;
  }
  static T bestOf(__m128i lanes) {
#ifdef __SSE4_1__
    // One instruction finds the lowest of eight unsigned words. `xor` with the limit makes the better value
    // the lower one. Of the two bytes in a word the low byte becomes the lower one, and the high byte 0.
    lanes = _mm_xor_si128(lanes, spread<Vector16>(limit));
    if constexpr (sizeof(T) == 1) lanes = _mm_min_epu8(lanes, _mm_srli_epi16(lanes, 8));
    return static_cast<T>(_mm_cvtsi128_si32(_mm_minpos_epu16(lanes)) ^ limit);
#else
    lanes = better(lanes, _mm_srli_si128(lanes, 8));
    lanes = better(lanes, _mm_srli_si128(lanes, 4));
    lanes = better(lanes, _mm_srli_si128(lanes, 2));
    if constexpr (sizeof(T) == 1) lanes = better(lanes, _mm_srli_si128(lanes, 1));
    return static_cast<T>(_mm_cvtsi128_si32(lanes));
#endif
  }

#ifdef __AVX2__
  static constexpr int lanes32 = 32 / sizeof(T);

  static __m256i better(__m256i a, __m256i b) {
    if constexpr (std::is_same_v<T, std::uint8_t>) {
      return low ? _mm256_min_epu8(a, b) : _mm256_max_epu8(a, b);
    } else if constexpr (std::is_same_v<T, std::int16_t>) {
      return low ? _mm256_min_epi16(a, b) : _mm256_max_epi16(a, b);
    } else {
      return low ? _mm256_min_epu16(a, b) : _mm256_max_epu16(a, b);
    }
  }
  static bool holds(__m256i lanes, T value) {
    const __m256i values = spread<Vector32>(value);
    return _mm256_movemask_epi8(sizeof(T) == 1 ? _mm256_cmpeq_epi8(lanes, values)
                                               : _mm256_cmpeq_epi16(lanes, values)) != 0;
  }
  static T bestOf(__m256i lanes) {
    return bestOf(better(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1)));
  }
#endif

#ifdef __AVX512BW__
  static __m512i better(__m512i a, __m512i b) {
    if constexpr (std::is_same_v<T, std::uint8_t>) {
      return low ? _mm512_min_epu8(a, b) : _mm512_max_epu8(a, b);
    } else if constexpr (std::is_same_v<T, std::int16_t>) {
      return low ? _mm512_min_epi16(a, b) : _mm512_max_epi16(a, b);
    } else {
      return low ? _mm512_min_epu16(a, b) : _mm512_max_epu16(a, b);
    }
  }
  static bool holds(__m512i lanes, T value) {
    const __m512i values = spread<Vector64>(value);
    return sizeof(T) == 1 ? _mm512_cmpeq_epi8_mask(lanes, values) != 0
                          : _mm512_cmpeq_epi16_mask(lanes, values) != 0;
  }
  static T bestOf(__m512i lanes) {
    return bestOf(better(_mm512_castsi512_si256(lanes), _mm512_extracti64x4_epi64(lanes, 1)));
  }
#endif
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
