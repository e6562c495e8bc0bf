#pragma once

// Count, sum and sum of squares of the selected bytes of a region, in one pass. Squares are added in lanes of
// 32 bits, which are emptied before they overflow; the totals are exact.

#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/statistic/deviation/deviation.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_bytes.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// Calls `piece` for parts of each row whose squares fit the lanes.
template <class Piece>
inline void forEachPiece(Plane<const u8> src, Plane<const u8> mask, Size roi, Piece piece) {
  const auto cutRow = [&](const u8* p, const u8* m) {
    ZORVAN_NOTE_PLAN("squares of a row in the lanes", roi.width <= squaresInLanes);
    for (std::int64_t c = 0; c < roi.width; c += squaresInLanes) {
      piece(p + c, m + c, roi.width - c < squaresInLanes ? roi.width - c : squaresInLanes);
    }
  };
  forEachRow(roi.height, cutRow, src, mask);
}

/// 16 pixels per iteration, then 8, then scalar.
class ByteMoments16 {
 public:
  static Moments of(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    ByteMoments16 moments;
    forEachPiece(src, mask, roi,
                 [&](const u8* p, const u8* m, std::int64_t pixels) { moments.piece(p, m, pixels); });
    return {static_cast<std::uint32_t>(sumOfQwords(moments.counts_) + moments.scalarCount_),
            static_cast<double>(sumOfQwords(moments.sums_) + moments.scalarSum_), moments.squares_};
  }

 private:
  void add(__m128i pixels, __m128i mask, __m128i& squares) {
    const __m128i zero = _mm_setzero_si128(), none = unselected(mask);
    pixels = _mm_andnot_si128(none, pixels);
    sums_ = _mm_add_epi64(sums_, _mm_sad_epu8(pixels, zero));
    counts_ = _mm_add_epi64(counts_, countSelected(none));
    const __m128i low = _mm_unpacklo_epi8(pixels, zero), high = _mm_unpackhi_epi8(pixels, zero);
    squares = _mm_add_epi32(squares, _mm_madd_epi16(low, low));
    squares = _mm_add_epi32(squares, _mm_madd_epi16(high, high));
  }

  void piece(const u8* p, const u8* m, std::int64_t left) {
    const __m128i zero = _mm_setzero_si128();
    __m128i squares = zero;
    for (; left >= 16; p += 16, m += 16, left -= 16) {
      add(Vector16::load(p).bits, Vector16::load(m).bits, squares);
    }
    if (left >= 8) {
      add(loadLow<8>(p), loadLow<8>(m), squares);
      p += 8, m += 8, left -= 8;
    }
    std::int64_t scalarSquares = 0;
    for (; left != 0; ++p, ++m, --left) {
      const std::int32_t pixel = *p & selectedBits(*m);
      scalarSum_ += pixel;
      scalarCount_ += *m != 0;
      scalarSquares += pixel * pixel;
    }
    squares = _mm_add_epi64(_mm_unpacklo_epi32(squares, zero), _mm_unpackhi_epi32(squares, zero));
    squares_ += static_cast<double>(sumOfQwords(squares) + scalarSquares);
  }

  __m128i sums_ = _mm_setzero_si128(), counts_ = sums_;
  std::int64_t scalarSum_ = 0, scalarCount_ = 0;
  double squares_ = 0;
};

class ByteMoments32;
class ByteMoments64;

#ifdef __AVX2__
/// Squares of even and odd bytes in lanes of 32 bits.
template <class Vector>
struct ByteSquares {
  using Integers = decltype(Vector::bits);
  Integers even = zeroes<Integers>(), odd = even;

  void add(Integers bytes) {
    const Integers low = bytes & broadcastWords<Integers>(0xFF), high = srli_epi16<8>(bytes);
    even = add_epi32(even, madd_epi16(low, low));
    odd = add_epi32(odd, madd_epi16(high, high));
  }
  Integers sums() const { return add_epi32(even, odd); }
};

/// Calls `part` for parts of the region whose squares fit the lanes: strips of long rows, or several short
/// rows, since to empty the lanes takes longer than to sum a short row.
template <int vectorBytes, class Part>
inline void forEachPart(Plane<const u8> src, Plane<const u8> mask, Size roi, Part part) {
  for (std::int64_t c = 0; c < roi.width; c += squaresInLanes) {
    const std::int64_t pixels = roi.width - c < squaresInLanes ? roi.width - c : squaresInLanes;
    const std::int64_t rowsInLanes = squaresInLanes / ((pixels + vectorBytes - 1) & -vectorBytes);
    ZORVAN_NOTE_PLAN("squares of all rows in the lanes", rowsInLanes >= roi.height);
    for (std::int64_t r = 0; r < roi.height; r += rowsInLanes) {
      const std::int64_t rows = roi.height - r < rowsInLanes ? roi.height - r : rowsInLanes;
      part(src.from(r, c), mask.from(r, c), rows, pixels);
    }
  }
}

/// 32 pixels per iteration; the tail is filled up with zeros.
class ByteMoments32 {
 public:
  static Moments of(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    ByteMoments32 moments;
    return withPrefetch(roi, 2, [&](auto prefetchAfter) {
      forEachPart<32>(src, mask, roi, [&](auto... part) { moments.add(part..., prefetchAfter); });
      return Moments{moments.count_, static_cast<double>(sumOfQwords(moments.sums_)),
                     sumOf(moments.squares_)};
    });
  }

 private:
  void add(Plane<const u8> src, Plane<const u8> mask, std::int64_t rows, std::int64_t pixels,
           auto prefetchAfter) {
    ByteSquares<Vector32> squares;
    __m256i sums = sums_;
    std::uint32_t count = count_;
    const auto addVector = [&](__m256i bytes, __m256i selection) {
      const __m256i none = unselected(selection);
      bytes = _mm256_andnot_si256(none, bytes);
      count += static_cast<std::uint32_t>(countClear(none));
      sums = _mm256_add_epi64(sums, _mm256_sad_epu8(bytes, _mm256_setzero_si256()));
      squares.add(bytes);
    };
    const auto addRow = [&](const u8* p, const u8* m) {
      std::int64_t c = 0;
      for (; pixels - c >= 32; c += 32) {
        prefetchAfter(p + c);
        prefetchAfter(m + c);
        addVector(Vector32::load(p + c).bits, Vector32::load(m + c).bits);
      }
      if (c != pixels) addVector(loadFirst32(p + c, pixels - c), loadFirst32(m + c, pixels - c));
    };
    forEachRow(rows, addRow, src, mask);
    squares_ = addWidened(squares_, squares.sums());
    sums_ = sums;
    count_ = count;
  }

  __m256i sums_ = _mm256_setzero_si256();
  __m256d squares_ = _mm256_setzero_pd();
  std::uint32_t count_ = 0;
};
#endif

#ifdef __AVX512BW__
/// 64 pixels per iteration; the tail is masked.
class ByteMoments64 {
 public:
  static Moments of(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    ByteMoments64 moments;
    return withPrefetch(roi, 2, [&](auto prefetchAfter) {
      forEachPart<64>(src, mask, roi, [&](auto... part) { moments.add(part..., prefetchAfter); });
      return Moments{moments.count_, static_cast<double>(sumOfQwords(moments.sums_)),
                     sumOf(moments.squares_)};
    });
  }

 private:
  void add(Plane<const u8> src, Plane<const u8> mask, std::int64_t rows, std::int64_t pixels,
           auto prefetchAfter) {
    ByteSquares<Vector64> squares;
    __m512i sums = sums_;
    std::uint32_t count = count_;
    const auto addRow = [&](const u8* p, const u8* m) {
      forEachSelection(m, pixels, [&](std::int64_t c, __mmask64 selected) {
        prefetchAfter(p + c);
        prefetchAfter(m + c);
        const __m512i bytes = loadMasked(selected, p + c);
        count += static_cast<std::uint32_t>(countOf(selected));
        sums = _mm512_add_epi64(sums, _mm512_sad_epu8(bytes, _mm512_setzero_si512()));
        squares.add(bytes);
      });
    };
    forEachRow(rows, addRow, src, mask);
    squares_ = addWidened(squares_, squares.sums());
    sums_ = sums;
    count_ = count;
  }

  __m512i sums_ = _mm512_setzero_si512();
  __m512d squares_ = _mm512_setzero_pd();
  std::uint32_t count_ = 0;
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
