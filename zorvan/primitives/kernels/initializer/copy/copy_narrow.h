#pragma once

// Copies rows of less than 512 bytes with one straight-line body for all of them, so that no row needs a loop
// over its own length: short loops end in a mispredicted branch each.
//
// The width decides the body: a number of vectors, of 64 bytes where they fit and of 32, 16, 8 or 4 bytes
// below. A width that is not a multiple of the vector takes one more, which ends with the row and overlaps
// the one before.

#include <utility>

#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/compound_vectors.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Copy {
namespace {

template <class Vector>
inline void copyOne(const u8* src, u8* dst) {
  Vector::load(src).store(dst);
}

/// The rows of two images. Passed by value: pixels are bytes, so after a store to them the compiler would
/// load again what it holds by reference.
struct NarrowRows {
  Plane<const u8> src;
  Plane<u8> dst;
  std::int64_t rows;
  std::int64_t width;  ///< in bytes
};

template <class CopyRow>
inline void copyEach(NarrowRows images, CopyRow copyRow) {
  forEachRow(images.rows, copyRow, images.src, images.dst);
}

template <class Vector, int... index>
inline void copyVectorRows(NarrowRows images, std::integer_sequence<int, index...>) {
  const std::int64_t last = images.width - Vector::size;
  if (images.width % Vector::size == 0) {
    copyEach(images, [](const u8* src, u8* dst) {
      (copyOne<Vector>(src + index * Vector::size, dst + index * Vector::size), ...);
    });
  } else {
    copyEach(images, [last](const u8* src, u8* dst) {
      (copyOne<Vector>(src + index * Vector::size, dst + index * Vector::size), ...);
      copyOne<Vector>(src + last, dst + last);
    });
  }
}

/// Rows of `count` vectors up to less than one more.
template <class Vector, int count = 1>
inline void copyVectorRows(NarrowRows images) {
  copyVectorRows<Vector>(images, std::make_integer_sequence<int, count>());
}

/// Rows of 1 to 511 bytes.
inline void copyNarrow(NarrowRows images) {
  const std::int64_t width = images.width;
  switch (width / 64) {
    case 4:
      return copyVectorRows<Halves64, 4>(images);
    case 5:
      return copyVectorRows<Halves64, 5>(images);
    case 6:
      return copyVectorRows<Halves64, 6>(images);
    case 7:
      return copyVectorRows<Halves64, 7>(images);
    case 3:
      return copyVectorRows<Halves64, 3>(images);
    case 2:
      return copyVectorRows<Halves64, 2>(images);
    case 1:
      return copyVectorRows<Halves64, 1>(images);
    default:
      break;
  }
  if (width >= 32) return copyVectorRows<Vector32>(images);
  if (width >= 16) return copyVectorRows<Vector16>(images);
  if (width >= 8) return copyVectorRows<Bytes8>(images);
  if (width >= 4) return copyVectorRows<Bytes4>(images);
  if (width == 1) return copyEach(images, copyOne<Bytes1>);
  // Two or three bytes: the first two and the last.
  copyEach(images, [width](const u8* src, u8* dst) {
    copyOne<Bytes2>(src, dst);
    copyOne<Bytes1>(src + width - 1, dst + width - 1);
  });
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
#endif
