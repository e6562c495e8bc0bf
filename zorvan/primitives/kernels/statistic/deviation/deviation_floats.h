#pragma once

// Sums over the selected floats of a region: count, values and squares in a first pass, squares of the
// distance from a centre in a second one. Within a row, lanes have single precision. An unselected pixel adds
// zero, whatever its value.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/statistic/deviation/deviation.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_floats.h"
#include "zorvan/primitives/kernels/statistic/selection.h"

namespace Zorvan::Primitives::Statistic {
namespace {

inline float foldLanes(__m128 lanes) {
  lanes = _mm_add_ps(lanes, _mm_movehl_ps(lanes, lanes));
  return _mm_cvtss_f32(_mm_add_ss(lanes, _mm_shuffle_ps(lanes, lanes, 1)));
}

struct MaskedFloats {
  const float* src;
  int srcStep;
  const std::uint8_t* mask;
  int maskStep;
  Size roi;

  template <class Row>
  void forEachRow(Row row) const {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      row(reinterpret_cast<const char*>(rowAt(src, srcStep, r)), rowAt(mask, maskStep, r));
    }
  }
};

/// 8 pixels per iteration, then scalar. The second pass keeps its lanes over all rows.
class FloatMoments16 {
 public:
  static Moments of(const MaskedFloats& image) {
    Moments total{0, 0, 0};
    image.forEachRow([&](const char* p, const std::uint8_t* m) {
      __m128 sum = _mm_setzero_ps(), squares = sum;
      __m128i counts = _mm_setzero_si128();
      std::int64_t left = image.roi.width;
      for (; left >= 8; p += 32, m += 8, left -= 8) {
        const __m128i none = unselected(loadLow<8>(m));
        const Eight values = load(p, none);
        sum = _mm_add_ps(_mm_add_ps(sum, values.low), values.high);
        squares = _mm_add_ps(squares, _mm_mul_ps(values.low, values.low));
        squares = _mm_add_ps(squares, _mm_mul_ps(values.high, values.high));
        const __m128i ones = _mm_andnot_si128(none, _mm_set_epi64x(0, 0x0101010101010101));
        counts = _mm_add_epi64(counts, _mm_sad_epu8(ones, _mm_setzero_si128()));
      }
      float scalarSum = 0, scalarSquares = 0;
      for (; left != 0; p += 4, ++m, --left) {
        const float value = selectedOrZero(p, *m);
        scalarSum += value;
        scalarSquares += value * value;
        total.count += static_cast<std::uint32_t>(*m != 0);
      }
      total.count += static_cast<std::uint32_t>(_mm_cvtsi128_si32(counts));
      total.sum += static_cast<double>(foldLanes(sum) + scalarSum);
      total.squares += static_cast<double>(foldLanes(squares) + scalarSquares);
    });
    return total;
  }

  static double squaresAround(float center, const MaskedFloats& image) {
    const __m128 centers = _mm_set1_ps(center);
    __m128 squares = _mm_setzero_ps();
    float scalarSquares = 0;
    image.forEachRow([&](const char* p, const std::uint8_t* m) {
      std::int64_t left = image.roi.width;
      for (; left >= 8; p += 32, m += 8, left -= 8) {
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
      for (; left != 0; p += 4, ++m, --left) {
        const float away = (*m != 0 ? loadAs<float>(p) : center) - center;
        scalarSquares += away * away;
      }
    });
    return static_cast<double>(foldLanes(squares) + scalarSquares);
  }

 private:
  struct Eight {
    __m128 low, high;
  };
  /// Eight pixels, zeros where `none` has its bytes set.
  static Eight load(const char* p, __m128i none) {
    const __m128i words = _mm_unpacklo_epi8(none, none);
    const auto part = [](__m128i unselectedLanes, const char* at) {
      return _mm_castsi128_ps(_mm_andnot_si128(unselectedLanes, Vector16::load(at).bits));
    };
    return {part(_mm_unpacklo_epi16(words, words), p), part(_mm_unpackhi_epi16(words, words), p + 16)};
  }
};

class FloatMoments32;
class FloatMoments64;

#ifdef __AVX2__
inline float foldLanes(__m256 lanes) {
  return foldLanes(_mm_add_ps(_mm256_castps256_ps128(lanes), _mm256_extractf128_ps(lanes, 1)));
}

/// 16 pixels per iteration over two accumulators, then scalar. Both passes fold their lanes after each row.
class FloatMoments32 {
 public:
  static Moments of(const MaskedFloats& image) {
    return withPrefetch(image.roi, 5, [&](auto prefetchAfter) {
      Moments total{0, 0, 0};
      image.forEachRow([&](const char* p, const std::uint8_t* m) {
        __m256 sumA = _mm256_setzero_ps(), sumB = sumA, squaresA = sumA, squaresB = sumA;
        const auto add = [](__m256& sum, __m256& squares, const char* at, __m128i selection) {
          const __m256 none = _mm256_castsi256_ps(unselectedDwords(selection));
          const __m256 values = _mm256_andnot_ps(none, _mm256_castsi256_ps(Vector32::load(at).bits));
          sum = _mm256_add_ps(sum, values);
          squares = _mm256_fmadd_ps(values, values, squares);
        };
        std::int64_t left = image.roi.width;
        for (; left >= 16; p += 64, m += 16, left -= 16) {
          const __m128i selection = Vector16::load(m).bits;
          prefetchAfter(p);
          add(sumA, squaresA, p, selection);
          add(sumB, squaresB, p + 32, _mm_srli_si128(selection, 8));
          const int none = _mm_movemask_epi8(unselected(selection));
          total.count += 16 - static_cast<std::uint32_t>(_mm_popcnt_u32(static_cast<unsigned>(none)));
        }
        float scalarSum = 0, scalarSquares = 0;
        for (; left != 0; p += 4, ++m, --left) {
          const float value = selectedOrZero(p, *m);
          scalarSum += value;
          scalarSquares += value * value;
          total.count += static_cast<std::uint32_t>(*m != 0);
        }
        total.sum += static_cast<double>(foldLanes(_mm256_add_ps(sumA, sumB)) + scalarSum);
        total.squares += static_cast<double>(foldLanes(_mm256_add_ps(squaresA, squaresB)) + scalarSquares);
      });
      return total;
    });
  }

  static double squaresAround(float center, const MaskedFloats& image) {
    return withPrefetch(image.roi, 5, [&](auto prefetchAfter) {
      const __m256 centers = _mm256_set1_ps(center);
      double total = 0;
      image.forEachRow([&](const char* p, const std::uint8_t* m) {
        __m256 a = _mm256_setzero_ps(), b = a;
        const auto add = [&](__m256& squares, const char* at, __m128i selection) {
          const __m256 none = _mm256_castsi256_ps(unselectedDwords(selection));
          const __m256 values = _mm256_castsi256_ps(Vector32::load(at).bits);
          const __m256 away = _mm256_sub_ps(_mm256_blendv_ps(values, centers, none), centers);
          squares = _mm256_fmadd_ps(away, away, squares);
        };
        std::int64_t left = image.roi.width;
        for (; left >= 16; p += 64, m += 16, left -= 16) {
          const __m128i selection = Vector16::load(m).bits;
          prefetchAfter(p);
          add(a, p, selection);
          add(b, p + 32, _mm_srli_si128(selection, 8));
        }
        float scalarSquares = 0;
        for (; left != 0; p += 4, ++m, --left) {
          const float away = (*m != 0 ? loadAs<float>(p) : center) - center;
          scalarSquares += away * away;
        }
        total += static_cast<double>(foldLanes(_mm256_add_ps(a, b)) + scalarSquares);
      });
      return total;
    });
  }
};
#endif

#ifdef __AVX512BW__
inline float foldLanes(__m512 lanes) {
  return foldLanes(_mm256_add_ps(_mm512_castps512_ps256(lanes), _mm512_extractf32x8_ps(lanes, 1)));
}

/// 64 pixels per iteration over four accumulators; the tail is masked.
class FloatMoments64 {
 public:
  static Moments of(const MaskedFloats& image) {
    return withPrefetch(image.roi, 5, [&](auto prefetchAfter) {
      Moments total{0, 0, 0};
      image.forEachRow([&](const char* p, const std::uint8_t* m) {
        Lanes sum, squares;
        const auto add = [](__m512& sums, __m512& squared, __mmask16 selected, const char* at) {
          const __m512 values = _mm512_maskz_loadu_ps(selected, at);
          sums = _mm512_add_ps(sums, values);
          squared = _mm512_fmadd_ps(values, values, squared);
        };
        std::uint32_t count = 0;
        forEachSelection(m, image.roi.width, [&](std::int64_t c, __mmask64 selected) {
          const char* const at = p + 4 * c;
          prefetchAfter(at, 256);
          prefetchAfter(m + c);
          add(sum.a, squares.a, sixteenOf<0>(selected), at);
          add(sum.b, squares.b, sixteenOf<1>(selected), at + 64);
          add(sum.c, squares.c, sixteenOf<2>(selected), at + 128);
          add(sum.d, squares.d, sixteenOf<3>(selected), at + 192);
          count += static_cast<std::uint32_t>(countOf(selected));
        });
        total.count += count;
        total.sum += static_cast<double>(sum.fold());
        total.squares += static_cast<double>(squares.fold());
      });
      return total;
    });
  }

  static double squaresAround(float center, const MaskedFloats& image) {
    return withPrefetch(image.roi, 5, [&](auto prefetchAfter) {
      const __m512 centers = _mm512_set1_ps(center);
      double total = 0;
      image.forEachRow([&](const char* p, const std::uint8_t* m) {
        Lanes squares;
        const auto add = [&](__m512& squared, __mmask16 selected, const char* at) {
          const __m512 values = _mm512_mask_loadu_ps(centers, selected, at);
          const __m512 away = _mm512_sub_ps(values, centers);
          squared = _mm512_fmadd_ps(away, away, squared);
        };
        forEachSelection(m, image.roi.width, [&](std::int64_t c, __mmask64 selected) {
          const char* const at = p + 4 * c;
          prefetchAfter(at, 256);
          prefetchAfter(m + c);
          add(squares.a, sixteenOf<0>(selected), at);
          add(squares.b, sixteenOf<1>(selected), at + 64);
          add(squares.c, sixteenOf<2>(selected), at + 128);
          add(squares.d, sixteenOf<3>(selected), at + 192);
        });
        total += static_cast<double>(squares.fold());
      });
      return total;
    });
  }

 private:
  struct Lanes {
    __m512 a = _mm512_setzero_ps(), b = a, c = a, d = a;
    float fold() const { return foldLanes(_mm512_add_ps(_mm512_add_ps(a, b), _mm512_add_ps(c, d))); }
  };
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
