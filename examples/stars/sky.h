#pragma once

#include <vector>

#include "zorvan/ipp.h"

namespace Stars {

using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

/// A star of the drawn sky: where its light is centred, and how much there is of it.
struct DrawnStar {
  int column;
  int row;
  double light;  ///< sum of the pixel values that it adds
};

struct Sky {
  IppIMemory<u8> picture;
  std::vector<DrawnStar> stars;
};

/// A night sky of 640 by 480 pixels: a glow that rises towards the horizon, noise, and stars that do not
/// touch. The same seed draws the same sky.
Sky drawSky(unsigned seed);

}  // namespace Stars
