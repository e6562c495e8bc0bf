// Each CASE calls an operation with a pixel type for which it does not exist.

#include "zorvan/ipp.h"

using namespace Zorvan;
using namespace Zorvan::Ipp::Image;

template <class T>
void call(IppIMemory<T>& image, IppIMemory<u8>& mask) {
  const Rect rect{0, 0, 1, 1};
#if CASE == 0
  Initializer::Fill<T>(image, 1, rect);
#elif CASE == 1
  IppIArithmetic<T>::AddC(image, 1, rect);
#elif CASE == 2
  IppILogical<T>::Not(image, rect);
#elif CASE == 3
  Comparer<T>::Compare(image, mask, rect, 1, eEqual);
#elif CASE == 4
  Statistic<T>::Mean(image, mask, rect);
#elif CASE == 5
  IppIMorphology<T>::Erode(image, image, rect, {3, 3});
#elif CASE == 6
  FilteringFunction::LaplaceBorder<T>(image, image, true, eBorderReplicate, 1);
#elif CASE == 7
  ComputerVision::FloodFill<T>(image, {0, 0}, 1, rect);
#endif
}

int main() {
  IppIMemory<double> image;
  IppIMemory<u8> mask;
  call(image, mask);
}
