#pragma once

// Fills a row with 16-byte stores: the plain fill of the four older variants.
//
// One unaligned store reaches the first 16-byte boundary, then 64 bytes a turn on it, streaming where the
// plan says so, then unaligned stores of 16, then the last bytes in pieces. Only the bytes of the row are
// written.

#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
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

template <class T>
inline void fillRow(const PhasedPattern<T>& pattern, unsigned char* dst, std::int64_t length,
                    bool streaming) {
  Vector16 lanes = Vector16::loadAligned(pattern.bytes);
  if (length >= 64) {
    if (const std::int64_t peel = bytesToBoundary(dst, 16); peel != 0) {
      lanes.store(dst);
      dst += peel;
      length -= peel;
      if (peel % std::int64_t{sizeof(T)} != 0) lanes = Vector16::load(pattern.bytes + peel);
    }
    if (streaming) {
      for (; length >= 64; dst += 64, length -= 64) {
        lanes.stream(dst);
        lanes.stream(dst + 16);
        lanes.stream(dst + 32);
        lanes.stream(dst + 48);
      }
      fenceStores();
    } else {
      for (; length >= 64; dst += 64, length -= 64) {
        lanes.storeAligned(dst);
        lanes.storeAligned(dst + 16);
        lanes.storeAligned(dst + 32);
        lanes.storeAligned(dst + 48);
      }
    }
  }
  for (; length >= 16; dst += 16, length -= 16) lanes.store(dst);

  storeFirst(dst, lanes, length);
}

}  // namespace
}  // namespace Zorvan::Primitives
