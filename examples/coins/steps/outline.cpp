#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> outline(IppIMemory<u8>& picture) {
  const Zorvan::Rect whole = picture.SizeToRoi();
  IppIMemory<u8> darkest(picture.size());
  IppIMemory<u8> brightest(picture.size());
  IppIMorphology<u8>::Erode(picture, darkest, whole, {3, 3});
  IppIMorphology<u8>::Dilate(picture, brightest, whole, {3, 3});
  // The first image is subtracted from the second, in place.
  IppIArithmetic<u8>::Subtract(darkest, brightest, whole);
  return brightest;
}

}  // namespace Coins
