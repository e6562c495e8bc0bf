#pragma once

// Fills a row with 32-byte stores: the plain fill of the two newest variants.
//
// The head runs to a 64-byte boundary in pieces of 1 to 32 bytes, the body goes 128 bytes a turn with one
// 64-byte block at its end, streaming or with its lines claimed ahead where the plan says so, and the tail
// goes in pieces of 32 to 1 bytes. A row that starts inside a 32-bit pixel's alignment turns the value
// instead, so that the body's stores stay aligned. The caller fences after the last row.

#include "zorvan/primitives/kernels/initializer/fill/fill_plan.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

template <FillStores stores>
inline void fillBody(Vector32 lanes, unsigned char* dst, std::int64_t length) {
  const auto put = [lanes](unsigned char* p) {
    if constexpr (stores == FillStores::streaming) {
      lanes.stream(p);
    } else {
      lanes.storeAligned(p);
    }
  };
  const auto putTurn = [put](unsigned char* p) {
    put(p);
    put(p + 32);
    put(p + 64);
    put(p + 96);
  };
  if constexpr (stores == FillStores::claimed) {
    // Only lines that will be written are asked for: those behind the row may be another thread's.
    constexpr std::int64_t aheadBytes = 512;
    for (; length >= 128 + aheadBytes; dst += 128, length -= 128) {
      prefetchForWrite(dst + aheadBytes);
      prefetchForWrite(dst + aheadBytes + 64);
      putTurn(dst);
    }
  }
  for (; length >= 128; dst += 128, length -= 128) putTurn(dst);
  if (length >= 64) {
    put(dst);
    put(dst + 32);
  }
}

/// Fills `length` bytes in phase with `dst`: the pixels' size divides the address.
template <FillStores stores>
inline void fillInPhase(Vector32 lanes, unsigned char* dst, std::int64_t length) {
  const Vector16 half{_mm256_castsi256_si128(lanes.bits)};
  // A row that ends before the boundary is all tail: the pieces of a head go in the other order, and would
  // put the bytes of a pixel that is cut off by the start of the row out of turn.
  const std::int64_t peel = bytesToBoundary(dst, 64);
  if (peel != 0 && peel < length) {
    const std::int64_t last = _mm_cvtsi128_si64(half.bits);
    if (peel & 1) storeAs(dst, static_cast<std::uint8_t>(last)), dst += 1;
    if (peel & 2) storeAs(dst, static_cast<std::uint16_t>(last)), dst += 2;
    if (peel & 4) storeAs(dst, static_cast<std::uint32_t>(last)), dst += 4;
    if (peel & 8) storeAs(dst, last), dst += 8;
    if (peel & 16) half.store(dst), dst += 16;
    if (peel & 32) lanes.store(dst), dst += 32;
    length -= peel;
  }
  fillBody<stores>(lanes, dst, length);
  dst += length & ~std::int64_t{63};
  if (length & 32) lanes.store(dst), dst += 32;
  if (length & 16) half.store(dst), dst += 16;
  storeFirst(dst, half, length & 15);
}

template <FillStores stores, class T>
inline void fillWide(T value, unsigned char* dst, std::int64_t length) {
  if constexpr (sizeof(T) == 4) {
    for (; length != 0 && !isAligned(dst, 4); --length) {
      *dst++ = static_cast<unsigned char>(value);
      value = (value >> 8) | (value << 24);
    }
  }
  fillInPhase<stores>(Vector32::broadcast(value), dst, length);
}

/// Fills a row of 16-bit pixels at any address, also an odd one, with plain stores only.
inline void fillUnphased(std::uint16_t value, unsigned char* dst, std::int64_t length) {
  const Vector32 lanes = Vector32::broadcast(value);
  for (; length >= 32; dst += 32, length -= 32) lanes.store(dst);
  const Vector16 half{_mm256_castsi256_si128(lanes.bits)};
  if (length & 16) half.store(dst), dst += 16;
  storeFirst(dst, half, length & 15);
}

}  // namespace
}  // namespace Zorvan::Primitives
#endif
