#pragma once

// Count and exact sum of the selected bytes of a region. Bytes are reduced by sums of absolute differences
// against zero into 64-bit lanes, which no region can overflow.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/folds.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_sum_plan.h"
#include "zorvan/primitives/kernels/statistic/selection.h"

namespace Zorvan::Primitives::Statistic {
namespace {

struct MaskedSum {
  std::uint32_t count;  ///< wraps, and is read as signed
  double sum;

  double mean() const {
    return count == 0 ? 0.0 : sum / static_cast<double>(static_cast<std::int32_t>(count));
  }
};

/// The numbers of zeros in the halves of 16 bytes, each 0 or 255.
inline __m128i countSelected(__m128i none) {
  return _mm_sad_epu8(_mm_andnot_si128(none, _mm_set1_epi8(1)), _mm_setzero_si128());
}

/// Sum and count in lanes of 64 bits.
struct MaskedByteLanes16 {
  __m128i sum = _mm_setzero_si128(), count = sum;

  void add(__m128i pixels, __m128i mask) {
    const __m128i none = unselected(mask);
    const __m128i zero = _mm_setzero_si128();
    sum = _mm_add_epi64(sum, _mm_sad_epu8(_mm_andnot_si128(none, pixels), zero));
    count = _mm_add_epi64(count, countSelected(none));
  }
  void addOne(u8 pixel, u8 mask) {
    const std::int32_t bits = selectedBits(mask);
    sum = _mm_add_epi64(sum, _mm_cvtsi32_si128(pixel & bits));
    count = _mm_add_epi64(count, _mm_cvtsi32_si128(1 & bits));
  }
  MaskedSum result() const {
    return {static_cast<std::uint32_t>(sumOfQwords(count)), static_cast<double>(sumOfQwords(sum))};
  }
};

/// 32 pixels per iteration, then 8, then scalar. Large regions: 4 pixels per iteration.
class MaskedBytes16 {
 public:
  static MaskedSum of(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    if (!ZORVAN_PLANNED("unrollsByteSum", unrollsByteSum(roi))) return rolled(src, mask, roi);
    const bool aligned =
        isAligned(src.pixels, 16) && isAligned(mask.pixels, 16) && src.step % 16 == 0 && mask.step % 16 == 0;
    return aligned ? unrolled<&Vector16::loadAligned>(src, mask, roi)
                   : unrolled<&Vector16::load>(src, mask, roi);
  }

 private:
  template <Vector16 (*load)(const void*)>
  static MaskedSum unrolled(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    MaskedByteLanes16 sums;
    const auto addRow = [&](const u8* p, const u8* m) {
      std::int64_t c = 0;
      for (; roi.width - c >= 32; c += 32) {
        sums.add(load(p + c).bits, load(m + c).bits);
        sums.add(load(p + c + 16).bits, load(m + c + 16).bits);
      }
      for (; roi.width - c >= 8; c += 8) sums.add(loadLow<8>(p + c), loadLow<8>(m + c));
      for (; c < roi.width; ++c) sums.addOne(p[c], m[c]);
    };
    forEachRow(roi.height, addRow, src, mask);
    return sums.result();
  }

  static MaskedSum rolled(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    MaskedByteLanes16 sums;
    const auto addRow = [&](const u8* p, const u8* m) {
      std::int64_t c = 0;
      for (; roi.width - c >= 4; c += 4) sums.add(loadLow<4>(p + c), loadLow<4>(m + c));
      for (; c < roi.width; ++c) sums.addOne(p[c], m[c]);
    };
    forEachRow(roi.height, addRow, src, mask);
    return sums.result();
  }
};

struct MaskedBytes32;
struct MaskedBytes64;

#ifdef __AVX2__
/// The number of zeros among 16 bytes, each 0 or 255.
inline std::uint32_t countSelected16(__m128i none) {
  return 16 - static_cast<std::uint32_t>(_mm_popcnt_u32(bitsOf(none)));
}

/// 32 pixels per iteration; the lanes of each row are added into lanes of doubles.
struct MaskedBytes32 {
  static MaskedSum of(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 2, [&](auto prefetchAfter) {
      const __m256i zero = _mm256_setzero_si256();
      __m256d total = _mm256_setzero_pd();
      std::uint32_t count = 0;
      const auto addRow = [&](const u8* p, const u8* m) {
        __m256i lanes = zero;
        const auto add = [&](__m256i pixels, __m256i selection) {
          const __m256i none = unselected(selection);
          lanes = _mm256_add_epi64(lanes, _mm256_sad_epu8(_mm256_andnot_si256(none, pixels), zero));
          count += static_cast<std::uint32_t>(countClear(none));
        };
        std::int64_t c = 0;
        for (; roi.width - c >= 32; c += 32) {
          prefetchAfter(p + c);
          prefetchAfter(m + c);
          add(Vector32::load(p + c).bits, Vector32::load(m + c).bits);
        }
        if (c != roi.width) add(loadFirst32(p + c, roi.width - c), loadFirst32(m + c, roi.width - c));
        total = _mm256_add_pd(total, asDoubles(lanes));
      };
      forEachRow(roi.height, addRow, src, mask);
      return MaskedSum{count, sumOf(total)};
    });
  }

 private:
  /// Exact below 2^52: the number becomes the fraction of a double of 2^52, which is then subtracted.
  static __m256d asDoubles(__m256i lanes) {
    const __m256d offset = _mm256_set1_pd(0x1p52);
    return _mm256_sub_pd(_mm256_or_pd(_mm256_castsi256_pd(lanes), offset), offset);
  }
};
#endif

#ifdef __AVX512BW__
/// The same with 64 pixels per iteration.
struct MaskedBytes64 {
  static MaskedSum of(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 2, [&](auto prefetchAfter) {
      __m512d total = _mm512_setzero_pd();
      std::uint32_t count = 0;
      const auto addRow = [&](const u8* p, const u8* m) {
        __m512i lanes = _mm512_setzero_si512();
        forEachSelection(m, roi.width, [&](std::int64_t c, __mmask64 selected) {
          prefetchAfter(p + c);
          prefetchAfter(m + c);
          const __m512i pixels = loadMasked(selected, p + c);
          lanes = _mm512_add_epi64(lanes, _mm512_sad_epu8(pixels, _mm512_setzero_si512()));
          count += static_cast<std::uint32_t>(countOf(selected));
        });
        total = _mm512_add_pd(total, _mm512_cvtepi64_pd(lanes));
      };
      forEachRow(roi.height, addRow, src, mask);
      return MaskedSum{count, sumOf(total)};
    });
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
