#pragma once

#include <vector>

#include "region.h"
#include "zorvan/ipp.h"

namespace Stars {

using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

struct Star {
  Zorvan::Point centre;  ///< its brightest pixel: column and row
  Examples::Area box;
  double area;   ///< pixels above the threshold
  double light;  ///< sum of their values above the background
};

struct Result {
  IppIMemory<u8> background;  ///< the sky without its stars
  IppIMemory<u8> flat;        ///< the picture without the background
  IppIMemory<u8> mask;        ///< 255 for pixels of stars
  int threshold;              ///< pixels of `flat` above it belong to stars
  std::vector<Star> stars;    ///< the brightest first
};

/// Finds the stars of a picture and measures them.
Result findStars(IppIMemory<u8>& picture);

}  // namespace Stars
