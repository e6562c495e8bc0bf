#pragma once

// Count and sum of the selected words of a region, row by row in 32 bits.
//
// 16-byte vectors: the sum of a row is a signed value of 32 bits, and 2^31 or more wraps to a negative
// number. 32- and 64-byte vectors: each lane of a row is a signed value of 32 bits, which holds at least
// 32768 pixels.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_bytes.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_words.h"
#include "zorvan/primitives/kernels/statistic/selection.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// 64 pixels per iteration, then 4, then scalar.
class MaskedWords16 {
 public:
  static MaskedSum of(const std::uint16_t* src, int srcStep, const std::uint8_t* mask, int maskStep,
                      Size roi) {
    std::int64_t total = 0;
    std::uint32_t count = 0;
    for (std::int64_t r = 0; r < roi.height; ++r) {
      total += row(reinterpret_cast<const unsigned char*>(rowAt(src, srcStep, r)), rowAt(mask, maskStep, r),
                   roi.width, count);
    }
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
    void addCount(__m128i none) {
      const __m128i ones = _mm_andnot_si128(none, _mm_set1_epi8(1));
      count = _mm_add_epi64(count, _mm_sad_epu8(ones, _mm_setzero_si128()));
    }
    void add16(const unsigned char* p, const std::uint8_t* m) {
      const __m128i none = unselected(Vector16::load(m).bits);
      addWords(Vector16::load(p).bits, _mm_unpacklo_epi8(none, none));
      addWords(Vector16::load(p + 16).bits, _mm_unpackhi_epi8(none, none));
      addCount(none);
    }
    void add4(const unsigned char* p, const std::uint8_t* m) {
      const __m128i none = unselected(loadLow<4>(m));
      addWords(loadLow<8>(p), _mm_unpacklo_epi8(none, none));
      addCount(none);
    }
  };

  static std::int32_t row(const unsigned char* p, const std::uint8_t* m, std::int64_t left,
                          std::uint32_t& count) {
    Lanes lanes;
    std::uint32_t sum = 0;
    for (; left >= 64; p += 128, m += 64, left -= 64) {
      lanes.add16(p, m);
      lanes.add16(p + 32, m + 16);
      lanes.add16(p + 64, m + 32);
      lanes.add16(p + 96, m + 48);
    }
    for (; left >= 4; p += 8, m += 4, left -= 4) lanes.add4(p, m);
    for (; left != 0; p += 2, ++m, --left) {
      const std::int32_t bits = selectedBits(*m);
      sum += static_cast<std::uint32_t>(loadAs<std::uint16_t>(p) & bits);
      count += static_cast<std::uint32_t>(1 & bits);
    }
    count += static_cast<std::uint32_t>(MaskedByteLanes16::total(lanes.count));
    return static_cast<std::int32_t>(
        sum + static_cast<std::uint32_t>(sumOfLanes32(_mm_add_epi32(lanes.even, lanes.odd))));
  }
};

struct MaskedWords32;
struct MaskedWords64;

#ifdef __AVX2__
/// 16 pixels per iteration, then 8, then scalar.
struct MaskedWords32 {
  static MaskedSum of(const std::uint16_t* src, int srcStep, const std::uint8_t* mask, int maskStep,
                      Size roi) {
    return withPrefetch(roi, 3, [&](auto prefetchAfter) {
      __m256d total = _mm256_setzero_pd();
      double scalarSum = 0;
      std::uint32_t count = 0;
      for (std::int64_t r = 0; r < roi.height; ++r) {
        const auto* p = reinterpret_cast<const unsigned char*>(rowAt(src, srcStep, r));
        const std::uint8_t* m = rowAt(mask, maskStep, r);
        std::int64_t left = roi.width;
        __m256i even = _mm256_setzero_si256(), odd = even;
        const auto add = [&](__m256i words, __m128i selection) {
          const __m128i none = unselected(selection);
          words = _mm256_andnot_si256(_mm256_cvtepi8_epi16(none), words);
          even = _mm256_add_epi32(even, _mm256_and_si256(words, _mm256_set1_epi32(0xFFFF)));
          odd = _mm256_add_epi32(odd, _mm256_srli_epi32(words, 16));
          count +=
              16 - static_cast<std::uint32_t>(_mm_popcnt_u32(static_cast<unsigned>(_mm_movemask_epi8(none))));
        };
        for (; left >= 16; p += 32, m += 16, left -= 16) {
          prefetchAfter(p);
          add(Vector32::load(p).bits, Vector16::load(m).bits);
        }
        if (left >= 8) {
          add(_mm256_zextsi128_si256(Vector16::load(p).bits), loadLow<8>(m));
          p += 16, m += 8, left -= 8;
        }
        std::uint32_t sum = 0;
        for (; left != 0; p += 2, ++m, --left) {
          const std::int32_t bits = selectedBits(*m);
          sum += static_cast<std::uint32_t>(loadAs<std::uint16_t>(p) & bits);
          count += static_cast<std::uint32_t>(1 & bits);
        }
        total = plus(plus(total, even), odd);
        scalarSum += sum;
      }
      return MaskedSum{count, sumOf(total) + scalarSum};
    });
  }
};
#endif

#ifdef __AVX512BW__
/// 64 pixels per iteration; the tail is masked. Short rows share lanes as long as these can hold their sums:
/// to empty the lanes takes longer than to sum a short row.
struct MaskedWords64 {
  static MaskedSum of(const std::uint16_t* src, int srcStep, const std::uint8_t* mask, int maskStep,
                      Size roi) {
    return withPrefetch(roi, 3, [&](auto prefetchAfter) {
      __m512d total = _mm512_setzero_pd();
      std::uint32_t count = 0;
      const int rowsInLanes = wordRowsInLanes(roi.width);
      ZORVAN_NOTE_PLAN("wordRowsInLanes of all rows", rowsInLanes >= roi.height);
      for (std::int64_t from = 0; from < roi.height; from += rowsInLanes) {
        const std::int64_t end = roi.height - from < rowsInLanes ? roi.height : from + rowsInLanes;
        __m512i whole = _mm512_setzero_si512(), high = whole;  // see UnsignedPairs32
        const auto add = [&](__m512i words) {
          whole = _mm512_add_epi32(whole, words);
          high = _mm512_add_epi32(high, _mm512_srli_epi32(words, 16));
        };
        for (std::int64_t r = from; r < end; ++r) {
          const auto* p = reinterpret_cast<const unsigned char*>(rowAt(src, srcStep, r));
          const std::uint8_t* m = rowAt(mask, maskStep, r);
          forEachSelection(m, roi.width, [&](std::int64_t c, __mmask64 selected) {
            prefetchAfter(p + 2 * c, 128);
            prefetchAfter(m + c);
            add(_mm512_maskz_loadu_epi16(static_cast<__mmask32>(selected), p + 2 * c));
            add(_mm512_maskz_loadu_epi16(static_cast<__mmask32>(selected >> 32), p + 2 * c + 64));
            count += static_cast<std::uint32_t>(countOf(selected));
          });
        }
        const __m512i low = _mm512_sub_epi32(whole, _mm512_slli_epi32(high, 16));
        total = plus(plus(total, low), high);
      }
      return MaskedSum{count, sumOf(total)};
    });
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
