#include "bands.h"

#include <algorithm>

namespace Bands {

using namespace Zorvan::Ipp::Image;
using Examples::Area;
using Examples::rectOfView;
using Examples::viewOf;
using Zorvan::Rect;
using Zorvan::Size;

namespace {

constexpr Size square{3, 3};
constexpr int reach = 1;  // rows above and below that the dilation of a row needs

/// The first four operations, over `rect` of all images.
void dilatedDifference(IppIMemory<float>& picture, IppIMemory<float>& dark, IppIMemory<float>& gain,
                       Between& between, Rect rect) {
  IppIArithmetic<float>::Subtract(dark, picture, between.difference, rect);  // picture - dark
  IppIArithmetic<float>::Multiply(gain, between.difference, rect);
  IppIArithmetic<float>::Absolute(between.difference, rect);
  IppIMorphology<float>::Dilate(between.difference, between.dilated, rect, square);
}

}  // namespace

Frame::Frame(Size size) : picture(size), dark(size), gain(size) {
  unsigned state = 1;
  const auto next = [&] { return static_cast<float>((state = state * 1664525u + 1013904223u) >> 24); };
  for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{size.width} * size.height; ++i) {
    picture.buffer()[i] = next();
    dark.buffer()[i] = next() / 16;
    gain.buffer()[i] = 1 + next() / 512;
  }
}

Between::Between(Size size) : difference(size), dilated(size) {}

void markAtOnce(Frame& frame, float level, Between& between, IppIMemory<u8>& mask) {
  const Rect whole = mask.SizeToRoi();
  dilatedDifference(frame.picture, frame.dark, frame.gain, between, whole);
  Comparer<float>::Compare(between.dilated, mask, whole, level, Zorvan::eGreater);
}

void markInBands(Frame& frame, float level, Between& between, IppIMemory<u8>& mask) {
  const int width = mask.width(), height = mask.height(), rows = rowsOfBand(width);

  for (int top = 0; top < height; top += rows) {
    const int bottom = std::min(top + rows, height);
    // The band with the rows that the dilation needs; at the edges of the picture there are none.
    const int first = std::max(top - reach, 0), last = std::min(bottom + reach, height);
    const Area wide{0, first, width, last - first}, band{0, top, width, bottom - top};

    auto picture = viewOf(frame.picture, wide), dark = viewOf(frame.dark, wide),
         gain = viewOf(frame.gain, wide);
    dilatedDifference(picture, dark, gain, between, rectOfView(wide));

    auto from = viewOf(between.dilated, {0, top - first, width, band.height});
    auto to = viewOf(mask, band);
    Comparer<float>::Compare(from, to, rectOfView(band), level, Zorvan::eGreater);
  }
}

int rowsOfBand(int width) {
  constexpr int bytesOfPixel = 5 * sizeof(float) + 1;  // three images of the frame, two between, the mask
  return std::max(8, (256 << 10) / (bytesOfPixel * width) - 2 * reach);
}

Size sizeBetween(int width) { return {width, rowsOfBand(width) + 2 * reach}; }

}  // namespace Bands
