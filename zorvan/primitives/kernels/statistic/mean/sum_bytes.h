#pragma once

// The exact sum of a region of bytes. Full vectors are reduced by sums of absolute differences against zero
// into 64-bit lanes, which no region can overflow.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/folds.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"
#include "zorvan/primitives/kernels/statistic/zero_filled_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// 16 pixels per iteration from a 16-byte boundary on; peel and tail are scalar.
struct ByteSum16 {
  static double of(Plane<const u8> src, Size roi) {
    const SumRows plan = planByteRows(roi, src.step);
    ZORVAN_NOTE_ONE_ROW("planByteRows as one row", plan.rows, roi.height);
    __m128i lanes = _mm_setzero_si128();
    std::int64_t scalarSum = 0;
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      const u8* p = src.at(r);
      std::int64_t left = plan.pixels;
      const std::int64_t peel = bytesToBoundary(p, 16);
      if (peel < left) {
        for (const u8* const boundary = p + peel; p != boundary; ++p) scalarSum += *p;
        left -= peel;
      }
      for (; left >= 16; p += 16, left -= 16) {
        lanes = _mm_add_epi64(lanes, _mm_sad_epu8(Vector16::load(p).bits, _mm_setzero_si128()));
      }
      for (; left != 0; ++p, --left) scalarSum += *p;
    }
    return static_cast<double>(sumOfQwords(lanes) + scalarSum);
  }
};

/// The ends of a row are summed in 32-bit lanes, which join the others once per row.
template <class Rows>
struct ByteSum {
  static double of(Plane<const u8> src, Size roi) {
    const SumRows plan = planByteRows(roi, src.step);
    ZORVAN_NOTE_ONE_ROW("planByteRows as one row", plan.rows, roi.height);
    return withPrefetch(lightDistances, roi, 1, [&](auto prefetchAfter) {
      using Integers = decltype(Rows::Vector::bits);
      const Integers zero = zeroes<Integers>();
      Integers lanes = zero, others = zero;  // alternate: additions to one would wait for each other
      const auto addRow = [&](const u8* p) {
        Integers ends = zero;
        const auto body = [&](Integers pixels) {
          const Integers sums = add_epi64(lanes, sad_epu8(pixels, zero));
          lanes = others;
          others = sums;
        };
        const auto end = [&](Integers pixels) { ends = add_epi32(ends, sad_epu8(pixels, zero)); };
        Rows::forEachVector(p, plan.pixels, prefetchAfter, body, end);
        lanes = add_epi64(lanes, ends);
      };
      forEachRow(plan.rows, addRow, src);
      return static_cast<double>(sumOfQwords(add_epi64(lanes, others)));
    });
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
