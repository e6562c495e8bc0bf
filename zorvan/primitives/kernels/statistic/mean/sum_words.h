#pragma once

// Exact sums of regions of words with 16-byte vectors. Rows are cut into blocks whose sums fit 32-bit lanes.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/simd/vectors.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"

namespace Zorvan::Primitives::Statistic {
namespace {

inline std::int32_t sumOfLanes32(__m128i lanes) {
  lanes = _mm_add_epi32(lanes, _mm_srli_si128(lanes, 8));
  return _mm_cvtsi128_si32(_mm_add_epi32(lanes, _mm_srli_si128(lanes, 4)));
}

/// Words widened to 32-bit lanes.
class WordSum16 {
 public:
  static double of(const std::uint16_t* src, int srcStep, Size roi) {
    std::uint64_t total = 0;
    for (std::int64_t r = 0; r < roi.height; ++r) {
      const auto* p = reinterpret_cast<const unsigned char*>(rowAt(src, srcStep, r));
      std::int64_t left = roi.width;
      ZORVAN_NOTE_PLAN("blocks of words in a row", left > sumBlockPixels);
      for (; left > sumBlockPixels; p += 2 * sumBlockPixels, left -= sumBlockPixels) {
        total += block(p, sumBlockPixels);
      }
      total += block(p, left);
    }
    return static_cast<double>(total);
  }

 private:
  static constexpr int vectorsFrom = 23;  // pixels: shorter rows would be mostly peel and tail

  static void add(const unsigned char* p, __m128i& even, __m128i& odd) {
    const __m128i words = Vector16::load(p).bits;
    even = _mm_add_epi32(even, _mm_and_si128(words, _mm_set1_epi32(0xFFFF)));
    odd = _mm_add_epi32(odd, _mm_srli_epi32(words, 16));
  }

  static std::uint32_t block(const unsigned char* p, std::int64_t left) {
    std::uint32_t sum = 0;
    const auto scalar = [&](std::int64_t count) {
      for (left -= count; count != 0; p += 2, --count) sum += loadAs<std::uint16_t>(p);
    };
    __m128i a = _mm_setzero_si128(), b = a, c = a, d = a;
    if (left >= vectorsFrom) {
      if (isAligned(p, 2)) scalar(bytesToBoundary(p, 16) / 2);
      for (; left >= 16; p += 32, left -= 16) {
        add(p, a, b);
        add(p + 16, c, d);
      }
    }
    for (; left >= 8; p += 16, left -= 8) add(p, a, b);
    scalar(left);
    const __m128i lanes = _mm_add_epi32(_mm_add_epi32(a, b), _mm_add_epi32(c, d));
    return sum + static_cast<std::uint32_t>(sumOfLanes32(lanes));
  }
};

/// Pairs of signed words are added into 32-bit lanes. A small region needs one set of lanes for all its rows.
class SignedWordSum16 {
 public:
  static double of(const std::int16_t* src, int srcStep, Size roi) {
    const auto row = [=](std::int64_t r) {
      return reinterpret_cast<const unsigned char*>(rowAt(src, srcStep, r));
    };
    if (ZORVAN_PLANNED("regionFitsLanes", regionFitsLanes(roi))) {
      Sum sum;
      for (std::int64_t r = 0; r < roi.height; ++r) sum.add(row(r), roi.width);
      return sum.total();
    }
    double total = 0;
    for (std::int64_t r = 0; r < roi.height; ++r) {
      for (std::int64_t c = 0; c < roi.width; c += sumBlockPixels) {
        Sum sum;
        sum.add(row(r) + 2 * c, roi.width - c < sumBlockPixels ? roi.width - c : sumBlockPixels);
        total += sum.total();
      }
    }
    return total;
  }

 private:
  struct Sum {
    __m128i lanes = _mm_setzero_si128();
    std::int32_t scalarSum = 0;

    void scalar(const unsigned char* p, std::int64_t count) {
      for (; count != 0; p += 2, --count) scalarSum += loadAs<std::int16_t>(p);
    }
    void add(const unsigned char* p, std::int64_t left) {
      const std::int64_t toBoundary = bytesToBoundary(p, 16);
      if (toBoundary % 2 == 0 && toBoundary / 2 < left) {
        scalar(p, toBoundary / 2);
        p += toBoundary;
        left -= toBoundary / 2;
      }
      for (; left >= 8; p += 16, left -= 8) {
        lanes = _mm_add_epi32(lanes, _mm_madd_epi16(Vector16::load(p).bits, _mm_set1_epi16(1)));
      }
      scalar(p, left);
    }
    std::int32_t total() const { return sumOfLanes32(lanes) + scalarSum; }
  };
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
