#pragma once

// Rows of bytes, from one image to another or in place: by an operation on pixels and vectors, or by a table
// in memory. Any address.

#include "zorvan/primitives/kernels/arithmetic/unary/byte_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"

namespace Zorvan::Primitives::Unary {
namespace {

template <class Vector, bool streaming, class Operation>
inline void bytesVector(const Operation& operation, const unsigned char* src, unsigned char* dst) {
  const Vector result{operation.lanes(Vector::load(src).bits)};
  if constexpr (streaming) {
    result.stream(dst);
  } else {
    result.store(dst);
  }
}

template <class Operation>
inline void bytesScalar(const Operation& operation, const unsigned char* src, unsigned char* dst,
                        std::int64_t n) {
  for (std::int64_t i = 0; i < n; ++i) dst[i] = operation.pixel(src[i]);
}

/// Fewer pixels than a vector holds.
template <class Vector, class Operation>
inline void bytesPartial(const Operation& operation, const unsigned char* src, unsigned char* dst,
                         std::int64_t n) {
#ifdef __AVX512BW__
  const auto lanes = firstLanes<__mmask64>(n);
  storeMasked(lanes, dst, operation.lanes(loadMasked(lanes, src)));
#else
  if constexpr (Vector::size == 32) {
    if (n >= 16) {
      bytesVector<Vector16, false>(operation, src, dst);
      src += 16;
      dst += 16;
      n -= 16;
    }
  }
  bytesScalar(operation, src, dst, n);
#endif
}

/// One vector per iteration. Streaming stores start on the vector's boundary.
template <class Vector, bool streaming, class Operation>
inline void bytesRow(const Operation& operation, const unsigned char* src, unsigned char* dst,
                     std::int64_t n) {
  std::int64_t i = 0;
  if constexpr (streaming) {
    const std::int64_t peel = bytesToBoundary(dst, Vector::size);
    i = peel < n ? peel : n;
    bytesPartial<Vector>(operation, src, dst, i);
  }
  for (; i + Vector::size <= n; i += Vector::size) {
    bytesVector<Vector, streaming>(operation, src + i, dst + i);
  }
  if (i < n) bytesPartial<Vector>(operation, src + i, dst + i, n - i);
}

/// A table of all bytes. Unrolled by 8, with all loads before the first store.
inline void lookUpRow(const u8* table, const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= 8; src += 8, dst += 8, n -= 8) {
    const u8 a = table[src[0]], b = table[src[1]], c = table[src[2]], d = table[src[3]];
    const u8 e = table[src[4]], f = table[src[5]], g = table[src[6]], h = table[src[7]];
    dst[0] = a;
    dst[1] = b;
    dst[2] = c;
    dst[3] = d;
    dst[4] = e;
    dst[5] = f;
    dst[6] = g;
    dst[7] = h;
  }
  for (std::int64_t i = 0; i < n; ++i) dst[i] = table[src[i]];
}

/// A table that ends at `last`. The result of higher bytes is 255.
inline void lookUpRowUpTo(const u8* table, int last, const unsigned char* src, unsigned char* dst,
                          std::int64_t n) {
  for (std::int64_t i = 0; i < n; ++i) dst[i] = src[i] > last ? u8{255} : table[src[i]];
}

}  // namespace
}  // namespace Zorvan::Primitives::Unary
