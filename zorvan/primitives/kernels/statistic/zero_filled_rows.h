#pragma once

// Rows of integers as vectors, for sums: full vectors from a vector's boundary on, where a pixel starts on
// it, and one vector for each end of the row, filled up with zeros, which change no sum. Nothing outside the
// row is read.
//
// `body` gets the full vectors, `end` the others.

#include <type_traits>

#include "zorvan/primitives/kernels/simd/vectors.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

#ifdef __AVX2__
/// The first `count` bytes set, the others clear; up to 32.
inline __m256i lowBytes(std::int64_t count) {
  const __m256i numbers = _mm256_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18,
                                           19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31);
  return _mm256_cmpgt_epi8(_mm256_set1_epi8(static_cast<char>(count)), numbers);
}

/// A row shorter than a vector, followed by zeros.
inline __m256i loadShort(const unsigned char* p, std::int64_t bytes) {
  alignas(32) unsigned char filled[32] = {};
  unsigned char* to = filled;
  const auto piece = [&](auto constant) {
    constexpr int size = decltype(constant)::value;
    if ((bytes & size) == 0) return;
    __builtin_memcpy(to, p, size);
    to += size;
    p += size;
  };
  piece(std::integral_constant<int, 16>{});
  piece(std::integral_constant<int, 8>{});
  piece(std::integral_constant<int, 4>{});
  piece(std::integral_constant<int, 2>{});
  piece(std::integral_constant<int, 1>{});
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(filled));
}

struct ZeroFilled32 {
  template <int pixelBytes, class Body, class End>
  static void forEachVector(const unsigned char* p, std::int64_t bytes, auto prefetchAfter, Body body, End end) {
    if (bytes < 32) return end(loadShort(p, bytes));
    const std::int64_t peel = bytesToBoundary(p, 32);
    if (peel != 0 && peel % pixelBytes == 0) {
      end(_mm256_and_si256(Vector32::load(p).bits, lowBytes(peel)));
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
      end(_mm256_andnot_si256(lowBytes(32 - bytes), Vector32::load(p + bytes - 32).bits));
    }
  }
};
#endif

#ifdef __AVX512BW__
/// Full vectors start on a 32-byte boundary; those of long rows on a 64-byte one, after half a vector.
struct ZeroFilled64 {
  template <int pixelBytes, class Body, class End>
  static void forEachVector(const unsigned char* p, std::int64_t bytes, auto prefetchAfter, Body body, End end) {
    const auto part = [](const unsigned char* at, std::int64_t count) {
      return _mm512_maskz_loadu_epi8(_bzhi_u64(~0ull, static_cast<unsigned>(count)), at);
    };
    const std::int64_t toBoundary = bytesToBoundary(p, 32);
    if (toBoundary != 0 && toBoundary % pixelBytes == 0) {
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
      body(_mm512_loadu_si512(at));
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
    for (; bytes >= 64; p += 64, bytes -= 64) body(_mm512_loadu_si512(p));
    if (bytes != 0) end(part(p, bytes));
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
