#pragma once

#include <cstdint>
#include <type_traits>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Status.h"

namespace Zorvan::Primitives {
namespace {

using Ipp::ippStsNoErr;
using Ipp::ippStsNullPtrErr;
using Ipp::ippStsSizeErr;
using Ipp::ippStsStepErr;

inline bool isEmpty(Size roi) { return roi.width < 1 || roi.height < 1; }

/// The row `r` of an image whose rows lie `step` bytes apart. The step may be zero or negative.
template <class T>
inline T* rowAt(T* image, int step, std::int64_t r) {
  using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(image) + r * step);
}

}  // namespace
}  // namespace Zorvan::Primitives
