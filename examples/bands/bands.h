#pragma once

#include "region.h"
#include "zorvan/ipp.h"

// Five operations over an image, once over all of it and once in bands of rows.
//
// A large image does not fit into the processor's caches, so each operation over all of it reads its sources
// from memory and writes its result there. In bands the next operation finds the result of the one before
// still in the cache.

namespace Bands {

using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

/// A picture of floats, what it shows without light, and the factor for each pixel. All have one size.
struct Frame {
  explicit Frame(Zorvan::Size size);

  IppIMemory<float> picture, dark, gain;
};

/// The results between the operations.
struct Between {
  explicit Between(Zorvan::Size size);

  IppIMemory<float> difference, dilated;
};

/// Marks what differs by more than `level` from the dark picture: |(picture - dark) * gain|, dilated by 3 by
/// 3, is above it. `between` has the size of the frame.
void markAtOnce(Frame& frame, float level, Between& between, IppIMemory<u8>& mask);

/// The same calls with the same result, for one band of rows after the other. `between` has the size
/// `sizeBetween`.
void markInBands(Frame& frame, float level, Between& between, IppIMemory<u8>& mask);

/// The rows of a band, at least 8. What the five operations use of them fits half of a second-level cache of
/// 512 KiB.
int rowsOfBand(int width);

/// A band, and the rows above and below it that the dilation needs.
Zorvan::Size sizeBetween(int width);

}  // namespace Bands
