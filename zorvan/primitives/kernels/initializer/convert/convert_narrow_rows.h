#pragma once

// Rows of 32-bit signed pixels, limited to 0 to 255, as bytes: one routine for each pair of variants.
//
// Only the row is read and written, at any address. A row whose pixels straddle their own alignment can reach
// no boundary of `src`: it starts without a head.

#include "zorvan/primitives/kernels/initializer/convert/convert_narrow.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_plan.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

template <bool alignedSrc>
inline void narrowBody16(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= 16; src += 64, dst += 16, n -= 16) narrow16<alignedSrc>(src).store(dst);
  if (n >= 8) narrow8<alignedSrc>(src, dst), src += 32, dst += 8, n -= 8;
  for (; n > 0; src += 4, ++dst, --n) narrow1(src, dst);
}

/// The oldest two variants: `src` brought to 16 bytes, `dst` to 8 where four more pixels do it, then 16
/// pixels a turn with aligned loads, which cost those processors far less.
inline void narrowRowAligned(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  if (!isAligned(src, 4)) return narrowBody16<false>(src, dst, n);

  const auto single = [&](std::int64_t count) {
    for (n -= count; count > 0; src += 4, ++dst, --count) narrow1(src, dst);
  };
  const std::int64_t peel = bytesToBoundary(src, 16) / 4;
  single(peel < n ? peel : n);
  if (isAligned(dst, 4) && !isAligned(dst, 8)) single(n < 4 ? n : 4);
  narrowBody16<true>(src, dst, n);
}

/// A row in 64 bytes of `dst` a turn, for the two variants that may stream.
template <bool streaming>
inline void narrowBody64(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= 64; src += 256, dst += 64, n -= 64) {
    for (int quarter = 0; quarter < 4; ++quarter) {
      const Vector16 bytes = narrow16(src + 64 * quarter);
      if constexpr (streaming) {
        bytes.stream(dst + 16 * quarter);
      } else {
        bytes.store(dst + 16 * quarter);
      }
    }
  }
  for (; n >= 16; src += 64, dst += 16, n -= 16) narrow16(src).store(dst);
  narrowByFours(src, dst, n);
}

/// Streams from the first cache line on. Lines that are no multiple of a store can leave it off its own
/// boundary; the row is then stored plainly.
inline void narrowRowStreaming(const unsigned char* src, unsigned char* dst, std::int64_t n,
                               std::int64_t lineBytes) {
  const std::int64_t peel = pixelsToBoundary(reinterpret_cast<std::uintptr_t>(dst), lineBytes, 1, n);
  narrowByFours(src, dst, peel);
  src += 4 * peel;
  dst += peel;
  n -= peel;
  if (isAligned(dst, Vector16::size)) {
    narrowBody64<true>(src, dst, n);
  } else {
    narrowBody64<false>(src, dst, n);
  }
}

#ifdef __AVX2__
/// The newest two variants: `src` brought to 64 bytes, so that no load crosses a cache line, then turns of 32
/// pixels, two at a time while they last.
template <class Groups>
inline void narrowRowWide(const unsigned char* src, unsigned char* dst, std::int64_t n) {
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
}  // namespace Zorvan::Primitives
