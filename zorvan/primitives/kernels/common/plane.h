#pragma once

#include <cstdint>
#include <type_traits>

namespace Zorvan::Primitives {
namespace {

/// Pixels in rows that lie `step` bytes apart. The address and the step may be any: pixels are read and
/// written by loads and stores that take any address. Rows and columns may be negative where the memory
/// around the first pixel belongs to the image.
template <class T>
struct Plane {
  T* pixels;
  std::int64_t step;

  T* at(std::int64_t row, std::int64_t column = 0) const {
    using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
    return reinterpret_cast<T*>(reinterpret_cast<Byte*>(pixels) + row * step +
                                column * std::int64_t{sizeof(T)});
  }
  Plane from(std::int64_t row, std::int64_t column) const { return {at(row, column), step}; }
  operator Plane<const T>() const { return {pixels, step}; }
};

/// Pixels of any type as bytes.
inline const unsigned char* bytesOf(const void* pixels) { return static_cast<const unsigned char*>(pixels); }
inline unsigned char* bytesOf(void* pixels) { return static_cast<unsigned char*>(pixels); }

/// Calls `f` with the address of each row in turn, one argument for each plane.
template <class F, class... T>
[[gnu::always_inline]] inline void forEachRow(std::int64_t rows, F f, Plane<T>... planes) {
  for (std::int64_t r = 0; r < rows; ++r) f(planes.at(r)...);
}

}  // namespace
}  // namespace Zorvan::Primitives
