#pragma once

// Operations on bytes: squares, and the roots that a few compares decide. `pixel` computes one pixel, `lanes`
// a vector of them. All of them fit into 16 bits.

#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// Scaled up so far that every result but 0 saturates: the same for squares and roots.
struct BytesOtherThanZero {
  u8 pixel(u8 x) const { return x != 0 ? 255 : 0; }
  template <class I>
  I lanes(I x) const {
    return sub_epi8(zeroes<I>(), min_epu8(x, broadcastBytes<I>(1)));
  }
};

/// Scaled down so far that every result rounds to 0.
struct BytesOfZero {
  u8 pixel(u8) const { return 0; }
  template <class I>
  I lanes(I) const {
    return zeroes<I>();
  }
};

/// Squares of bytes, computed in words. `Scaling` scales a square by `pixel(s)` and a vector of them by
/// `lanes(s)`; the result is saturated here. Bytes above `limit` saturate as `limit` does and are replaced by
/// it.
template <class Scaling>
struct SquareOfBytes {
  Scaling scaling;
  int limit = 255;

  u8 pixel(u8 x) const {
    const int least = x < limit ? x : limit;
    const int s = scaling.pixel(least * least);
    return static_cast<u8>(s < 255 ? s : 255);
  }
  template <class I>
  I lanes(I x) const {
    const I least = min_epu8(x, broadcastBytes<I>(limit));
    return packus_epi16(square(unpacklo_epi8(least, zeroes<I>())), square(unpackhi_epi8(least, zeroes<I>())));
  }

 private:
  template <class I>
  I square(I words) const {
    return scaling.lanes(mullo_epi16(words, words));
  }
};

/// f = 0.
struct SquareKept {
  int pixel(int s) const { return s; }
  template <class I>
  I lanes(I s) const {
    return s;
  }
};

/// f from -1 to -7.
struct SquareRaised {
  int by;
  int pixel(int s) const { return s << by; }
  template <class I>
  I lanes(I s) const {
    return sll_epi16(s, _mm_cvtsi32_si128(by));
  }
};

/// f from 1 to 3. Odd squares are 1 modulo 8: the bits that are shifted out are less than half, or half after
/// an even value.
struct SquareTruncated {
  int f;
  int pixel(int s) const { return s >> f; }
  template <class I>
  I lanes(I s) const {
    return srl_epi16(s, _mm_cvtsi32_si128(f));
  }
};

/// f from 4 to 9: half is added, or one less than half for odd f. Only odd f have ties, all of them after
/// even values: they round down.
struct SquareRounded {
  int f;
  int term() const { return (1 << (f - 1)) - (f & 1); }
  int pixel(int s) const { return (s + term()) >> f; }
  template <class I>
  I lanes(I s) const {
    return srl_epi16(adds_epu16(s, broadcastWords<I>(term())), _mm_cvtsi32_si128(f));
  }
};

/// f from 10 on, where adding half would saturate. The 1 for odd f is subtracted first, and the rounding
/// average with 0 adds the half.
struct SquareAveraged {
  int f;
  int pixel(int s) const {
    const int twice = f <= 17 ? (s - (s > 0 ? f & 1 : 0)) >> (f - 1) : 0;
    return (twice + 1) >> 1;
  }
  template <class I>
  I lanes(I s) const {
    const I twice = srl_epi16(subs_epu16(s, broadcastWords<I>(f & 1)), _mm_cvtsi32_si128(f - 1));
    return avg_epu16(twice, zeroes<I>());
  }
};

/// The number of `limits` that a byte exceeds.
template <int count>
struct BytesAbove {
  u8 limits[count];

  u8 pixel(u8 x) const {
    int above = 0;
    for (const u8 limit : limits) above += x > limit;
    return static_cast<u8>(above);
  }
  template <class I>
  I lanes(I x) const {
    I above = zeroes<I>();
    for (const u8 limit : limits) {
      above = add_epi8(above, min_epu8(subs_epu8(x, broadcastBytes<I>(limit)), broadcastBytes<I>(1)));
    }
    return above;
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Unary
