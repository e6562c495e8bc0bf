// Accumulate noisy frames
//
// Bytes are added to a float image, which holds their sum exactly. The mean of
// many frames has less noise than one frame: its standard deviation falls with
// the square root of their number.

#include <cstdio>

#include "recipe.h"

using namespace Recipes;

// The standard deviation of `image` from the picture without noise.
double noiseOf(IppIMemory<float>& image, IppIMemory<u8>& picture) {
  IppIMemory<float> difference = toFloat(picture);
  IppIMemory<u8> everywhere;
  makeConstant<u8>(everywhere, picture, 255);
  const Rect whole = picture.SizeToRoi();
  IppIArithmetic<float>::Subtract(image, difference, whole);
  return Statistic<float>::MeanAndStandardDeviationWithMask(difference,
                                                            everywhere, whole)
      .StdDev;
}

int main() {
  IppIMemory<u8> picture = coinPicture();
  const Rect whole = picture.SizeToRoi();
  IppIMemory<float> sum;
  IppIMemory<u8> everywhere, frame;
  makeConstant(sum, picture, 0.0f);
  makeConstant<u8>(everywhere, picture, 255);

  constexpr int frames = 16;
  for (unsigned number = 0; number < frames; ++number) {
    frame = IppIMemory<u8>(picture);  // a copy of the pixels
    addNoise(frame, 30, number);
    IppIArithmetic<u8>::AddWithMask(frame, sum, everywhere, whole);
  }
  IppIMemory<float> share;
  makeConstant(share, picture, 1.0f / frames);
  IppIArithmetic<float>::Multiply(share, sum, whole);

  IppIMemory<float> last = toFloat(frame);
  std::printf("noise of a frame: %.1f\n", noiseOf(last, picture));
  std::printf("of the mean of %d: %.1f\n", frames, noiseOf(sum, picture));
  writePng("before.png", frame);
  writePng("after.png", toBytes(sum));
}
