#pragma once

// 32-bit signed pixels as floats, rounded by the processor's current mode.
//
// Only the row is read and written, at any address.

#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_plan.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Convert {
namespace {

inline void toFloatScalar1(const u8* src, u8* dst) { storeAs(dst, static_cast<float>(loadAs<int>(src))); }

inline Vector16 toFloats(Vector16 pixels) { return {_mm_castps_si128(_mm_cvtepi32_ps(pixels.bits))}; }

inline void toFloatScalar(const u8* src, u8* dst, std::int64_t n) {
  for (; n > 0; src += 4, dst += 4, --n) toFloatScalar1(src, dst);
}

/// Eight pixels per iteration with aligned stores, then single pixels.
template <bool alignedSrc>
inline void toFloatBody8(const u8* src, u8* dst, std::int64_t n) {
  for (; n >= 8; src += 32, dst += 32, n -= 8) {
    const auto low = loadVector<Vector16, alignedSrc>(src), high = loadVector<Vector16, alignedSrc>(src + 16);
    toFloats(low).storeAligned(dst);
    toFloats(high).storeAligned(dst + 16);
  }
  toFloatScalar(src, dst, n);
}

/// The oldest two variants: 8 pixels per iteration from the first aligned store on.
inline void toFloatRow(const u8* src, u8* dst, std::int64_t n) {
  if (ZORVAN_PLANNED("planScalarFloats", planScalarFloats(reinterpret_cast<std::uintptr_t>(src),
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

/// Four pixels per iteration, then single pixels.
inline void toFloatByFours(const u8* src, u8* dst, std::int64_t n) {
  for (; n >= 4; src += 16, dst += 16, n -= 4) toFloats(Vector16::load(src)).store(dst);
  toFloatScalar(src, dst, n);
}

#ifdef __AVX__
inline Vector32 toFloats(Vector32 pixels) { return {_mm256_castps_si256(_mm256_cvtepi32_ps(pixels.bits))}; }
#endif
#ifdef __AVX512F__
inline Vector64 toFloats(Vector64 pixels) { return {_mm512_castps_si512(_mm512_cvtepi32_ps(pixels.bits))}; }
#endif

/// 1 to 15 pixels: a peel or a tail.
template <class Vector>
inline void toFloatPart(const u8* src, u8* dst, std::int64_t n) {
  toFloatByFours(src, dst, n);
}

#ifdef __AVX512F__
/// All of them at once under a mask register.
template <>
inline void toFloatPart<Vector64>(const u8* src, u8* dst, std::int64_t n) {
  const auto lanes = firstLanes<__mmask16>(n);
  storeMasked(lanes, dst, toFloats(Vector64{loadMasked(lanes, src)}).bits);
}
#endif

/// 16 pixels, 64 bytes, in vectors of any width.
template <class Vector, Stores stores>
inline void toFloat16(const u8* src, u8* dst) {
  for (int at = 0; at < 64; at += Vector::size) {
    storeVector<stores>(toFloats(Vector::load(src + at)), dst + at);
  }
}

/// Unrolled by 4: the processor fetches the instructions of a shorter loop slower than it stores.
template <class Vector, Stores stores>
inline void toFloatBody16(const u8* src, u8* dst, std::int64_t n) {
  for (; n >= 64; src += 256, dst += 256, n -= 64) {
    for (int at = 0; at < 256; at += 64) toFloat16<Vector, stores>(src + at, dst + at);
  }
  for (; n >= 16; src += 64, dst += 64, n -= 16) toFloat16<Vector, stores>(src, dst);
  if (n != 0) toFloatPart<Vector>(src, dst, n);
}

/// A row with plain stores, which start on a boundary if the row is long enough to gain by it.
template <class Vector>
inline void toFloatRowPlain(const u8* src, u8* dst, std::int64_t n) {
  if (n >= toFloatAlignFromPixels && isAligned(dst, 4) && !isAligned(dst, Vector::size)) {
    const std::int64_t peel = bytesToBoundary(dst, Vector::size) / 4;
    toFloatPart<Vector>(src, dst, peel);
    src += 4 * peel;
    dst += 4 * peel;
    n -= peel;
  }
  toFloatBody16<Vector, Stores::plain>(src, dst, n);
}

/// A row that streams from the first cache line on. The reported size of a line need be no multiple of a
/// store, and a row at an address between floats never reaches a boundary: it takes 16-byte streaming stores
/// then if they are aligned, else plain ones.
template <class Vector>
inline void toFloatRowStreaming(const u8* src, u8* dst, std::int64_t n, std::int64_t lineBytes) {
  const std::int64_t peel = pixelsToBoundary(reinterpret_cast<std::uintptr_t>(dst), lineBytes, 4, n);
  toFloatByFours(src, dst, peel);
  src += 4 * peel;
  dst += 4 * peel;
  n -= peel;
  if (isAligned(dst, Vector::size)) {
    toFloatBody16<Vector, Stores::streaming>(src, dst, n);
  } else if (isAligned(dst, Vector16::size)) {
    toFloatBody16<Vector16, Stores::streaming>(src, dst, n);
  } else {
    toFloatBody16<Vector, Stores::plain>(src, dst, n);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Convert
