#pragma once

// Count and sum of the selected words of a region, row by row in 32 bits.
//
// 16-byte vectors: the sum of a row is a signed value of 32 bits, and 2^31 or more wraps to a negative
// number. 32- and 64-byte vectors: each lane of a row is a signed value of 32 bits, which holds at least
// 32768 pixels.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_bytes.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_tiles.h"
#include "zorvan/primitives/kernels/statistic/selection.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// 64 pixels per iteration, then 4, then scalar.
class MaskedWords16 {
 public:
  static MaskedSum of(Plane<const u16> src, Plane<const u8> mask, Size roi) {
    std::int64_t total = 0;
    std::uint32_t count = 0;
    const auto addRow = [&](const u16* p, const u8* m) { total += row(p, m, roi.width, count); };
    forEachRow(roi.height, addRow, src, mask);
    return {count, static_cast<double>(total)};
  }

 private:
  struct Lanes {
    __m128i even = _mm_setzero_si128(), odd = even, count = even;

    void addWords(__m128i words, __m128i none) {
      words = _mm_andnot_si128(none, words);
      even = _mm_add_epi32(even, _mm_and_si128(words, _mm_set1_epi32(0xFFFF)));
      odd = _mm_add_epi32(odd, _mm_srli_epi32(words, 16));
    }
    void addCount(__m128i none) { count = _mm_add_epi64(count, countSelected(none)); }
    void add16(const u16* p, const u8* m) {
      const __m128i none = unselected(Vector16::load(m).bits);
      addWords(Vector16::load(p).bits, _mm_unpacklo_epi8(none, none));
      addWords(Vector16::load(p + 8).bits, _mm_unpackhi_epi8(none, none));
      addCount(none);
    }
    void add4(const u16* p, const u8* m) {
      const __m128i none = unselected(loadLow<4>(m));
      addWords(loadLow<8>(p), _mm_unpacklo_epi8(none, none));
      addCount(none);
    }
  };

  static std::int32_t row(const u16* p, const u8* m, std::int64_t left, std::uint32_t& count) {
    Lanes lanes;
    std::uint32_t sum = 0;
    for (; left >= 64; p += 64, m += 64, left -= 64) {
      lanes.add16(p, m);
      lanes.add16(p + 16, m + 16);
      lanes.add16(p + 32, m + 32);
      lanes.add16(p + 48, m + 48);
    }
    for (; left >= 4; p += 4, m += 4, left -= 4) lanes.add4(p, m);
    for (; left != 0; ++p, ++m, --left) {
      const std::int32_t bits = selectedBits(*m);
      sum += static_cast<std::uint32_t>(loadAs<u16>(p) & bits);
      count += static_cast<std::uint32_t>(1 & bits);
    }
    count += static_cast<std::uint32_t>(sumOfQwords(lanes.count));
    return static_cast<std::int32_t>(
        sum + static_cast<std::uint32_t>(sumOfDwords(_mm_add_epi32(lanes.even, lanes.odd))));
  }
};

struct MaskedWords32;
struct MaskedWords64;

#ifdef __AVX2__
/// Calls `sum` for as many rows at a time as the lanes of a vector hold, at least one.
template <int vectorBytes, class Sum>
inline void forEachRowsInLanes(Plane<const u16> src, Plane<const u8> mask, Size roi, Sum sum) {
  const int rowsInLanes = wordRowsInLanes<vectorBytes>(roi.width);
  ZORVAN_NOTE_PLAN("wordRowsInLanes of all rows", rowsInLanes >= roi.height);
  for (std::int64_t from = 0; from < roi.height; from += rowsInLanes) {
    sum(src.from(from, 0), mask.from(from, 0),
        roi.height - from < rowsInLanes ? roi.height - from : rowsInLanes);
  }
}

/// 16 pixels per iteration, then 8, then scalar. Short rows share lanes as long as these can hold their sums:
/// to empty the lanes takes longer than to sum a short row.
struct MaskedWords32 {
  static MaskedSum of(Plane<const u16> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 3, [&](auto prefetchAfter) {
      __m256d total = _mm256_setzero_pd();
      std::int64_t scalarSum = 0;
      std::uint32_t count = 0;
      forEachRowsInLanes<32>(src, mask, roi, [&](auto srcRows, auto maskRows, std::int64_t rows) {
        UnsignedPairs<Vector32> pairs;
        const auto add = [&](__m256i words, __m128i selection) {
          const __m128i none = unselected(selection);
          pairs.add(_mm256_andnot_si256(_mm256_cvtepi8_epi16(none), words));
          count += countSelected16(none);
        };
        const auto addRow = [&](const u16* p, const u8* m) {
          std::int64_t left = roi.width;
          for (; left >= 16; p += 16, m += 16, left -= 16) {
            prefetchAfter(p);
            prefetchAfter(m);
            add(Vector32::load(p).bits, Vector16::load(m).bits);
          }
          if (left >= 8) {
            add(_mm256_zextsi128_si256(Vector16::load(p).bits), loadLow<8>(m));
            p += 8, m += 8, left -= 8;
          }
          for (; left != 0; ++p, ++m, --left) {
            const std::int32_t bits = selectedBits(*m);
            scalarSum += loadAs<u16>(p) & bits;
            count += static_cast<std::uint32_t>(1 & bits);
          }
        };
        forEachRow(rows, addRow, srcRows, maskRows);
        total = addWidened(addWidened(total, pairs.low()), pairs.high);
      });
      return MaskedSum{count, sumOf(total) + static_cast<double>(scalarSum)};
    });
  }
};
#endif

#ifdef __AVX512BW__
/// 64 pixels per iteration; the tail is masked.
struct MaskedWords64 {
  static MaskedSum of(Plane<const u16> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 3, [&](auto prefetchAfter) {
      __m512d total = _mm512_setzero_pd();
      std::uint32_t count = 0;
      forEachRowsInLanes<64>(src, mask, roi, [&](auto srcRows, auto maskRows, std::int64_t rows) {
        UnsignedPairs<Vector64> pairs;
        const auto addRow = [&](const u16* p, const u8* m) {
          forEachSelection(m, roi.width, [&](std::int64_t c, __mmask64 selected) {
            prefetchAfter(p + c, 128);
            prefetchAfter(m + c);
            pairs.add(loadMasked(static_cast<__mmask32>(selected), p + c));
            pairs.add(loadMasked(static_cast<__mmask32>(selected >> 32), p + c + 32));
            count += static_cast<std::uint32_t>(countOf(selected));
          });
        };
        forEachRow(rows, addRow, srcRows, maskRows);
        total = addWidened(addWidened(total, pairs.low()), pairs.high);
      });
      return MaskedSum{count, sumOf(total)};
    });
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
