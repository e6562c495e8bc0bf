#include "noisy_frames.h"

#include <algorithm>
#include <cstdint>

namespace Coins {
namespace {

using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

/// Sums of four evenly spread figures, which come close to the bell curve.
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

std::int64_t pixelsOf(Zorvan::Size size) { return std::int64_t{size.width} * size.height; }

u8 toByte(int value) { return static_cast<u8>(std::clamp(value, 0, 255)); }

}  // namespace

std::deque<IppIMemory<u8>> noisyFrames(const IppIMemory<u8>& picture, int count) {
  Noise noise;
  const auto source = picture.buffer();
  std::deque<IppIMemory<u8>> frames;
  for (int frame = 0; frame < count; ++frame) {
    const auto target = frames.emplace_back(picture.size()).buffer();
    for (std::int64_t at = 0; at < pixelsOf(picture.size()); ++at)
      target[at] = toByte(source[at] + noise.next());
  }
  return frames;
}

IppIMemory<u8> rounded(const IppIMemory<float>& image) {
  IppIMemory<u8> bytes(image.size());
  const auto source = image.buffer();
  const auto target = bytes.buffer();
  for (std::int64_t at = 0; at < pixelsOf(image.size()); ++at) {
    target[at] = toByte(static_cast<int>(source[at] + 0.5F));
  }
  return bytes;
}

}  // namespace Coins
