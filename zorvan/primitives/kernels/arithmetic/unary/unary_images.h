#pragma once

#include "zorvan/primitives/kernels/common/arguments.h"

namespace Zorvan::Primitives {
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

template <class T>
inline UnaryImages unaryImages(const T* src, int srcStep, T* dst, int dstStep) {
  return {reinterpret_cast<const unsigned char*>(src), srcStep, reinterpret_cast<unsigned char*>(dst),
          dstStep, false};
}
template <class T>
inline UnaryImages unaryInPlace(T* srcDst, int step) {
  auto* const pixels = reinterpret_cast<unsigned char*>(srcDst);
  return {pixels, step, pixels, step, true};
}

/// The argument tests of all entries of the family, in their order.
inline int testUnary(const UnaryImages& images, Size roi) {
  if (images.src == nullptr || images.dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (images.srcStep < 1 || images.dstStep < 1) return ippStsStepErr;
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives
