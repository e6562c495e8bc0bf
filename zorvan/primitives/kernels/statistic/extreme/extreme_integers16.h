#pragma once

// Minimum and maximum of bytes and signed words with 16-byte vectors: the older variants.
//
// Pixels before a 16-byte boundary are peeled in groups of 8, 4 and 1, if a pixel starts there. The main loop
// takes 32 pixels, with an accumulator for each of their vectors; the tail goes in groups of 16, 8, 4 and 1.
// Partial loads are filled up with the neutral value. The search ends after the first row that has the type's
// limit; no later row is read.

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <Seek seek, class T>
class IntegerExtreme16 {
  using Lanes = ExtremeLanes<seek, T>;

 public:
  static T find(Plane<const T> src, Size roi) {
    IntegerExtreme16 search;
    for (std::int64_t r = 0; r < roi.height; ++r) {
      search.row(src.at(r), roi.width);
      if (search.scalar_ == Lanes::limit || Lanes::hasLimit(search.joined())) return Lanes::limit;
    }
    return Lanes::better(Lanes::bestOf(search.joined()), search.scalar_);
  }

 private:
  static constexpr int pixelBytes = sizeof(T);
  static constexpr int accumulators = 32 * pixelBytes / 16;

  static __m128i neutral() { return broadcastPixels<__m128i>(Lanes::neutral); }

  IntegerExtreme16() {
    for (__m128i& lanes : lanes_) lanes = neutral();
  }

  __m128i joined() const {
    __m128i all = lanes_[0];
    for (int i = 1; i < accumulators; ++i) all = Lanes::better(all, lanes_[i]);
    return all;
  }

  /// `pixels` pixels, if the row has as many left.
  template <int pixels>
  void group(const T*& p, std::int64_t& left) {
    if (left < pixels) return;
    constexpr int vectors = pixels * pixelBytes / 16;
    for (int i = 0; i < vectors; ++i) {
      lanes_[i] = Lanes::better(lanes_[i], Vector16::load(p + i * (16 / pixelBytes)).bits);
    }
    if constexpr (vectors == 0) {
      lanes_[0] = Lanes::better(lanes_[0], loadLow<pixels * pixelBytes>(p, neutral()));
    }
    p += pixels;
    left -= pixels;
  }
  void scalar(const T*& p, std::int64_t left) {
    for (; left != 0; ++p, --left) scalar_ = Lanes::better(scalar_, loadAs<T>(p));
  }

  void row(const T* p, std::int64_t left) {
    const std::int64_t toBoundary = bytesToBoundary(p, 16);
    if (toBoundary % pixelBytes == 0 && toBoundary / pixelBytes < left) {
      std::int64_t peel = toBoundary / pixelBytes;
      left -= peel;
      if constexpr (pixelBytes == 1) group<8>(p, peel);
      group<4>(p, peel);
      scalar(p, peel);
    }
    while (left >= 32) group<32>(p, left);
    group<16>(p, left);
    group<8>(p, left);
    group<4>(p, left);
    scalar(p, left);
  }

  __m128i lanes_[accumulators];
  T scalar_ = Lanes::neutral;
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
