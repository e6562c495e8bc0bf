#pragma once

// Opening and closing: two passes through an image in the work memory, behind the work memory of the passes.
// The first pass takes the mask as given and sees what the border word says; the second takes the turned mask
// and sees only the image between, so sides in memory end at the first.

#include "zorvan/primitives/kernels/morphology/ErodeDilateKernels.h"

namespace Zorvan::Primitives {
namespace {

/// The second pass's word. A word without a kind passes only with all sides in memory; then nothing outside
/// has an influence.
constexpr bool planSecondBorder(int word, int& second) {
  const BorderWord given{word};
  if (isMorphBorderKind(given.kind())) {
    second = static_cast<int>(given.kind());
    return true;
  }
  second = static_cast<int>(BorderKind::defaultValue);
  return given.has(BorderWord::allInMemory);
}

template <class V, class First, class Second, class T>
inline int morphTwice(const T* src, int srcStep, T* dst, int dstStep, Size roi, int borderType, T borderValue,
                      const MorphAdvSpec* spec, u8* buffer) {
  const int status = testMorphImages(src, srcStep, dst, dstStep, roi, spec, buffer);
  if (status != ippStsNoErr) return status;
  int secondBorder = 0;
  if (borderType > kLargestBorderWord || !planSecondBorder(borderType, secondBorder)) return ippStsBorderErr;

  const MorphAdvSpec both = loadAs<MorphAdvSpec>(spec);
  const MorphMask mask(both.first);
  const MorphMeasures<WrappingFigure> measures(roi, mask.size(), sizeof(T));
  T* const between = reinterpret_cast<T*>(buffer + 2 * std::int64_t{measures.bufferSize().value()});
  const int betweenStep = align32(measures.roiWidth * measures.pixelBytes).value();
  const int first = morph<V, First>(src, srcStep, between, betweenStep, roi, borderType, borderValue,
                                    both.first, buffer, true);
  if (first != ippStsNoErr) return first;
  return morph<V, Second, T>(between, betweenStep, dst, dstStep, roi, secondBorder, borderValue, both.second,
                             buffer);
}

}  // namespace

#define DEFINE(Name, First, Second, pixels, T)                                                            \
  template <class V>                                                                                      \
  int Routines<V>::ippiMorph##Name##Border_##pixels##_C1R(const T* src, int srcStep, T* dst, int dstStep, \
                                                          Size roi, int borderType, T borderValue,        \
                                                          const MorphAdvSpec* spec, u8* buffer) {         \
    return morphTwice<V, First, Second>(src, srcStep, dst, dstStep, roi, borderType, borderValue, spec,   \
                                        buffer);                                                          \
  }
DEFINE(Open, Erosion, Dilation, 8u, u8)
DEFINE(Open, Erosion, Dilation, 32f, float)
DEFINE(Close, Dilation, Erosion, 8u, u8)
DEFINE(Close, Dilation, Erosion, 32f, float)
#undef DEFINE

}  // namespace Zorvan::Primitives
