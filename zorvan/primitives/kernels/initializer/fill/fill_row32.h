#pragma once

// Fills a row with 32-byte stores: the plain fill of the two newest variants.
//
// The peel reaches a 64-byte boundary with stores of 1 to 32 bytes. The body stores 128 bytes per iteration
// and 64 at its end, streaming or with prefetches for writing if the plan says so. The tail takes stores of
// 32 to 1 bytes. If a row of 32-bit pixels starts between multiples of 4, single bytes reach the next one and
// the value is rotated, so that the body's stores stay aligned. The caller fences after the last row.

#include "zorvan/primitives/kernels/initializer/fill/fill_plan.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Fill {
namespace {

template <FillStores form>
inline void fillBody(Vector32 lanes, u8* dst, std::int64_t length) {
  constexpr Stores stores = form == FillStores::streaming ? Stores::streaming : Stores::aligned;
  const auto store128 = [lanes](u8* p) {
    for (int i = 0; i < 128; i += Vector32::size) storeVector<stores>(lanes, p + i);
  };
  if constexpr (form == FillStores::prefetched) {
    // No lines after the row: they may belong to another thread.
    constexpr std::int64_t distance = 512;
    for (; length >= 128 + distance; dst += 128, length -= 128) {
      prefetchForWrite(dst + distance);
      prefetchForWrite(dst + distance + 64);
      store128(dst);
    }
  }
  for (; length >= 128; dst += 128, length -= 128) store128(dst);
  if (length >= 64) {
    storeVector<stores>(lanes, dst);
    storeVector<stores>(lanes, dst + 32);
  }
}

/// Fills `length` bytes in phase with `dst`: the pixels' size divides the address.
template <FillStores form>
inline void fillInPhase(Vector32 lanes, u8* dst, std::int64_t length) {
  const Vector16 half{_mm256_castsi256_si128(lanes.bits)};
  // A row that ends before the boundary is all tail: in the peel's order of sizes the bytes of a pixel that
  // the start of the row cuts would come out in the wrong order.
  const std::int64_t peel = bytesToBoundary(dst, 64);
  if (peel != 0 && peel < length) {
    if (peel & 1) storeLow<1>(dst, half.bits), dst += 1;
    if (peel & 2) storeLow<2>(dst, half.bits), dst += 2;
    if (peel & 4) storeLow<4>(dst, half.bits), dst += 4;
    if (peel & 8) storeLow<8>(dst, half.bits), dst += 8;
    if (peel & 16) half.store(dst), dst += 16;
    if (peel & 32) lanes.store(dst), dst += 32;
    length -= peel;
  }
  fillBody<form>(lanes, dst, length);
  dst += length & ~std::int64_t{63};
  if (length & 32) lanes.store(dst), dst += 32;
  if (length & 16) half.store(dst), dst += 16;
  storeFirst(dst, half, length & 15);
}

template <FillStores form, class T>
inline void fillRow32(T value, u8* dst, std::int64_t length) {
  if constexpr (sizeof(T) == 4) {
    // At most three bytes, and the row has at least one pixel.
    for (; !isAligned(dst, 4); --length) {
      *dst++ = static_cast<u8>(value);
      value = (value >> 8) | (value << 24);
    }
  }
  fillInPhase<form>(Vector32::broadcast(value), dst, length);
}

/// Fills a row of 16-bit pixels at any address, also an odd one.
inline void fillAnyAddress(u16 value, u8* dst, std::int64_t length) {
  const Vector32 lanes = Vector32::broadcast(value);
  for (; length >= 32; dst += 32, length -= 32) lanes.store(dst);
  const Vector16 half{_mm256_castsi256_si128(lanes.bits)};
  if (length & 16) half.store(dst), dst += 16;
  storeFirst(dst, half, length & 15);
}

}  // namespace
}  // namespace Zorvan::Primitives::Fill
#endif
