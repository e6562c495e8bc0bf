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

template <class T, class Pass>
inline int morphTwice(Pass firstPass, Pass secondPass, const T* src, int srcStep, T* dst, int dstStep,
                      Size roi, int borderType, T borderValue, const MorphAdvSpec* spec, u8* buffer) {
  const int status = testMorphImages(src, srcStep, dst, dstStep, roi, spec, buffer);
  if (status != ippStsNoErr) return status;
  int secondBorder = 0;
  if (borderType > kLargestBorderWord || !planSecondBorder(borderType, secondBorder)) return ippStsBorderErr;

  const MorphAdvSpec both = loadAs<MorphAdvSpec>(spec);
  const MorphMask mask(both.first);
  const MorphMeasures<WrappingFigure> measures(roi, mask.size(), sizeof(T));
  T* const between = reinterpret_cast<T*>(buffer + 2 * std::int64_t{measures.bufferSize().value()});
  const int betweenStep = align32(measures.roiWidth * measures.pixelBytes).value();
  const int first =
      firstPass(src, srcStep, between, betweenStep, roi, borderType, borderValue, both.first, buffer);
  if (first != ippStsNoErr) return first;
  return secondPass(between, betweenStep, dst, dstStep, roi, secondBorder, borderValue, both.second, buffer);
}

}  // namespace

template <class V>
int Routines<V>::ippiMorphOpenBorder_8u_C1R(const u8* src, int srcStep, u8* dst, int dstStep, Size roi,
                                            int borderType, u8 borderValue, const MorphAdvSpec* spec,
                                            u8* buffer) {
  return morphTwice(ippiMorphErodeBorder_8u_C1R, ippiMorphDilateBorder_8u_C1R, src, srcStep, dst, dstStep,
                    roi, borderType, borderValue, spec, buffer);
}
template <class V>
int Routines<V>::ippiMorphOpenBorder_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi,
                                             int borderType, float borderValue, const MorphAdvSpec* spec,
                                             u8* buffer) {
  return morphTwice(ippiMorphErodeBorder_32f_C1R, ippiMorphDilateBorder_32f_C1R, src, srcStep, dst, dstStep,
                    roi, borderType, borderValue, spec, buffer);
}
template <class V>
int Routines<V>::ippiMorphCloseBorder_8u_C1R(const u8* src, int srcStep, u8* dst, int dstStep, Size roi,
                                             int borderType, u8 borderValue, const MorphAdvSpec* spec,
                                             u8* buffer) {
  return morphTwice(ippiMorphDilateBorder_8u_C1R, ippiMorphErodeBorder_8u_C1R, src, srcStep, dst, dstStep,
                    roi, borderType, borderValue, spec, buffer);
}
template <class V>
int Routines<V>::ippiMorphCloseBorder_32f_C1R(const float* src, int srcStep, float* dst, int dstStep,
                                              Size roi, int borderType, float borderValue,
                                              const MorphAdvSpec* spec, u8* buffer) {
  return morphTwice(ippiMorphDilateBorder_32f_C1R, ippiMorphErodeBorder_32f_C1R, src, srcStep, dst, dstStep,
                    roi, borderType, borderValue, spec, buffer);
}

}  // namespace Zorvan::Primitives
