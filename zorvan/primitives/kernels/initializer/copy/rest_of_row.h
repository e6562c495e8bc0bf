#pragma once

#include "zorvan/primitives/kernels/simd/compound_vectors.h"
#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Copy {
namespace {

/// What is left of a row that is being copied from its start, in vectors and integers of any size.
struct RestOfRow {
  const u8* src;
  u8* dst;
  std::int64_t length;

  void skip(std::int64_t bytes) {
    src += bytes;
    dst += bytes;
    length -= bytes;
  }
  template <class Vector, Stores stores = Stores::plain>
  [[gnu::always_inline]] void copyNext() {
    storeVector<stores>(Vector::load(src), dst);
    skip(Vector::size);
  }
  /// Whole vectors while they fit.
  template <class Vector, Stores stores = Stores::plain>
  [[gnu::always_inline]] void copyAll() {
    while (length >= Vector::size) copyNext<Vector, stores>();
  }
  /// The same for a source that is aligned like the destination.
  template <class Vector>
  void copyAllAligned() {
    for (; length >= Vector::size; skip(Vector::size)) Vector::loadAligned(src).storeAligned(dst);
  }
  /// `count` bytes in vectors of different powers of two, in the order in which they are named.
  template <class... Vectors>
  void copyBits(std::int64_t count) {
    ((count & Vectors::size ? copyNext<Vectors>() : void()), ...);
  }
  /// Copies a vector and continues at the next multiple of `boundary`, which lies within that vector.
  template <class Vector>
  void alignTo(std::int64_t boundary) {
    if (const std::int64_t peel = bytesToBoundary(dst, boundary); peel != 0) {
      Vector::load(src).store(dst);
      skip(peel);
    }
  }
  /// Ends the row with a vector that overlaps what is copied already.
  template <class Vector>
  void copyLast() {
    Vector::load(src + length - Vector::size).store(dst + length - Vector::size);
    length = 0;
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Copy
