#pragma once

// Tests of the arguments of masked statistics.

#include "zorvan/foundation/PixelTypes.h"
#include "zorvan/primitives/kernels/common/arguments.h"

namespace Zorvan::Primitives::Statistic {
namespace {

using Ipp::ippStsNotEvenStepErr;

/// A step covers a row at least, and steps of words and floats are multiples of the pixel. The order of the
/// tests differs: words test both properties of the image's step before the mask's step.
template <class T>
int testMasked(const T* src, int srcStep, const u8* mask, int maskStep, Size roi) {
  if (src == nullptr || mask == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  constexpr int pixelBytes = sizeof(T);
  const bool uneven = srcStep % pixelBytes != 0;
  if (srcStep < std::int64_t{pixelBytes} * roi.width) return ippStsStepErr;
  if (pixelBytes == 2 && uneven) return ippStsNotEvenStepErr;
  if (maskStep < roi.width) return ippStsStepErr;
  return uneven ? ippStsNotEvenStepErr : ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
