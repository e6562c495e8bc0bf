#include "stars.h"

#include <algorithm>
#include <cmath>

namespace Stars {

using namespace Zorvan::Ipp::Image;

namespace {

// A square of this size does not fit into any star, so an opening removes them all.
constexpr Zorvan::Size largerThanStars{15, 15};
// Of normally distributed noise less than one pixel in a million is this many deviations above the mean.
constexpr double deviations = 6;

/// Noise is estimated on the darker part of the sky, in which there are no stars.
int thresholdOf(IppIMemory<u8>& flat) {
  const Zorvan::Rect whole = flat.SizeToRoi();
  IppIMemory<u8> everywhere(flat.size());
  Initializer::Fill<u8>(everywhere, 255, whole);
  const auto all = Statistic<u8>::MeanAndStandardDeviationWithMask(flat, everywhere, whole);
  IppIMemory<u8> dark(flat.size());
  const auto pixels = flat.buffer(), selected = dark.buffer();
  for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{flat.width()} * flat.height(); ++i) {
    selected[i] = pixels[i] < all.Mean + all.StdDev ? 255 : 0;
  }
  const auto noise = Statistic<u8>::MeanAndStandardDeviationWithMask(flat, dark, whole);
  return static_cast<int>(std::ceil(noise.Mean + deviations * noise.StdDev));
}

IppIMemory<u8> above(IppIMemory<u8>& image, int threshold) {
  const Zorvan::Rect whole = image.SizeToRoi();
  IppIMemory<float> exact(image.size());
  IppIMemory<u8> everywhere(image.size()), mask(image.size());
  Initializer::Fill<float>(exact, 0, whole);
  Initializer::Fill<u8>(everywhere, 255, whole);
  IppIArithmetic<u8>::AddWithMask(image, exact, everywhere, whole);
  Comparer<float>::Compare(exact, mask, whole, static_cast<float>(threshold), Zorvan::eGreater);
  return mask;
}

/// The objects of the mask, each removed from `rest` by a flood fill that returns its box and its area.
std::vector<Star> measure(IppIMemory<u8>& flat, IppIMemory<u8>& mask) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  IppIMemory<u8> rest = mask;  // a copy of the pixels
  std::vector<Star> stars;
  while (Statistic<u8>::Max(rest, whole) != 0) {
    // The brightest pixel that is left is the centre of the next star.
    const Zorvan::Point centre = Statistic<u8>::MinMaxIndexWithMask(flat, rest).MaxIndex;
    const Zorvan::ConnectionInfo object = ComputerVision::FloodFill<u8>(rest, centre, 0, whole);
    const Examples::Area box{object.rect.x, object.rect.y, object.rect.width, object.rect.height};
    IppIMemory<u8> pixels = Examples::viewOf(flat, box), selected = Examples::viewOf(mask, box);
    const auto mean =
        Statistic<u8>::MeanAndStandardDeviationWithMask(pixels, selected, Examples::rectOfView(box)).Mean;
    stars.push_back({centre, box, object.area, mean * object.area});
  }
  return stars;
}

}  // namespace

Result findStars(IppIMemory<u8>& picture) {
  const Zorvan::Rect whole = picture.SizeToRoi();
  Result result;
  result.background = IppIMemory<u8>(picture.size());
  IppIMorphology<u8>::Open(picture, result.background, whole, largerThanStars);
  result.flat = IppIMemory<u8>(picture.size());
  // The first image is subtracted from the second.
  IppIArithmetic<u8>::Subtract(result.background, picture, result.flat, whole);
  result.threshold = thresholdOf(result.flat);
  result.mask = IppIMemory<u8>(picture.size());
  result.mask = above(result.flat, result.threshold);
  result.stars = measure(result.flat, result.mask);
  std::stable_sort(result.stars.begin(), result.stars.end(),
                   [](const Star& a, const Star& b) { return a.light > b.light; });
  return result;
}

}  // namespace Stars
