#pragma once

// The better of two values in one direction of search: as pixels, and in vectors of every width that the
// variant being built has.

#include <type_traits>

#include "zorvan/foundation/PixelTypes.h"
#include "zorvan/primitives/kernels/common/extreme_values.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives::Statistic {
namespace {

enum class Seek { minimum, maximum };

template <Seek seek, class T>
struct ExtremeLanes {
  static constexpr bool low = seek == Seek::minimum;

  /// No value is better: the search for an integer ends where it is found.
  static constexpr T limit = low ? lowest<T> : highest<T>;
  /// Every other value is better: accumulators and lanes without a pixel start with it.
  static constexpr T neutral = low ? highest<T> : lowest<T>;

  /// A candidate that is equal or NaN replaces the current float, as in the processor's instructions.
  static T better(T current, T candidate) {
    return (low ? current < candidate : current > candidate) ? current : candidate;
  }
  template <class Vector>
  static Vector better(Vector current, Vector candidate) {
    return low ? minimum<T>(current, candidate) : maximum<T>(current, candidate);
  }

#ifdef __AVX512F__
  /// Of the chosen lanes; the others stay.
  static __m512 better(__m512 current, __mmask16 lanes, __m512 candidate) {
    return low ? _mm512_mask_min_ps(current, lanes, current, candidate)
               : _mm512_mask_max_ps(current, lanes, current, candidate);
  }
#endif

  template <class Vector>
  static bool hasLimit(Vector lanes) {
    return anyEqual<T>(lanes, broadcastPixels<Vector>(limit));
  }

  template <class Vector>
  static T bestOf(Vector lanes) {
    if constexpr (sizeof(Vector) > 16) {
      return bestOf(better(lowHalf(lanes), highHalf(lanes)));
    } else {
#ifdef __SSE4_1__
      // One instruction finds the lowest of eight unsigned words. `xor` with the limit makes the better value
      // the lower one. Of the two bytes in a word the low byte becomes the lower one, and the high byte 0.
      if constexpr (std::is_integral_v<T>) {
        lanes ^= broadcastPixels<Vector>(limit);
        if constexpr (sizeof(T) == 1) lanes = min_epu8(lanes, _mm_srli_epi16(lanes, 8));
        return static_cast<T>(_mm_cvtsi128_si32(_mm_minpos_epu16(lanes)) ^ limit);
      }
#endif
      return fold<T>(lanes, [](auto a, auto b) { return better(a, b); });
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
