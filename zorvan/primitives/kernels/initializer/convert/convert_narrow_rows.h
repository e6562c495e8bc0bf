#pragma once

// Rows of 32-bit signed pixels, saturated to 0 to 255, as bytes: one routine for each pair of variants.
//
// Only the row is read and written, at any address. A row of pixels at an address that 4 does not divide
// reaches no boundary of `src`: it has no peel.

#include "zorvan/primitives/kernels/initializer/convert/convert_narrow.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_plan.h"
#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Convert {
namespace {

template <bool alignedSrc>
inline void narrowBody16(const u8* src, u8* dst, std::int64_t n) {
  for (; n >= 16; src += 64, dst += 16, n -= 16) narrow16<alignedSrc>(src).store(dst);
  if (n >= 8) narrow8<alignedSrc>(src, dst), src += 32, dst += 8, n -= 8;
  for (; n > 0; src += 4, ++dst, --n) narrow1(src, dst);
}

/// The oldest two variants: `src` is aligned to 16 bytes, and `dst` to 8 if four more pixels reach that; 16
/// pixels per iteration follow with aligned loads, which are far faster on those processors.
inline void narrowRowAligned(const u8* src, u8* dst, std::int64_t n) {
  if (!isAligned(src, 4)) return narrowBody16<false>(src, dst, n);

  const auto scalar = [&](std::int64_t count) {
    for (n -= count; count > 0; src += 4, ++dst, --count) narrow1(src, dst);
  };
  const std::int64_t peel = bytesToBoundary(src, 16) / 4;
  scalar(peel < n ? peel : n);
  if (isAligned(dst, 4) && !isAligned(dst, 8)) scalar(n < 4 ? n : 4);
  narrowBody16<true>(src, dst, n);
}

/// 64 bytes of `dst` per iteration, for the two variants that may stream.
template <Stores stores>
inline void narrowBody64(const u8* src, u8* dst, std::int64_t n) {
  for (; n >= 64; src += 256, dst += 64, n -= 64) {
    for (int quarter = 0; quarter < 4; ++quarter) {
      storeVector<stores>(narrow16(src + 64 * quarter), dst + 16 * quarter);
    }
  }
  for (; n >= 16; src += 64, dst += 16, n -= 16) narrow16(src).store(dst);
  narrowByFours(src, dst, n);
}

/// Streams from the first cache line on. The reported size of a line need be no multiple of a store: the row
/// then takes plain stores.
inline void narrowRowStreaming(const u8* src, u8* dst, std::int64_t n, std::int64_t lineBytes) {
  const std::int64_t peel = pixelsToBoundary(reinterpret_cast<std::uintptr_t>(dst), lineBytes, 1, n);
  narrowByFours(src, dst, peel);
  src += 4 * peel;
  dst += peel;
  n -= peel;
  if (isAligned(dst, Vector16::size)) {
    narrowBody64<Stores::streaming>(src, dst, n);
  } else {
    narrowBody64<Stores::plain>(src, dst, n);
  }
}

#ifdef __AVX2__
/// The newest two variants: `src` is aligned to 64 bytes, so that no load crosses a cache line; groups of 64
/// pixels and fewer follow.
template <class Groups>
inline void narrowRowByGroups(const u8* src, u8* dst, std::int64_t n) {
  if (isAligned(src, 4) && !isAligned(src, 64)) {
    const std::int64_t peel = bytesToBoundary(src, 64) / 4;
    if (peel > n) return Groups::fewer(src, dst, n);
    Groups::fewer(src, dst, peel);
    src += 4 * peel;
    dst += peel;
    n -= peel;
  }
  for (; n >= 64; src += 256, dst += 64, n -= 64) Groups::sixtyFour(src, dst);
  if (n >= 32) Groups::thirtyTwo(src, dst), src += 128, dst += 32, n -= 32;
  if (n >= 16) Groups::sixteen(src, dst), src += 64, dst += 16, n -= 16;
  if (n != 0) Groups::fewer(src, dst, n);
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Convert
