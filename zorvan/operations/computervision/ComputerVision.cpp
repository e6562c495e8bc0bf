#include "zorvan/operations/computervision/ComputerVision.h"

#include "zorvan/operations/computervision/ComputerVisionMethods.h"

namespace Zorvan::Ipp::Image {

using Methods::over;
using Methods::Run;

template <class T>
ConnectionInfo ComputerVision::FloodFill(IppIMemory<T>& image, Point seed, T value, Rect rect) {
  const Size roi{rect.width, rect.height};
  const auto filled = Run<ComputerVisions::FloodFill4Neighbor<T>>(over(image), rect, roi, seed, value);
  return {filled.area, {filled.value[0], filled.value[1], filled.value[2]}, filled.rect};
}

ComputerVision& ComputerVision::operator=(const ComputerVision&) { return *this; }
ComputerVision& ComputerVision::operator=(ComputerVision&&) { return *this; }

#define INSTANTIATE(T) \
  template ZORVAN_IPP_API ConnectionInfo ComputerVision::FloodFill<T>(IppIMemory<T>&, Point, T, Rect);
INSTANTIATE(u8)
INSTANTIATE(u16)
INSTANTIATE(int)
INSTANTIATE(float)
#undef INSTANTIATE

}  // namespace Zorvan::Ipp::Image
