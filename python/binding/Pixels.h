#pragma once

// The pixel types of each family of operations in the facades, and their numpy types.

#include <cstdint>

#include "numpy_api.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Python {

/// Numpy's number of a pixel type.
template <class T>
inline constexpr int numpyType = py::detail::npy_format_descriptor<T>::value;

/// A set of numpy types, one bit for each number.
using TypeSet = std::uint32_t;

constexpr TypeSet setOf(int numpyType) { return TypeSet{1} << numpyType; }

/// A list of pixel types.
template <class... T>
struct Pixels {
  static constexpr TypeSet set = (setOf(numpyType<T>) | ...);

  /// Calls `body` with the pixel type of the numpy type `number`, which must be in the list.
  template <class Body>
  static void with(int number, Body body) {
    static_cast<void>(((number == numpyType<T> && (body.template operator()<T>(), true)) || ...));
  }
};

template <class None, class... T>
using PixelsAfter = Pixels<T...>;
#define ZORVAN_IPP_NEXT(T) , T
using AllPixels = PixelsAfter<void ZORVAN_IPP_PIXEL_TYPES(ZORVAN_IPP_NEXT)>;
#undef ZORVAN_IPP_NEXT

using ConvertPixels = Pixels<u8, float>;  ///< of the results; the source is of int
using ArithmeticPixels = Pixels<u8, float>;
using LogicalPixels = Pixels<u8, float>;
using ComparerPixels = Pixels<float>;
using StatisticPixels = Pixels<u8, u16, float>;
using MorphologyPixels = Pixels<u8, float>;
using FilteringPixels = Pixels<u8, s16, float>;
using FloodFillPixels = Pixels<u8, u16, int, float>;

/// A mask selects by bytes that are not zero, so numpy's booleans can be used as masks.
inline constexpr TypeSet maskTypes = setOf(numpyType<u8>) | setOf(NPY_BOOL);

}  // namespace Zorvan::Python
