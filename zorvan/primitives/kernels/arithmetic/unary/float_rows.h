#pragma once

// Rows of floats, from one image to another or in place, by an operation on the bits of a pixel and on
// vectors. Any address.

#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"

namespace Zorvan::Primitives::Unary {
namespace {

struct SquareFloats {
  static std::uint32_t of(std::uint32_t bits) {
    const float x = __builtin_bit_cast(float, bits);
    return __builtin_bit_cast(std::uint32_t, x * x);
  }
  template <class Vector>
  static Vector of(Vector pixels) {
    const auto x = asFloats(pixels.bits);
    return {asIntegers(x * x)};
  }
};

/// Clears the sign bit, also of NaN.
struct AbsoluteFloats {
  static constexpr std::uint32_t withoutSign = 0x7FFFFFFF;
  static std::uint32_t of(std::uint32_t bits) { return bits & withoutSign; }
  template <class Vector>
  static Vector of(Vector pixels) {
    return {pixels.bits & Vector::broadcast(withoutSign).bits};
  }
};

template <class Operation>
inline void floatsScalar(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n > 0; src += 4, dst += 4, --n) storeAs(dst, Operation::of(loadAs<std::uint32_t>(src)));
}

template <class Operation, class Vector>
inline void floatsVector(const unsigned char* src, unsigned char* dst) {
  Operation::of(Vector::load(src)).store(dst);
}

/// Vectors of 16 bytes, unrolled to `unrolledPixels` per iteration, then scalar.
template <class Operation, int unrolledPixels, bool alignedSrc, bool alignedDst>
inline void floatsBody16(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= unrolledPixels; src += 4 * unrolledPixels, dst += 4 * unrolledPixels, n -= unrolledPixels) {
    for (int at = 0; at < 4 * unrolledPixels; at += Vector16::size) {
      const Vector16 pixels = alignedSrc ? Vector16::loadAligned(src + at) : Vector16::load(src + at);
      if constexpr (alignedDst) {
        Operation::of(pixels).storeAligned(dst + at);
      } else {
        Operation::of(pixels).store(dst + at);
      }
    }
  }
  floatsScalar<Operation>(src, dst, n);
}

/// Scalar up to a 16-byte boundary of the destination, then vectors with aligned access where possible.
template <class Operation, int unrolledPixels>
inline void floatsRow16(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  const std::int64_t peel = planPeel(addressOf(dst), n, Vector16::size);
  floatsScalar<Operation>(src, dst, peel);
  src += 4 * peel;
  dst += 4 * peel;
  n -= peel;
  const bool srcIsAligned = isAligned(src, Vector16::size);
  if (isAligned(dst, Vector16::size)) {
    if (srcIsAligned) return floatsBody16<Operation, unrolledPixels, true, true>(src, dst, n);
    return floatsBody16<Operation, unrolledPixels, false, true>(src, dst, n);
  }
  if (srcIsAligned) return floatsBody16<Operation, unrolledPixels, true, false>(src, dst, n);
  floatsBody16<Operation, unrolledPixels, false, false>(src, dst, n);
}

#ifdef __AVX__
/// Fewer than 16 pixels: 8, then 4, then scalar.
template <class Operation>
inline void floatsPartial(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  if (n & 8) {
    floatsVector<Operation, Vector32>(src, dst);
    src += 32;
    dst += 32;
  }
  if (n & 4) {
    floatsVector<Operation, Vector16>(src, dst);
    src += 16;
    dst += 16;
  }
  floatsScalar<Operation>(src, dst, n & 3);
}

/// 16 pixels, as many bytes as a cache line.
template <class Operation, class Vector, bool streaming>
inline void floatsLine(const unsigned char* src, unsigned char* dst) {
  for (int at = 0; at < 64; at += Vector::size) {
    const Vector pixels = Operation::of(Vector::load(src + at));
    if constexpr (streaming) {
      pixels.stream(dst + at);
    } else {
      pixels.store(dst + at);
    }
  }
}

/// Rows of at least 16 aligned pixels take 32-byte vectors from a 32-byte boundary on, two cache lines per
/// iteration. Shorter rows and rows of misaligned pixels are scalar.
template <class Operation, bool streaming>
inline void floatsRow32(const unsigned char* src, unsigned char* dst, std::int64_t n,
                        std::int64_t prefetchBytes) {
  if (n < 16 || !isAligned(dst, 4)) return floatsScalar<Operation>(src, dst, n);
  const std::int64_t peel = planPeel(addressOf(dst), n, Vector32::size);
  floatsScalar<Operation>(src, dst, peel);
  src += 4 * peel;
  dst += 4 * peel;
  n -= peel;
  const std::int64_t bytes = 4 * n;
  std::int64_t i = 0;
  const auto line = [&](std::int64_t at) {
    if constexpr (streaming) prefetch(src + at, prefetchBytes);
    floatsLine<Operation, Vector32, streaming>(src + at, dst + at);
  };
  for (; i + 128 <= bytes; i += 128) line(i), line(i + 64);
  if (i + 64 <= bytes) line(i), i += 64;
  floatsPartial<Operation>(src + i, dst + i, (bytes - i) / 4);
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Unary
