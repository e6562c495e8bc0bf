#pragma once

#include "zorvan/primitives/kernels/common/arguments.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// Source and destination as bytes, as pixels may start at any address. In place both are the same.
struct UnaryImages {
  const unsigned char* src;
  int srcStep;
  unsigned char* dst;
  int dstStep;
  bool inPlace;

  /// `use(src, dst)` for every row.
  template <class Use>
  void eachRow(std::int64_t rows, Use use) const {
    for (std::int64_t r = 0; r < rows; ++r) use(rowAt(src, srcStep, r), rowAt(dst, dstStep, r));
  }
};

/// Two entries with the same operation on images, a region and, for integers, a scale factor: from one image
/// to another and in place.
template <auto operation>
struct Entry {
  template <class T, class... Scale>
  int operator()(const T* src, int srcStep, T* dst, int dstStep, Size roi, Scale... scaleFactor) const {
    return run({reinterpret_cast<const unsigned char*>(src), srcStep, reinterpret_cast<unsigned char*>(dst),
                dstStep, false},
               roi, scaleFactor...);
  }
  template <class T, class... Scale>
  int operator()(T* srcDst, int step, Size roi, Scale... scaleFactor) const {
    auto* const pixels = reinterpret_cast<unsigned char*>(srcDst);
    return run({pixels, step, pixels, step, true}, roi, scaleFactor...);
  }

 private:
  template <class... Scale>
  static int run(const UnaryImages& images, Size roi, Scale... scaleFactor) {
    if (images.src == nullptr || images.dst == nullptr) return ippStsNullPtrErr;
    if (isEmpty(roi)) return ippStsSizeErr;
    if (images.srcStep < 1 || images.dstStep < 1) return ippStsStepErr;
    return operation(images, roi, scaleFactor...);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Unary
