#include "tests/reference/Unary.h"

#include <cmath>

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T>
int test(const T* src, int srcStep, const T* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (srcStep < 1 || dstStep < 1) return -16;
  return 0;
}

/// `pixelOf(pixel)` for every pixel.
template <class T, class PixelOf>
int eachPixel(const T* src, int srcStep, T* dst, int dstStep, Size roi, PixelOf pixelOf) {
  const int status = test(src, srcStep, dst, dstStep, roi);
  if (status != 0) return status;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) put(dst, dstStep, r, c, pixelOf(get(src, srcStep, r, c)));
  }
  return 0;
}

/// As above, with rows at whole pixels: a step of 1 to 3 puts all rows on one place.
template <class PixelOf>
int eachPixelAtWholePixels(const float* src, int srcStep, float* dst, int dstStep, Size roi,
                           PixelOf pixelOf) {
  const int status = test(src, srcStep, dst, dstStep, roi);
  if (status != 0) return status;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      put(dst, dstStep / 4 * 4, r, c, pixelOf(get(src, srcStep / 4 * 4, r, c)));
    }
  }
  return 0;
}

float squared(float x) { return x * x; }

}  // namespace

int squareAtWholePixels(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return eachPixelAtWholePixels(src, srcStep, dst, dstStep, roi, squared);
}
int squareAtWholePixelsInPlace(float* srcDst, int srcDstStep, Size roi) {
  return squareAtWholePixels(srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

int ippiSqr_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return eachPixel(src, srcStep, dst, dstStep, roi, squared);
}
int ippiSqr_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return ippiSqr_32f_C1R(srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

int ippiAbs_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return eachPixelAtWholePixels(src, srcStep, dst, dstStep, roi, [](float x) { return std::fabs(x); });
}
int ippiAbs_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return ippiAbs_32f_C1R(srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Reference
