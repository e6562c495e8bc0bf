#pragma once

#include <deque>

#include "zorvan/ipp.h"

namespace Coins {

/// Copies of the picture with noise, like frames of a camera with a bad sensor. The noise has a standard
/// deviation of about 24 and is the same in every run.
std::deque<Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>> noisyFrames(
    const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture, int count);

}  // namespace Coins
