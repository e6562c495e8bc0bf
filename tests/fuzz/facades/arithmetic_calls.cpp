// Calls of IppIArithmetic.

#include <algorithm>
#include <type_traits>
#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;
using Ipp::ByPixelType;

constexpr double quotientOf8u = 1;  // which rounds a tie in either direction in vectors
template <class T>
constexpr double quotient = std::is_same_v<T, float> ? estimate : quotientOf8u;

template <class T>
void clearUnselected(Size roi, Operand<T> image, Operand<u8> mask) {
  for (int y = 0; y < roi.height; ++y) {
    T* const pixels = image.pixels + y * (image.step / static_cast<int>(sizeof(T)));
    const u8* const selected = mask.pixels + y * mask.step;
    for (int x = 0; x < roi.width; ++x) {
      if (selected[x] == 0) pixels[x] = 0;
    }
  }
}

/// The pixels that are not selected have undefined results, so they are cleared afterwards.
template <class T>
void addConstant(const Fixed& fixed, Rect rect, IppIMemory<T>& image, IppIMemory<u8>& mask) {
  IppIArithmetic<T>::AddCWithMask(image, mask, fixed.as<T>(), rect);
  clearUnselected<T>({rect.width, rect.height}, {image.ToIppStream(rect), image.imageStep()},
                     {mask.ToIppStream(rect), mask.imageStep()});
}
template <class T>
int addPlainConstant(const Fixed& fixed, Size roi, Operand<T> image, Operand<u8> mask) {
  const auto pixels =
      static_cast<std::size_t>(std::max(roi.width, 0)) * static_cast<std::size_t>(std::max(roi.height, 0));
  std::vector<T> addend(pixels + 1);
  const int step = tightStep<T>(roi);
  const ByPixelType set{ENTRY(Set_8u_C1MR), ENTRY(Set_32f_C1MR)};
  int status = set(fixed.as<T>(), addend.data(), step, roi, mask.pixels, mask.step);
  if (status != 0) return status;
  status = SCALED(Add, C1I)(addend.data(), step, image.pixels, image.step, roi, 0);
  if (status == 0) clearUnselected<T>(roi, image, mask);
  return status;
}

#define ARITHMETIC(T)                                                                          \
  THREE_IMAGES(IppIArithmetic, Add, T, 0, (SCALED(Add, C1))),                                  \
      TWO_IMAGES(IppIArithmetic, Add, T, 0, (SCALED(Add, C1I))),                               \
      THREE_IMAGES(IppIArithmetic, Subtract, T, 0, (SCALED(Sub, C1))),                         \
      TWO_IMAGES(IppIArithmetic, Subtract, T, 0, (SCALED(Sub, C1I))),                          \
      THREE_IMAGES(IppIArithmetic, Multiply, T, 0, (SCALED(Mul, C1))),                         \
      TWO_IMAGES(IppIArithmetic, Multiply, T, 0, (SCALED(Mul, C1I))),                          \
      THREE_IMAGES(IppIArithmetic, Divide, T, quotient<T>, (SCALED(Div, C1))),                 \
      TWO_IMAGES(IppIArithmetic, Divide, T, quotient<T>,                                       \
                 (ByPixelType{ENTRY(Div_8u_C1IRSfs), unscaled(ENTRY(Div_32f_C1IR))})),         \
      TWO_IMAGES(IppIArithmetic, Square, T, 0, (SCALED(Sqr, C1))),                             \
      ONE_IMAGE(IppIArithmetic, Square, T, 0, (SCALED(Sqr, C1I))),                             \
      TWO_IMAGES(IppIArithmetic, SquareRoot, T, estimate, (SCALED(Sqrt, C1))),                 \
      ONE_IMAGE(IppIArithmetic, SquareRoot, T, estimate, (SCALED(Sqrt, C1I))),                 \
      TWO_IMAGES(IppIArithmetic, Absolute, T, 0, (ByPixelType{unscaled(ENTRY(Abs_32f_C1R))})), \
      ONE_IMAGE(IppIArithmetic, Absolute, T, 0, (ByPixelType{unscaled(ENTRY(Abs_32f_C1IR))}))

#define WITH_CONSTANTS(T)                                                                                   \
  CALL(RegionCall<T>{                                                                                       \
      "AddC<" #T ">",                                                                                       \
      [](IN, Rect rect, IppIMemory<T>& a) { UNUSED, IppIArithmetic<T>::AddC(a, fixed.as<T>(), rect); },     \
      [](IN, Size roi, Operand<T> a) {                                                                      \
        UNUSED;                                                                                             \
        return ByPixelType{ENTRY(AddC_8u_C1IRSfs), unscaled(ENTRY(AddC_32f_C1IR))}(fixed.as<T>(), a.pixels, \
                                                                                   a.step, roi, 0);         \
      }}),                                                                                                  \
      CALL(RegionCall<T, u8>{"AddCWithMask<" #T ">",                                                        \
                             [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                    \
                               UNUSED, addConstant(fixed, rect, a, mask);                                   \
                             },                                                                             \
                             [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                             \
                               UNUSED;                                                                      \
                               return addPlainConstant(fixed, roi, a, mask);                                \
                             },                                                                             \
                             Sharing::none, 0, nothing, true, true}),                                       \
      CALL(RegionCall<T, u8, float>{                                                                        \
          "AddWithMask<" #T ">",                                                                            \
          [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask, IppIMemory<float>& sum) {               \
            UNUSED, IppIArithmetic<T>::AddWithMask(a, sum, mask, rect);                                     \
          },                                                                                                \
          [](IN, Size roi, Operand<T> a, Operand<u8> mask, Operand<float> sum) {                            \
            UNUSED;                                                                                         \
            return ByPixelType{ENTRY(Add_8u32f_C1IMR), ENTRY(Add_32f_C1IMR)}(                               \
                a.pixels, a.step, mask.pixels, mask.step, sum.pixels, sum.step, roi);                       \
          }})

}  // namespace

std::vector<Run> arithmeticCalls() {
  return {ARITHMETIC(u8), ARITHMETIC(float), WITH_CONSTANTS(u8), WITH_CONSTANTS(float)};
}

}  // namespace Zorvan::Test
