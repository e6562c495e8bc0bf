#pragma once

// Sums of float regions with 32- and 64-byte vectors.
//
// Accumulators persist over all rows of the region and are folded once, at the very end: high lanes onto low
// lanes, then the two lanes of the last pair. Rows of 17 pixels and more begin with a scalar peel of at most
// seven pixels to a 32-byte boundary, where a pixel starts on one. Narrower regions have no peel, and are
// added in double precision whatever the hint.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/simd/vectors.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

struct Doubles32;
struct Floats32;
struct Doubles64;
struct Floats64;
template <class Lanes>
struct RegionSum;
template <class Floats, class Doubles>
struct FastRegionSum;

#ifdef __AVX__

/// Narrower regions are summed in double precision whatever the hint.
constexpr int floatLanesFromWidth = 17;

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

/// The next `count` pixels of a row, one after the other.
template <class Sum>
inline void addScalar(Sum& sum, const char*& p, std::int64_t& left, std::int64_t count) {
  for (left -= count; count != 0; p += 4, --count) sum += static_cast<Sum>(loadAs<float>(p));
}

inline std::int64_t peelPixels(const char* p) {
  const std::int64_t toBoundary = bytesToBoundary(p, 32);
  return toBoundary % 4 == 0 ? toBoundary / 4 : 0;
}

/// Four lanes of doubles.
struct Doubles32 {
  static constexpr int pixels = 4;
  __m256d lanes = _mm256_setzero_pd();

  void add(const char* p) { lanes = _mm256_add_pd(lanes, _mm256_cvtps_pd(loadAs<__m128>(p))); }
  void add(Doubles32 other) { lanes = _mm256_add_pd(lanes, other.lanes); }
  double total() const { return foldAll(foldHigh(lanes)); }

  using Scalar = double;
  static void addTail(Doubles32&, double& scalarSum, const char* p, std::int64_t left) {
    addScalar(scalarSum, p, left, left);
  }
};

/// Eight lanes of floats.
struct Floats32 {
  static constexpr int pixels = 8;
  __m256 lanes = _mm256_setzero_ps();

  void add(const char* p) { lanes = _mm256_add_ps(lanes, loadAs<__m256>(p)); }
  void add(Floats32 other) { lanes = _mm256_add_ps(lanes, other.lanes); }
  float total() const {
    return foldAll(_mm_add_ps(_mm256_castps256_ps128(lanes), _mm256_extractf128_ps(lanes, 1)));
  }

  using Scalar = float;
  static void addTail(Floats32&, float& scalarSum, const char* p, std::int64_t left) {
    addScalar(scalarSum, p, left, left);
  }
};

#ifdef __AVX512F__
/// Eight lanes of doubles; the tail of a row is a masked load. Additions are multiply-adds with a factor of
/// one, which is exact: some processors convert and add in the same port, and multiply in another.
struct Doubles64 {
  static constexpr int pixels = 8;
  __m512d lanes = _mm512_setzero_pd();

  void add(__m256 floats) { lanes = _mm512_fmadd_pd(_mm512_cvtps_pd(floats), _mm512_set1_pd(1), lanes); }
  void add(const char* p) { add(loadAs<__m256>(p)); }
  void add(Doubles64 other) { lanes = _mm512_add_pd(lanes, other.lanes); }
  double total() const {
    return foldAll(foldHigh(_mm256_add_pd(_mm512_castpd512_pd256(lanes), _mm512_extractf64x4_pd(lanes, 1))));
  }

  using Scalar = double;
  static void addTail(Doubles64& sum, double&, const char* p, std::int64_t left) {
    sum.add(_mm256_maskz_loadu_ps(static_cast<__mmask8>((1u << left) - 1), p));
  }
};

/// Sixteen lanes of floats.
struct Floats64 {
  static constexpr int pixels = 16;
  __m512 lanes = _mm512_setzero_ps();

  void add(const char* p) { lanes = _mm512_add_ps(lanes, loadAs<__m512>(p)); }
  void add(Floats64 other) { lanes = _mm512_add_ps(lanes, other.lanes); }
  float total() const {
    const __m256 eight = _mm256_add_ps(_mm512_castps512_ps256(lanes), _mm512_extractf32x8_ps(lanes, 1));
    return foldAll(_mm_add_ps(_mm256_castps256_ps128(eight), _mm256_extractf128_ps(eight, 1)));
  }

  using Scalar = float;
  static void addTail(Floats64& sum, float&, const char* p, std::int64_t left) {
    const auto selected = static_cast<__mmask16>((1u << left) - 1);
    sum.lanes = _mm512_add_ps(sum.lanes, _mm512_maskz_loadu_ps(selected, p));
  }
};
#endif

/// The sum of a region in eight accumulators of doubles or floats. The compiler would keep an array of them
/// in memory between the rows.
template <class Lanes>
struct RegionSum {
  static double of(const float* src, int srcStep, Size roi) {
    constexpr std::int64_t width = Lanes::pixels, unrolled = 8 * width, bytes = 4 * width;
    return withPrefetch(roi, sizeof(float), [&](auto prefetchAfter) {
      Lanes a, b, c, d, e, f, g, h;
      typename Lanes::Scalar scalarSum = 0;
      for (std::int64_t r = 0; r < roi.height; ++r) {
        const char* p = reinterpret_cast<const char*>(rowAt(src, srcStep, r));
        std::int64_t left = roi.width;
        if (roi.width >= floatLanesFromWidth) addScalar(scalarSum, p, left, peelPixels(p));
        for (; left >= unrolled; p += 8 * bytes, left -= unrolled) {
          prefetchAfter(p, 8 * bytes);
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
        if (left != 0) Lanes::addTail(d, scalarSum, p, left);
      }
      a.add(e);
      b.add(f);
      c.add(g);
      d.add(h);
      a.add(c);
      b.add(d);
      a.add(b);
      return static_cast<double>(a.total() + scalarSum);
    });
  }
};

template <class Floats, class Doubles>
struct FastRegionSum {
  static double of(const float* src, int srcStep, Size roi) {
    return roi.width < floatLanesFromWidth ? RegionSum<Doubles>::of(src, srcStep, roi)
                                           : RegionSum<Floats>::of(src, srcStep, roi);
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
