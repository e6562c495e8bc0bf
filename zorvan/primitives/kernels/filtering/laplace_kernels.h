#pragma once

// The Laplace filter: its arguments, and which variant uses which vectors.

#include "zorvan/primitives/frame/LaplaceSizes.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/filtering/laplace_filters.h"
#include "zorvan/primitives/kernels/filtering/laplace_plan.h"
#include "zorvan/primitives/kernels/filtering/laplace_sweep.h"

namespace Zorvan::Primitives::Laplace {
namespace {

template <class V>
using IntegerVector = ByVariant<V, Vector16, Vector16, Vector16, Vector16, Vector32, Vector64>;
template <class V>
using FloatVector = ByVariant<V, Vector16, Vector16, Vector16, Vector32, Vector32, Vector64>;

template <class V, class T>
struct Policy {
  using Rows = PairRows<T, IntegerVector<V>>;
  using Rows16 = PairRows<T, Vector16>;
};
template <class V>
struct Policy<V, float> {
  using Rows = FloatRows<FloatVector<V>>;
  using Rows16 = FloatRows<Vector16>;
};

/// Words up to 255, negative ones too: all sides in memory without a type, or type replicate or constant.
inline bool isBorder(int word) {
  if (word > 255) return false;
  const BorderType type = BorderWord{word}.type();
  return word == BorderWord::allInMemory || type == BorderType::replicate || type == BorderType::constant;
}

/// In the largest vectors that fit the rows.
template <class Filter, class Filter16, class T>
inline void filterRegion(const Region<T>& region) {
  const auto fit = [&](int vectorBytes) {
    return vectorsFit(vectorBytes, region.size.width, Filter::reach, sizeof(T));
  };
  if (fit(Filter::Vector::size)) {
    Sweep<Filter>::run(region);
  } else if (fit(Filter16::Vector::size)) {
    Sweep<Filter16>::run(region);
  } else {
    NarrowRegion<Filter16>::run(region);
  }
}

template <class V, class T>
int filterImage(const T* src, int srcStep, T* dst, int dstStep, Size roi, int mask, int borderType,
                T borderValue, u8* buffer) {
  if (src == nullptr || dst == nullptr || buffer == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  const int extent = extentOfMask(mask);
  if (extent == 0) return Ipp::ippStsMaskSizeErr;
  if (!isBorder(borderType)) return Ipp::ippStsBorderErr;

  const BorderWord word = BorderWord{borderType}.of(roi, {extent, extent});
  using Bits = typename RowEnds<T>::Bits;
  T* const room = reinterpret_cast<T*>(buffer + bytesToBoundary(buffer, workAlignmentBytes));
  const Region<T> region{{{src, srcStep}, roi, word, borderValue, room, extent / 2},
                         {word.has(BorderWord::leftInMemory), word.has(BorderWord::rightInMemory),
                          word.type() == BorderType::replicate, __builtin_bit_cast(Bits, borderValue)},
                         {dst, dstStep},
                         roi};
  using VectorsOf = Policy<V, T>;
  if (extent == 3) {
    filterRegion<Filter3x3<typename VectorsOf::Rows>, Filter3x3<typename VectorsOf::Rows16>>(region);
  } else {
    filterRegion<Filter5x5<typename VectorsOf::Rows>, Filter5x5<typename VectorsOf::Rows16>>(region);
  }
  return ippStsNoErr;
}

inline int getBufferSize(Size roi, int mask, int srcType, int dstType, int channels, int* bufferSize) {
  if (bufferSize == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  const int extent = extentOfMask(mask);
  if (extent == 0) return Ipp::ippStsMaskSizeErr;
  const int pixelBytes = bytesOfType(srcType);
  if (pixelBytes == 0 || srcType != dstType) return Ipp::ippStsDataTypeErr;
  if (channels != 1 && channels != 3 && channels != 4) return Ipp::ippStsNumChannelsErr;
  *bufferSize = reportedWorkBytes(roi, extent, pixelBytes, channels);
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiFilterLaplaceBorderGetBufferSize = getBufferSize;
  static constexpr auto ippiFilterLaplaceBorder_8u_C1R = filterImage<V, u8>;
  static constexpr auto ippiFilterLaplaceBorder_16s_C1R = filterImage<V, s16>;
  static constexpr auto ippiFilterLaplaceBorder_32f_C1R = filterImage<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
