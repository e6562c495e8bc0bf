#pragma once

// How much memory the morphology entries ask their callers for. One rule for two readers: the entries
// calculate on 32 bits, where large figures wrap; who allocates must know the true figure.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {
namespace {

__extension__ typedef __int128 WideFigure;

/// A figure that wraps on 32 bits like the sums and products of the entries.
class WrappingFigure {
 public:
  constexpr WrappingFigure(std::int32_t value) : bits_(static_cast<std::uint32_t>(value)) {}
  constexpr std::int32_t value() const { return static_cast<std::int32_t>(bits_); }

  friend constexpr WrappingFigure operator+(WrappingFigure a, WrappingFigure b) {
    return of(a.bits_ + b.bits_);
  }
  friend constexpr WrappingFigure operator-(WrappingFigure a, WrappingFigure b) {
    return of(a.bits_ - b.bits_);
  }
  friend constexpr WrappingFigure operator*(WrappingFigure a, WrappingFigure b) {
    return of(a.bits_ * b.bits_);
  }
  friend constexpr bool operator<(WrappingFigure a, WrappingFigure b) { return a.value() < b.value(); }
  friend constexpr WrappingFigure align32(WrappingFigure n) { return of((n.bits_ + 31u) & ~31u); }

 private:
  static constexpr WrappingFigure of(std::uint32_t bits) {
    return WrappingFigure(static_cast<std::int32_t>(bits));
  }
  std::uint32_t bits_;
};

/// The figure as it is: wide enough for any region and mask.
class TrueFigure {
 public:
  constexpr TrueFigure(std::int32_t value) : value_(value) {}
  constexpr bool fits() const { return value_ <= 0x7FFFFFFF; }

  friend constexpr TrueFigure operator+(TrueFigure a, TrueFigure b) { return of(a.value_ + b.value_); }
  friend constexpr TrueFigure operator-(TrueFigure a, TrueFigure b) { return of(a.value_ - b.value_); }
  friend constexpr TrueFigure operator*(TrueFigure a, TrueFigure b) { return of(a.value_ * b.value_); }
  friend constexpr bool operator<(TrueFigure a, TrueFigure b) { return a.value_ < b.value_; }
  friend constexpr TrueFigure align32(TrueFigure n) { return of((n.value_ + 31) / 32 * 32); }

 private:
  static constexpr TrueFigure of(WideFigure value) {
    TrueFigure figure(0);
    figure.value_ = value;
    return figure;
  }
  WideFigure value_;
};

template <class Figure>
struct MorphSizes {
  Figure spec, buffer;
};

/// What the sizes of one mask and region are made of. `pixelBytes` is 1 or 4.
template <class Figure>
struct MorphMeasures {
  Figure pixelBytes, roiWidth, roiHeight;
  Figure width, height;  ///< of the mask, padded to odd figures
  Figure anchorX, anchorY;

  constexpr MorphMeasures(Size roi, Size mask, int bytes)
      : pixelBytes(bytes),
        roiWidth(roi.width),
        roiHeight(roi.height),
        width(mask.width | 1),
        height(mask.height | 1),
        anchorX(mask.width >> 1),
        anchorY(mask.height >> 1) {}

  constexpr Figure cells() const { return width * height; }
  constexpr Figure specSize() const { return cells() + Figure(4) * height * (width + 1) + 136; }

  /// The ring of rows of solid masks, and a row of the mask's width.
  constexpr Figure ringSize() const {
    const Figure slack = Figure(1) < pixelBytes ? 64 : 16;
    return align32(roiWidth * pixelBytes) * height + align32(width * pixelBytes) + slack;
  }

  /// Pixels of the largest image that is built with a border: the whole region, or the largest stripe.
  constexpr Figure builtPixels() const {
    const Figure builtWidth = width + roiWidth - 1, builtHeight = height + roiHeight - 1;
    if (!(width < roiWidth) || !(height < roiHeight)) return builtWidth * builtHeight;
    const bool readsBelow = Figure(0) < height - anchorY - 1, readsRight = Figure(0) < width - anchorX - 1;
    const Figure lying = readsBelow ? builtWidth * (Figure(2) * height - anchorY - 2) : Figure(0);
    if (!readsRight) return lying;
    const Figure standing = builtHeight * (Figure(2) * width - anchorX - 2);
    return lying < standing ? standing : lying;
  }

  /// Work memory of one erosion or dilation. The built image follows the ring.
  constexpr Figure bufferSize() const { return align32(builtPixels() * pixelBytes) + ringSize() + 64; }

  constexpr MorphSizes<Figure> single() const { return {specSize(), bufferSize()}; }

  /// Two records and the turned mask; the work memory of two passes and an image between them.
  constexpr MorphSizes<Figure> compound() const {
    return {
        cells() + Figure(2) * specSize() + 64,
        Figure(2) * bufferSize() + (roiHeight + height - 1) * align32((roiWidth + width - 1) * pixelBytes)};
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
