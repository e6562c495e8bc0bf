#include "zorvan/operations/filtering/FilteringFunction.h"

#include "zorvan/operations/filtering/FilteringMethods.h"

namespace Zorvan::Ipp::Image {

using Methods::over;
using Methods::Run;

namespace {

constexpr int replicateBorder = 1;
constexpr int constantBorder = 6;

}  // namespace

template <class T>
void FilteringFunction::LaplaceBorder(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, bool use3x3,
                                      eBorderType border, T borderValue) {
  const int borderType = border == eBorderConstant ? constantBorder : replicateBorder;
  Run<FilteringFunctions::IppIFilterLaplaceBorder<T>>(
      over(src, dst), rect, src.size(), Size{rect.width, rect.height}, use3x3, borderType, borderValue);
}

template <class T>
void FilteringFunction::LaplaceBorder(IppIMemory<T>& src, IppIMemory<T>& dst, bool use3x3, eBorderType border,
                                      T borderValue) {
  LaplaceBorder(src, dst, src.SizeToRoi(), use3x3, border, borderValue);
}

template <class T>
void FilteringFunction::LaplaceBorder3x3(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect,
                                         eBorderType border, T borderValue) {
  LaplaceBorder(src, dst, rect, true, border, borderValue);
}

template <class T>
void FilteringFunction::LaplaceBorder3x3(IppIMemory<T>& src, IppIMemory<T>& dst, eBorderType border,
                                         T borderValue) {
  LaplaceBorder(src, dst, true, border, borderValue);
}

template <class T>
void FilteringFunction::LaplaceBorder5x5(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect,
                                         eBorderType border, T borderValue) {
  LaplaceBorder(src, dst, rect, false, border, borderValue);
}

template <class T>
void FilteringFunction::LaplaceBorder5x5(IppIMemory<T>& src, IppIMemory<T>& dst, eBorderType border,
                                         T borderValue) {
  LaplaceBorder(src, dst, false, border, borderValue);
}

FilteringFunction& FilteringFunction::operator=(const FilteringFunction&) { return *this; }
FilteringFunction& FilteringFunction::operator=(FilteringFunction&&) { return *this; }

#define INSTANTIATE(T)                                                                                      \
  template ZORVAN_IPP_API void FilteringFunction::LaplaceBorder<T>(IppIMemory<T>&, IppIMemory<T>&, Rect,    \
                                                                   bool, eBorderType, T);                   \
  template ZORVAN_IPP_API void FilteringFunction::LaplaceBorder<T>(IppIMemory<T>&, IppIMemory<T>&, bool,    \
                                                                   eBorderType, T);                         \
  template ZORVAN_IPP_API void FilteringFunction::LaplaceBorder3x3<T>(IppIMemory<T>&, IppIMemory<T>&, Rect, \
                                                                      eBorderType, T);                      \
  template ZORVAN_IPP_API void FilteringFunction::LaplaceBorder3x3<T>(IppIMemory<T>&, IppIMemory<T>&,       \
                                                                      eBorderType, T);                      \
  template ZORVAN_IPP_API void FilteringFunction::LaplaceBorder5x5<T>(IppIMemory<T>&, IppIMemory<T>&, Rect, \
                                                                      eBorderType, T);                      \
  template ZORVAN_IPP_API void FilteringFunction::LaplaceBorder5x5<T>(IppIMemory<T>&, IppIMemory<T>&,       \
                                                                      eBorderType, T);
INSTANTIATE(u8)
INSTANTIATE(s16)
INSTANTIATE(float)
#undef INSTANTIATE

}  // namespace Zorvan::Ipp::Image
