#pragma once

// Rows of integers as vectors, for sums: full vectors from a vector's boundary on, where a pixel starts on
// it, and one vector for each end of the row, filled up with zeros, which change no sum. Nothing outside the
// row is read.
//
// `body` gets the full vectors, `end` the others.

#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

struct ZeroFilledRows32;
struct ZeroFilledRows64;

#ifdef __AVX2__
struct ZeroFilledRows32 {
  using Vector = Vector32;
  using Doubles = __m256d;

  template <class T, class Body, class End>
  static void forEachVector(const T* row, std::int64_t pixels, auto prefetchAfter, Body body, End end) {
    const auto* p = reinterpret_cast<const unsigned char*>(row);
    std::int64_t bytes = pixels * std::int64_t{sizeof(T)};
    if (bytes < 32) return end(loadFirst32(p, bytes));
    const std::int64_t peel = bytesToBoundary(p, 32);
    if (peel != 0 && peel % sizeof(T) == 0) {
      end(Vector32::load(p).bits & firstBytes32(peel));
      p += peel;
      bytes -= peel;
    }
    for (; bytes >= 128; p += 128, bytes -= 128) {
      prefetchAfter(p, 128);
      body(Vector32::load(p).bits);
      body(Vector32::load(p + 32).bits);
      body(Vector32::load(p + 64).bits);
      body(Vector32::load(p + 96).bits);
    }
    for (; bytes >= 32; p += 32, bytes -= 32) body(Vector32::load(p).bits);
    if (bytes != 0) {
      end(_mm256_andnot_si256(firstBytes32(32 - bytes), Vector32::load(p + bytes - 32).bits));
    }
  }
};
#endif

#ifdef __AVX512BW__
/// Full vectors start on a 32-byte boundary; those of long rows on a 64-byte one, after half a vector.
struct ZeroFilledRows64 {
  using Vector = Vector64;
  using Doubles = __m512d;

  template <class T, class Body, class End>
  static void forEachVector(const T* row, std::int64_t pixels, auto prefetchAfter, Body body, End end) {
    const auto* p = reinterpret_cast<const unsigned char*>(row);
    std::int64_t bytes = pixels * std::int64_t{sizeof(T)};
    const auto part = [](const unsigned char* at, std::int64_t count) {
      return loadMasked(firstLanes<__mmask64>(count), at);
    };
    const std::int64_t toBoundary = bytesToBoundary(p, 32);
    if (toBoundary != 0 && toBoundary % sizeof(T) == 0) {
      const std::int64_t peel = toBoundary < bytes ? toBoundary : bytes;
      end(part(p, peel));
      p += peel;
      bytes -= peel;
    }
    if (bytes >= 96 && bytesToBoundary(p, 64) == 32) {
      body(part(p, 32));
      p += 32;
      bytes -= 32;
    }
    const auto full = [&](const unsigned char* at) {
      prefetchAfter(at);
      body(Vector64::load(at).bits);
    };
    for (; bytes >= 512; p += 512, bytes -= 512) {
      full(p);
      full(p + 64);
      full(p + 128);
      full(p + 192);
      full(p + 256);
      full(p + 320);
      full(p + 384);
      full(p + 448);
    }
    for (; bytes >= 64; p += 64, bytes -= 64) body(Vector64::load(p).bits);
    if (bytes != 0) end(part(p, bytes));
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
