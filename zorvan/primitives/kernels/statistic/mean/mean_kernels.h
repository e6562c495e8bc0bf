#pragma once

// The mean of a region: the entries, and which variant sums how. A mean is a sum divided by the pixel count;
// sums of integers are exact.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_bytes.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_floats16.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_floats32_64.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_tiles.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_words.h"

namespace Zorvan::Primitives {
namespace {

namespace sum {

#ifdef __AVX__
using Accurate32 = RegionSum<Doubles32>;
struct Fast32 {
  static double of(const float* src, int srcStep, Size roi) {
    using Sum = RegionSum<Floats32>;
    return roi.width < floatLanesFromWidth ? Accurate32::of(src, srcStep, roi) : Sum::of(src, srcStep, roi);
  }
};
#else
struct Accurate32;
struct Fast32;
#endif
#ifdef __AVX2__
using Bytes32 = ByteSum32;
using Words32 = TiledSum<Tiles32, UnsignedPairs32, unsignedTilePixels>;
using SignedWords32 = TiledSum<Tiles32, SignedPairs32, signedTilePixels>;
#else
struct Bytes32;
struct Words32;
struct SignedWords32;
#endif
#ifdef __AVX512BW__
using Bytes64 = ByteSum64;
using Words64 = TiledSum<Tiles64, UnsignedPairs64, unsignedTilePixels>;
using SignedWords64 = TiledSum<Tiles64, SignedPairs64, signedTilePixels>;
using Accurate64 = RegionSum<Doubles64>;
struct Fast64 {
  static double of(const float* src, int srcStep, Size roi) {
    using Sum = RegionSum<Floats64>;
    return roi.width < floatLanesFromWidth ? Accurate64::of(src, srcStep, roi) : Sum::of(src, srcStep, roi);
  }
};
#else
struct Bytes64;
struct Words64;
struct SignedWords64;
struct Accurate64;
struct Fast64;
#endif

template <class V>
struct Policy {
  using Bytes = ByVariant<V, ByteSum16, ByteSum16, ByteSum16, ByteSum16, Bytes32,  //
                          Bytes64>;
  using Words = ByVariant<V, WordSum16, WordSum16, WordSum16, WordSum16, Words32,  //
                          Words64>;
  using SignedWords = ByVariant<V, SignedWordSum16, SignedWordSum16, SignedWordSum16, SignedWordSum16,
                                SignedWords32, SignedWords64>;
  using Accurate = ByVariant<V, EvenOddSum, ModuloFourSum, EvenOddSum, Accurate32, Accurate32, Accurate64>;
  using Fast = ByVariant<V, FastRowSum, FastRowSum, FastRowSum, Fast32, Fast32, Fast64>;
};

/// The hint for double precision throughout. All others select the fast sum.
constexpr int accurateHint = 2;

}  // namespace sum

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
