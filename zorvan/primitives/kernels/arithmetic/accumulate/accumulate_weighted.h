#pragma once

// Adds the pixels of a row to a float accumulator with the weight 1.0 where the mask selects a pixel and 0.0
// where it does not. The newest three variants. Any address.
//
// Pixels with the weight 0.0 are added too: they add 0.0 with the source's sign, and NaN if the source is
// infinite or NaN.

#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_plan.h"
#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_source.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives::Accumulate {
namespace {

#if defined(__AVX__) && !defined(__AVX512F__)
template <class Source>
inline void addWeightedScalar(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                              std::int64_t pixels) {
  for (; pixels > 0; src += Source::pixelBytes, ++mask, srcDst += 4, --pixels) {
    const float weight = static_cast<float>(*mask != 0);
    storeAs(srcDst, loadAs<float>(srcDst) + Source::one(src) * weight);
  }
}

template <class Source>
inline void addWeightedFour(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst) {
  const __m128i unselected = _mm_cvtepi8_epi32(cmpeq_epi8(loadLow<4>(mask), zeroes<__m128i>()));
  const __m128 weight = _mm_andnot_ps(asFloats(unselected), broadcastFloats<__m128>(1.0F));
  const __m128 before = asFloats(Vector16::load(srcDst).bits);
  Vector16{asIntegers(before + Source::four(src) * weight)}.store(srcDst);
}

inline __m256 weightEight(const unsigned char* mask) {
#ifdef __AVX2__
  const __m256i lanes = _mm256_cmpeq_epi32(_mm256_cvtepu8_epi32(loadLow<8>(mask)), zeroes<__m256i>());
#else
  const __m128i unselected = cmpeq_epi8(loadLow<8>(mask), zeroes<__m128i>());
  const __m256i lanes = _mm256_insertf128_si256(_mm256_castsi128_si256(_mm_cvtepi8_epi32(unselected)),
                                                _mm_cvtepi8_epi32(_mm_srli_si128(unselected, 4)), 1);
#endif
  return _mm256_andnot_ps(asFloats(lanes), broadcastFloats<__m256>(1.0F));
}

template <class Source>
inline void addWeightedEight(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst) {
  const __m256 before = asFloats(Vector32::load(srcDst).bits);
  Vector32{asIntegers(before + Source::eight(src) * weightEight(mask))}.store(srcDst);
}

/// Iterations of `unrolledPixels` from a 32-byte boundary on, then vectors of `tailPixels`, 4 or 8, then
/// scalar.
template <int unrolledPixels, int tailPixels>
struct WeightedRow {
  template <class Source>
  static void add(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                  std::int64_t pixels) {
    using Limits = AccumulateLimits<unrolledPixels, Vector32::size>;
    const auto plan = planWeightingRow<Limits>(addressOf(srcDst), pixels);
    if (ZORVAN_PLANNED("planWeightingRow scalar", plan.scalar))
      return addWeightedScalar<Source>(src, mask, srcDst, pixels);

    addWeightedScalar<Source>(src, mask, srcDst, plan.peel);
    std::int64_t i = plan.peel;
    for (; i + unrolledPixels <= pixels; i += unrolledPixels) {
      for (int at = 0; at < unrolledPixels; at += 8) {
        addWeightedEight<Source>(src + (i + at) * Source::pixelBytes, mask + i + at, srcDst + 4 * (i + at));
      }
    }
    for (; i + tailPixels <= pixels; i += tailPixels) {
      if constexpr (tailPixels == 8) {
        addWeightedEight<Source>(src + i * Source::pixelBytes, mask + i, srcDst + 4 * i);
      } else {
        addWeightedFour<Source>(src + i * Source::pixelBytes, mask + i, srcDst + 4 * i);
      }
    }
    addWeightedScalar<Source>(src + i * Source::pixelBytes, mask + i, srcDst + 4 * i, pixels - i);
  }
};
#else
template <int unrolledPixels, int tailPixels>
struct WeightedRow;
#endif

#ifdef __AVX512F__
inline __m512 weightSixteen(__mmask16 selected) {
  return _mm512_maskz_mov_ps(selected, broadcastFloats<__m512>(1.0F));
}

/// At most 16 pixels.
template <class Source>
inline void addWeightedUpTo16(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                              std::int64_t pixels) {
  const auto lanes = firstLanes<__mmask16>(pixels);
  const __m128i maskBytes = loadMaskedBytes(lanes, mask);
  const __m512 weight = weightSixteen(_mm_test_epi8_mask(maskBytes, maskBytes));
  const __m512 before = loadMaskedFloats(lanes, srcDst);
  storeMasked(lanes, srcDst, _mm512_fmadd_ps(Source::sixteen(src, lanes), weight, before));
}

/// Two vectors per iteration, in long rows from a cache line on. Peel and tail are masked vectors and come
/// before the loop: loads next to bytes that a masked store has just written are slow, and the next row may
/// begin there.
struct WeightedMaskedRow {
  using Limits = AccumulateLimits<accumulateAlignFromPixels, Vector64::size>;

  template <class Source>
  static void add(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                  std::int64_t pixels) {
    const std::int64_t peel = planMaskedPeel<Limits>(addressOf(srcDst), pixels);
    const std::int64_t end = peel + ((pixels - peel) & ~31);
    if (ZORVAN_PLANNED("planMaskedPeel with a peel", peel != 0))
      addWeightedUpTo16<Source>(src, mask, srcDst, peel);
    for (std::int64_t i = end; i < pixels; i += 16) {
      addWeightedUpTo16<Source>(src + i * Source::pixelBytes, mask + i, srcDst + 4 * i,
                                pixels - i < 16 ? pixels - i : 16);
    }
    addIterations<Source>(src, mask, srcDst, peel, end);
  }
  /// A row without peel and tail.
  template <class Source>
  static void addFullVectors(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                             std::int64_t pixels) {
    addIterations<Source>(src, mask, srcDst, 0, pixels);
  }

 private:
  template <class Source>
  static void addIterations(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                            std::int64_t i, std::int64_t end) {
    for (; i != end; i += 32) {
      const __m256i maskBytes = Vector32::load(mask + i).bits;
      const __mmask32 selected = _mm256_test_epi8_mask(maskBytes, maskBytes);
      addWeighted16<Source>(src + i * Source::pixelBytes, static_cast<__mmask16>(selected), srcDst + 4 * i);
      addWeighted16<Source>(src + (i + 16) * Source::pixelBytes, static_cast<__mmask16>(selected >> 16),
                            srcDst + 4 * (i + 16));
    }
  }
  template <class Source>
  static void addWeighted16(const unsigned char* src, __mmask16 selected, unsigned char* srcDst) {
    const __m512 before = asFloats(Vector64::load(srcDst).bits);
    const __m512 sum = _mm512_fmadd_ps(Source::sixteen(src), weightSixteen(selected), before);
    Vector64{asIntegers(sum)}.store(srcDst);
  }
};
#else
struct WeightedMaskedRow;
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Accumulate
