#pragma once

// Exact sums of regions of words with 16-byte vectors. Rows are cut into blocks whose sums fit 32-bit lanes.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/folds.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// Words widened to 32-bit lanes.
class WordSum16 {
 public:
  static double of(Plane<const u16> src, Size roi) {
    std::uint64_t total = 0;
    const auto addRow = [&](const u16* p) {
      std::int64_t left = roi.width;
      ZORVAN_NOTE_PLAN("blocks of words in a row", left > sumBlockPixels);
      for (; left > sumBlockPixels; p += sumBlockPixels, left -= sumBlockPixels) {
        total += block(p, sumBlockPixels);
      }
      total += block(p, left);
    };
    forEachRow(roi.height, addRow, src);
    return static_cast<double>(total);
  }

 private:
  static constexpr int vectorsFrom = 23;  // pixels: shorter rows would be mostly peel and tail

  static void add(const u16* p, __m128i& even, __m128i& odd) {
    const __m128i words = Vector16::load(p).bits;
    even = _mm_add_epi32(even, _mm_and_si128(words, _mm_set1_epi32(0xFFFF)));
    odd = _mm_add_epi32(odd, _mm_srli_epi32(words, 16));
  }

  static std::uint32_t block(const u16* p, std::int64_t left) {
    std::uint32_t sum = 0;
    const auto scalar = [&](std::int64_t count) {
      for (left -= count; count != 0; ++p, --count) sum += loadAs<u16>(p);
    };
    __m128i a = _mm_setzero_si128(), b = a, c = a, d = a;
    if (left >= vectorsFrom) {
      if (isAligned(p, 2)) scalar(bytesToBoundary(p, 16) / 2);
      for (; left >= 16; p += 16, left -= 16) {
        add(p, a, b);
        add(p + 8, c, d);
      }
    }
    for (; left >= 8; p += 8, left -= 8) add(p, a, b);
    scalar(left);
    const __m128i lanes = _mm_add_epi32(_mm_add_epi32(a, b), _mm_add_epi32(c, d));
    return sum + static_cast<std::uint32_t>(sumOfDwords(lanes));
  }
};

/// Pairs of signed words are added into 32-bit lanes. A small region needs one set of lanes for all its rows.
class SignedWordSum16 {
 public:
  static double of(Plane<const s16> src, Size roi) {
    if (ZORVAN_PLANNED("regionFitsLanes", regionFitsLanes(roi))) {
      Sum sum;
      forEachRow(
          roi.height, [&](const s16* p) { sum.add(p, roi.width); }, src);
      return sum.total();
    }
    double total = 0;
    const auto addRow = [&](const s16* p) {
      for (std::int64_t c = 0; c < roi.width; c += sumBlockPixels) {
        Sum sum;
        sum.add(p + c, roi.width - c < sumBlockPixels ? roi.width - c : sumBlockPixels);
        total += sum.total();
      }
    };
    forEachRow(roi.height, addRow, src);
    return total;
  }

 private:
  struct Sum {
    __m128i lanes = _mm_setzero_si128();
    std::int32_t scalarSum = 0;

    void scalar(const s16* p, std::int64_t count) {
      for (; count != 0; ++p, --count) scalarSum += loadAs<s16>(p);
    }
    void add(const s16* p, std::int64_t left) {
      const std::int64_t toBoundary = bytesToBoundary(p, 16);
      if (toBoundary % 2 == 0 && toBoundary / 2 < left) {
        const std::int64_t peel = toBoundary / 2;
        scalar(p, peel);
        p += peel;
        left -= peel;
      }
      for (; left >= 8; p += 8, left -= 8) {
        lanes = _mm_add_epi32(lanes, _mm_madd_epi16(Vector16::load(p).bits, _mm_set1_epi16(1)));
      }
      scalar(p, left);
    }
    std::int32_t total() const { return sumOfDwords(lanes) + scalarSum; }
  };
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
