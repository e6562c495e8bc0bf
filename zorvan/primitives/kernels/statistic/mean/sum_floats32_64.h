#pragma once

// Sums of float regions with 32- and 64-byte vectors.
//
// Accumulators persist over all rows of the region and are folded once, at the very end: high lanes onto low
// lanes, then the two lanes of the last pair. Rows of 17 pixels and more begin with a scalar peel of at most
// seven pixels to a 32-byte boundary, where a pixel starts on one. Narrower regions have no peel, and are
// added in double precision whatever the hint.

#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/folds.h"
#include "zorvan/primitives/kernels/simd/partial.h"
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

/// The next `count` pixels of a row, one after the other.
template <class Sum>
inline void addScalar(Sum& sum, const float*& p, std::int64_t& left, std::int64_t count) {
  for (left -= count; count != 0; ++p, --count) sum += static_cast<Sum>(loadAs<float>(p));
}

inline std::int64_t peelPixels(const float* p) {
  const std::int64_t toBoundary = bytesToBoundary(p, 32);
  return toBoundary % 4 == 0 ? toBoundary / 4 : 0;
}

/// Four lanes of doubles.
struct Doubles32 {
  static constexpr int pixels = 4;
  __m256d lanes = _mm256_setzero_pd();

  void add(const float* p) { lanes = _mm256_add_pd(lanes, _mm256_cvtps_pd(loadAs<__m128>(p))); }
  void add(Doubles32 other) { lanes = _mm256_add_pd(lanes, other.lanes); }
  double total() const { return sumOf(lanes); }

  using Scalar = double;
  static void addTail(Doubles32&, double& scalarSum, const float* p, std::int64_t left) {
    addScalar(scalarSum, p, left, left);
  }
};

/// Eight lanes of floats.
struct Floats32 {
  static constexpr int pixels = 8;
  __m256 lanes = _mm256_setzero_ps();

  void add(const float* p) { lanes = _mm256_add_ps(lanes, loadAs<__m256>(p)); }
  void add(Floats32 other) { lanes = _mm256_add_ps(lanes, other.lanes); }
  float total() const { return sumOf(lanes); }

  using Scalar = float;
  static void addTail(Floats32&, float& scalarSum, const float* p, std::int64_t left) {
    addScalar(scalarSum, p, left, left);
  }
};

#ifdef __AVX512BW__
/// Eight lanes of doubles; the tail of a row is a masked load. Additions are multiply-adds with a factor of
/// one, which is exact: some processors convert and add in the same port, and multiply in another.
struct Doubles64 {
  static constexpr int pixels = 8;
  __m512d lanes = _mm512_setzero_pd();

  void add(__m256 floats) { lanes = _mm512_fmadd_pd(_mm512_cvtps_pd(floats), _mm512_set1_pd(1), lanes); }
  void add(const float* p) { add(loadAs<__m256>(p)); }
  void add(Doubles64 other) { lanes = _mm512_add_pd(lanes, other.lanes); }
  double total() const { return sumOf(lanes); }

  using Scalar = double;
  static void addTail(Doubles64& sum, double&, const float* p, std::int64_t left) {
    sum.add(loadMaskedFloats(firstLanes<__mmask8>(left), p));
  }
};

/// Sixteen lanes of floats.
struct Floats64 {
  static constexpr int pixels = 16;
  __m512 lanes = _mm512_setzero_ps();

  void add(const float* p) { lanes = _mm512_add_ps(lanes, loadAs<__m512>(p)); }
  void add(Floats64 other) { lanes = _mm512_add_ps(lanes, other.lanes); }
  float total() const { return sumOf(lanes); }

  using Scalar = float;
  static void addTail(Floats64& sum, float&, const float* p, std::int64_t left) {
    sum.lanes = _mm512_add_ps(sum.lanes, loadMaskedFloats(firstLanes<__mmask16>(left), p));
  }
};
#endif

/// The sum of a region in eight accumulators of doubles or floats. The compiler would keep an array of them
/// in memory between the rows.
template <class Lanes>
struct RegionSum {
  static double of(Plane<const float> src, Size roi) {
    constexpr std::int64_t width = Lanes::pixels, unrolled = 8 * width;
    return withPrefetch(roi, sizeof(float), [&](auto prefetchAfter) {
      Lanes a, b, c, d, e, f, g, h;
      typename Lanes::Scalar scalarSum = 0;
      const auto addRow = [&](const float* p) {
        std::int64_t left = roi.width;
        if (roi.width >= floatLanesFromWidth) addScalar(scalarSum, p, left, peelPixels(p));
        for (; left >= unrolled; p += unrolled, left -= unrolled) {
          prefetchAfter(p, 4 * unrolled);
          a.add(p);
          b.add(p + width);
          c.add(p + 2 * width);
          d.add(p + 3 * width);
          e.add(p + 4 * width);
          f.add(p + 5 * width);
          g.add(p + 6 * width);
          h.add(p + 7 * width);
        }
        for (; left >= 2 * width; p += 2 * width, left -= 2 * width) {
          a.add(p);
          b.add(p + width);
        }
        if (left >= width) {
          c.add(p);
          p += width;
          left -= width;
        }
        if (left != 0) Lanes::addTail(d, scalarSum, p, left);
      };
      forEachRow(roi.height, addRow, src);
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
  static double of(Plane<const float> src, Size roi) {
    return roi.width < floatLanesFromWidth ? RegionSum<Doubles>::of(src, roi)
                                           : RegionSum<Floats>::of(src, roi);
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
