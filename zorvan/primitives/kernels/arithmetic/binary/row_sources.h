#pragma once

// The sources of an operation: an image, or one value in place of all pixels of an image; and the loop over
// rows with two sources. Offsets are in bytes, and rows may start at any address.

#include <cstdint>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"

namespace Zorvan::Primitives {
namespace {

template <class T>
struct RowSource {
  const unsigned char* bytes;

  T pixel(std::int64_t offset) const { return loadAs<T>(bytes + offset); }
  template <class Lanes, bool aligned>
  Lanes lanes(std::int64_t offset) const {
    return loadLanes<Lanes, aligned>(bytes + offset);
  }
  template <int count>
  __m128i lowLanes(std::int64_t offset) const {
    return loadLow<count>(bytes + offset);
  }
  void prefetch(std::int64_t offset) const { Primitives::prefetch(bytes + offset); }
  bool isAlignedAt(std::int64_t offset) const { return isAligned(bytes + offset, 16); }
  bool overlaps(const unsigned char* row, std::int64_t length) const {
    return bytes < row + length && row < bytes + length;
  }
};

template <class T>
struct ConstantRow {
  T value;

  T pixel(std::int64_t) const { return value; }
  template <class Lanes, bool>
  Lanes lanes(std::int64_t) const {
    if constexpr (sizeof(T) == 1) {
      return broadcastWords<Lanes>(value * 257);
    } else if constexpr (sizeof(T) == 2) {
      return broadcastWords<Lanes>(value);
    } else {
      return broadcastFloats<Lanes>(value);
    }
  }
  template <int>
  __m128i lowLanes(std::int64_t) const {
    return lanes<__m128i, true>(0);
  }
  static void prefetch(std::int64_t) {}
  static bool isAlignedAt(std::int64_t) { return true; }
  static bool overlaps(const unsigned char*, std::int64_t) { return false; }
};

template <class T>
struct ImageSource {
  static constexpr bool isConstant = false;
  const T* pixels;
  int step;

  bool isNull() const { return pixels == nullptr; }
  RowSource<T> row(std::int64_t r) const {
    return {rowAt(reinterpret_cast<const unsigned char*>(pixels), step, r)};
  }
};
template <class T>
struct ConstantSource {
  static constexpr bool isConstant = true;
  T value;

  static bool isNull() { return false; }
  ConstantRow<T> row(std::int64_t) const { return {value}; }
};

/// The images of an operation. Rows are never joined.
template <class A, class B>
struct RowImages {
  A a;
  B b;
  unsigned char* dst;
  int dstStep;
  std::int64_t rows, rowBytes;

  bool inPlace() const { return b.row(0).bytes == dst; }

  /// Calls `use(a, b, dst)` for row `r`.
  template <class Use>
  void onRow(std::int64_t r, Use use) const {
    use(a.row(r), b.row(r), rowAt(dst, dstStep, r));
  }
  template <class Use>
  void eachRow(Use use) const {
    for (std::int64_t r = 0; r < rows; ++r) onRow(r, use);
  }
  /// Unrolled: one iteration for each row takes longer than a row of a lowLanes vectors.
  template <int unrolledBy, class Use>
  void eachShortRow(Use use) const {
    std::int64_t r = 0;
    for (; r + unrolledBy <= rows; r += unrolledBy) {
      for (int i = 0; i < unrolledBy; ++i) onRow(r + i, use);
    }
    for (; r < rows; ++r) onRow(r, use);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
