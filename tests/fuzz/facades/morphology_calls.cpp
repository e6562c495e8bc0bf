// Calls of IppIMorphology.

#include <type_traits>
#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"
#include "tests/support/MorphCall.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

std::string textOfMask(const Fixed& fixed, Rect rect, Size) {
  if (fixed.mask.width < 1) return "invalid image size";
  const bool isSize = rect.width > 0 && rect.height > 0 && fixed.mask.height > 0;
  return isSize ? "" : "Morph border get size error.";
}

template <class Spec, class T, class Entry>
int morph(Entry entry, const Fixed& fixed, Size roi, Operand<T> src, Operand<T> dst) {
  int specBytes = 0, bufferBytes = 0;
  MorphState<Spec, T>::sizes(roi, fixed.mask, &specBytes, &bufferBytes);
  std::vector<u8> spec(static_cast<std::size_t>(specBytes)), buffer(static_cast<std::size_t>(bufferBytes));
  const std::vector<u8> ones(static_cast<std::size_t>((fixed.mask.width | 1) * (fixed.mask.height | 1)), 1);
  auto* const record = reinterpret_cast<Spec*>(spec.data());
  MorphState<Spec, T>::fill(roi, ones.data(), fixed.mask, record, buffer.data());
  return entry(src.pixels, src.step, dst.pixels, dst.step, roi, 1, T(0), record, buffer.data());
}

#define MORPHOLOGY(T, bits, Name, Spec)                                                                  \
  CALL(RegionCall<T, T>{                                                                                 \
      #Name "<" #T ">",                                                                                  \
      [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {                                            \
        UNUSED, IppIMorphology<T>::Name(a, b, rect, fixed.mask);                                         \
      },                                                                                                 \
      [](IN, Size roi, Operand<T> a, Operand<T> b) {                                                     \
        UNUSED;                                                                                          \
        return morph<Primitives::Spec>(ENTRY(Morph##Name##Border_##bits##_C1R), fixed, roi, a, b);       \
      },                                                                                                 \
      std::is_same_v<Primitives::Spec, Primitives::MorphAdvSpec> ? Sharing::oneImage : Sharing::none, 0, \
      textOfMask}),                                                                                      \
      CALL(NewImageCall<T, T>{#Name "<" #T "> of a new image",                                           \
                              [](const Fixed& fixed, Rect rect, bool useRectSize, IppIMemory<T>& a) {    \
                                return IppIMorphology<T>::Name(a, rect, useRectSize, fixed.mask);        \
                              },                                                                         \
                              [](IN, Size roi, Operand<T> a, Operand<T> b) {                             \
                                UNUSED;                                                                  \
                                return morph<Primitives::Spec>(ENTRY(Morph##Name##Border_##bits##_C1R),  \
                                                               fixed, roi, a, b);                        \
                              },                                                                         \
                              true, textOfMask})
#define MORPHOLOGY_OF(T, bits)                                                   \
  MORPHOLOGY(T, bits, Erode, MorphSpec), MORPHOLOGY(T, bits, Dilate, MorphSpec), \
      MORPHOLOGY(T, bits, Open, MorphAdvSpec), MORPHOLOGY(T, bits, Close, MorphAdvSpec)

}  // namespace

std::vector<Run> morphologyCalls() { return {MORPHOLOGY_OF(u8, 8u), MORPHOLOGY_OF(float, 32f)}; }

}  // namespace Zorvan::Test
