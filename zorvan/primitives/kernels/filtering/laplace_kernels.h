#pragma once

// The Laplace filter: its arguments, and which variant uses which vectors.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/filtering/laplace_filters.h"
#include "zorvan/primitives/kernels/filtering/laplace_plan.h"
#include "zorvan/primitives/kernels/filtering/laplace_sweep.h"

namespace Zorvan::Primitives {

namespace {

#ifndef __AVX__
struct Vector32;
#endif
#ifndef __AVX512F__
struct Vector64;
#endif

template <class V>
using IntegerVector = ByVariant<V, Vector16, Vector16, Vector16, Vector16, Vector32, Vector64>;
template <class V>
using FloatVector = ByVariant<V, Vector16, Vector16, Vector16, Vector32, Vector32, Vector64>;

template <class V, class T>
struct LaplacePolicy {
  using Rows = PairRows<T, IntegerVector<V>>;
  using Rows16 = PairRows<T, Vector16>;
};
template <class V>
struct LaplacePolicy<V, float> {
  using Rows = FloatRows<FloatVector<V>>;
  using Rows16 = FloatRows<Vector16>;
};

/// Words up to 255, negative ones too: all sides in memory without a type, or type replicate or constant.
inline bool isLaplaceBorder(int word) {
  if (word > 255) return false;
  const BorderType type = BorderWord{word}.type();
  return word == BorderWord::allInMemory || type == BorderType::replicate || type == BorderType::constant;
}

/// In the largest vectors that fit the rows.
template <class Filter, class Filter16, class T>
inline void runLaplace(const LaplaceRegion<T>& region) {
  const auto vectorsFit = [&](int vectorBytes) {
    return laplaceVectorsFit(vectorBytes, region.size.width, Filter::reach, sizeof(T));
  };
  if (vectorsFit(Filter::Vector::size)) {
    LaplaceSweep<Filter>::run(region);
  } else if (vectorsFit(Filter16::Vector::size)) {
    LaplaceSweep<Filter16>::run(region);
  } else {
    LaplaceNarrow<Filter16>::run(region);
  }
}

template <class V, class T>
int filterLaplace(const T* src, int srcStep, T* dst, int dstStep, Size roi, int mask, int borderType,
                  T borderValue, u8* buffer) {
  if (src == nullptr || dst == nullptr || buffer == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  const int extent = extentOfMask(mask);
  if (extent == 0) return Ipp::ippStsMaskSizeErr;
  if (!isLaplaceBorder(borderType)) return Ipp::ippStsBorderErr;

  const BorderWord word = readBorder(BorderWord{borderType}, roi, extent);
  const bool above = word.has(BorderWord::aboveInMemory), below = word.has(BorderWord::belowInMemory);
  const bool replicates = word.type() == BorderType::replicate;
  using Bits = typename RowEnds<T>::Bits;
  const auto constant = __builtin_bit_cast(Bits, borderValue);
  const unsigned char* constantRow = nullptr;
  if (!replicates && !(above && below)) {
    const int reach = extent / 2;
    u8* const row = buffer + bytesToBoundary(buffer, workAlignmentBytes);
    fillRun(row, constant, std::int64_t{roi.width} + 2 * reach);
    constantRow = row + reach * sizeof(T);
  }
  const LaplaceRegion<T> region{
      {{src, srcStep}, roi.height, above, below, constantRow},
      {word.has(BorderWord::leftInMemory), word.has(BorderWord::rightInMemory), replicates, constant},
      {dst, dstStep},
      roi};
  using Policy = LaplacePolicy<V, T>;
  if (extent == 3) {
    runLaplace<Laplace3x3<typename Policy::Rows>, Laplace3x3<typename Policy::Rows16>>(region);
  } else {
    runLaplace<Laplace5x5<typename Policy::Rows>, Laplace5x5<typename Policy::Rows16>>(region);
  }
  return ippStsNoErr;
}

}  // namespace

template <class V>
int Routines<V>::ippiFilterLaplaceBorderGetBufferSize(Size roi, int mask, int srcType, int dstType,
                                                      int channels, int* bufferSize) {
  if (bufferSize == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  const int extent = extentOfMask(mask);
  if (extent == 0) return Ipp::ippStsMaskSizeErr;
  const int pixelBytes = bytesOfType(srcType);
  if (pixelBytes == 0 || srcType != dstType) return Ipp::ippStsDataTypeErr;
  if (channels != 1 && channels != 3 && channels != 4) return Ipp::ippStsNumChannelsErr;
  *bufferSize = laplaceBufferBytes(roi, extent, pixelBytes, channels);
  return ippStsNoErr;
}

template <class V>
int Routines<V>::ippiFilterLaplaceBorder_8u_C1R(const u8* src, int srcStep, u8* dst, int dstStep, Size roi,
                                                int mask, int borderType, u8 borderValue, u8* buffer) {
  return filterLaplace<V>(src, srcStep, dst, dstStep, roi, mask, borderType, borderValue, buffer);
}
template <class V>
int Routines<V>::ippiFilterLaplaceBorder_16s_C1R(const s16* src, int srcStep, s16* dst, int dstStep, Size roi,
                                                 int mask, int borderType, s16 borderValue, u8* buffer) {
  return filterLaplace<V>(src, srcStep, dst, dstStep, roi, mask, borderType, borderValue, buffer);
}
template <class V>
int Routines<V>::ippiFilterLaplaceBorder_32f_C1R(const float* src, int srcStep, float* dst, int dstStep,
                                                 Size roi, int mask, int borderType, float borderValue,
                                                 u8* buffer) {
  return filterLaplace<V>(src, srcStep, dst, dstStep, roi, mask, borderType, borderValue, buffer);
}

}  // namespace Zorvan::Primitives
