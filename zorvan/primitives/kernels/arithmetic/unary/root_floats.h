#pragma once

// Square roots of floats: 16 pixels a pass by the processor's estimate of the reciprocal root and one step of
// refinement, from a 16-byte boundary on; the pixels before and behind the passes by true roots.
//
// A pass whose results are not all finite is done again by true roots: the estimate fails for 0, infinity,
// NaN and negative pixels. A negative pixel becomes NaN; -0.0 is its own root.
//
// Where a caller has any exception unmasked, all are masked while the roots are computed; then the control
// state is restored, with the flags of overflow, underflow, denormals and precision that the roots raised, so
// that invalid operations leave no trace. Where all are masked the control state is not touched, and the
// roots leave the flags that their arithmetic raises. It is read once for all rows, as that costs more than a
// short row.
//
// Reads and writes the row only, at any address; prefetches may name places behind it.

#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// The control state before the roots of an image.
struct ControlState {
  unsigned before;
  bool changed;
};

/// Masks all exceptions and clears the flags, if any exception is not masked. What is computed from here to
/// `restore` has to come from memory and to go there: the compiler knows of no other order between the
/// control state and arithmetic.
inline ControlState maskExceptions() {
  constexpr unsigned allMasks = 0x1F80, allFlags = 0x3F;
  const unsigned before = _mm_getcsr();
  const bool changed = (before & allMasks) != allMasks;
  if (changed) _mm_setcsr((before | allMasks) & ~allFlags);
  asm volatile("" ::: "memory");
  return {before, changed};
}

/// Puts the control state back, with the flags that the roots have raised but those of invalid operations and
/// divisions by zero. `result` is computed by then.
inline void restore(ControlState state, int& result) {
  constexpr unsigned keptFlags = 0x08 | 0x10 | 0x02 | 0x20;  // overflow, underflow, denormal, precision
  asm volatile("" : "+r"(result) : : "memory");
  if (state.changed) _mm_setcsr(state.before | (_mm_getcsr() & keptFlags));
}

constexpr std::int64_t rootAheadBytes = 96;
constexpr std::int64_t rootPassPixels = 16;

inline void prefetchRoots(const unsigned char* src) {
  const auto ahead = reinterpret_cast<std::uintptr_t>(src) + rootAheadBytes;
  _mm_prefetch(reinterpret_cast<const char*>(ahead), _MM_HINT_T0);
}

/// True roots. Not zero where a pixel is negative: a root that is NaN although its pixel is not.
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
inline int rootPass16(const unsigned char* src, unsigned char* dst) {
  const __m128i exponent = _mm_set1_epi32(0x7F800000);
  __m128 x[4], root[4];
  __m128i notFinite = _mm_setzero_si128();
  for (int i = 0; i < 4; ++i) {
    const Vector16 pixels = alignedSrc ? Vector16::loadAligned(src + 16 * i) : Vector16::load(src + 16 * i);
    x[i] = _mm_castsi128_ps(pixels.bits);
    const __m128 y = _mm_rsqrt_ps(x[i]);
    const __m128 t = _mm_mul_ps(x[i], y);
    root[i] = _mm_mul_ps(_mm_mul_ps(t, _mm_set1_ps(-0.5F)), _mm_sub_ps(_mm_mul_ps(y, t), _mm_set1_ps(3.0F)));
    notFinite = _mm_or_si128(notFinite,
                             _mm_cmpeq_epi32(_mm_and_si128(_mm_castps_si128(root[i]), exponent), exponent));
  }
  int negative = 0;
  if (_mm_movemask_epi8(notFinite) != 0) {
    for (int i = 0; i < 4; ++i) negative |= trueRootsFour(x[i], root[i]);
  }
  for (int i = 0; i < 4; ++i) {
    const Vector16 result{_mm_castps_si128(root[i])};
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
  for (; n >= rootPassPixels; src += 64, dst += 64, n -= rootPassPixels) {
    prefetchRoots(src);
    negative |= rootPass16<alignedSrc, alignedDst>(src, dst);
  }
  return negative | trueRootsScalar(src, dst, n);
}

/// In 16-byte registers.
struct NarrowRoots {
  static constexpr bool streams = false;
  static constexpr bool fuses = false;  // estimates and true roots differ

  /// True where a pixel of the row is negative.
  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t) {
    const std::int64_t peel = planPeel(reinterpret_cast<std::uintptr_t>(dst), n, Vector16::size);
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

#ifdef __AVX512DQ__
inline __mmask16 negativeRoots(__m512 x, __m512 root) {
  const __mmask16 isNumber = _mm512_cmp_ps_mask(x, x, _CMP_ORD_Q);
  return _mm512_mask_cmp_ps_mask(isNumber, root, root, _CMP_UNORD_Q);
}

/// Fewer than 16 pixels by true roots.
inline int trueRootsFewer(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  const auto lanes = static_cast<__mmask16>(_bzhi_u32(0xFFFF, static_cast<unsigned>(n)));
  const __m512 x = _mm512_maskz_loadu_ps(lanes, src);
  const __m512 root = _mm512_maskz_sqrt_ps(lanes, x);
  _mm512_mask_storeu_ps(dst, lanes, root);
  return negativeRoots(x, root);
}

/// In 64-byte registers with fused multiply-adds. Rows that reach a cache line may go past the cache.
struct WideRoots {
  static constexpr bool streams = true;
  static constexpr bool fuses = false;

  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t) {
    int negative = 0;
    const std::int64_t peel = planPeel(reinterpret_cast<std::uintptr_t>(dst), n, Vector16::size);
    if (peel != 0) negative |= trueRootsFewer(src, dst, peel);
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
    constexpr int notFinite = 0x01 | 0x08 | 0x10 | 0x80;  // both kinds of NaN, both infinities
    int negative = 0;
    for (; n >= rootPassPixels; src += 64, dst += 64, n -= rootPassPixels) {
      prefetchRoots(src);
      const __m512 x = _mm512_castsi512_ps(Vector64::load(src).bits);
      const __m512 y = _mm512_rsqrt14_ps(x);
      const __m512 t = _mm512_mul_ps(x, y);
      __m512 root =
          _mm512_mul_ps(_mm512_mul_ps(t, _mm512_set1_ps(-0.5F)), _mm512_fmsub_ps(y, t, _mm512_set1_ps(3.0F)));
      if (_mm512_fpclass_ps_mask(root, notFinite) != 0) {
        root = _mm512_sqrt_ps(x);
        negative |= negativeRoots(x, root);
      }
      const Vector64 result{_mm512_castps_si512(root)};
      if constexpr (streaming) {
        result.stream(dst);
      } else {
        result.store(dst);
      }
    }
    if (n != 0) negative |= trueRootsFewer(src, dst, n);
    return negative;
  }
};
#else
struct WideRoots;
#endif

}  // namespace
}  // namespace Zorvan::Primitives
