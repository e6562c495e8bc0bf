#pragma once

// The sources of an operation: an image, or one value in place of all pixels of an image; and the loop over
// rows with two sources. Offsets are in bytes, and rows may start at any address.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"

namespace Zorvan::Primitives::Arithmetic {
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
  Plane<const T> image;

  RowSource<T> at(std::int64_t r) const { return {reinterpret_cast<const unsigned char*>(image.at(r))}; }
};
template <class T>
struct ConstantSource {
  static constexpr bool isConstant = true;
  T value;

  ConstantRow<T> at(std::int64_t) const { return {value}; }
};

/// The images of an operation. Rows are never joined.
template <class A, class B>
struct RowImages {
  A a;
  B b;
  Plane<unsigned char> dst;
  std::int64_t rows, rowBytes;

  bool inPlace() const { return b.at(0).bytes == dst.pixels; }

  template <class Use>
  void eachRow(Use use) const {
    forEachRow(rows, use, a, b, dst);
  }
  template <int unrolledBy, class Use>
  void eachShortRow(Use use) const {
    forEachShortRow<unrolledBy>(rows, use, a, b, dst);
  }
};

template <class A, class B, class T>
RowImages<A, B> rowImages(A a, B b, T* dst, int dstStep, Size roi) {
  return {a,
          b,
          {reinterpret_cast<unsigned char*>(dst), dstStep},
          roi.height,
          roi.width * std::int64_t{sizeof(T)}};
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
