#include "zorvan/operations/arithmetic/IppIArithmetic.h"

#include "zorvan/operations/NewImage.h"
#include "zorvan/operations/arithmetic/ArithmeticMethods.h"
#include "zorvan/operations/initializer/Initializer.h"

namespace Zorvan::Ipp::Image {

using namespace Arithmetics;
using Methods::over;
using Methods::Run;

template <class T>
void IppIArithmetic<T>::Add(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect) {
  Run<IppIArithmeticAdd_Src1_Src2_Dst<T>>(over(a, b, c), rect);
}

template <class T>
void IppIArithmetic<T>::Add(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect) {
  Run<IppIArithmeticAdd_Src_SrcDst<T>>(over(a, b), rect);
}

template <class T>
void IppIArithmetic<T>::AddC(IppIMemory<T>& image, T value, Rect rect) {
  Run<IppIAddC<T>>(over(image), rect, value);
}

template <class T>
void IppIArithmetic<T>::AddWithMask(IppIMemory<T>& src, IppIMemory<float>& srcDst, IppIMemory<u8>& mask,
                                    Rect rect) {
  Run<IppIArithmeticAdd_Src_Mask_SrcDst<T>>(over(src, mask, srcDst), rect);
}

/// All of the region is added, also the pixels of the new image that are not set. A region that fits `image`
/// may still begin or end outside its pixels, and so outside those of the new image.
template <class T>
void IppIArithmetic<T>::AddCWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, T value, Rect rect) {
  auto addend = makeSurroundedImage<T>(image.size(), rect);
  Initializer::FillWithMask<T>(addend, mask, value, rect);
  Add(addend, image, rect);
}

template <class T>
void IppIArithmetic<T>::Subtract(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect) {
  Run<IppISubtract_Src1_Src2_Dst<T>>(over(a, b, c), rect);
}

template <class T>
void IppIArithmetic<T>::Subtract(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect) {
  Run<IppISubtract_Src_SrcDst<T>>(over(a, b), rect);
}

template <class T>
void IppIArithmetic<T>::Multiply(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect) {
  Run<IppIArithmeticMultiply_Src1_Src2_Dst<T>>(over(a, b, c), rect);
}

template <class T>
void IppIArithmetic<T>::Multiply(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect) {
  Run<IppIArithmeticMultiply_Src_SrcDst<T>>(over(a, b), rect);
}

template <class T>
void IppIArithmetic<T>::Divide(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect) {
  Run<IppIArithmeticDivide_Src1_Src2_Dst<T>>(over(a, b, c), rect);
}

template <class T>
void IppIArithmetic<T>::Divide(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect) {
  Run<IppIArithmeticDivide_Src_SrcDst<T>>(over(a, b), rect);
}

template <class T>
void IppIArithmetic<T>::Absolute(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) {
  Run<IppIArithmeticAbsolute_Src_Dst<T>>(over(src, dst), rect);
}

template <class T>
void IppIArithmetic<T>::Absolute(IppIMemory<T>& image, Rect rect) {
  Run<IppIArithmeticAbsolute_SrcDst<T>>(over(image), rect);
}

template <class T>
void IppIArithmetic<T>::Square(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) {
  Run<IppIArithmeticSquare_Src_Dst<T>>(over(src, dst), rect);
}

template <class T>
void IppIArithmetic<T>::Square(IppIMemory<T>& image, Rect rect) {
  Run<IppIArithmeticSquare_SrcDst<T>>(over(image), rect);
}

template <class T>
void IppIArithmetic<T>::SquareRoot(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect) {
  Run<IppIArithmeticSquareRoot_Src_Dst<T>>(over(src, dst), rect);
}

template <class T>
void IppIArithmetic<T>::SquareRoot(IppIMemory<T>& image, Rect rect) {
  Run<IppIArithmeticSquareRoot_SrcDst<T>>(over(image), rect);
}

template <class T>
IppIArithmetic<T>& IppIArithmetic<T>::operator=(const IppIArithmetic&) {
  return *this;
}
template <class T>
IppIArithmetic<T>& IppIArithmetic<T>::operator=(IppIArithmetic&&) {
  return *this;
}

template class ZORVAN_IPP_API IppIArithmetic<u8>;
template class ZORVAN_IPP_API IppIArithmetic<float>;

}  // namespace Zorvan::Ipp::Image
