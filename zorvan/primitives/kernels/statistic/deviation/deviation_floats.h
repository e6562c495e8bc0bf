#pragma once

// Sums over the selected floats of a region: count, values and squares in a first pass, squares of the
// distance from a centre in a second one. Within a row, lanes have single precision. An unselected pixel adds
// zero, whatever its value.

#include "zorvan/primitives/kernels/statistic/deviation/deviation.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_floats.h"
#include "zorvan/primitives/kernels/statistic/selection.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// The tail of a row.
struct FloatTail {
  float sum = 0, squares = 0;

  FloatTail(const float* p, const u8* m, std::int64_t left, std::uint32_t& count) {
    for (; left != 0; ++p, ++m, --left) {
      const float value = selectedOrZero(p, *m);
      sum += value;
      squares += value * value;
      count += static_cast<std::uint32_t>(*m != 0);
    }
  }
};

/// Adds the squares of the distances of a row's tail from `center`.
inline void addSquaresOfTail(float& squares, const float* p, const u8* m, std::int64_t left, float center) {
  for (; left != 0; ++p, ++m, --left) {
    const float away = (*m != 0 ? loadAs<float>(p) : center) - center;
    squares += away * away;
  }
}

/// 8 pixels per iteration, then scalar. The second pass keeps its lanes over all rows.
class FloatMoments16 {
 public:
  static Moments of(Plane<const float> src, Plane<const u8> mask, Size roi) {
    Moments total{0, 0, 0};
    const auto addRow = [&](const float* p, const u8* m) {
      __m128 sum = _mm_setzero_ps(), squares = sum;
      __m128i counts = _mm_setzero_si128();
      std::int64_t left = roi.width;
      for (; left >= 8; p += 8, m += 8, left -= 8) {
        const __m128i none = unselected(loadLow<8>(m));
        const Eight values = load(p, none);
        sum = _mm_add_ps(_mm_add_ps(sum, values.low), values.high);
        squares = _mm_add_ps(squares, _mm_mul_ps(values.low, values.low));
        squares = _mm_add_ps(squares, _mm_mul_ps(values.high, values.high));
        counts = _mm_add_epi64(counts, countSelected(none));
      }
      const FloatTail tail(p, m, left, total.count);
      total.count += static_cast<std::uint32_t>(_mm_cvtsi128_si32(counts));
      total.sum += static_cast<double>(sumOf(sum) + tail.sum);
      total.squares += static_cast<double>(sumOf(squares) + tail.squares);
    };
    forEachRow(roi.height, addRow, src, mask);
    return total;
  }

  static double squaresAround(float center, Plane<const float> src, Plane<const u8> mask, Size roi) {
    const __m128 centers = _mm_set1_ps(center);
    __m128 squares = _mm_setzero_ps();
    float scalarSquares = 0;
    const auto addRow = [&](const float* p, const u8* m) {
      std::int64_t left = roi.width;
      for (; left >= 8; p += 8, m += 8, left -= 8) {
        const __m128i none = unselected(loadLow<8>(m));
        const __m128i words = _mm_unpacklo_epi8(none, none);
        const Eight values = load(p, none);
        const auto away = [&](__m128 value, __m128i unselectedLanes) {
          const __m128 filled = _mm_or_ps(value, _mm_and_ps(_mm_castsi128_ps(unselectedLanes), centers));
          return _mm_sub_ps(filled, centers);
        };
        const __m128 low = away(values.low, _mm_unpacklo_epi16(words, words));
        const __m128 high = away(values.high, _mm_unpackhi_epi16(words, words));
        squares = _mm_add_ps(squares, _mm_mul_ps(low, low));
        squares = _mm_add_ps(squares, _mm_mul_ps(high, high));
      }
      addSquaresOfTail(scalarSquares, p, m, left, center);
    };
    forEachRow(roi.height, addRow, src, mask);
    return static_cast<double>(sumOf(squares) + scalarSquares);
  }

 private:
  struct Eight {
    __m128 low, high;
  };
  /// Eight pixels, zeros where `none` has its bytes set.
  static Eight load(const float* p, __m128i none) {
    const __m128i words = _mm_unpacklo_epi8(none, none);
    const auto part = [](__m128i unselectedLanes, const float* at) {
      return _mm_castsi128_ps(_mm_andnot_si128(unselectedLanes, Vector16::load(at).bits));
    };
    return {part(_mm_unpacklo_epi16(words, words), p), part(_mm_unpackhi_epi16(words, words), p + 4)};
  }
};

class FloatMoments32;
class FloatMoments64;

#ifdef __AVX2__
/// 16 pixels per iteration over two accumulators, then scalar. Both passes fold their lanes after each row.
class FloatMoments32 {
 public:
  static Moments of(Plane<const float> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 5, [&](auto prefetchAfter) {
      Moments total{0, 0, 0};
      const auto addRow = [&](const float* p, const u8* m) {
        __m256 sumA = _mm256_setzero_ps(), sumB = sumA, squaresA = sumA, squaresB = sumA;
        const auto add = [](__m256& sum, __m256& squares, const float* at, __m128i selection) {
          const __m256 none = _mm256_castsi256_ps(unselectedDwords(selection));
          const __m256 values = _mm256_andnot_ps(none, loadAs<__m256>(at));
          sum = _mm256_add_ps(sum, values);
          squares = _mm256_fmadd_ps(values, values, squares);
        };
        std::int64_t left = roi.width;
        for (; left >= 16; p += 16, m += 16, left -= 16) {
          const __m128i selection = Vector16::load(m).bits;
          prefetchAfter(p);
          add(sumA, squaresA, p, selection);
          add(sumB, squaresB, p + 8, _mm_srli_si128(selection, 8));
          total.count += countSelected16(unselected(selection));
        }
        const FloatTail tail(p, m, left, total.count);
        total.sum += static_cast<double>(sumOf(_mm256_add_ps(sumA, sumB)) + tail.sum);
        total.squares += static_cast<double>(sumOf(_mm256_add_ps(squaresA, squaresB)) + tail.squares);
      };
      forEachRow(roi.height, addRow, src, mask);
      return total;
    });
  }

  static double squaresAround(float center, Plane<const float> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 5, [&](auto prefetchAfter) {
      const __m256 centers = _mm256_set1_ps(center);
      double total = 0;
      const auto addRow = [&](const float* p, const u8* m) {
        __m256 a = _mm256_setzero_ps(), b = a;
        const auto add = [&](__m256& squares, const float* at, __m128i selection) {
          const __m256 none = _mm256_castsi256_ps(unselectedDwords(selection));
          const __m256 values = loadAs<__m256>(at);
          const __m256 away = _mm256_sub_ps(_mm256_blendv_ps(values, centers, none), centers);
          squares = _mm256_fmadd_ps(away, away, squares);
        };
        std::int64_t left = roi.width;
        for (; left >= 16; p += 16, m += 16, left -= 16) {
          const __m128i selection = Vector16::load(m).bits;
          prefetchAfter(p);
          add(a, p, selection);
          add(b, p + 8, _mm_srli_si128(selection, 8));
        }
        float scalarSquares = 0;
        addSquaresOfTail(scalarSquares, p, m, left, center);
        total += static_cast<double>(sumOf(_mm256_add_ps(a, b)) + scalarSquares);
      };
      forEachRow(roi.height, addRow, src, mask);
      return total;
    });
  }
};
#endif

#ifdef __AVX512BW__
/// 64 pixels per iteration over four accumulators; the tail is masked.
class FloatMoments64 {
 public:
  static Moments of(Plane<const float> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 5, [&](auto prefetchAfter) {
      Moments total{0, 0, 0};
      const auto addRow = [&](const float* p, const u8* m) {
        Lanes sum, squares;
        const auto add = [](__m512& sums, __m512& squared, __mmask16 selected, const float* at) {
          const __m512 values = loadMaskedFloats(selected, at);
          sums = _mm512_add_ps(sums, values);
          squared = _mm512_fmadd_ps(values, values, squared);
        };
        std::uint32_t count = 0;
        forEachSelection(m, roi.width, [&](std::int64_t c, __mmask64 selected) {
          const float* const at = p + c;
          prefetchAfter(at, 256);
          prefetchAfter(m + c);
          add(sum.a, squares.a, sixteenOf<0>(selected), at);
          add(sum.b, squares.b, sixteenOf<1>(selected), at + 16);
          add(sum.c, squares.c, sixteenOf<2>(selected), at + 32);
          add(sum.d, squares.d, sixteenOf<3>(selected), at + 48);
          count += static_cast<std::uint32_t>(countOf(selected));
        });
        total.count += count;
        total.sum += static_cast<double>(sum.fold());
        total.squares += static_cast<double>(squares.fold());
      };
      forEachRow(roi.height, addRow, src, mask);
      return total;
    });
  }

  static double squaresAround(float center, Plane<const float> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 5, [&](auto prefetchAfter) {
      const __m512 centers = _mm512_set1_ps(center);
      double total = 0;
      const auto addRow = [&](const float* p, const u8* m) {
        Lanes squares;
        const auto add = [&](__m512& squared, __mmask16 selected, const float* at) {
          const __m512 values = loadMaskedFloats(selected, at, centers);
          const __m512 away = _mm512_sub_ps(values, centers);
          squared = _mm512_fmadd_ps(away, away, squared);
        };
        forEachSelection(m, roi.width, [&](std::int64_t c, __mmask64 selected) {
          const float* const at = p + c;
          prefetchAfter(at, 256);
          prefetchAfter(m + c);
          add(squares.a, sixteenOf<0>(selected), at);
          add(squares.b, sixteenOf<1>(selected), at + 16);
          add(squares.c, sixteenOf<2>(selected), at + 32);
          add(squares.d, sixteenOf<3>(selected), at + 48);
        });
        total += static_cast<double>(squares.fold());
      };
      forEachRow(roi.height, addRow, src, mask);
      return total;
    });
  }

 private:
  struct Lanes {
    __m512 a = _mm512_setzero_ps(), b = a, c = a, d = a;
    float fold() const { return sumOf(_mm512_add_ps(_mm512_add_ps(a, b), _mm512_add_ps(c, d))); }
  };
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
