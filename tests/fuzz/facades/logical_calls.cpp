// Calls of IppILogical and Comparer.

#include <cmath>
#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;
using Ipp::ByPixelType;

#define LOGIC(T)                                                                        \
  THREE_IMAGES(IppILogical, And, T, 0, (ByPixelType{unscaled(ENTRY(And_8u_C1R))})),     \
      TWO_IMAGES(IppILogical, And, T, 0, (ByPixelType{unscaled(ENTRY(And_8u_C1IR))})),  \
      THREE_IMAGES(IppILogical, Or, T, 0, (ByPixelType{unscaled(ENTRY(Or_8u_C1R))})),   \
      TWO_IMAGES(IppILogical, Or, T, 0, (ByPixelType{unscaled(ENTRY(Or_8u_C1IR))})),    \
      THREE_IMAGES(IppILogical, Xor, T, 0, (ByPixelType{unscaled(ENTRY(Xor_8u_C1R))})), \
      TWO_IMAGES(IppILogical, Xor, T, 0, (ByPixelType{unscaled(ENTRY(Xor_8u_C1IR))})),  \
      TWO_IMAGES(IppILogical, Not, T, 0, (ByPixelType{unscaled(ENTRY(Not_8u_C1R))})),   \
      ONE_IMAGE(IppILogical, Not, T, 0, (ByPixelType{unscaled(ENTRY(Not_8u_C1IR))}))

#define NEW_LOGIC(Name, entry)                                                               \
  CALL(NewImageCall<u8, u8, u8>{                                                             \
      #Name " of a new image",                                                               \
      [](const Fixed&, Rect rect, bool sizeFromRect, IppIMemory<u8>& a, IppIMemory<u8>& b) { \
        return IppILogical<u8>::Name(a, b, rect, sizeFromRect);                              \
      },                                                                                     \
      [](IN, Size roi, Operand<u8> a, Operand<u8> b, Operand<u8> c) {                        \
        UNUSED;                                                                              \
        return entry(a.pixels, a.step, b.pixels, b.step, c.pixels, c.step, roi);             \
      },                                                                                     \
      false})

}  // namespace

std::vector<Run> logicalCalls() {
  return {
      CALL(RegionCall<float, u8>{"Compare",
                                 [](IN, Rect rect, IppIMemory<float>& a, IppIMemory<u8>& b) {
                                   UNUSED,
                                       Comparer<float>::Compare(a, b, rect, fixed.value,
                                                                static_cast<eComparison>(fixed.comparison));
                                 },
                                 [](IN, Size roi, Operand<float> a, Operand<u8> b) {
                                   UNUSED;
                                   return ENTRY(CompareC_32f_C1R)(a.pixels, a.step, std::trunc(fixed.value),
                                                                  b.pixels, b.step, roi, fixed.comparison);
                                 }}),
      LOGIC(u8),
      LOGIC(float),
      NEW_LOGIC(And, ENTRY(And_8u_C1R)),
      NEW_LOGIC(Or, ENTRY(Or_8u_C1R)),
      NEW_LOGIC(Xor, ENTRY(Xor_8u_C1R)),
      CALL(NewImageCall<u8, u8>{"Not of a new image",
                                [](const Fixed&, Rect rect, bool sizeFromRect, IppIMemory<u8>& a) {
                                  return IppILogical<u8>::Not(a, rect, sizeFromRect);
                                },
                                [](IN, Size roi, Operand<u8> a, Operand<u8> b) {
                                  UNUSED;
                                  return ENTRY(Not_8u_C1R)(a.pixels, a.step, b.pixels, b.step, roi);
                                },
                                true})};
}

}  // namespace Zorvan::Test
