#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<float> toFloat(IppIMemory<u8>& image) {
  const Zorvan::Rect whole = image.SizeToRoi();
  IppIMemory<float> sum(image.size());
  IppIMemory<u8> everywhere(image.size());
  Initializer::Fill<float>(sum, 0, whole);
  Initializer::Fill<u8>(everywhere, 255, whole);
  // The mask selects all pixels: bytes are added to float zeros.
  IppIArithmetic<u8>::AddWithMask(image, sum, everywhere, whole);
  return sum;
}

IppIMemory<u8> above(IppIMemory<u8>& image, int limit) {
  IppIMemory<float> exact = toFloat(image);
  IppIMemory<u8> mask(image.size());
  Comparer<float>::Compare(exact, mask, image.SizeToRoi(),
                           static_cast<float>(limit), Zorvan::eGreater);
  return mask;
}

}  // namespace Coins
