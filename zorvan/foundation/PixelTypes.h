#pragma once

#include <cstdint>

namespace Zorvan {

// The pixel types that have no name of their own in C++. Pixels and mask bytes are `u8`, `u16` and `s16` in
// the whole library; `std::uint8_t` and the others are integers of that width that are not pixels.
using u8 = std::uint8_t;    ///< 8-bit pixels, and masks
using u16 = std::uint16_t;  ///< unsigned 16-bit pixels
using s16 = std::int16_t;   ///< signed 16-bit pixels

}  // namespace Zorvan

/// Applies X to every pixel type that images can be allocated, filled and copied with.
#define ZORVAN_IPP_PIXEL_TYPES(X) \
  X(::Zorvan::u8)                 \
  X(::Zorvan::u16)                \
  X(::Zorvan::s16)                \
  X(int)                          \
  X(float)

/// Applies X to every element type that the containers exist for.
#define ZORVAN_IPP_ELEMENT_TYPES(X) \
  ZORVAN_IPP_PIXEL_TYPES(X)         \
  X(unsigned int)                   \
  X(double)                         \
  X(std::int64_t)                   \
  X(std::uint64_t)
