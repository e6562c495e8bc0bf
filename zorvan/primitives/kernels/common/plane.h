#pragma once

#include <cstdint>
#include <type_traits>

namespace Zorvan::Primitives {
namespace {

/// Pixels in rows that lie `step` bytes apart, from any address: pixels are reached through loads and stores
/// that take any address. Rows and columns may be negative where the memory around the first pixel is known
/// to be there.
template <class T>
struct Plane {
  T* pixels;
  std::int64_t step;

  T* at(std::int64_t row, std::int64_t column) const {
    using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
    return reinterpret_cast<T*>(reinterpret_cast<Byte*>(pixels) + row * step +
                                column * std::int64_t{sizeof(T)});
  }
  Plane from(std::int64_t row, std::int64_t column) const { return {at(row, column), step}; }
  operator Plane<const T>() const { return {pixels, step}; }
};

}  // namespace
}  // namespace Zorvan::Primitives
