#pragma once

// Minimum and maximum of floats. The search reads every row.
//
// A lane keeps its value only where that is strictly better than the pixel, as the processor compares. So a
// NaN replaces a lane's value, and the lane's next pixel replaces the NaN; of equal zeros the later one
// stays. Which pixels share a lane depends on the variant.

#include <limits>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/simd/vectors.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <Seek seek>
struct FloatLanes : ExtremeOf<seek, float> {
  using ExtremeOf<seek, float>::low;
  using ExtremeOf<seek, float>::better;

  static __m128 better(__m128 current, __m128 candidate) {
    return low ? _mm_min_ps(current, candidate) : _mm_max_ps(current, candidate);
  }
  static float bestOf(__m128 lanes) {
    lanes = better(lanes, _mm_movehl_ps(lanes, lanes));
    return _mm_cvtss_f32(better(lanes, _mm_shuffle_ps(lanes, lanes, 1)));
  }
#ifdef __AVX__
  static __m256 better(__m256 current, __m256 candidate) {
    return low ? _mm256_min_ps(current, candidate) : _mm256_max_ps(current, candidate);
  }
  static float bestOf(__m256 lanes) {
    return bestOf(better(_mm256_castps256_ps128(lanes), _mm256_extractf128_ps(lanes, 1)));
  }
#endif
#ifdef __AVX512F__
  static __m512 better(__m512 current, __m512 candidate) {
    return low ? _mm512_min_ps(current, candidate) : _mm512_max_ps(current, candidate);
  }
  static __m512 better(__m512 current, __mmask16 chosen, __m512 candidate) {
    return low ? _mm512_mask_min_ps(current, chosen, current, candidate)
               : _mm512_mask_max_ps(current, chosen, current, candidate);
  }
  static float bestOf(__m512 lanes) {
    return bestOf(better(_mm512_castps512_ps256(lanes), _mm512_extractf32x8_ps(lanes, 1)));
  }
#endif
};

inline const char* rowBytes(const float* src, int srcStep, std::int64_t r) {
  return reinterpret_cast<const char*>(rowAt(src, srcStep, r));
}

/// 16-byte vectors on two accumulators, which start at the largest or lowest finite value: it is the result
/// of a region that has only the infinity beyond it. Pixels before a 16-byte boundary are peeled.
template <Seek seek>
class FloatExtreme16 {
  using Lanes = FloatLanes<seek>;

 public:
  static float find(const float* src, int srcStep, Size roi) {
    FloatExtreme16 search;
    for (std::int64_t r = 0; r < roi.height; ++r) search.row(rowBytes(src, srcStep, r), roi.width);
    return Lanes::bestOf(Lanes::better(search.a_, search.b_));
  }

 private:
  static __m128 start() { return _mm_set1_ps(Lanes::neutral); }
  static __m128 load(const char* p) { return _mm_castsi128_ps(Vector16::load(p).bits); }
  void one(const char* p) { a_ = Lanes::better(a_, _mm_move_ss(start(), _mm_set_ss(loadAs<float>(p)))); }
  void two(const char* p) {
    const __m128 pair = _mm_castpd_ps(_mm_set_sd(loadAs<double>(p)));
    a_ = Lanes::better(a_, _mm_movelh_ps(pair, start()));
  }

  void row(const char* p, std::int64_t left) {
    const std::int64_t toBoundary = bytesToBoundary(p, 16);
    if (toBoundary % 4 == 0 && toBoundary / 4 < left) {
      for (const char* const boundary = p + toBoundary; p != boundary; p += 4, --left) one(p);
    }
    for (; left >= 8; p += 32, left -= 8) {
      a_ = Lanes::better(a_, load(p));
      b_ = Lanes::better(b_, load(p + 16));
    }
    if (left >= 4) {
      a_ = Lanes::better(a_, load(p));
      p += 16;
      left -= 4;
    }
    if (left >= 2) {
      two(p);
      p += 8;
      left -= 2;
    }
    if (left != 0) one(p);
  }

  __m128 a_ = start(), b_ = start();
};

#ifdef __AVX2__
/// 32-byte vectors on two accumulators, which start at the region's first pixel. Rows shorter than a vector
/// are searched pixel by pixel. The last vector of a longer row may overlap the one before.
template <Seek seek>
class FloatExtreme32 {
  using Lanes = FloatLanes<seek>;

 public:
  static float find(const float* src, int srcStep, Size roi) {
    const auto first = loadAs<float>(src);
    if (roi.width < 8) return scalar(first, src, srcStep, roi);
    __m256 a = _mm256_set1_ps(first), b = a;
    return withPrefetch(roi, sizeof(float), [&](auto prefetchAfter) {
      for (std::int64_t r = 0; r < roi.height; ++r) {
        row(rowBytes(src, srcStep, r), std::int64_t{roi.width} * 4, a, b, prefetchAfter);
      }
      return Lanes::bestOf(Lanes::better(a, b));
    });
  }

 private:
  static float scalar(float current, const float* src, int srcStep, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      const char* const row = rowBytes(src, srcStep, r);
      for (int c = 0; c < roi.width; ++c) current = Lanes::better(current, loadAs<float>(row + 4 * c));
    }
    return current;
  }
  static __m256 load(const char* p) { return _mm256_castsi256_ps(Vector32::load(p).bits); }

  static void row(const char* p, std::int64_t bytes, __m256& a, __m256& b, auto prefetchAfter) {
    const char* const end = p + bytes;
    const std::int64_t toBoundary = bytesToBoundary(p, 32);
    if (toBoundary != 0 && toBoundary % 4 == 0) {
      a = Lanes::better(a, load(p));
      p += toBoundary;
    }
    for (; end - p >= 64; p += 64) {
      prefetchAfter(p);
      a = Lanes::better(a, load(p));
      b = Lanes::better(b, load(p + 32));
    }
    if (end - p >= 32) {
      a = Lanes::better(a, load(p));
      p += 32;
    }
    if (p != end) b = Lanes::better(b, load(end - 32));
  }
};
#endif

#ifdef __AVX512F__
/// 64-byte vectors on four accumulators, which start at the region's first pixel. The tail is a masked load
/// that leaves the other lanes as they are.
template <Seek seek>
class FloatExtreme64 {
  using Lanes = FloatLanes<seek>;

 public:
  static float find(const float* src, int srcStep, Size roi) {
    __m512 a = _mm512_set1_ps(loadAs<float>(src)), b = a, c = a, d = a;
    return withPrefetch(roi, sizeof(float), [&](auto prefetchAfter) {
      const __mmask16 rest = static_cast<__mmask16>((1u << (roi.width % 16)) - 1);
      for (std::int64_t r = 0; r < roi.height; ++r) {
        const char* p = rowBytes(src, srcStep, r);
        std::int64_t left = roi.width;
        for (; left >= 64; p += 256, left -= 64) {
          prefetchAfter(p, 256);
          a = Lanes::better(a, _mm512_loadu_ps(p));
          b = Lanes::better(b, _mm512_loadu_ps(p + 64));
          c = Lanes::better(c, _mm512_loadu_ps(p + 128));
          d = Lanes::better(d, _mm512_loadu_ps(p + 192));
        }
        if (left == 0) continue;
        if (left >= 32) {
          a = Lanes::better(a, _mm512_loadu_ps(p));
          b = Lanes::better(b, _mm512_loadu_ps(p + 64));
          p += 128;
          left -= 32;
        }
        if (left >= 16) {
          a = Lanes::better(a, _mm512_loadu_ps(p));
          p += 64;
        }
        if (rest != 0) a = Lanes::better(a, rest, _mm512_maskz_loadu_ps(rest, p));
      }
      return Lanes::bestOf(Lanes::better(Lanes::better(a, b), Lanes::better(c, d)));
    });
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
