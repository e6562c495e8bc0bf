#pragma once

// Sums of float regions with 32- and 64-byte vectors: the three newest variants.
//
// Accumulators persist over all rows of the region and are folded once, at the very end: high lanes onto low
// lanes, then the two lanes of the last pair. A row of 17 pixels and more takes a scalar head of at most
// seven pixels to a 32-byte boundary, where its pixels reach one, and goes 16 pixels a step. Narrower regions
// are added in a plain vector loop, in double whatever the hint.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/simd/vectors.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

#ifdef __AVX__
namespace Zorvan::Primitives {
namespace {

/// Widths from which the hint counts.
constexpr int wideFloatRows = 17;

inline __m128d foldHigh(__m256d lanes) {
  return _mm_add_pd(_mm256_castpd256_pd128(lanes), _mm256_extractf128_pd(lanes, 1));
}
inline double foldAll(__m128d lanes) {
  return _mm_cvtsd_f64(_mm_add_sd(lanes, _mm_unpackhi_pd(lanes, lanes)));
}
inline float foldAll(__m128 lanes) {
  lanes = _mm_add_ps(lanes, _mm_movehl_ps(lanes, lanes));
  return _mm_cvtss_f32(_mm_add_ss(lanes, _mm_shuffle_ps(lanes, lanes, 1)));
}

/// The pixels of a row that no vector takes.
template <class Sum>
inline void addScalar(Sum& sum, const char*& p, std::int64_t& left, std::int64_t count) {
  for (left -= count; count != 0; p += 4, --count) sum += static_cast<Sum>(loadAs<float>(p));
}

inline std::int64_t peelPixels(const char* p) {
  const std::int64_t toBoundary = bytesToBoundary(p, 32);
  return toBoundary % 4 == 0 ? toBoundary / 4 : 0;
}

/// Lanes of doubles, filled four at a time.
struct Doubles32 {
  static constexpr int pixels = 4;
  __m256d lanes = _mm256_setzero_pd();

  void add(const char* p) { lanes = _mm256_add_pd(lanes, _mm256_cvtps_pd(loadAs<__m128>(p))); }
  void add(Doubles32 other) { lanes = _mm256_add_pd(lanes, other.lanes); }
  double total() const { return foldAll(foldHigh(lanes)); }

  using Single = double;
  static void addRest(Doubles32&, double& single, const char* p, std::int64_t left) {
    addScalar(single, p, left, left);
  }
};

/// Lanes of floats, filled eight at a time.
struct Floats32 {
  static constexpr int pixels = 8;
  __m256 lanes = _mm256_setzero_ps();

  void add(const char* p) { lanes = _mm256_add_ps(lanes, loadAs<__m256>(p)); }
  void add(Floats32 other) { lanes = _mm256_add_ps(lanes, other.lanes); }
  float total() const {
    return foldAll(_mm_add_ps(_mm256_castps256_ps128(lanes), _mm256_extractf128_ps(lanes, 1)));
  }

  using Single = float;
  static void addRest(Floats32&, float& single, const char* p, std::int64_t left) {
    addScalar(single, p, left, left);
  }
};

#ifdef __AVX512F__
/// Lanes of doubles, filled eight at a time, with the rest of a row in a masked load. A product with one is
/// exact, so that each addition can be a multiply-add: some processors convert where they add and multiply
/// elsewhere.
struct Doubles64 {
  static constexpr int pixels = 8;
  __m512d lanes = _mm512_setzero_pd();

  void add(__m256 floats) { lanes = _mm512_fmadd_pd(_mm512_cvtps_pd(floats), _mm512_set1_pd(1), lanes); }
  void add(const char* p) { add(loadAs<__m256>(p)); }
  void add(Doubles64 other) { lanes = _mm512_add_pd(lanes, other.lanes); }
  double total() const {
    return foldAll(foldHigh(_mm256_add_pd(_mm512_castpd512_pd256(lanes), _mm512_extractf64x4_pd(lanes, 1))));
  }

  using Single = double;
  static void addRest(Doubles64& sum, double&, const char* p, std::int64_t left) {
    sum.add(_mm256_maskz_loadu_ps(static_cast<__mmask8>((1u << left) - 1), p));
  }
};

struct Floats64 {
  static constexpr int pixels = 16;
  __m512 lanes = _mm512_setzero_ps();

  void add(const char* p) { lanes = _mm512_add_ps(lanes, loadAs<__m512>(p)); }
  void add(Floats64 other) { lanes = _mm512_add_ps(lanes, other.lanes); }
  float total() const {
    const __m256 eight = _mm256_add_ps(_mm512_castps512_ps256(lanes), _mm512_extractf32x8_ps(lanes, 1));
    return foldAll(_mm_add_ps(_mm256_castps256_ps128(eight), _mm256_extractf128_ps(eight, 1)));
  }

  using Single = float;
  static void addRest(Floats64& sum, float&, const char* p, std::int64_t left) {
    const auto chosen = static_cast<__mmask16>((1u << left) - 1);
    sum.lanes = _mm512_add_ps(sum.lanes, _mm512_maskz_loadu_ps(chosen, p));
  }
};
#endif

/// A region of any width in lanes of doubles or floats, on eight accumulators. They have names, as the
/// compiler leaves an array of them in memory between the rows.
template <class Lanes>
struct PersistentSum {
  static double of(const float* src, int srcStep, Size roi) {
    constexpr std::int64_t width = Lanes::pixels, turn = 8 * width, bytes = 4 * width;
    return readingAhead(roi, sizeof(float), [&](auto readAhead) {
      Lanes a, b, c, d, e, f, g, h;
      typename Lanes::Single single = 0;
      for (std::int64_t r = 0; r < roi.height; ++r) {
        const char* p = reinterpret_cast<const char*>(rowAt(src, srcStep, r));
        std::int64_t left = roi.width;
        if (roi.width >= wideFloatRows) addScalar(single, p, left, peelPixels(p));
        for (; left >= turn; p += 8 * bytes, left -= turn) {
          readAhead(p, 8 * bytes);
          a.add(p);
          b.add(p + bytes);
          c.add(p + 2 * bytes);
          d.add(p + 3 * bytes);
          e.add(p + 4 * bytes);
          f.add(p + 5 * bytes);
          g.add(p + 6 * bytes);
          h.add(p + 7 * bytes);
        }
        for (; left >= 2 * width; p += 2 * bytes, left -= 2 * width) {
          a.add(p);
          b.add(p + bytes);
        }
        if (left >= width) {
          c.add(p);
          p += bytes;
          left -= width;
        }
        if (left != 0) Lanes::addRest(d, single, p, left);
      }
      a.add(e);
      b.add(f);
      c.add(g);
      d.add(h);
      a.add(c);
      b.add(d);
      a.add(b);
      return static_cast<double>(a.total() + single);
    });
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
