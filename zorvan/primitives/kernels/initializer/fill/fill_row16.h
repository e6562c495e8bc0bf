#pragma once

// Fills a row with 16-byte stores: the plain fill of the four older variants.
//
// One unaligned store reaches the first 16-byte boundary, 64 bytes per iteration follow, streaming if the
// plan says so, then unaligned stores of 16, then the last bytes. Only the bytes of the row are written.

#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Fill {
namespace {

/// The value in all lanes, at every phase: 16 bytes from any offset below 16 continue the pixels of a row
/// that began that many bytes earlier.
template <class T>
struct PhasedPattern {
  alignas(16) unsigned char bytes[32];

  explicit PhasedPattern(T value) {
    const Vector16 all = Vector16::broadcast(value);
    all.storeAligned(bytes);
    all.storeAligned(bytes + 16);
  }
};

/// Stores 64 bytes per iteration. `dst` and `length` move on to what is left.
template <Stores stores>
inline void fillBy64(Vector16 lanes, u8*& dst, std::int64_t& length) {
  for (; length >= 64; dst += 64, length -= 64) {
    for (int i = 0; i < 64; i += Vector16::size) storeVector<stores>(lanes, dst + i);
  }
}

template <class T>
inline void fillRow16(const PhasedPattern<T>& pattern, u8* dst, std::int64_t length, bool streaming) {
  Vector16 lanes = Vector16::loadAligned(pattern.bytes);
  if (length >= 64) {
    if (const std::int64_t peel = bytesToBoundary(dst, 16); peel != 0) {
      lanes.store(dst);
      dst += peel;
      length -= peel;
      if (peel % std::int64_t{sizeof(T)} != 0) lanes = Vector16::load(pattern.bytes + peel);
    }
    if (streaming) {
      fillBy64<Stores::streaming>(lanes, dst, length);
      fenceStores();
    } else {
      fillBy64<Stores::aligned>(lanes, dst, length);
    }
  }
  for (; length >= 16; dst += 16, length -= 16) lanes.store(dst);

  storeFirst(dst, lanes, length);
}

}  // namespace
}  // namespace Zorvan::Primitives::Fill
