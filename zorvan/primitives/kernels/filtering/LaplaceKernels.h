#pragma once

// The Laplace filter: the entries, and which variant filters in which vectors.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/Arguments.h"
#include "zorvan/primitives/kernels/common/ByVariant.h"
#include "zorvan/primitives/kernels/common/border_stripes.h"
#include "zorvan/primitives/kernels/filtering/LaplacePlan.h"
#include "zorvan/primitives/kernels/filtering/laplace_3x3.h"
#include "zorvan/primitives/kernels/filtering/laplace_5x5.h"
#include "zorvan/primitives/kernels/filtering/laplace_narrow.h"

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
  using Kernel3x3 = LaplacePairs3x3<T, IntegerVector<V>>;
  using Kernel5x5 = Laplace5x5<PairResponses<T, IntegerVector<V>>>;
};
template <class V>
struct LaplacePolicy<V, float> {
  using Kernel3x3 = LaplaceFloats3x3<FloatVector<V>>;
  using Kernel5x5 = Laplace5x5<FloatResponses<FloatVector<V>>>;
};

/// Words up to 255: all sides in memory and no kind, or the nearest pixel or a constant where a side is not.
inline bool isLaplaceBorder(int word) {
  if (word < 0 || word > 255) return false;
  const BorderKind kind = BorderWord{word}.kind();
  return word == BorderWord::allInMemory || kind == BorderKind::replicate || kind == BorderKind::constant;
}

template <class Use>
inline void forEachTile(Size roi, int tilePixels, Use use) {
  for (std::int64_t x = 0; x < roi.width; x += tilePixels) {
    const std::int64_t rest = roi.width - x;
    use(x, Size{rest < tilePixels ? static_cast<std::int32_t>(rest) : tilePixels, roi.height});
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

  u8* const rows = buffer + bytesToBoundary(buffer, workAlignmentBytes);
  u8* const area =
      rows + static_cast<std::uint64_t>(sumRows(extent)) * sumRowBytes(roi.width, extent, sizeof(T));
  const auto run = [&](auto narrow, auto wide) {
    runWithBorder(Plane<const T>{src, srcStep}, Plane<T>{dst, dstStep}, roi, Reach::ofMask({extent, extent}),
                  BorderWord{borderType}, borderValue, reinterpret_cast<T*>(area),
                  [=](Plane<const T> from, Plane<T> to, Size part) {
                    if (part.width <= narrowPixels) {
                      narrow(from, to, part);
                    } else {
                      forEachTile(part, tilePixels(extent, sizeof(T)), [&](std::int64_t x, Size tile) {
                        wide(from.from(0, x), to.from(0, x), tile, rows);
                      });
                    }
                  });
  };
  if (extent == 3) {
    run(laplaceNarrow3x3<T>, LaplacePolicy<V, T>::Kernel3x3::run);
  } else {
    run(laplaceNarrow5x5<T>, LaplacePolicy<V, T>::Kernel5x5::run);
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
