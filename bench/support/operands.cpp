#include "bench/support/operands.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>
#include <type_traits>
#include <vector>

namespace Zorvan::Bench {

namespace {

constexpr std::size_t pageBytes = 4096;
constexpr std::size_t placeBytes = 21 * 64;
constexpr int blobPixels = 32;

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : state_(seed * 0x9e3779b97f4a7c15u + 1) {}
  std::uint32_t operator()() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return static_cast<std::uint32_t>(state_ >> 32);
  }

 private:
  std::uint64_t state_;
};

}  // namespace

template <class T>
void makeNoise(T* pixels, Size size, std::uint32_t seed) {
  Generator next(seed);
  const std::int64_t count = pixelsOf(size);
  for (std::int64_t i = 0; i < count; ++i) {
    const int value = static_cast<int>(next() % 1024) - 384;
    if constexpr (std::is_unsigned_v<T>) {
      pixels[i] = static_cast<T>(std::min<std::int64_t>(std::numeric_limits<T>::max(), 1 + next() % 1024));
      if constexpr (sizeof(T) == 1) pixels[i] = static_cast<T>(1 + next() % 255);
    } else {
      pixels[i] = static_cast<T>(value == 0 ? 1 : value);
    }
  }
}

template void makeNoise<u8>(u8*, Size, std::uint32_t);
template void makeNoise<u16>(u16*, Size, std::uint32_t);
template void makeNoise<s16>(s16*, Size, std::uint32_t);
template void makeNoise<int>(int*, Size, std::uint32_t);
template void makeNoise<float>(float*, Size, std::uint32_t);

void makeRandomMask(u8* mask, Size size, std::uint32_t seed) {
  Generator next(seed);
  const std::int64_t count = pixelsOf(size);
  for (std::int64_t i = 0; i < count; ++i) mask[i] = (next() & 1) != 0 ? 255 : 0;
  mask[0] = 255;  // some operations report an error for a mask that selects no pixel
}

void makeBlobMask(u8* mask, Size size, std::uint32_t seed) {
  Generator next(seed);
  const int columns = size.width / blobPixels + 2;
  const int rows = size.height / blobPixels + 2;
  std::vector<float> grid(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
  for (float& value : grid) value = static_cast<float>(next() >> 8);

  std::vector<float> smooth;
  smooth.reserve(static_cast<std::size_t>(pixelsOf(size)));
  for (int y = 0; y < size.height; ++y) {
    const float* upper = grid.data() + y / blobPixels * columns;
    const float* lower = upper + columns;
    const float down = static_cast<float>(y % blobPixels) / blobPixels;
    for (int x = 0; x < size.width; ++x) {
      const int i = x / blobPixels;
      const float right = static_cast<float>(x % blobPixels) / blobPixels;
      smooth.push_back(std::lerp(std::lerp(upper[i], upper[i + 1], right),
                                 std::lerp(lower[i], lower[i + 1], right), down));
    }
  }

  std::vector<float> sorted = smooth;
  const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
  std::nth_element(sorted.begin(), middle, sorted.end());
  for (std::size_t i = 0; i < smooth.size(); ++i) mask[i] = smooth[i] >= *middle ? 255 : 0;
}

Memory::Memory(std::int64_t bytes, int operand) {
  const std::size_t place = static_cast<std::size_t>(operand) * placeBytes;
  const std::size_t needed = static_cast<std::size_t>(bytes) + place;
  const std::size_t blockBytes = (needed + pageBytes - 1) / pageBytes * pageBytes;
  block_.reset(std::aligned_alloc(pageBytes, blockBytes));
  if (!block_) throw std::bad_alloc();
  data_ = static_cast<std::byte*>(block_.get()) + place;
}

void Memory::Free::operator()(void* block) const { std::free(block); }

}  // namespace Zorvan::Bench
