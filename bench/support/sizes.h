#pragma once

#include <charconv>
#include <string_view>
#include <vector>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Bench {

inline const std::vector<Size> usualSizes = {{64, 64}, {640, 480}, {1920, 1080}, {4096, 4096}, {1921, 1081}};
inline const std::vector<Size> quickSizes = {{64, 64}, {640, 480}};

/// Pairs of sizes, 5 % apart, on both sides of the limits in bytes from which operations take another path.
/// The limit between the two sizes of a pair depends on the pixel type.
inline const std::vector<Size> limitSizes = {
    {256, 340},   {256, 356},    // 0x2AAA blocks of 8 floats
    {512, 400},   {512, 420},    // 1 MiB in an image of floats and one of bytes
    {512, 500},   {512, 524},    // 1 MiB of floats, 512 KiB of 16-bit pixels
    {1024, 750},  {1024, 786},   // 6 MiB in two images of floats
    {1024, 1000}, {1024, 1048},  // 1 MiB of bytes, 4 MiB of floats
    {1536, 1000}, {1536, 1048},  // 3 MiB in two images of bytes, 6 MiB of floats
    {2048, 1500}, {2048, 1572},  // 6 MiB of 16-bit pixels, 24 MiB in two images of floats
    {1792, 1000}, {1792, 1048},  // 7 MiB of floats
    {2048, 2000}, {2048, 2096},  // 4 MiB of bytes
    {2560, 1400}, {2560, 1468},  // 7 MiB of 16-bit pixels
    {3072, 2000}, {3072, 2096},  // 6 MiB of bytes
    {3584, 2000}, {3584, 2096},  // 7 MiB of bytes
    {4096, 3000}, {4096, 3144},  // 24 MiB in two images of bytes
};

/// All widths on both sides of two cache lines of bytes, and an image of odd sides beside one whose rows are
/// whole lines.
inline std::vector<Size> shapeSizes() {
  std::vector<Size> sizes;
  for (int width = 1; width <= 130; ++width) sizes.push_back({width, 480});
  sizes.insert(sizes.end(), {{192, 480}, {1921, 1081}, {1984, 1081}});
  return sizes;
}

/// The sizes of a named set or of a list such as 640x480,64x64. Empty if the text is wrong.
inline std::vector<Size> sizesNamed(std::string_view text) {
  if (text == "usual") return usualSizes;
  if (text == "quick") return quickSizes;
  if (text == "limits") return limitSizes;
  if (text == "shapes") return shapeSizes();
  std::vector<Size> sizes;
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto number = [&](int& value) {
    const auto [next, error] = std::from_chars(at, end, value);
    at = next;
    return error == std::errc() && value > 0;
  };
  const auto sign = [&](char expected) { return at != end && *at++ == expected; };
  for (;;) {
    Size size{};
    if (!number(size.width) || !sign('x') || !number(size.height)) return {};
    sizes.push_back(size);
    if (at == end) return sizes;
    if (!sign(',')) return {};
  }
}

}  // namespace Zorvan::Bench
