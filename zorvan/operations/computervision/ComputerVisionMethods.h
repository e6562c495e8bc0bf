#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/foundation/SharedBlock.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/frame/FloodFillSizes.h"

namespace Zorvan::Ipp::Image::ComputerVisions {

/// Bytes of work memory that are enough for a flood fill of `roi` with any pixels, which is more than the
/// size entry reports. -1 if that entry refuses the region, or if the size exceeds its 32 bits.
inline std::int64_t workBytes(Size roi) {
  int reported = -1;
  Primitives::ippiFloodFillGetSize(roi, &reported);
  if (reported < 1 || !Primitives::fillBufferBytesFit(roi)) return -1;
  using namespace Primitives;
  return std::max<std::int64_t>(reported, fillBufferBytes(mostFillRecords(roi)));
}

/// Returns null when memory runs out. Throws std::exception, "invalid length", if `bytes` is below 1.
inline std::shared_ptr<u8[]> allocateWorkMemory(std::int64_t bytes) {
  constexpr std::int64_t mostBytes = std::numeric_limits<int>::max() - 128;  // the allocator adds to it
  if (bytes <= mostBytes) return IppS::IppSMemory<u8>(static_cast<int>(bytes)).buffer();
  return shareBlock(std::unique_ptr<u8[]>(new (std::nothrow) u8[static_cast<std::size_t>(bytes)]));
}

template <class T>
class FloodFill4Neighbor : public Methods::Method_1M_R<T, Primitives::_IppiConnectedComp> {
 public:
  FloodFill4Neighbor(Size roi, Point fillSeed, T fillValue)
      : seed(fillSeed), value(fillValue), buffer(allocateWorkMemory(workBytes(roi))) {}

  int Execute(T* image, int step, Size roi) override {
    using namespace Primitives;
    return ByPixelType{ippiFloodFill_4Con_8u_C1IR, ippiFloodFill_4Con_16u_C1IR, ippiFloodFill_4Con_32s_C1IR,
                       ippiFloodFill_4Con_32f_C1IR}(image, step, roi, seed, value, &this->result,
                                                    buffer.get());
  }

 private:
  Point seed;
  T value;
  std::shared_ptr<u8[]> buffer;
};

}  // namespace Zorvan::Ipp::Image::ComputerVisions
