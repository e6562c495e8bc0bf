#pragma once

// Calls of facades, each beside the definition of what it computes.

#include <string>
#include <vector>

#include "zorvan/ipp.h"

namespace Zorvan::Test {

/// The arguments of a call that are neither images nor the region.
struct Fixed {
  float value;
  int comparison;
  Size mask;
  Point seed;
  bool use3x3, isConstantBorder;

  template <class T>
  T as() const {
    return static_cast<T>(value);
  }
};

/// The numbers that a call returns.
using Numbers = std::vector<double>;

template <class T>
struct Operand {
  T* pixels;
  int step;
};

/// The stride of an image of this size without gaps; of an empty one, which is never read, that of one pixel.
template <class T>
int tightStep(Size size) {
  const int columns = size.height < 1 || size.width < 1 ? 1 : size.width;
  return columns * static_cast<int>(sizeof(T));
}

enum class Sharing { none, oneImage };

using Before = std::string(const Fixed& fixed, Rect rect, Size first);

/// What an operation tests between the region and the entry's arguments; the result is the text that it
/// throws.
inline std::string nothing(const Fixed&, Rect, Size) { return ""; }

/// A facade that writes a region of its images or returns numbers, beside its definition.
template <class... T>
struct RegionCall {
  const char* name;
  void (*facade)(const Fixed&, Numbers&, Rect, Ipp::Image::IppIMemory<T>&...);
  int (*plain)(const Fixed&, Numbers&, Size, Operand<T>...);
  Sharing sharing = Sharing::none;
  double tolerance = 0;
  Before* before = nothing;
  bool allocatesForImage = false;   ///< memory of the size of the first image
  bool beginsWithNewImage = false;  ///< of that size, before any test
};

/// A facade that returns a new image. The definition writes the region of the last operand.
template <class Result, class... T>
struct NewImageCall {
  const char* name;
  Ipp::Image::IppIMemory<Result> (*facade)(const Fixed&, Rect, bool sizeFromRect,
                                           Ipp::Image::IppIMemory<T>&...);
  int (*plain)(const Fixed&, Numbers&, Size, Operand<T>..., Operand<Result>);
  bool keepsOrigin;
  Before* before = nothing;
};

}  // namespace Zorvan::Test
