#pragma once

// The tests that masked statistics make of their arguments, before anything else is done.

#include "zorvan/primitives/kernels/common/arguments.h"

namespace Zorvan::Primitives {
namespace {

using Ipp::ippStsNotEvenStepErr;

/// A step must cover a row, and of words and floats be a multiple of the pixel. Words differ from floats in
/// the order: their image's step is tested to the end before the mask's.
template <class T>
int testMasked(const T* src, int srcStep, const std::uint8_t* mask, int maskStep, Size roi) {
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
}  // namespace Zorvan::Primitives
