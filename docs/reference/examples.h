#pragma once

// Common to the examples of the reference: images from rows of pixels, and what the examples expect.

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>
#include <vector>

#include "zorvan/ipp.h"

namespace ReferenceExamples {

using namespace Zorvan;
using namespace Zorvan::Ipp;
using namespace Zorvan::Ipp::Image;
using Zorvan::IppS::IppSMemory;

template <class T>
using Rows = std::vector<std::vector<T>>;

/// A new image with these rows of pixels.
template <class T>
IppIMemory<T> image(const Rows<T>& rows) {
  IppIMemory<T> made(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()));
  auto pixel = made.buffer().get();
  for (const auto& row : rows) {
    for (const T value : row) *pixel++ = value;
  }
  return made;
}

/// The image has these rows of pixels. Quotients and roots of floats may differ in their last bits.
template <class T>
void expectRows(const IppIMemory<T>& image, const Rows<std::common_type_t<T>>& rows) {
  ASSERT_EQ(image.height(), static_cast<int>(rows.size()));
  ASSERT_EQ(image.width(), static_cast<int>(rows[0].size()));
  const auto pixels = image.buffer();
  for (int row = 0; row < image.height(); ++row) {
    for (int column = 0; column < image.width(); ++column) {
      const double pixel = pixels[row * image.width() + column], expected = rows[row][column];
      const bool isEqual = pixel == expected || std::fabs(pixel - expected) < 1e-5 * std::fabs(expected);
      EXPECT_TRUE(isEqual) << "row " << row << ", column " << column << ": " << pixel << ", not " << expected;
    }
  }
}

}  // namespace ReferenceExamples
