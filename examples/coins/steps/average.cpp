#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<float> average(std::deque<IppIMemory<u8>>& frames,
                          IppIMemory<u8>& mask) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  IppIMemory<float> sum(mask.size());
  IppIMemory<float> count(mask.size());
  Initializer::Fill<float>(sum, 0, whole);
  Initializer::Fill<float>(count, static_cast<float>(frames.size()), whole);
  for (IppIMemory<u8>& frame : frames) {
    IppIArithmetic<u8>::AddWithMask(frame, sum, mask, whole);
  }
  // The second image is divided by the first, in place.
  IppIArithmetic<float>::Divide(count, sum, whole);
  return sum;
}

double noiseOf(IppIMemory<float>& image, IppIMemory<u8>& picture,
               IppIMemory<u8>& mask) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  IppIMemory<float> difference = toFloat(picture);
  IppIArithmetic<float>::Subtract(image, difference, whole);
  const Zorvan::MeanStdDev noise =
      Statistic<float>::MeanAndStandardDeviationWithMask(difference, mask,
                                                         whole);
  return noise.StdDev;
}

}  // namespace Coins
