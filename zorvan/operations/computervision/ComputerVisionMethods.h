#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/methods/ByPixelType.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/kernels/computervision/FloodFillPlan.h"

namespace Zorvan::Ipp::Image::ComputerVisions {

/// Bytes of work memory for a flood fill of `roi`: the told size, or what is enough for every image where
/// that is more and can be allocated. -1 where the size entry refuses the region, or cannot report the size:
/// its result has 32 bits.
inline int workBytes(Size roi) {
  int told = -1;
  Primitives::ippiFloodFillGetSize(roi, &told);
  if (told < 1 || !Primitives::fillBufferBytesFit(roi)) return -1;
  constexpr std::int64_t mostBytes =
      std::numeric_limits<std::int32_t>::max() - 128;  // the allocator adds to it
  constexpr std::int64_t mostRecords = mostBytes / std::int64_t{sizeof(Primitives::FillSegment)} - 1;
  const std::int64_t records = Primitives::mostFillRecords(roi);
  return records > mostRecords ? told
                               : std::max(told, static_cast<int>(Primitives::fillBufferBytes(records)));
}

template <class T>
class FloodFill4Neighbor : public Methods::Method_1M_R<T, Primitives::_IppiConnectedComp> {
 public:
  FloodFill4Neighbor(Size roi, Point fillSeed, T fillValue)
      : seed(fillSeed), value(fillValue), buffer(workBytes(roi)) {}

  int Execute(T* image, int step, Size roi) override {
    using namespace Primitives;
    const auto memory = buffer.buffer();
    return Methods::ByPixelType{ippiFloodFill_4Con_8u_C1IR, ippiFloodFill_4Con_16u_C1IR,
                                ippiFloodFill_4Con_32s_C1IR, ippiFloodFill_4Con_32f_C1IR}(
        image, step, roi, seed, value, &this->result, memory.get());
  }

 private:
  Point seed;
  T value;
  IppS::IppSMemory<u8> buffer;
};

}  // namespace Zorvan::Ipp::Image::ComputerVisions
