#include "zorvan/operations/logical/IppILogical.h"

#include "zorvan/operations/LocalImage.h"
#include "zorvan/operations/logical/LogicalMethods.h"

namespace Zorvan::Ipp::Image {

using namespace Logicals;
using Methods::over;
using Methods::Run;

namespace {

/// Two sources combined into a new image, from its first pixel on, wherever the region lies in the sources.
template <class Method, class T>
IppIMemory<T> combined(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect) {
  const Rect atOrigin{0, 0, rect.width, rect.height};
  auto local = makeLocalImage<T>(sizeFromRect ? Size{rect.width, rect.height} : src1.size(), atOrigin);
  Method method;
  Methods::raiseUnlessZero(method.Execute(src1.ToIppStream(rect), src1.imageStep(), src2.ToIppStream(rect),
                                          src2.imageStep(), local.ToIppStream(atOrigin), local.imageStep(),
                                          {rect.width, rect.height}));
  const auto& result = local;
  return IppIMemory<T>(result);  // a deep copy: the room behind the pixels stays here
}

}  // namespace

template <class T>
void IppILogical<T>::And(IppIMemory<T>& src, IppIMemory<T>& srcDst, Rect rect) {
  Run<IppILogicalAnd_Src_SrcDst<T>>(over(src, srcDst), rect);
}

template <class T>
void IppILogical<T>::And(IppIMemory<T>& src1, IppIMemory<T>& src2, IppIMemory<T>& dst, Rect rect) {
  Run<IppILogicalAnd_Src1_Src2_Dst<T>>(over(src1, src2, dst), rect);
}

template <class T>
IppIMemory<T> IppILogical<T>::And(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect) {
  return combined<IppILogicalAnd_Src1_Src2_Dst<T>>(src1, src2, rect, sizeFromRect);
}

template <class T>
void IppILogical<T>::Or(IppIMemory<T>& src, IppIMemory<T>& srcDst, Rect rect) {
  Run<IppILogicalOr_Src_SrcDst<T>>(over(src, srcDst), rect);
}

template <class T>
void IppILogical<T>::Or(IppIMemory<T>& src1, IppIMemory<T>& src2, IppIMemory<T>& dst, Rect rect) {
  Run<IppILogicalOr_Src1_Src2_Dst<T>>(over(src1, src2, dst), rect);
}

template <class T>
IppIMemory<T> IppILogical<T>::Or(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect) {
  return combined<IppILogicalOr_Src1_Src2_Dst<T>>(src1, src2, rect, sizeFromRect);
}

template <class T>
void IppILogical<T>::Xor(IppIMemory<T>& src, IppIMemory<T>& srcDst, Rect rect) {
  Run<IppILogicalXor_Src_SrcDst<T>>(over(src, srcDst), rect);
}

template <class T>
void IppILogical<T>::Xor(IppIMemory<T>& src1, IppIMemory<T>& src2, IppIMemory<T>& dst, Rect rect) {
  Run<IppILogicalXor_Src1_Src2_Dst<T>>(over(src1, src2, dst), rect);
}

template <class T>
IppIMemory<T> IppILogical<T>::Xor(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect) {
  return combined<IppILogicalXor_Src1_Src2_Dst<T>>(src1, src2, rect, sizeFromRect);
}

template <class T>
void IppILogical<T>::Not(IppIMemory<T>& srcDst, Rect rect) {
  Run<IppILogicalNot_SrcDst<T>>(over(srcDst), rect);
}

template <class T>
void IppILogical<T>::Not(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) {
  Run<IppILogicalNot_Src_Dst<T>>(over(src, dst), rect);
}

template <class T>
IppIMemory<T> IppILogical<T>::Not(IppIMemory<T>& src, Rect rect, bool sizeFromRect) {
  auto local = makeLocalImage<T>(sizeFromRect ? Size{rect.width, rect.height} : src.size(), rect);
  IppILogicalNot_Src_Dst<T> method;
  Methods::execute(method, over(src, local), rect);
  const auto& result = local;
  return IppIMemory<T>(result);  // a deep copy: the room around the pixels stays here
}

template <class T>
IppILogical<T>& IppILogical<T>::operator=(const IppILogical&) {
  return *this;
}
template <class T>
IppILogical<T>& IppILogical<T>::operator=(IppILogical&&) {
  return *this;
}

template class ZORVAN_IPP_API IppILogical<u8>;
template class ZORVAN_IPP_API IppILogical<float>;

}  // namespace Zorvan::Ipp::Image
