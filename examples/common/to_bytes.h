#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "zorvan/ipp.h"

namespace Examples {

/// The pixels rounded to whole numbers and saturated to 0 to 255.
inline Zorvan::Ipp::Image::IppIMemory<Zorvan::u8> toBytes(
    const Zorvan::Ipp::Image::IppIMemory<float>& image) {
  Zorvan::Ipp::Image::IppIMemory<Zorvan::u8> bytes(image.size());
  const auto from = image.buffer();
  const auto to = bytes.buffer();
  for (std::int64_t i = 0; i < std::int64_t{image.width()} * image.height(); ++i) {
    to[i] = static_cast<Zorvan::u8>(std::lround(std::clamp(from[i], 0.0F, 255.0F)));
  }
  return bytes;
}

}  // namespace Examples
