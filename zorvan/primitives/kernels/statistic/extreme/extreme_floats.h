#pragma once

// Minimum and maximum of floats, by the size of the vectors. The search reads every row.
//
// A lane keeps its value only where that is strictly better than the pixel, as the processor compares. So a
// NaN replaces a lane's value, and the lane's next pixel replaces the NaN; of equal zeros the later one
// stays. Which pixels share a lane depends on the variant.

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/vectors.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <Seek seek, class Vector>
class FloatExtreme;

/// Two accumulators, which start at the largest or lowest finite value: it is the result of a region that has
/// only the infinity beyond it. Pixels before a 16-byte boundary are peeled.
template <Seek seek>
class FloatExtreme<seek, Vector16> {
  using Lanes = ExtremeLanes<seek, float>;

 public:
  static float find(Plane<const float> src, Size roi) {
    FloatExtreme search;
    forEachRow(
        roi.height, [&](const float* row) { search.row(row, roi.width); }, src);
    return Lanes::bestOf(Lanes::better(search.a_, search.b_));
  }

 private:
  static __m128 start() { return _mm_set1_ps(Lanes::neutral); }
  void add4(__m128& lanes, const float* p) { lanes = Lanes::better(lanes, loadAs<__m128>(p)); }
  void add2(const float* p) {
    const __m128 pair = _mm_castpd_ps(_mm_set_sd(loadAs<double>(p)));
    a_ = Lanes::better(a_, _mm_movelh_ps(pair, start()));
  }
  void add1(const float* p) { a_ = Lanes::better(a_, _mm_move_ss(start(), _mm_set_ss(loadAs<float>(p)))); }

  void row(const float* p, std::int64_t left) {
    const std::int64_t toBoundary = bytesToBoundary(p, 16);
    if (toBoundary % 4 == 0 && toBoundary / 4 < left) {
      for (const float* const boundary = p + toBoundary / 4; p != boundary; ++p, --left) add1(p);
    }
    for (; left >= 8; p += 8, left -= 8) {
      add4(a_, p);
      add4(b_, p + 4);
    }
    if (left == 0) return;  // narrow rows would notice the tests below
    if (left >= 4) {
      add4(a_, p);
      p += 4;
      left -= 4;
    }
    if (left >= 2) {
      add2(p);
      p += 2;
      left -= 2;
    }
    if (left != 0) add1(p);
  }

  __m128 a_ = start(), b_ = start();
};

#ifdef __AVX2__
/// Two accumulators, which start at the region's first pixel. Rows shorter than a vector are searched pixel
/// by pixel. The last vector of a longer row may overlap the one before.
template <Seek seek>
class FloatExtreme<seek, Vector32> {
  using Lanes = ExtremeLanes<seek, float>;

 public:
  static float find(Plane<const float> src, Size roi) {
    const auto first = loadAs<float>(src.pixels);
    if (roi.width < 8) return scalar(first, src, roi);
    __m256 a = _mm256_set1_ps(first), b = a;
    return withPrefetch(roi, sizeof(float), [&](auto prefetchAfter) {
      forEachRow(
          roi.height, [&](const float* row) { addRow(row, roi.width, a, b, prefetchAfter); }, src);
      return Lanes::bestOf(Lanes::better(a, b));
    });
  }

 private:
  static float scalar(float current, Plane<const float> src, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      for (int c = 0; c < roi.width; ++c) current = Lanes::better(current, loadAs<float>(src.at(r, c)));
    }
    return current;
  }
  static void add(__m256& lanes, const float* p) { lanes = Lanes::better(lanes, loadAs<__m256>(p)); }

  static void addRow(const float* p, std::int64_t pixels, __m256& a, __m256& b, auto prefetchAfter) {
    const float* const end = p + pixels;
    const std::int64_t toBoundary = bytesToBoundary(p, 32);
    if (toBoundary != 0 && toBoundary % 4 == 0) {
      add(a, p);
      p += toBoundary / 4;
    }
    for (; end - p >= 16; p += 16) {
      prefetchAfter(p);
      add(a, p);
      add(b, p + 8);
    }
    if (end - p >= 8) {
      add(a, p);
      p += 8;
    }
    if (p != end) add(b, end - 8);
  }
};
#endif

#ifdef __AVX512F__
/// Four accumulators, which start at the region's first pixel. The tail is a masked load that leaves the
/// other lanes as they are.
template <Seek seek>
class FloatExtreme<seek, Vector64> {
  using Lanes = ExtremeLanes<seek, float>;

 public:
  static float find(Plane<const float> src, Size roi) {
    __m512 a = _mm512_set1_ps(loadAs<float>(src.pixels)), b = a, c = a, d = a;
    return withPrefetch(roi, sizeof(float), [&](auto prefetchAfter) {
      const auto tail = firstLanes<__mmask16>(roi.width & 15);
      const auto addRow = [&](const float* p) {
        std::int64_t left = roi.width;
        for (; left >= 64; p += 64, left -= 64) {
          prefetchAfter(p, 256);
          add(a, p);
          add(b, p + 16);
          add(c, p + 32);
          add(d, p + 48);
        }
        if (left == 0) return;
        if (left >= 32) {
          add(a, p);
          add(b, p + 16);
          p += 32;
          left -= 32;
        }
        if (left >= 16) {
          add(a, p);
          p += 16;
        }
        if (tail != 0) a = Lanes::better(a, tail, loadMaskedFloats(tail, p));
      };
      forEachRow(roi.height, addRow, src);
      return Lanes::bestOf(Lanes::better(Lanes::better(a, b), Lanes::better(c, d)));
    });
  }

 private:
  static void add(__m512& lanes, const float* p) { lanes = Lanes::better(lanes, loadAs<__m512>(p)); }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
