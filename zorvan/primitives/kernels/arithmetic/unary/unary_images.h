#pragma once

#include "zorvan/foundation/PixelTypes.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plane.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// Source and destination as bytes, as pixels may start at any address. In place both are the same.
struct UnaryImages {
  Plane<const u8> src;
  Plane<u8> dst;
  bool inPlace;

  UnaryImages atWholePixels() const {
    return {{src.pixels, wholePixels(src.step)}, {dst.pixels, wholePixels(dst.step)}, inPlace};
  }
};

/// Two entries with the same operation on images, a region and, for integers, a scale factor: from one image
/// to another and in place.
template <auto operation>
struct Entry {
  template <class T, class... Scale>
  int operator()(const T* src, int srcStep, T* dst, int dstStep, Size roi, Scale... scaleFactor) const {
    return run({{bytesOf(src), srcStep}, {bytesOf(dst), dstStep}, false}, roi, scaleFactor...);
  }
  template <class T, class... Scale>
  int operator()(T* srcDst, int step, Size roi, Scale... scaleFactor) const {
    return run({{bytesOf(srcDst), step}, {bytesOf(srcDst), step}, true}, roi, scaleFactor...);
  }

 private:
  template <class... Scale>
  [[gnu::noinline]] static int run(const UnaryImages& images, Size roi, Scale... scaleFactor) {
    if (images.src.pixels == nullptr || images.dst.pixels == nullptr) return ippStsNullPtrErr;
    if (isEmpty(roi)) return ippStsSizeErr;
    if (images.src.step < 1 || images.dst.step < 1) return ippStsStepErr;
    return operation(images, roi, scaleFactor...);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Unary
