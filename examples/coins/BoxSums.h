#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "zorvan/ipp.h"

namespace Coins {

/// Sums of an image's values over squares, each in constant time: the table holds, for every corner between
/// pixels, the sum of all values above and to the left of it.
class BoxSums {
 public:
  struct Sum {
    std::int64_t total;
    std::int64_t pixels;
  };

  explicit BoxSums(const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& image)
      : width_(image.width()), height_(image.height()), corners_(std::size_t(width_ + 1) * (height_ + 1)) {
    const auto pixels = image.buffer();
    for (std::int64_t r = 0; r < height_; ++r) {
      std::int64_t row = 0;
      for (std::int64_t c = 0; c < width_; ++c) {
        row += pixels[r * width_ + c];
        corners_[std::size_t((r + 1) * (width_ + 1) + c + 1)] = corner(r, c + 1) + row;
      }
    }
  }

  /// The square with the pixel (row, column) in its middle, `reach` pixels to each side, as far as it lies in
  /// the image.
  Sum around(std::int64_t row, std::int64_t column, int reach) const {
    const auto top = std::max<std::int64_t>(row - reach, 0), left = std::max<std::int64_t>(column - reach, 0);
    const auto bottom = std::min(row + reach + 1, height_), right = std::min(column + reach + 1, width_);
    return {corner(bottom, right) - corner(top, right) - corner(bottom, left) + corner(top, left),
            (bottom - top) * (right - left)};
  }

 private:
  std::int64_t corner(std::int64_t row, std::int64_t column) const {
    return corners_[std::size_t(row * (width_ + 1) + column)];
  }

  std::int64_t width_;
  std::int64_t height_;
  std::vector<std::int64_t> corners_;
};

}  // namespace Coins
