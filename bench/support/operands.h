#pragma once

// The operands of an operation: images with a role, their memory and their contents.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Bench {

/// The minimal access of an operation to an operand's bytes. The streaming limit moves these bytes.
enum class Access { read, write, update };

inline std::int64_t pixelsOf(Size size) { return std::int64_t{size.width} * size.height; }

/// Values on both sides of the range of 8 bits where the type has them, none zero, all exact as float.
template <class T>
void makeNoise(T* pixels, Size size, std::uint32_t seed);

/// The first pixel is selected; each other pixel is selected with a probability of one half.
void makeRandomMask(u8* mask, Size size, std::uint32_t seed);

/// Selects half of the pixels, in areas with a diameter of some tens of pixels: smooth noise above its
/// median.
void makeBlobMask(u8* mask, Size size, std::uint32_t seed);

template <class T, Access A>
struct Operand {
  using Pixel = T;
  static constexpr Access access = A;
  static constexpr int pixelBytes = sizeof(T);
  static void prepare(T* pixels, Size size, std::uint32_t seed) { makeNoise(pixels, size, seed); }
  static bool agree(const T* pixels, const T* others, std::size_t count) {
    return std::memcmp(pixels, others, count * sizeof(T)) == 0;
  }
};

template <class T>
struct Read : Operand<T, Access::read> {};
template <class T>
struct Write : Operand<T, Access::write> {};
template <class T>
struct Update : Operand<T, Access::update> {};

/// No pixel is negative.
template <class O>
struct Positive : O {
  static void prepare(typename O::Pixel* pixels, Size size, std::uint32_t seed) {
    O::prepare(pixels, size, seed);
    for (std::int64_t i = 0; i < pixelsOf(size); ++i) pixels[i] = std::abs(pixels[i]);
  }
};

/// All pixels are 1 or -1: factors and divisors that can be applied repeatedly.
template <class O>
struct Unit : O {
  static void prepare(typename O::Pixel* pixels, Size size, std::uint32_t seed) {
    O::prepare(pixels, size, seed);
    for (std::int64_t i = 0; i < pixelsOf(size); ++i) pixels[i] = std::copysign(1.0F, pixels[i]);
  }
};

/// No pixel is even. A quotient by an odd divisor is never halfway between two integers, so all modes of
/// rounding to nearest have the same result.
template <class O>
struct Odd : O {
  static void prepare(typename O::Pixel* pixels, Size size, std::uint32_t seed) {
    O::prepare(pixels, size, seed);
    for (std::int64_t i = 0; i < pixelsOf(size); ++i) pixels[i] |= 1;
  }
};

/// Results that are computed from an estimate of the processor: they may differ by some units in the last
/// place.
template <class O>
struct Estimated : O {
  static bool agree(const float* pixels, const float* others, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      if (!(std::abs(pixels[i] - others[i]) <= 1e-6F * std::abs(others[i]))) return false;
    }
    return true;
  }
};

struct FullMask : Operand<u8, Access::read> {
  static void prepare(u8* mask, Size size, std::uint32_t) {
    std::memset(mask, 255, static_cast<std::size_t>(pixelsOf(size)));
  }
};
struct RandomMask : Operand<u8, Access::read> {
  static void prepare(u8* mask, Size size, std::uint32_t seed) { makeRandomMask(mask, size, seed); }
};
struct BlobMask : Operand<u8, Access::read> {
  static void prepare(u8* mask, Size size, std::uint32_t seed) { makeBlobMask(mask, size, seed); }
};

/// Memory on ordinary pages, like the images of most programs.
class Memory {
 public:
  /// The operands of one call start at different offsets within a page. Otherwise stores to an operand would
  /// slow down loads from another one whose address has the same low bits.
  Memory(std::int64_t bytes, int operand);
  std::byte* data() const { return data_; }

 private:
  struct Free {
    void operator()(void* block) const;
  };
  std::unique_ptr<void, Free> block_;
  std::byte* data_;
};

/// Where the rows of an image begin. `tight`: rows without gaps. `padded`: each row at the begin of a cache
/// line. `odd`: the first row one pixel after it, and an odd number of pixels from row to row.
enum class Layout { tight, padded, odd };
inline constexpr const char* layoutNames[] = {"tight", "padded", "odd"};

constexpr int stepPixels(Layout layout, int width, int pixelBytes) {
  constexpr int lineBytes = 64;
  switch (layout) {
    case Layout::padded:
      return (width * pixelBytes / lineBytes + 1) * (lineBytes / pixelBytes);
    case Layout::odd:
      return (width + 1) | 1;
    default:
      return width;
  }
}

/// The images of one operation at one size, in the order of its parameters.
template <class... Operands>
class OperandSet {
 public:
  explicit OperandSet(Size size, Layout layout = Layout::tight)
      : OperandSet(size, layout, std::index_sequence_for<Operands...>{}) {}

  bool agreesWith(const OperandSet& other) const {
    return agreesWith(other, std::index_sequence_for<Operands...>{});
  }

  Size size() const { return size_; }
  Rect rect() const { return {0, 0, size_.width, size_.height}; }
  std::tuple<Ipp::Image::IppIMemory<typename Operands::Pixel>...>& images() { return images_; }
  const std::tuple<typename Operands::Pixel*...>& pixels() const { return pixels_; }

 private:
  template <std::size_t... i>
  OperandSet(Size size, Layout layout, std::index_sequence<i...>)
      : size_(size),
        memory_{Memory((pixelsOf(wholeOf<Operands>(size, layout)) + 1) * Operands::pixelBytes,
                       static_cast<int>(i))...},
        pixels_{reinterpret_cast<typename Operands::Pixel*>(memory_[i].data()) +
                (layout == Layout::odd ? 1 : 0)...} {
    // Assigned, not copied: a copy of an image would have its own pixels.
    ((std::get<i>(images_) = std::remove_reference_t<decltype(std::get<i>(images_))>::CreateContainer(
          std::get<i>(pixels_), wholeOf<Operands>(size, layout))),
     ...);
    (Operands::prepare(std::get<i>(pixels_), wholeOf<Operands>(size, layout),
                       static_cast<std::uint32_t>(i) + 1),
     ...);
  }

  /// The image with the gaps after its rows; the operations run on a region of it.
  template <class Operand>
  static Size wholeOf(Size size, Layout layout) {
    return {stepPixels(layout, size.width, Operand::pixelBytes), size.height};
  }

  template <std::size_t... i>
  bool agreesWith(const OperandSet& other, std::index_sequence<i...>) const {
    const auto count = static_cast<std::size_t>(pixelsOf(size_));
    return (Operands::agree(std::get<i>(pixels_), std::get<i>(other.pixels_), count) && ...);
  }

  Size size_;
  Memory memory_[sizeof...(Operands)];
  std::tuple<typename Operands::Pixel*...> pixels_;
  std::tuple<Ipp::Image::IppIMemory<typename Operands::Pixel>...> images_;
};

}  // namespace Zorvan::Bench
