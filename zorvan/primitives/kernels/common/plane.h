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

/// Calls `f` with each row of the planes, one argument for each plane: with what its `at` returns.
template <class F, class... Planes>
[[gnu::always_inline]] inline void forEachRow(std::int64_t rows, F f, Planes... planes) {
  for (std::int64_t r = 0; r < rows; ++r) f(planes.at(r)...);
}

/// Unrolled, for rows of a few vectors: an iteration for each takes longer than such a row.
template <int unrolledBy, class F, class... Planes>
[[gnu::always_inline]] inline void forEachShortRow(std::int64_t rows, F f, Planes... planes) {
  std::int64_t r = 0;
  for (; r + unrolledBy <= rows; r += unrolledBy) {
    for (int i = 0; i < unrolledBy; ++i) f(planes.at(r + i)...);
  }
  for (; r < rows; ++r) f(planes.at(r)...);
}

}  // namespace
}  // namespace Zorvan::Primitives
