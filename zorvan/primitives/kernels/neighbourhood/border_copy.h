#pragma once

// Copies an image into a larger one and fills the border around it: with the nearest pixels, mirrored pixels
// or a constant. For neighbourhood operations, whose stripes are a few rows or columns with their border.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"

namespace Zorvan::Primitives {
namespace {

struct ReplicatedBorder {
  /// The source row that row `i` repeats.
  static std::int64_t rowOf(std::int64_t i, std::int64_t n) { return i < 0 ? 0 : i < n ? i : n - 1; }

  template <class Bits>
  void fillSides(const unsigned char* src, std::int64_t width, unsigned char* dst, std::int64_t left,
                 std::int64_t right) const {
    const auto last = src + (width - 1) * std::int64_t{sizeof(Bits)};
    if (left != 0) fillRun(dst, loadAs<Bits>(src), left);
    if (right != 0) fillRun(dst + (left + width) * std::int64_t{sizeof(Bits)}, loadAs<Bits>(last), right);
  }
};

struct MirroredBorder {
  static std::int64_t rowOf(std::int64_t i, std::int64_t n) { return mirrored(i, n); }

  template <class Bits>
  void fillSides(const unsigned char* src, std::int64_t width, unsigned char* dst, std::int64_t left,
                 std::int64_t right) const {
    const auto copyPixel = [&](std::int64_t column) {
      const Bits pixel = loadAs<Bits>(src + mirrored(column, width) * std::int64_t{sizeof(Bits)});
      storeAs(dst + (left + column) * std::int64_t{sizeof(Bits)}, pixel);
    };
    for (std::int64_t column = -left; column < 0; ++column) copyPixel(column);
    for (std::int64_t column = width; column < width + right; ++column) copyPixel(column);
  }
};

template <class Value>
struct ConstantBorder {
  Value value;

  /// -1 outside: no source row.
  static std::int64_t rowOf(std::int64_t i, std::int64_t n) { return i < n ? i : -1; }

  template <class Bits>
  void fillSides(const unsigned char*, std::int64_t width, unsigned char* dst, std::int64_t left,
                 std::int64_t right) const {
    fillRun(dst, value, left);
    fillRun(dst + (left + width) * std::int64_t{sizeof(Bits)}, value, right);
  }
};

template <class T, class Border>
inline void copyInto(Plane<const T> src, Size srcSize, Plane<T> dst, Size dstSize, int above, int left,
                     Border border) {
  using Bits = typename PixelBits<sizeof(T)>::type;
  const std::int64_t right = std::int64_t{dstSize.width} - left - srcSize.width;
  withCopier(srcSize.width * std::int64_t{sizeof(T)}, [=](auto copyRow) {
    for (std::int64_t r = 0; r < dstSize.height; ++r) {
      const std::int64_t row = border.rowOf(r - above, srcSize.height);
      auto* const to = reinterpret_cast<unsigned char*>(dst.at(r, 0));
      if constexpr (requires { border.value; }) {
        if (row < 0) {
          fillRun(to, border.value, dstSize.width);
          continue;
        }
      }
      const auto* const from = reinterpret_cast<const unsigned char*>(src.at(row, 0));
      border.template fillSides<Bits>(from, srcSize.width, to, left, right);
      copyRow(to + left * std::int64_t{sizeof(T)}, from);
    }
  });
}

/// Copies `src` to row `above` and column `left` of `dst` and fills the border around it. `value` is the
/// pixel of a constant border.
template <class T>
inline void copyWithBorder(Plane<const T> src, Size srcSize, Plane<T> dst, Size dstSize, int above, int left,
                           BorderType type, T value) {
  using Bits = typename PixelBits<sizeof(T)>::type;
  switch (type) {
    case BorderType::replicate:
      return copyInto(src, srcSize, dst, dstSize, above, left, ReplicatedBorder{});
    case BorderType::mirror:
      return copyInto(src, srcSize, dst, dstSize, above, left, MirroredBorder{});
    default:
      return copyInto(src, srcSize, dst, dstSize, above, left,
                      ConstantBorder<Bits>{__builtin_bit_cast(Bits, value)});
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
