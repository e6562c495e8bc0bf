#include "zorvan/operations/morphology/IppIMorphology.h"

#include <algorithm>

#include "zorvan/foundation/SharedBlock.h"
#include "zorvan/operations/NewImage.h"
#include "zorvan/operations/morphology/MorphologyMethods.h"

namespace Zorvan::Ipp::Image {

namespace Morphologies {

namespace {

constexpr int constantWidths[] = {3, 5, 7, 9};

/// Ones for the usual masks of each of these widths, some of them tall.
struct Ones {
  u8 cells[256] = {};
  constexpr Ones() {
    for (u8& cell : cells) cell = 1;
  }
};
constexpr Ones ones;

}  // namespace

std::shared_ptr<u8[]> makeStructuringMask(Size maskSize) {
  const int width = maskSize.width;
  const int height = std::max(maskSize.height, 1);
  const auto isOf = [width](int constant) { return width == constant; };
  const bool constantWidth = std::any_of(std::begin(constantWidths), std::end(constantWidths), isOf);
  if (constantWidth && std::int64_t{width} * (height | 1) <= std::int64_t{sizeof ones.cells}) {
    return {std::shared_ptr<u8[]>(), const_cast<u8*>(ones.cells)};  // only read, and never freed
  }
  if (width < 1) throw TextException("invalid image size");
  const Size cells{width | 1, height | 1};
  int step = 0;
  auto mask = shareBlock(IppIMemory<u8>::Allocate(cells, step));
  if (mask) ippiSet_8u_C1R(1, mask.get(), cells.width, cells);
  return mask;
}

}  // namespace Morphologies

using Methods::over;
using Methods::Run;

#define OPERATION(Name)                                                                                    \
  template <class T>                                                                                       \
  IppIMemory<T> IppIMorphology<T>::Name(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize) {  \
    return runIntoNew<Morphologies::IppIMorphology##Name##_Src_Dst<T>>(over(src), rect, rect, useRectSize, \
                                                                       maskSize, rect);                    \
  }                                                                                                        \
  template <class T>                                                                                       \
  void IppIMorphology<T>::Name(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize) {         \
    Run<Morphologies::IppIMorphology##Name##_Src_Dst<T>>(over(src, dst), rect, maskSize, rect);            \
  }
OPERATION(Erode)
OPERATION(Dilate)
OPERATION(Open)
OPERATION(Close)
#undef OPERATION

template <class T>
IppIMorphology<T>& IppIMorphology<T>::operator=(const IppIMorphology&) {
  return *this;
}
template <class T>
IppIMorphology<T>& IppIMorphology<T>::operator=(IppIMorphology&&) {
  return *this;
}

template class ZORVAN_IPP_API IppIMorphology<u8>;
template class ZORVAN_IPP_API IppIMorphology<float>;

}  // namespace Zorvan::Ipp::Image
