// Calls of FilteringFunction.

#include <string>
#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

std::string textOfLaplace(const Fixed&, Rect, Size first) {
  return first.width < 1 || first.height < 1 ? "invalid length" : "";
}
#define LAPLACE(T, bits)                                                                           \
  CALL(RegionCall<T, T>{"LaplaceBorder<" #T ">",                                                   \
                        [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {                    \
                          UNUSED, FilteringFunction::LaplaceBorder<T>(                             \
                                      a, b, rect, fixed.use3x3,                                    \
                                      fixed.isConstantBorder ? eBorderConstant : eBorderReplicate, \
                                      fixed.as<T>());                                              \
                        },                                                                         \
                        [](IN, Size roi, Operand<T> a, Operand<T> b) {                             \
                          UNUSED;                                                                  \
                          u8 work = 0;                                                             \
                          return ENTRY(FilterLaplaceBorder_##bits##_C1R)(                          \
                              a.pixels, a.step, b.pixels, b.step, roi, fixed.use3x3 ? 33 : 55,     \
                              fixed.isConstantBorder ? 6 : 1, fixed.as<T>(), &work);               \
                        },                                                                         \
                        Sharing::none, 0, textOfLaplace, true})

}  // namespace

std::vector<Run> filteringCalls() { return {LAPLACE(u8, 8u), LAPLACE(s16, 16s), LAPLACE(float, 32f)}; }

}  // namespace Zorvan::Test
