#pragma once

// Square roots of floats. From a 16-byte boundary of the destination on, each iteration computes 16 pixels by
// the processor's estimate of the reciprocal root with one refinement. The peel and the tail take true roots.
//
// If a result of an iteration is not finite, its 16 pixels are computed again by true roots: the estimate
// fails for 0, infinity, NaN and negative pixels. A negative pixel becomes NaN; -0.0 is its own root.
//
// If the caller has any exception unmasked, all are masked while the roots are computed. Afterwards the
// control state is restored, with the flags for overflow, underflow, denormals and precision that the roots
// raised; the flags for invalid operations and divisions by zero are dropped. If all are masked already, the
// control state is not changed, and the roots leave all flags that they raise. The state is read once per
// image, since reading it takes longer than a short row.
//
// Any address; prefetches may lie outside the row.

#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/common/extreme_values.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// The control state before the roots of an image.
struct ControlState {
  unsigned before;
  bool changed;
};

/// Masks all exceptions and clears the flags, if any exception is not masked. Arithmetic between this and
/// `restore` must load its operands and store its results there: memory is the only order between the control
/// state and arithmetic that the compiler observes.
inline ControlState maskExceptions() {
  constexpr unsigned allMasks = 0x1F80, allFlags = 0x3F;
  const unsigned before = _mm_getcsr();
  const bool changed = (before & allMasks) != allMasks;
  if (changed) _mm_setcsr((before | allMasks) & ~allFlags);
  asm volatile("" ::: "memory");
  return {before, changed};
}

/// Restores the control state, together with the flags that the roots raised, without invalid operations and
/// divisions by zero. The compiler computes `result` before.
inline void restore(ControlState state, int& result) {
  constexpr unsigned keptFlags = 0x08 | 0x10 | 0x02 | 0x20;  // overflow, underflow, denormal, precision
  asm volatile("" : "+r"(result) : : "memory");
  if (state.changed) _mm_setcsr(state.before | (_mm_getcsr() & keptFlags));
}

constexpr std::int64_t rootPrefetchBytes = 96;
constexpr std::int64_t rootUnrolledPixels = 16;

/// True roots. Returns non-zero if a pixel is negative: its root is NaN although the pixel is not.
inline int trueRootsScalar(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  int negative = 0;
  for (; n > 0; src += 4, dst += 4, --n) {
    const __m128 x = _mm_set_ss(loadAs<float>(src));
    const __m128 root = _mm_sqrt_ss(x);
    storeAs(dst, _mm_cvtss_f32(root));
    negative |= _mm_movemask_ps(_mm_andnot_ps(_mm_cmpunord_ss(x, x), _mm_cmpunord_ss(root, root))) & 1;
  }
  return negative;
}

inline int trueRootsFour(__m128 x, __m128& root) {
  root = _mm_sqrt_ps(x);
  return _mm_movemask_ps(_mm_andnot_ps(_mm_cmpunord_ps(x, x), _mm_cmpunord_ps(root, root)));
}

template <bool alignedSrc, bool alignedDst>
inline int rootLine16(const unsigned char* src, unsigned char* dst) {
  const __m128i exponent = broadcastDwords<__m128i>(0x7F800000);
  __m128 x[4], root[4];
  __m128i notFinite = zeroes<__m128i>();
  for (int i = 0; i < 4; ++i) {
    const Vector16 pixels = alignedSrc ? Vector16::loadAligned(src + 16 * i) : Vector16::load(src + 16 * i);
    x[i] = asFloats(pixels.bits);
    const __m128 y = rsqrt_ps(x[i]);
    const __m128 t = x[i] * y;
    root[i] = t * -0.5F * (y * t - 3.0F);
    notFinite =
        _mm_or_si128(notFinite, _mm_cmpeq_epi32(_mm_and_si128(asIntegers(root[i]), exponent), exponent));
  }
  int negative = 0;
  if (movemask_epi8(notFinite) != 0) {
    for (int i = 0; i < 4; ++i) negative |= trueRootsFour(x[i], root[i]);
  }
  for (int i = 0; i < 4; ++i) {
    const Vector16 result{asIntegers(root[i])};
    if constexpr (alignedDst) {
      result.storeAligned(dst + 16 * i);
    } else {
      result.store(dst + 16 * i);
    }
  }
  return negative;
}

template <bool alignedSrc, bool alignedDst>
inline int rootBody16(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  int negative = 0;
  for (; n >= rootUnrolledPixels; src += 64, dst += 64, n -= rootUnrolledPixels) {
    prefetch(src, rootPrefetchBytes);
    negative |= rootLine16<alignedSrc, alignedDst>(src, dst);
  }
  return negative | trueRootsScalar(src, dst, n);
}

/// 16-byte vectors.
struct FloatRoots16 {
  static constexpr bool streams = false;
  static constexpr bool fuses = false;  // true roots of peels and tails differ from estimates

  /// Returns whether a pixel of the row is negative.
  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t) {
    const std::int64_t peel = planPeel(addressOf(dst), n, Vector16::size);
    int negative = trueRootsScalar(src, dst, peel);
    negative |= body(src + 4 * peel, dst + 4 * peel, n - peel);
    return negative != 0;
  }

 private:
  static int body(const unsigned char* src, unsigned char* dst, std::int64_t n) {
    const bool srcIsAligned = isAligned(src, Vector16::size);
    if (isAligned(dst, Vector16::size)) {
      return srcIsAligned ? rootBody16<true, true>(src, dst, n) : rootBody16<false, true>(src, dst, n);
    }
    return srcIsAligned ? rootBody16<true, false>(src, dst, n) : rootBody16<false, false>(src, dst, n);
  }
};

#ifdef __AVX__
inline int trueRootsEight(__m256 x, __m256& root) {
  root = _mm256_sqrt_ps(x);
  return _mm256_movemask_ps(
      _mm256_andnot_ps(_mm256_cmp_ps(x, x, _CMP_UNORD_Q), _mm256_cmp_ps(root, root, _CMP_UNORD_Q)));
}

/// 32-byte vectors.
struct FloatRoots32 {
  static constexpr bool streams = false;
  static constexpr bool fuses = false;

  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t) {
    const std::int64_t peel = planPeel(addressOf(dst), n, Vector16::size);
    int negative = trueRootsScalar(src, dst, peel);
    src += 4 * peel;
    dst += 4 * peel;
    n -= peel;
    for (; n >= rootUnrolledPixels; src += 64, dst += 64, n -= rootUnrolledPixels) {
      prefetch(src, rootPrefetchBytes);
      negative |= sixteenRoots(src, dst);
    }
    return (negative | trueRootsScalar(src, dst, n)) != 0;
  }

 private:
  static __m256 estimatedRoot(__m256 x) {
    const __m256 y = rsqrt_ps(x);
    const __m256 t = x * y;
    return t * -0.5F * (y * t - 3.0F);
  }
  static __m256 whereNotFinite(__m256 x) {
    const __m256 magnitude = _mm256_andnot_ps(broadcastFloats<__m256>(-0.0F), x);
    return _mm256_cmp_ps(magnitude, broadcastFloats<__m256>(infinite<float>), _CMP_NLT_UQ);
  }
  static int sixteenRoots(const unsigned char* src, unsigned char* dst) {
    const __m256 x0 = loadAs<__m256>(src), x1 = loadAs<__m256>(src + 32);
    __m256 root0 = estimatedRoot(x0), root1 = estimatedRoot(x1);
    int negative = 0;
    if (_mm256_movemask_ps(_mm256_or_ps(whereNotFinite(root0), whereNotFinite(root1))) != 0) {
      negative = trueRootsEight(x0, root0) | trueRootsEight(x1, root1);
    }
    storeAs(dst, root0);
    storeAs(dst + 32, root1);
    return negative;
  }
};
#else
struct FloatRoots32;
#endif

#ifdef __AVX512DQ__
inline __mmask16 negativeRoots(__m512 x, __m512 root) {
  const __mmask16 isNumber = _mm512_cmp_ps_mask(x, x, _CMP_ORD_Q);
  return _mm512_mask_cmp_ps_mask(isNumber, root, root, _CMP_UNORD_Q);
}

/// Fewer than 16 pixels by true roots.
inline int trueRootsPartial(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  const auto lanes = firstLanes<__mmask16>(n);
  const __m512 x = loadMaskedFloats(lanes, src);
  const __m512 root = _mm512_maskz_sqrt_ps(lanes, x);
  storeMasked(lanes, dst, root);
  return negativeRoots(x, root);
}

/// 64-byte vectors with fused multiply-adds. Streaming stores in rows whose first vector starts a cache line.
struct FloatRoots64 {
  static constexpr bool streams = true;
  static constexpr bool fuses = false;

  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t) {
    int negative = 0;
    const std::int64_t peel = planPeel(addressOf(dst), n, Vector16::size);
    if (peel != 0) negative |= trueRootsPartial(src, dst, peel);
    src += 4 * peel;
    dst += 4 * peel;
    n -= peel;
    if (streaming && isAligned(dst, Vector64::size)) {
      negative |= body<true>(src, dst, n);
    } else {
      negative |= body<false>(src, dst, n);
    }
    return negative != 0;
  }

 private:
  template <bool streaming>
  static int body(const unsigned char* src, unsigned char* dst, std::int64_t n) {
    constexpr int notFinite = 0x01 | 0x08 | 0x10 | 0x80;  // quiet and signalling NaN, both infinities
    int negative = 0;
    for (; n >= rootUnrolledPixels; src += 64, dst += 64, n -= rootUnrolledPixels) {
      prefetch(src, rootPrefetchBytes);
      const __m512 x = asFloats(Vector64::load(src).bits);
      const __m512 y = _mm512_rsqrt14_ps(x);
      const __m512 t = x * y;
      __m512 root = t * -0.5F * _mm512_fmsub_ps(y, t, broadcastFloats<__m512>(3.0F));
      if (_mm512_fpclass_ps_mask(root, notFinite) != 0) {
        root = _mm512_sqrt_ps(x);
        negative |= negativeRoots(x, root);
      }
      const Vector64 result{asIntegers(root)};
      if constexpr (streaming) {
        result.stream(dst);
      } else {
        result.store(dst);
      }
    }
    if (n != 0) negative |= trueRootsPartial(src, dst, n);
    return negative;
  }
};
#else
struct FloatRoots64;
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Unary
