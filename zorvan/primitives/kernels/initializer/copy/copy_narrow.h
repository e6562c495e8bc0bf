#pragma once

// Copies rows of less than 512 bytes with one straight-line body for all of them, so that no row needs a loop
// over its own length: short loops end in a mispredicted branch each.
//
// A width belongs to a class: so many base pieces, of 64 bytes where they fit and of 32, 16, 8 or 4 below.
// A width that is not a multiple of the base piece gets one more, which ends at the row's end and overlaps
// what went before.

#include <utility>

#include "zorvan/primitives/kernels/initializer/copy/copy_pieces.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

/// The rows of two images, walked together. Passed on by value, so that a store to a row does not make the
/// compiler read these figures anew.
struct CopyRows {
  const unsigned char* src;
  std::int64_t srcStep;
  unsigned char* dst;
  std::int64_t dstStep;
  std::int64_t count;
};

template <class CopyOne>
inline void copyRows(CopyRows rows, CopyOne copyOne) {
  for (std::int64_t r = 0; r < rows.count; ++r) {
    copyOne(rows.src + r * rows.srcStep, rows.dst + r * rows.dstStep);
  }
}

template <class Piece>
inline void copyPiece(const unsigned char* src, unsigned char* dst) {
  Piece::load(src).store(dst);
}

template <class Piece, int... index>
inline void copyClass(CopyRows rows, std::int64_t width, std::integer_sequence<int, index...>) {
  const std::int64_t last = width - Piece::size;
  if (width % Piece::size == 0) {
    copyRows(rows, [](const unsigned char* src, unsigned char* dst) {
      (copyPiece<Piece>(src + index * Piece::size, dst + index * Piece::size), ...);
    });
  } else {
    copyRows(rows, [last](const unsigned char* src, unsigned char* dst) {
      (copyPiece<Piece>(src + index * Piece::size, dst + index * Piece::size), ...);
      copyPiece<Piece>(src + last, dst + last);
    });
  }
}

/// The class from `count` base pieces up to less than one more.
template <class Piece, int count>
inline void copyClass(CopyRows rows, std::int64_t width) {
  copyClass<Piece>(rows, width, std::make_integer_sequence<int, count>());
}

/// `width` is from 1 to 511 bytes.
inline void copyNarrow(CopyRows rows, std::int64_t width) {
  switch (width / 64) {
    case 4:
      return copyClass<WideBytes64, 4>(rows, width);
    case 5:
      return copyClass<WideBytes64, 5>(rows, width);
    case 6:
      return copyClass<WideBytes64, 6>(rows, width);
    case 7:
      return copyClass<WideBytes64, 7>(rows, width);
    case 3:
      return copyClass<WideBytes64, 3>(rows, width);
    case 2:
      return copyClass<WideBytes64, 2>(rows, width);
    case 1:
      return copyClass<WideBytes64, 1>(rows, width);
    default:
      break;
  }
  if (width >= 32) return copyClass<Vector32, 1>(rows, width);
  if (width >= 16) return copyClass<Vector16, 1>(rows, width);
  if (width >= 8) return copyClass<Bytes8, 1>(rows, width);
  if (width >= 4) return copyClass<Bytes4, 1>(rows, width);
  if (width == 1) return copyRows(rows, copyPiece<Bytes1>);
  // Two and three bytes: a piece at each end, the same or overlapping.
  copyRows(rows, [width](const unsigned char* src, unsigned char* dst) {
    copyPiece<Bytes2>(src, dst);
    copyPiece<Bytes1>(src + width - 1, dst + width - 1);
  });
}

}  // namespace
}  // namespace Zorvan::Primitives
#endif
