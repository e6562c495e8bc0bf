#pragma once

#include <deque>

#include "zorvan/ipp.h"

namespace Coins {

/// The picture as a camera with a bad sensor would see it, several times: every pixel of every frame is off
/// by a random figure of a standard deviation of about 24, the same ones in every run.
std::deque<Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>> noisyFrames(
    const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture, int count);

/// Values as bytes, to look at.
Zorvan::Ipp::Image::IppIMemory<Zorvan::u8> rounded(const Zorvan::Ipp::Image::IppIMemory<float>& image);

}  // namespace Coins
