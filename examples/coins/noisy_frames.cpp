#include "noisy_frames.h"

#include <algorithm>
#include <cstdint>

namespace Coins {
namespace {

using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

/// Sums of four uniform random numbers, which approximate a normal distribution.
class Noise {
 public:
  int next() {
    int sum = 0;
    for (int i = 0; i < 4; ++i) {
      state_ = state_ * 1664525u + 1013904223u;
      sum += static_cast<int>(state_ >> 24) % 42;
    }
    return sum - 82;
  }

 private:
  std::uint32_t state_ = 1;
};

}  // namespace

std::deque<IppIMemory<u8>> noisyFrames(const IppIMemory<u8>& picture, int count) {
  Noise noise;
  const auto source = picture.buffer();
  const std::int64_t pixels = std::int64_t{picture.width()} * picture.height();
  std::deque<IppIMemory<u8>> frames;
  for (int frame = 0; frame < count; ++frame) {
    const auto target = frames.emplace_back(picture.size()).buffer();
    for (std::int64_t at = 0; at < pixels; ++at)
      target[at] = static_cast<u8>(std::clamp(source[at] + noise.next(), 0, 255));
  }
  return frames;
}

}  // namespace Coins
