#pragma once

// The mean of a region: the entries, and which variant sums how. A mean is a sum divided by the pixel count;
// sums of integers are exact.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_bytes.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_floats.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_floats_wide.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_tiles.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_words.h"

namespace Zorvan::Primitives {
namespace {

namespace sum {

#ifdef __AVX__
using AccurateWide = PersistentSum<Doubles32>;
struct FastWide {
  static double of(const float* src, int srcStep, Size roi) {
    using Sum = PersistentSum<Floats32>;
    return roi.width < wideFloatRows ? AccurateWide::of(src, srcStep, roi) : Sum::of(src, srcStep, roi);
  }
};
#else
struct AccurateWide;
struct FastWide;
#endif
#ifdef __AVX2__
using WideBytes = WideByteSum;
using WideWords = TiledSum<Tiles32, UnsignedPairs32, unsignedTilePixels>;
using WideSignedWords = TiledSum<Tiles32, SignedPairs32, signedTilePixels>;
#else
struct WideBytes;
struct WideWords;
struct WideSignedWords;
#endif
#ifdef __AVX512BW__
using RegisterBytes = RegisterByteSum;
using RegisterWords = TiledSum<Tiles64, UnsignedPairs64, unsignedTilePixels>;
using RegisterSignedWords = TiledSum<Tiles64, SignedPairs64, signedTilePixels>;
using AccurateRegister = PersistentSum<Doubles64>;
struct FastRegister {
  static double of(const float* src, int srcStep, Size roi) {
    using Sum = PersistentSum<Floats64>;
    return roi.width < wideFloatRows ? AccurateRegister::of(src, srcStep, roi) : Sum::of(src, srcStep, roi);
  }
};
#else
struct RegisterBytes;
struct RegisterWords;
struct RegisterSignedWords;
struct AccurateRegister;
struct FastRegister;
#endif

template <class V>
struct Policy {
  using Bytes = ByVariant<V, NarrowByteSum, NarrowByteSum, NarrowByteSum, NarrowByteSum, WideBytes,  //
                          RegisterBytes>;
  using Words = ByVariant<V, NarrowWordSum, NarrowWordSum, NarrowWordSum, NarrowWordSum, WideWords,  //
                          RegisterWords>;
  using SignedWords = ByVariant<V, NarrowSignedWordSum, NarrowSignedWordSum, NarrowSignedWordSum,
                                NarrowSignedWordSum, WideSignedWords, RegisterSignedWords>;
  using Accurate =
      ByVariant<V, EvenOddSum, ModuloFourSum, EvenOddSum, AccurateWide, AccurateWide, AccurateRegister>;
  using Fast = ByVariant<V, FastRowSum, FastRowSum, FastRowSum, FastWide, FastWide, FastRegister>;
};

/// The hint that asks for double precision throughout; every other one is the fast sum's.
constexpr int accurateHint = 2;

}  // namespace sum

/// The count is a 32-bit figure and wraps.
template <class T, class Sum>
int findMean(const T* src, Size roi, double* result, Sum sumOf) {
  if (src == nullptr || result == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  storeAs(result, sumOf() / static_cast<double>(wrappedCount(roi)));
  return ippStsNoErr;
}

}  // namespace

template <class V>
int Routines<V>::ippiMean_8u_C1R(const u8* src, int srcStep, Size roi, double* result) {
  return findMean(src, roi, result, [=] { return sum::Policy<V>::Bytes::of(src, srcStep, roi); });
}
template <class V>
int Routines<V>::ippiMean_16u_C1R(const u16* src, int srcStep, Size roi, double* result) {
  return findMean(src, roi, result, [=] { return sum::Policy<V>::Words::of(src, srcStep, roi); });
}
template <class V>
int Routines<V>::ippiMean_16s_C1R(const s16* src, int srcStep, Size roi, double* result) {
  return findMean(src, roi, result, [=] { return sum::Policy<V>::SignedWords::of(src, srcStep, roi); });
}
template <class V>
int Routines<V>::ippiMean_32f_C1R(const float* src, int srcStep, Size roi, double* result, int hint) {
  return findMean(src, roi, result, [=] {
    if (hint == sum::accurateHint) return sum::Policy<V>::Accurate::of(src, srcStep, roi);
    return sum::Policy<V>::Fast::of(src, srcStep, roi);
  });
}

}  // namespace Zorvan::Primitives
