#include "zorvan/operations/logical/Comparer.h"

#include "zorvan/operations/logical/ComparerMethods.h"

namespace Zorvan::Ipp::Image {

template <class T>
void Comparer<T>::Compare(IppIMemory<T>& src, IppIMemory<u8>& dst, Rect rect, float value,
                          eComparison comparison) {
  Methods::Run<Comparers::CompareC_Src<T>>(Methods::over(src, dst), rect, value, comparison);
}

template <class T>
Comparer<T>& Comparer<T>::operator=(const Comparer&) {
  return *this;
}
template <class T>
Comparer<T>& Comparer<T>::operator=(Comparer&&) {
  return *this;
}

template class ZORVAN_IPP_API Comparer<float>;

}  // namespace Zorvan::Ipp::Image
