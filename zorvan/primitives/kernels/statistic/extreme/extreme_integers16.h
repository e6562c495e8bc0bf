#pragma once

// Minimum and maximum of bytes and signed words with 16-byte vectors: the older variants.
//
// Pixels before a 16-byte boundary are peeled in groups of 8, 4 and 1, if a pixel starts there. The main loop
// takes 32 pixels, with an accumulator for each of their vectors; the tail goes in groups of 16, 8, 4 and 1.
// Partial loads are filled up with the neutral value. The search ends after the first row that has the type's
// limit; no later row is read.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// The first `bytes`, 8 or 4, from memory, the others from `filler`.
template <int bytes>
inline __m128i loadFilled(const void* p, __m128i filler) {
  if constexpr (bytes == 8) {
    return _mm_castpd_si128(
        _mm_move_sd(_mm_castsi128_pd(filler), _mm_castsi128_pd(_mm_cvtsi64_si128(loadAs<std::int64_t>(p)))));
  } else {
    static_assert(bytes == 4);
    return _mm_castps_si128(
        _mm_move_ss(_mm_castsi128_ps(filler), _mm_castsi128_ps(_mm_cvtsi32_si128(loadAs<std::int32_t>(p)))));
  }
}

template <class Lanes>
class IntegerExtreme16 {
  using T = typename Lanes::Pixel;

 public:
  static T find(const T* src, int srcStep, Size roi) {
    IntegerExtreme16 search;
    for (std::int64_t r = 0; r < roi.height; ++r) {
      search.row(reinterpret_cast<const unsigned char*>(rowAt(src, srcStep, r)), roi.width);
      if (search.scalar_ == Lanes::limit || Lanes::holds(search.joined(), Lanes::limit)) return Lanes::limit;
    }
    return Lanes::better(Lanes::bestOf(search.joined()), search.scalar_);
  }

 private:
  static constexpr int bytes = sizeof(T);
  static constexpr int accumulators = 32 * bytes / 16;

  IntegerExtreme16() {
    for (__m128i& lanes : lanes_) lanes = Lanes::template spread<Vector16>(Lanes::neutral);
  }

  __m128i joined() const {
    __m128i all = lanes_[0];
    for (int i = 1; i < accumulators; ++i) all = Lanes::better(all, lanes_[i]);
    return all;
  }

  /// `pixels` pixels, if the row has as many left.
  template <int pixels>
  void step(const unsigned char*& p, std::int64_t& left) {
    if (left < pixels) return;
    constexpr int chunkBytes = pixels * bytes;
    if constexpr (chunkBytes >= 16) {
      for (int i = 0; i < chunkBytes / 16; ++i) {
        lanes_[i] = Lanes::better(lanes_[i], Vector16::load(p + 16 * i).bits);
      }
    } else {
      lanes_[0] = Lanes::better(lanes_[0],
                                loadFilled<chunkBytes>(p, Lanes::template spread<Vector16>(Lanes::neutral)));
    }
    p += chunkBytes;
    left -= pixels;
  }
  void scalar(const unsigned char*& p, std::int64_t left) {
    for (; left != 0; p += bytes, --left) scalar_ = Lanes::better(scalar_, loadAs<T>(p));
  }

  void row(const unsigned char* p, std::int64_t left) {
    const std::int64_t toBoundary = bytesToBoundary(p, 16);
    if (toBoundary % bytes == 0 && toBoundary / bytes < left) {
      std::int64_t peel = toBoundary / bytes;
      left -= peel;
      step<8>(p, peel);
      step<4>(p, peel);
      scalar(p, peel);
    }
    while (left >= 32) step<32>(p, left);
    step<16>(p, left);
    step<8>(p, left);
    step<4>(p, left);
    scalar(p, left);
  }

  __m128i lanes_[accumulators];
  T scalar_ = Lanes::neutral;
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
