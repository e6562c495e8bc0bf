// Save a float image as a picture
//
// Float images have no fixed values for black and white. Here the lowest value
// becomes black and the highest white, like in a viewer, and the bytes are
// written into a file. No operation of the library converts floats to bytes, so
// the program does it in a loop.

#include <cmath>
#include <cstdio>

#include "recipe.h"

using namespace Recipes;

IppIMemory<u8> shown(const IppIMemory<float>& image) {
  IppIMemory<float> scaled = image;  // a copy of the pixels
  const Rect whole = scaled.SizeToRoi();
  const float low = Statistic<float>::Min(scaled, whole);
  const float high = Statistic<float>::Max(scaled, whole);
  std::printf("%.0f is black, %.0f is white\n", low, high);

  IppIMemory<float> factor(scaled.size());
  Initializer::Fill<float>(factor, high > low ? 255 / (high - low) : 0, whole);
  IppIArithmetic<float>::AddC(scaled, -low, whole);
  IppIArithmetic<float>::Multiply(factor, scaled, whole);

  IppIMemory<u8> bytes(scaled.size());
  const auto from = scaled.buffer();
  const auto to = bytes.buffer();
  for (int i = 0; i < scaled.width() * scaled.height(); ++i) {
    to[i] = static_cast<u8>(std::lround(from[i]));
  }
  return bytes;
}

int main() {
  IppIMemory<u8> picture = coinPicture();
  IppIMemory<float> floats = toFloat(picture), edges(picture.size());
  // Edges are positive on their bright side and negative on their dark one.
  FilteringFunction::LaplaceBorder3x3<float>(floats, edges,
                                             Zorvan::eBorderReplicate, 0);
  writePng("before.png", picture);
  writePng("after.png", shown(edges));
}
