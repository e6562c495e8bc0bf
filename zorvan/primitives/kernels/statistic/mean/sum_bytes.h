#pragma once

// The exact sum of a region of bytes. Full vectors are reduced by sums of absolute differences against zero
// into 64-bit lanes, which no region can overflow.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"
#include "zorvan/primitives/kernels/statistic/zero_filled_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

inline std::int64_t sumOfLanes64(__m128i lanes) {
  return _mm_cvtsi128_si64(lanes) + _mm_cvtsi128_si64(_mm_srli_si128(lanes, 8));
}

/// 16 pixels per iteration from a 16-byte boundary on; peel and tail are scalar.
struct ByteSum16 {
  static double of(const std::uint8_t* src, int srcStep, Size roi) {
    const SumRows plan = planByteRows(roi, srcStep);
    ZORVAN_NOTE_ONE_ROW("planByteRows as one row", plan.rows, roi.height);
    __m128i lanes = _mm_setzero_si128();
    std::int64_t scalarSum = 0;
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      const std::uint8_t* p = rowAt(src, srcStep, r);
      std::int64_t left = plan.pixels;
      const std::int64_t peel = bytesToBoundary(p, 16);
      if (peel < left) {
        for (const std::uint8_t* const boundary = p + peel; p != boundary; ++p) scalarSum += *p;
        left -= peel;
      }
      for (; left >= 16; p += 16, left -= 16) {
        lanes = _mm_add_epi64(lanes, _mm_sad_epu8(Vector16::load(p).bits, _mm_setzero_si128()));
      }
      for (; left != 0; ++p, --left) scalarSum += *p;
    }
    return static_cast<double>(sumOfLanes64(lanes) + scalarSum);
  }
};

struct ByteSum32;
struct ByteSum64;

#ifdef __AVX2__
inline std::int64_t sumOfLanes64(__m256i lanes) {
  return sumOfLanes64(_mm_add_epi64(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1)));
}

/// 32 pixels per vector. The ends of a row are summed in 32-bit lanes, which join the others once per row.
struct ByteSum32 {
  static double of(const std::uint8_t* src, int srcStep, Size roi) {
    const SumRows plan = planByteRows(roi, srcStep);
    ZORVAN_NOTE_ONE_ROW("planByteRows as one row", plan.rows, roi.height);
    return withPrefetch(lightDistances, roi, 1, [&](auto prefetchAfter) {
      const __m256i zero = _mm256_setzero_si256();
      __m256i lanes = zero;
      for (std::int64_t r = 0; r < plan.rows; ++r) {
        __m256i ends = zero;
        ZeroFilled32::forEachVector<1>(
            rowAt(src, srcStep, r), plan.pixels, prefetchAfter,
            [&](__m256i pixels) { lanes = _mm256_add_epi64(lanes, _mm256_sad_epu8(pixels, zero)); },
            [&](__m256i pixels) { ends = _mm256_add_epi32(ends, _mm256_sad_epu8(pixels, zero)); });
        lanes = _mm256_add_epi64(lanes, ends);
      }
      return static_cast<double>(sumOfLanes64(lanes));
    });
  }
};
#endif

#ifdef __AVX512BW__
/// The same with 64 pixels per vector.
struct ByteSum64 {
  static double of(const std::uint8_t* src, int srcStep, Size roi) {
    const SumRows plan = planByteRows(roi, srcStep);
    ZORVAN_NOTE_ONE_ROW("planByteRows as one row", plan.rows, roi.height);
    return withPrefetch(lightDistances, roi, 1, [&](auto prefetchAfter) {
      const __m512i zero = _mm512_setzero_si512();
      __m512i lanes = zero, others = zero;  // used in turn: additions to one would wait for each other
      for (std::int64_t r = 0; r < plan.rows; ++r) {
        __m512i ends = zero;
        ZeroFilled64::forEachVector<1>(
            rowAt(src, srcStep, r), plan.pixels, prefetchAfter,
            [&](__m512i pixels) {
              const __m512i sums = _mm512_add_epi64(lanes, _mm512_sad_epu8(pixels, zero));
              lanes = others;
              others = sums;
            },
            [&](__m512i pixels) { ends = _mm512_add_epi32(ends, _mm512_sad_epu8(pixels, zero)); });
        lanes = _mm512_add_epi64(lanes, ends);
      }
      return static_cast<double>(_mm512_reduce_add_epi64(_mm512_add_epi64(lanes, others)));
    });
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
