// Calls of ComputerVision.

#include <string>
#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

std::string textOfFill(const Fixed&, Rect rect, Size) {
  return rect.width < 1 || rect.height < 1 ? "invalid length" : "";
}
template <class Filled>
Numbers numbersOf(const Filled& filled) {
  const auto [x, y, width, height] = filled.rect;
  return {filled.area, filled.value[0], filled.value[1], filled.value[2],
          double(x),   double(y),       double(width),   double(height)};
}
#define FLOOD_FILL(T, bits)                                                                                  \
  CALL(RegionCall<T>{"FloodFill<" #T ">",                                                                    \
                     [](IN, Rect rect, IppIMemory<T>& a) {                                                   \
                       const auto filled = ComputerVision::FloodFill<T>(a, fixed.seed, fixed.as<T>(), rect); \
                       UNUSED, numbers = numbersOf(filled);                                                  \
                     },                                                                                      \
                     [](IN, Size roi, Operand<T> a) {                                                        \
                       u8 work = 0;                                                                          \
                       Primitives::_IppiConnectedComp filled{};                                              \
                       const int status = ENTRY(FloodFill_4Con_##bits##_C1IR)(                               \
                           a.pixels, a.step, roi, fixed.seed, fixed.as<T>(), &filled, &work);                \
                       UNUSED, numbers = numbersOf(filled);                                                  \
                       return status;                                                                        \
                     },                                                                                      \
                     Sharing::none, 0, textOfFill})

}  // namespace

std::vector<Run> computervisionCalls() {
  return {FLOOD_FILL(u8, 8u), FLOOD_FILL(u16, 16u), FLOOD_FILL(int, 32s), FLOOD_FILL(float, 32f)};
}

}  // namespace Zorvan::Test
