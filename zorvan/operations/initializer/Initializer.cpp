#include "zorvan/operations/initializer/Initializer.h"

#include "zorvan/operations/NewImage.h"
#include "zorvan/operations/initializer/InitializerMethods.h"

namespace Zorvan::Ipp::Image {

using namespace Initializers;
using Methods::over;
using Methods::Run;

template <class T>
IppIMemory<T> Initializer::Allocate(int width, int height) {
  return IppIMemory<T>(Size{width, height});
}

template <class T>
void Initializer::Copy(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) {
  Run<IppICopyMethod_Src_Dst<T>>(over(src, dst), rect);
}

template <class T>
void Initializer::Copy(IppIMemory<T>& src, IppIMemory<T>& dst) {
  Copy(src, dst, src.SizeToRoi());
}

template <class T>
IppIMemory<T> Initializer::Copy(IppIMemory<T>& src, Rect rect, bool sizeFromRect) {
  return runIntoNew<IppICopyMethod_Src_Dst<T>>(over(src), rect, rect, sizeFromRect);
}

template <class T>
void Initializer::CopyWithMask(IppIMemory<T>& src, IppIMemory<T>& dst, IppIMemory<u8>& mask, Rect rect) {
  Run<IppICopyMethod_Src_Dst_Mask<T>>(over(src, dst, mask), rect);
}

template <class T>
void Initializer::Fill(IppIMemory<T>& image, T value, Rect rect) {
  Run<IppISetMethod_SrcDst<T>>(over(image), rect, value);
}

template <class T>
void Initializer::FillWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, T value, Rect rect) {
  Run<IppISetMethod_SrcDst_Mask<T>>(over(image, mask), rect, value);
}

template <class T1, class T2>
void Initializer::Convert(IppIMemory<T1>& src, IppIMemory<T2>& dst, Rect rect) {
  Run<Initializations::Convert<T1, T2>>(over(src, dst), rect);
}

Initializer& Initializer::operator=(const Initializer&) { return *this; }
Initializer& Initializer::operator=(Initializer&&) { return *this; }

#define INSTANTIATE(T)                                                                                       \
  template ZORVAN_IPP_API IppIMemory<T> Initializer::Allocate<T>(int, int);                                  \
  template ZORVAN_IPP_API void Initializer::Copy<T>(IppIMemory<T>&, IppIMemory<T>&, Rect);                   \
  template ZORVAN_IPP_API void Initializer::Copy<T>(IppIMemory<T>&, IppIMemory<T>&);                         \
  template ZORVAN_IPP_API IppIMemory<T> Initializer::Copy<T>(IppIMemory<T>&, Rect, bool);                    \
  template ZORVAN_IPP_API void Initializer::CopyWithMask<T>(IppIMemory<T>&, IppIMemory<T>&, IppIMemory<u8>&, \
                                                            Rect);                                           \
  template ZORVAN_IPP_API void Initializer::Fill<T>(IppIMemory<T>&, T, Rect);                                \
  template ZORVAN_IPP_API void Initializer::FillWithMask<T>(IppIMemory<T>&, IppIMemory<u8>&, T, Rect);
ZORVAN_IPP_PIXEL_TYPES(INSTANTIATE)
#undef INSTANTIATE

template ZORVAN_IPP_API void Initializer::Convert<int, u8>(IppIMemory<int>&, IppIMemory<u8>&, Rect);
template ZORVAN_IPP_API void Initializer::Convert<int, float>(IppIMemory<int>&, IppIMemory<float>&, Rect);

}  // namespace Zorvan::Ipp::Image
