#pragma once

// Copies and fills runs of pixels that are mostly short and soon read again: rows of a stripe and its
// borders. Runs of a vector and more take vectors, the last of which overlaps the one before; shorter ones
// take pairs of overlapping words. Only the bytes of the run are read and written.

#include <cstdint>

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

template <class Word>
inline void copyOverlapping(unsigned char* dst, const unsigned char* src, std::int64_t bytes) {
  const Word first = loadAs<Word>(src);
  const Word last = loadAs<Word>(src + bytes - sizeof(Word));
  storeAs(dst, first);
  storeAs(dst + bytes - sizeof(Word), last);
}

inline void copyRun(void* to, const void* from, std::int64_t bytes) {
  auto* dst = static_cast<unsigned char*>(to);
  const auto* src = static_cast<const unsigned char*>(from);
  if (bytes >= Vector16::size) {
    const Vector16 last = Vector16::load(src + bytes - Vector16::size);
    std::int64_t i = 0;
#ifdef __AVX__
    for (; i + Vector32::size <= bytes; i += Vector32::size) Vector32::load(src + i).store(dst + i);
#endif
    for (; i + Vector16::size <= bytes; i += Vector16::size) Vector16::load(src + i).store(dst + i);
    last.store(dst + bytes - Vector16::size);
  } else if (bytes >= 8) {
    copyOverlapping<std::uint64_t>(dst, src, bytes);
  } else if (bytes >= 4) {
    copyOverlapping<std::uint32_t>(dst, src, bytes);
  } else if (bytes >= 2) {
    copyOverlapping<u16>(dst, src, bytes);
  } else if (bytes == 1) {
    *dst = *src;
  }
}

/// A run of constant length: one or two moves.
template <int bytes>
inline void copyFixedRun(void* to, const void* from) {
  auto* dst = static_cast<unsigned char*>(to);
  const auto* src = static_cast<const unsigned char*>(from);
  if constexpr (bytes >= 16) {
    copyOverlapping<__m128i>(dst, src, bytes);
  } else if constexpr (bytes >= 8) {
    copyOverlapping<std::uint64_t>(dst, src, bytes);
  } else if constexpr (bytes >= 4) {
    copyOverlapping<std::uint32_t>(dst, src, bytes);
  } else if constexpr (bytes >= 2) {
    copyOverlapping<u16>(dst, src, bytes);
  } else {
    *dst = *src;
  }
}

/// Calls `use` with a copier for runs of `bytes` bytes, so that many short rows of one length take one branch
/// on the length.
template <class Use>
inline void withCopier(std::int64_t bytes, Use use) {
  switch (bytes) {
#define FIXED(n) \
  case n:        \
    return use([](void* to, const void* from) { copyFixedRun<n>(to, from); });
    FIXED(1)
    FIXED(2)
    FIXED(3)
    FIXED(4)
    FIXED(6)
    FIXED(8)
    FIXED(12)
    FIXED(16)
    FIXED(24)
    FIXED(32)
#undef FIXED
    default:
      return use([bytes](void* to, const void* from) { copyRun(to, from, bytes); });
  }
}

/// Pixels are moved as integers, which keeps all bits of a signalling NaN.
template <int pixelBytes>
struct PixelBits;
template <>
struct PixelBits<1> {
  using type = u8;
};
template <>
struct PixelBits<2> {
  using type = u16;
};
template <>
struct PixelBits<4> {
  using type = std::uint32_t;
};

/// Pixels of 1, 2 or 4 bytes; `value` has the bits of one.
template <class Bits>
inline void fillRun(void* to, Bits value, std::int64_t pixels) {
  auto* dst = static_cast<unsigned char*>(to);
  const std::int64_t bytes = pixels * std::int64_t{sizeof(Bits)};
  if (bytes < Vector16::size) {
    for (std::int64_t i = 0; i < bytes; i += sizeof(Bits)) storeAs(dst + i, value);
    return;
  }
  const Vector16 lanes = Vector16::broadcast(value);
  for (std::int64_t i = 0; i + Vector16::size <= bytes; i += Vector16::size) lanes.store(dst + i);
  lanes.store(dst + bytes - Vector16::size);
}

}  // namespace
}  // namespace Zorvan::Primitives
