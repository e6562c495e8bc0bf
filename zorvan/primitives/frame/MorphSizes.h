#pragma once

// The memory that callers of the morphology entries provide. One rule for two numbers: the entries calculate
// in 32 bits, where large sizes wrap; the facades need exact sizes to allocate.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {
namespace {

__extension__ typedef __int128 Int128;

/// Wraps at 32 bits, as the entries do.
class WrappingNumber {
 public:
  constexpr WrappingNumber(std::int32_t value) : bits_(static_cast<std::uint32_t>(value)) {}
  constexpr std::int32_t value() const { return static_cast<std::int32_t>(bits_); }

  friend constexpr WrappingNumber operator+(WrappingNumber a, WrappingNumber b) {
    return of(a.bits_ + b.bits_);
  }
  friend constexpr WrappingNumber operator-(WrappingNumber a, WrappingNumber b) {
    return of(a.bits_ - b.bits_);
  }
  friend constexpr WrappingNumber operator*(WrappingNumber a, WrappingNumber b) {
    return of(a.bits_ * b.bits_);
  }
  friend constexpr bool operator<(WrappingNumber a, WrappingNumber b) { return a.value() < b.value(); }
  friend constexpr WrappingNumber align32(WrappingNumber n) { return of((n.bits_ + 31u) & ~31u); }

 private:
  static constexpr WrappingNumber of(std::uint32_t bits) {
    return WrappingNumber(static_cast<std::int32_t>(bits));
  }
  std::uint32_t bits_;
};

/// Exact for any region and mask.
class ExactNumber {
 public:
  constexpr ExactNumber(std::int32_t value) : value_(value) {}
  constexpr bool fits() const { return value_ <= 0x7FFFFFFF; }

  friend constexpr ExactNumber operator+(ExactNumber a, ExactNumber b) { return of(a.value_ + b.value_); }
  friend constexpr ExactNumber operator-(ExactNumber a, ExactNumber b) { return of(a.value_ - b.value_); }
  friend constexpr ExactNumber operator*(ExactNumber a, ExactNumber b) { return of(a.value_ * b.value_); }
  friend constexpr bool operator<(ExactNumber a, ExactNumber b) { return a.value_ < b.value_; }
  friend constexpr ExactNumber align32(ExactNumber n) { return of((n.value_ + 31) / 32 * 32); }

 private:
  static constexpr ExactNumber of(Int128 value) {
    ExactNumber number(0);
    number.value_ = value;
    return number;
  }
  Int128 value_;
};

template <class Number>
struct MorphSizes {
  Number spec, buffer;
};

/// The sizes for one mask and region. `pixelBytes` is 1 or 4.
template <class Number>
struct MorphMeasures {
  Number pixelBytes, roiWidth, roiHeight;
  Number width, height;  ///< of the mask, padded to odd numbers
  Number anchorX, anchorY;

  constexpr MorphMeasures(Size roi, Size mask, int bytes)
      : pixelBytes(bytes),
        roiWidth(roi.width),
        roiHeight(roi.height),
        width(mask.width | 1),
        height(mask.height | 1),
        anchorX(mask.width >> 1),
        anchorY(mask.height >> 1) {}

  constexpr Number cells() const { return width * height; }
  constexpr Number specSize() const { return cells() + Number(4) * height * (width + 1) + 136; }

  /// The ring of rows of solid masks, and a row of the mask's width.
  constexpr Number ringSize() const {
    const Number slack = Number(1) < pixelBytes ? 64 : 16;
    return align32(roiWidth * pixelBytes) * height + align32(width * pixelBytes) + slack;
  }

  /// Pixels of the largest copy with a border: the whole region, or the largest stripe.
  constexpr Number builtPixels() const {
    const Number builtWidth = width + roiWidth - 1, builtHeight = height + roiHeight - 1;
    if (!(width < roiWidth) || !(height < roiHeight)) return builtWidth * builtHeight;
    const bool readsBelow = Number(0) < height - anchorY - 1, readsRight = Number(0) < width - anchorX - 1;
    const Number lying = readsBelow ? builtWidth * (Number(2) * height - anchorY - 2) : Number(0);
    if (!readsRight) return lying;
    const Number standing = builtHeight * (Number(2) * width - anchorX - 2);
    return lying < standing ? standing : lying;
  }

  /// Work memory of one erosion or dilation: the ring, then the copy with a border.
  constexpr Number bufferSize() const { return align32(builtPixels() * pixelBytes) + ringSize() + 64; }

  constexpr MorphSizes<Number> single() const { return {specSize(), bufferSize()}; }

  /// Two records and the rotated mask; the work memory of two passes and the intermediate image.
  constexpr MorphSizes<Number> compound() const {
    return {
        cells() + Number(2) * specSize() + 64,
        Number(2) * bufferSize() + (roiHeight + height - 1) * align32((roiWidth + width - 1) * pixelBytes)};
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
