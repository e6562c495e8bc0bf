#pragma once

// Count and sum of the selected floats of a region. Lanes of floats are added to doubles and cleared after
// some hundred additions, counted across rows: little precision is lost. An unselected pixel adds zero,
// whatever its value.

#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_bytes.h"
#include "zorvan/primitives/kernels/statistic/selection.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// The value, or zero bits for an unselected pixel.
inline float selectedOrZero(const float* p, u8 mask) {
  return __builtin_bit_cast(float, loadAs<std::int32_t>(p) & selectedBits(mask));
}

/// The tail of a row, added in single precision.
inline double sumScalar(const float* p, const u8* m, std::int64_t left, std::uint32_t& count) {
  float sum = 0;
  for (; left != 0; ++p, ++m, --left) {
    sum += selectedOrZero(p, *m);
    count += static_cast<std::uint32_t>(*m != 0);
  }
  return sum;
}

/// Limits the additions to lanes of floats between two times that they are emptied.
class AdditionBudget {
 public:
  explicit AdditionBudget(int perIteration) : iterations_(floatAdditions / perIteration) {}

  /// Of `iterations`, those that may run before `spend`.
  std::int64_t grant(std::int64_t iterations) const {
    const std::int64_t left = iterations_ - used_;
    return iterations < left ? iterations : left;
  }
  /// True when the lanes must be emptied.
  bool spend(std::int64_t iterations) {
    used_ += iterations;
    if (used_ < iterations_) return false;
    used_ = 0;
    return true;
  }

 private:
  std::int64_t iterations_;
  std::int64_t used_ = 0;
};

/// 8 pixels per iteration into one accumulator of four lanes; the tail is scalar.
class MaskedFloats16 {
 public:
  static MaskedSum of(Plane<const float> src, Plane<const u8> mask, Size roi) {
    const bool aligned = isAligned(src.pixels, 16) && src.step % 16 == 0;
    return aligned ? sum<&Vector16::loadAligned>(src, mask, roi) : sum<&Vector16::load>(src, mask, roi);
  }

 private:
  template <Vector16 (*load)(const void*)>
  static MaskedSum sum(Plane<const float> src, Plane<const u8> mask, Size roi) {
    __m128d total = _mm_setzero_pd();
    __m128 lanes = _mm_setzero_ps();
    __m128i counts = _mm_setzero_si128();
    std::uint32_t count = 0;
    const auto empty = [&] {
      total = _mm_add_pd(total, _mm_cvtps_pd(lanes));
      total = _mm_add_pd(total, _mm_cvtps_pd(_mm_movehl_ps(lanes, lanes)));
      lanes = _mm_setzero_ps();
    };
    AdditionBudget budget(2);
    for (std::int64_t r = 0; r < roi.height; ++r) {
      const float* p = src.at(r);
      const u8* m = mask.at(r);
      for (std::int64_t iterations = roi.width / 8; iterations != 0;) {
        const std::int64_t granted = budget.grant(iterations);
        for (std::int64_t i = 0; i < granted; ++i, p += 8, m += 8) {
          const __m128i none = unselected(loadLow<8>(m));
          const __m128i words = _mm_unpacklo_epi8(none, none);
          const __m128i low = _mm_andnot_si128(_mm_unpacklo_epi16(words, words), load(p).bits);
          const __m128i high = _mm_andnot_si128(_mm_unpackhi_epi16(words, words), load(p + 4).bits);
          lanes = _mm_add_ps(lanes, _mm_castsi128_ps(low));
          lanes = _mm_add_ps(lanes, _mm_castsi128_ps(high));
          counts = _mm_add_epi64(counts, countSelected(none));
        }
        if (budget.spend(granted)) empty();
        iterations -= granted;
      }
      total = _mm_add_sd(total, _mm_set_sd(sumScalar(p, m, roi.width % 8, count)));
    }
    empty();
    return {count + static_cast<std::uint32_t>(sumOfQwords(counts)), sumOf(total)};
  }
};

struct MaskedFloats32;
class MaskedFloats64;

#ifdef __AVX2__
/// 16 pixels per iteration into two accumulators of eight lanes, then 8, then scalar.
struct MaskedFloats32 {
  static MaskedSum of(Plane<const float> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 5, [&](auto prefetchAfter) {
      __m256d total = _mm256_setzero_pd();
      __m256 a = _mm256_setzero_ps(), b = a;
      double scalarSum = 0;
      std::uint32_t count = 0;
      const auto empty = [&] {
        total = addWidened(addWidened(total, a), b);
        a = b = _mm256_setzero_ps();
      };
      const auto add = [](__m256& lanes, const float* p, __m128i selection) {
        const __m256 none = _mm256_castsi256_ps(unselectedDwords(selection));
        lanes = _mm256_add_ps(lanes, _mm256_andnot_ps(none, loadAs<__m256>(p)));
      };
      AdditionBudget budget(1);
      const auto addRow = [&](const float* p, const u8* m) {
        for (std::int64_t iterations = roi.width / 16; iterations != 0;) {
          const std::int64_t granted = budget.grant(iterations);
          for (std::int64_t i = 0; i < granted; ++i, p += 16, m += 16) {
            const __m128i selection = Vector16::load(m).bits;
            prefetchAfter(p);
            add(a, p, selection);
            add(b, p + 8, _mm_srli_si128(selection, 8));
            count += countSelected16(unselected(selection));
          }
          if (budget.spend(granted)) empty();
          iterations -= granted;
        }
        if ((roi.width & 8) != 0) {
          const __m128i selection = loadLow<8>(m);
          add(a, p, selection);
          count += countSelected16(unselected(selection));
          p += 8;
          m += 8;
          if (budget.spend(1)) empty();
        }
        scalarSum += sumScalar(p, m, roi.width % 8, count);
      };
      forEachRow(roi.height, addRow, src, mask);
      empty();
      return MaskedSum{count, sumOf(total) + scalarSum};
    });
  }
};
#endif

#ifdef __AVX512BW__
/// 64 pixels per iteration into four accumulators; the tail is masked. Rows below 8 pixels are scalar.
class MaskedFloats64 {
 public:
  static MaskedSum of(Plane<const float> src, Plane<const u8> mask, Size roi) {
    MaskedFloats64 sum;
    return withPrefetch(roi, 5, [&](auto prefetchAfter) {
      double scalarSum = 0;
      const auto addRow = [&](const float* p, const u8* m) {
        if (roi.width < 8) {
          scalarSum += sumScalar(p, m, roi.width, sum.count_);
        } else {
          sum.row(p, m, roi.width, prefetchAfter);
        }
      };
      forEachRow(roi.height, addRow, src, mask);
      sum.empty();
      return MaskedSum{sum.count_, sumOf(sum.total_) + scalarSum};
    });
  }

 private:
  void row(const float* p, const u8* m, std::int64_t pixels, auto prefetchAfter) {
    for (std::int64_t c = 0; c < pixels;) {
      const std::int64_t iterations = budget_.grant((pixels - c + 63) / 64);
      const std::int64_t granted = iterations * 64 < pixels - c ? iterations * 64 : pixels - c;
      forEachSelection(m + c, granted, [&, from = p + c](std::int64_t at, __mmask64 selected) {
        const float* const q = from + at;
        prefetchAfter(q, 256);
        prefetchAfter(m + c + at);
        add(a_, sixteenOf<0>(selected), q);
        add(b_, sixteenOf<1>(selected), q + 16);
        add(c_, sixteenOf<2>(selected), q + 32);
        add(d_, sixteenOf<3>(selected), q + 48);
        count_ += static_cast<std::uint32_t>(countOf(selected));
      });
      if (budget_.spend(iterations)) empty();
      c += granted;
    }
  }

  static void add(__m512& lanes, __mmask16 selected, const float* p) {
    lanes = _mm512_add_ps(lanes, loadMaskedFloats(selected, p));
  }

  void empty() {
    total_ = addWidened(addWidened(addWidened(addWidened(total_, a_), b_), c_), d_);
    a_ = b_ = c_ = d_ = _mm512_setzero_ps();
  }

  __m512 a_ = _mm512_setzero_ps(), b_ = a_, c_ = a_, d_ = a_;
  __m512d total_ = _mm512_setzero_pd();
  std::uint32_t count_ = 0;
  AdditionBudget budget_{1};
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
