#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/frame/LaplaceSizes.h"

namespace Zorvan::Ipp::Image::FilteringFunctions {

/// Bytes of work memory for a Laplace filter: those for the whole source image, or for the region if that
/// needs more, as a region may that is not larger than the kernel in some direction. -1 if the size entry
/// refuses the image, or if the size of the region exceeds the entry's 32 bits.
inline int workBytes(Size image, Size roi, int maskCode, int dataType) {
  int forImage = -1, forRegion = -1;
  Primitives::ippiFilterLaplaceBorderGetBufferSize(image, maskCode, dataType, dataType, 1, &forImage);
  if (forImage < 1) return forImage;
  if (roi.width > 0 && roi.height > 0) {
    const std::uint64_t needed = Primitives::Laplace::workBytes(
        roi, Primitives::Laplace::extentOfMask(maskCode), Primitives::Laplace::bytesOfType(dataType));
    if (needed > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) return -1;
  }
  if (roi.width == image.width && roi.height == image.height) return forImage;
  Primitives::ippiFilterLaplaceBorderGetBufferSize(roi, maskCode, dataType, dataType, 1, &forRegion);
  return std::max(forImage, forRegion);
}

template <class T>
class IppIFilterLaplaceBorder : public Methods::Method_2M<T, T> {
 public:
  IppIFilterLaplaceBorder(Size image, Size roi, bool use3x3, int type, T value)
      : dataType(std::is_same_v<T, u8>    ? Primitives::dataType8u
                 : std::is_same_v<T, s16> ? Primitives::dataType16s
                                          : Primitives::dataType32f),
        maskCode(use3x3 ? Primitives::mask3x3 : Primitives::mask5x5),
        borderType(type),
        borderValue(value),
        buffer(workBytes(image, roi, maskCode, dataType)) {}

  int Execute(T* src, int srcStep, T* dst, int dstStep, Size roi) override {
    using namespace Primitives;
    const auto memory = buffer.buffer();
    return ByPixelType{ippiFilterLaplaceBorder_8u_C1R, ippiFilterLaplaceBorder_16s_C1R,
                       ippiFilterLaplaceBorder_32f_C1R}(src, srcStep, dst, dstStep, roi, maskCode, borderType,
                                                        borderValue, memory.get());
  }

 private:
  int dataType;
  int maskCode;
  int borderType;
  T borderValue;
  IppS::IppSMemory<u8> buffer;
};

}  // namespace Zorvan::Ipp::Image::FilteringFunctions
