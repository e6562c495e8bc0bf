#pragma once

// Sums of float regions with 16-byte vectors.
//
// The accurate sums convert every pixel to double first and keep two running sums, of the region's even and
// odd columns. The fast sum adds in single precision within a row only.

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Statistic {
namespace {

inline __m128d loadPair(const float* p) { return _mm_cvtps_pd(_mm_castpd_ps(_mm_set_sd(loadAs<double>(p)))); }
inline __m128d loadScalar(const float* p) { return _mm_set_sd(loadAs<float>(p)); }
inline double oddPlusEven(__m128d sums) {
  return _mm_cvtsd_f64(_mm_add_sd(_mm_unpackhi_pd(sums, sums), sums));
}

/// 16 pixels per iteration over four accumulators, folded into the two running sums at the row's end.
struct EvenOddSum {
  static double of(Plane<const float> src, Size roi) {
    __m128d sums = _mm_setzero_pd();
    const auto addRow = [&](const float* p) {
      std::int64_t left = roi.width;
      if (left >= 16) {
        __m128d a = _mm_setzero_pd(), b = a, c = a, d = a;
        for (; left >= 16; p += 16, left -= 16) {
          a = _mm_add_pd(a, loadPair(p));
          b = _mm_add_pd(b, loadPair(p + 2));
          c = _mm_add_pd(c, loadPair(p + 4));
          d = _mm_add_pd(d, loadPair(p + 6));
          a = _mm_add_pd(a, loadPair(p + 8));
          b = _mm_add_pd(b, loadPair(p + 10));
          c = _mm_add_pd(c, loadPair(p + 12));
          d = _mm_add_pd(d, loadPair(p + 14));
        }
        sums = _mm_add_pd(sums, _mm_add_pd(_mm_add_pd(a, b), _mm_add_pd(c, d)));
      }
      for (; left >= 2; p += 2, left -= 2) sums = _mm_add_pd(sums, loadPair(p));
      if (left != 0) sums = _mm_add_sd(sums, loadScalar(p));
    };
    forEachRow(roi.height, addRow, src);
    return oddPlusEven(sums);
  }
};

/// Four lanes for the columns modulo 4. Two of them are the running sums; the other two live for a row.
struct ModuloFourSum {
  static double of(Plane<const float> src, Size roi) {
    __m128d sums = _mm_setzero_pd();
    const auto addRow = [&](const float* p) {
      std::int64_t left = roi.width;
      __m128d extra = _mm_setzero_pd();
      for (; left >= 4; p += 4, left -= 4) {
        sums = _mm_add_pd(sums, loadPair(p));
        extra = _mm_add_pd(extra, loadPair(p + 2));
      }
      if (left >= 2) {
        sums = _mm_add_pd(sums, loadPair(p));
        p += 2;
        left -= 2;
      }
      if (left != 0) sums = _mm_add_sd(sums, loadScalar(p));
      sums = _mm_add_pd(sums, extra);
    };
    forEachRow(roi.height, addRow, src);
    return oddPlusEven(sums);
  }
};

/// In single precision within each row: four accumulators, 16 pixels per iteration, from a 16-byte boundary
/// on where a pixel starts on one. Each row's sum becomes two doubles.
struct FastRowSum {
  static double of(Plane<const float> src, Size roi) {
    __m128d sums = _mm_setzero_pd();
    const auto addRow = [&](const float* p) {
      std::int64_t left = roi.width;
      __m128 a = _mm_setzero_ps(), b = a, c = a, d = a;
      const auto scalar = [&](std::int64_t count) {
        for (left -= count; count != 0; ++p, --count) a = _mm_add_ss(a, _mm_set_ss(loadAs<float>(p)));
      };
      const std::int64_t toBoundary = bytesToBoundary(p, 16);
      if (toBoundary % 4 == 0 && toBoundary / 4 < left) scalar(toBoundary / 4);
      for (; left >= 16; p += 16, left -= 16) {
        a = _mm_add_ps(a, loadAs<__m128>(p));
        b = _mm_add_ps(b, loadAs<__m128>(p + 4));
        c = _mm_add_ps(c, loadAs<__m128>(p + 8));
        d = _mm_add_ps(d, loadAs<__m128>(p + 12));
      }
      for (; left >= 4; p += 4, left -= 4) b = _mm_add_ps(b, loadAs<__m128>(p));
      scalar(left);
      const __m128 four = _mm_add_ps(_mm_add_ps(a, b), _mm_add_ps(c, d));
      sums = _mm_add_pd(sums, _mm_cvtps_pd(_mm_add_ps(four, _mm_movehl_ps(four, four))));
    };
    forEachRow(roi.height, addRow, src);
    return oddPlusEven(sums);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
