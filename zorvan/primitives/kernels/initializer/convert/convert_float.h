#pragma once

// 32-bit signed pixels as floats, rounded by the processor's current mode.
//
// Only the row is read and written, at any address.

#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_plan.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

inline void toFloat1(const unsigned char* src, unsigned char* dst) {
  storeAs(dst, static_cast<float>(loadAs<int>(src)));
}

inline Vector16 toFloats(Vector16 pixels) { return {_mm_castps_si128(_mm_cvtepi32_ps(pixels.bits))}; }

inline void toFloatScalar(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n > 0; src += 4, dst += 4, --n) toFloat1(src, dst);
}

/// Eight pixels a turn with aligned stores, then singly.
template <bool alignedSrc>
inline void toFloatBody8(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= 8; src += 32, dst += 32, n -= 8) {
    const Vector16 low = alignedSrc ? Vector16::loadAligned(src) : Vector16::load(src);
    const Vector16 high = alignedSrc ? Vector16::loadAligned(src + 16) : Vector16::load(src + 16);
    toFloats(low).storeAligned(dst);
    toFloats(high).storeAligned(dst + 16);
  }
  toFloatScalar(src, dst, n);
}

/// The oldest two variants: 8 pixels a turn from the first aligned store on.
inline void toFloatRow(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  if (ZORVAN_PLANNED("planSingleFloats", planSingleFloats(reinterpret_cast<std::uintptr_t>(src),
                                                          reinterpret_cast<std::uintptr_t>(dst), n))) {
    return toFloatScalar(src, dst, n);
  }

  const std::int64_t peel = bytesToBoundary(dst, Vector16::size) / 4;
  toFloatScalar(src, dst, peel);
  src += 4 * peel;
  dst += 4 * peel;
  n -= peel;
  if (isAligned(src, Vector16::size)) {
    toFloatBody8<true>(src, dst, n);
  } else {
    toFloatBody8<false>(src, dst, n);
  }
}

/// A run in groups of four, then singly.
inline void toFloatByFours(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= 4; src += 16, dst += 16, n -= 4) toFloats(Vector16::load(src)).store(dst);
  toFloatScalar(src, dst, n);
}

#ifdef __AVX__
inline Vector32 toFloats(Vector32 pixels) { return {_mm256_castps_si256(_mm256_cvtepi32_ps(pixels.bits))}; }
#endif
#ifdef __AVX512F__
inline Vector64 toFloats(Vector64 pixels) { return {_mm512_castps_si512(_mm512_cvtepi32_ps(pixels.bits))}; }
#endif

/// Fewer than 16 pixels, and at least one, at the end of a row, or in front of its first boundary.
template <class Vector>
inline void toFloatFewer(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  toFloatByFours(src, dst, n);
}

#ifdef __AVX512F__
/// All at once, the others masked out.
template <>
inline void toFloatFewer<Vector64>(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  const __mmask16 lanes = static_cast<__mmask16>(_bzhi_u32(0xffff, static_cast<unsigned>(n)));
  const Vector64 pixels{_mm512_maskz_loadu_epi32(lanes, src)};
  _mm512_mask_storeu_epi32(dst, lanes, toFloats(pixels).bits);
}
#endif

/// 16 pixels, 64 bytes of `dst`, in vectors of any width.
template <class Vector, bool streaming>
inline void toFloat16(const unsigned char* src, unsigned char* dst) {
  for (int at = 0; at < 64; at += Vector::size) {
    const Vector floats = toFloats(Vector::load(src + at));
    if constexpr (streaming) {
      floats.stream(dst + at);
    } else {
      floats.store(dst + at);
    }
  }
}

/// Four times 16 pixels a turn: the processor fetches a loop of two instructions slower than it stores.
template <class Vector, bool streaming>
inline void toFloatBody16(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= 64; src += 256, dst += 256, n -= 64) {
    for (int at = 0; at < 256; at += 64) toFloat16<Vector, streaming>(src + at, dst + at);
  }
  for (; n >= 16; src += 64, dst += 64, n -= 16) toFloat16<Vector, streaming>(src, dst);
  if (n != 0) toFloatFewer<Vector>(src, dst, n);
}

/// A row of an image with plain stores, aligned where it is long enough to gain by it: 16 pixels at least.
template <class Vector>
inline void toFloatRowPlain(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  if (n >= toFloatAlignFromPixels && isAligned(dst, 4) && !isAligned(dst, Vector::size)) {
    const std::int64_t peel = bytesToBoundary(dst, Vector::size) / 4;
    toFloatFewer<Vector>(src, dst, peel);
    src += 4 * peel;
    dst += 4 * peel;
    n -= peel;
  }
  toFloatBody16<Vector, false>(src, dst, n);
}

/// A row of an image that streams, from the first cache line on. Lines that are no multiple of a store can
/// leave it off its own boundary, and floats that straddle their alignment never reach one: narrower stores
/// then serve, or plain ones.
template <class Vector>
inline void toFloatRowStreaming(const unsigned char* src, unsigned char* dst, std::int64_t n,
                                std::int64_t lineBytes) {
  const std::int64_t peel = pixelsToBoundary(reinterpret_cast<std::uintptr_t>(dst), lineBytes, 4, n);
  toFloatByFours(src, dst, peel);
  src += 4 * peel;
  dst += 4 * peel;
  n -= peel;
  if (isAligned(dst, Vector::size)) {
    toFloatBody16<Vector, true>(src, dst, n);
  } else if (isAligned(dst, Vector16::size)) {
    toFloatBody16<Vector16, true>(src, dst, n);
  } else {
    toFloatBody16<Vector, false>(src, dst, n);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
