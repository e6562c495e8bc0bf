#include "tests/reference/Unary.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"
#include "tests/reference/Scaling.h"

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

/// The same, with rows at whole pixels: with a step of 1 to 3 all rows have one address.
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

template <class T>
int squarePixels(const T* src, int srcStep, T* dst, int dstStep, Size roi, int f) {
  return eachPixel(src, srcStep, dst, dstStep, roi,
                   [f](T x) { return scaled<T>(std::int64_t{x} * std::int64_t{x}, f); });
}

/// The root of a pixel that is not negative, to nearest with ties to even. A double distinguishes all roots
/// of 16-bit values from half-integers. Far out, 16-bit pixels are not looked at closely.
template <class T>
T scaledRoot(T x, int f) {
  constexpr T highest = std::numeric_limits<T>::max();
  if (x == 0 || f > 20) return 0;
  if (f < (sizeof(T) == 1 ? -20 : -14)) return highest;
  const double root = std::nearbyint(std::ldexp(std::sqrt(static_cast<double>(x)), -f));
  return root < highest ? static_cast<T>(root) : highest;
}

template <class T>
int rootPixels(const T* src, int srcStep, T* dst, int dstStep, Size roi, int f) {
  bool negative = false;
  const int status = eachPixel(src, srcStep, dst, dstStep, roi, [&](T x) {
    negative |= x < 0;
    return x < 0 ? T{0} : scaledRoot(x, f);
  });
  return status == 0 && negative ? 3 : status;
}

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

int ippiSqr_8u_C1RSfs(const u8* src, int srcStep, u8* dst, int dstStep, Size roi, int scaleFactor) {
  return squarePixels(src, srcStep, dst, dstStep, roi, scaleFactor);
}
int ippiSqr_8u_C1IRSfs(u8* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  return squarePixels<u8>(srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}

int ippiSqr_16u_C1RSfs(const u16* src, int srcStep, u16* dst, int dstStep, Size roi, int scaleFactor) {
  return squarePixels(src, srcStep, dst, dstStep, roi, scaleFactor);
}
int ippiSqr_16u_C1IRSfs(u16* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  return squarePixels<u16>(srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}

int ippiSqr_16s_C1RSfs(const s16* src, int srcStep, s16* dst, int dstStep, Size roi, int scaleFactor) {
  return squarePixels(src, srcStep, dst, dstStep, roi, scaleFactor);
}
int ippiSqr_16s_C1IRSfs(s16* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  return squarePixels<s16>(srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}

int ippiSqrt_8u_C1RSfs(const u8* src, int srcStep, u8* dst, int dstStep, Size roi, int scaleFactor) {
  return rootPixels(src, srcStep, dst, dstStep, roi, scaleFactor);
}
int ippiSqrt_8u_C1IRSfs(u8* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  return rootPixels<u8>(srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}

int ippiSqrt_16u_C1RSfs(const u16* src, int srcStep, u16* dst, int dstStep, Size roi, int scaleFactor) {
  return rootPixels(src, srcStep, dst, dstStep, roi, scaleFactor);
}
int ippiSqrt_16u_C1IRSfs(u16* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  return rootPixels<u16>(srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}

int ippiSqrt_16s_C1RSfs(const s16* src, int srcStep, s16* dst, int dstStep, Size roi, int scaleFactor) {
  return rootPixels(src, srcStep, dst, dstStep, roi, scaleFactor);
}
int ippiSqrt_16s_C1IRSfs(s16* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  return rootPixels<s16>(srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}

int ippiSqrt_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  bool negative = false;
  const int status = eachPixelAtWholePixels(src, srcStep, dst, dstStep, roi, [&](float x) {
    negative |= x < 0;
    return std::sqrt(x);
  });
  return status == 0 && negative ? 3 : status;
}
int ippiSqrt_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return ippiSqrt_32f_C1R(srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

int ippiAbs_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return eachPixelAtWholePixels(src, srcStep, dst, dstStep, roi, [](float x) { return std::fabs(x); });
}
int ippiAbs_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return ippiAbs_32f_C1R(srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Reference
