#pragma once

#include <cstdint>
#include <cstring>

namespace Zorvan::Reference {

/// Pixel (row, column) of an image whose rows lie `step` bytes apart, at any address.
template <class T>
T get(const T* image, int step, int row, int column) {
  T value;
  std::memcpy(
      &value,
      reinterpret_cast<const char*>(image) + std::int64_t{row} * step + column * std::int64_t{sizeof(T)},
      sizeof value);
  return value;
}

template <class T>
void put(T* image, int step, int row, int column, T value) {
  std::memcpy(reinterpret_cast<char*>(image) + std::int64_t{row} * step + column * std::int64_t{sizeof(T)},
              &value, sizeof value);
}

}  // namespace Zorvan::Reference
