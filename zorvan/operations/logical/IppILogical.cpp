#include "zorvan/operations/logical/IppILogical.h"

#include "zorvan/operations/NewImage.h"
#include "zorvan/operations/logical/LogicalMethods.h"

namespace Zorvan::Ipp::Image {

using namespace Logicals;
using Methods::over;
using Methods::Run;

namespace {

/// Combines two sources into the top left corner of a new image.
template <class Method, class T>
IppIMemory<T> combined(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect) {
  return runIntoNew<Method>(over(src1, src2), rect, Rect{0, 0, rect.width, rect.height}, sizeFromRect);
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
  return runIntoNew<IppILogicalNot_Src_Dst<T>>(over(src), rect, rect, sizeFromRect);
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
