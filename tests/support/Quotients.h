#pragma once

// Quotients as vectors compute them, one pixel at a time: by the processor's estimate of the reciprocal,
// which two Newton steps refine. They are a few units in the last place from those of a division, and ties of
// integers may go to the other side.

#include <immintrin.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace Zorvan::Test {

constexpr int newestVariant = 5;

/// Pixels [begin, end) of a row are divided in vectors, all others one by one.
struct InVectors {
  int begin, end;
};

/// For rows at these addresses.
template <class T>
InVectors vectorsOfRow(int variant, const T* divisors, const T* numerators, const T* dst, int n) {
  const bool isFloat = std::is_same_v<T, float>;
  if (variant == newestVariant) return isFloat ? InVectors{0, 0} : InVectors{0, n};  // it divides floats
  const auto address = [](const T* p) { return reinterpret_cast<std::uintptr_t>(p); };
  int peel = 0;
  if (isFloat) {
    const bool wholePixels =
        address(divisors) % 4 == 0 && address(numerators) % 4 == 0 && address(dst) % 4 == 0;
    while (wholePixels && address(dst + peel) % 16 != 0) ++peel;
  } else if (address(dst) % sizeof(T) == 0) {
    while (address(dst + peel) % 8 != 0) ++peel;
  }
  return peel > n ? InVectors{0, 0} : InVectors{peel, peel + (n - peel) / 8 * 8};
}

/// The processor's own estimate of the reciprocal, and the one of the newest variant.
inline float reciprocalEstimate(float x) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x))); }
[[gnu::target("avx512f")]] inline float newestReciprocalEstimate(float x) {
  return _mm_cvtss_f32(_mm_rcp14_ss(_mm_setzero_ps(), _mm_set_ss(x)));
}

/// The quotient of floats with two Newton steps on the reciprocal.
inline float refinedQuotientOfFloats(float divisor, float numerator) {
  const float r = reciprocalEstimate(divisor);
  const float e = 1 - divisor * r;
  const float inner = r + e * r;
  return numerator * (r + e * inner);
}

/// The quotient of integers with two Newton steps on the product, in the newest variant by fused
/// multiply-adds.
inline float refinedQuotient(int variant, float divisor, float numerator) {
  if (variant == newestVariant) {
    const float r = newestReciprocalEstimate(divisor);
    const float e = std::fma(-divisor, r, 1.0F);
    const float first = numerator * r;
    const float second = std::fma(e, first, first);
    return std::fma(e * e, second, second);
  }
  const float r = reciprocalEstimate(divisor);
  const float e = 1 - divisor * r;
  const float first = numerator * r;
  const float second = first + e * first;
  return second + e * e * second;
}

/// The scale factors at which quotients of integers are divided at all.
template <class T>
bool dividesAt(int f) {
  if (sizeof(T) == 1) return f >= -15 && f <= 8;
  return std::is_signed_v<T> ? f >= -30 && f <= 15 : f >= -31 && f <= 16;
}

/// Puts the quotients that go in vectors among those of single pixels. Zero divisors have the same result in
/// both.
template <class T>
void putVectorQuotients(int variant, InVectors vectors, const T* divisors, const T* numerators, T* quotients,
                        int f) {
  if (!dividesAt<T>(f)) return;
  constexpr float least = std::numeric_limits<T>::min(), most = std::numeric_limits<T>::max();
  for (int i = vectors.begin; i < vectors.end; ++i) {
    if (divisors[i] == 0) continue;
    const float divisor = std::ldexp(static_cast<float>(divisors[i]), f > 0 ? f : 0);
    const float numerator = std::ldexp(static_cast<float>(numerators[i]), f < 0 ? -f : 0);
    const float q = refinedQuotient(variant, divisor, numerator);
    quotients[i] = static_cast<T>(std::nearbyint(std::min(std::max(q, least), most)));
  }
}

/// All eight pixels of a vector are divided if one divisor has no usable estimate.
inline void putVectorQuotients(int, InVectors vectors, const float* divisors, const float* numerators,
                               float* quotients, int) {
  for (int i = vectors.begin; i < vectors.end; i += 8) {
    const bool usable = std::all_of(divisors + i, divisors + i + 8, [](float divisor) {
      return std::abs(divisor) >= 0x1p-126F && std::abs(divisor) < 0x1p125F;
    });
    for (int j = i; usable && j < i + 8; ++j) {
      quotients[j] = refinedQuotientOfFloats(divisors[j], numerators[j]);
    }
  }
}

/// The same bits, or both NaN.
template <class T>
bool samePixel(T a, T b) {
  if constexpr (std::numeric_limits<T>::has_quiet_NaN) {
    if (std::isnan(a) && std::isnan(b)) return true;
  }
  return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace Zorvan::Test
