#pragma once

// Exact sums of regions of words with 32- and 64-byte vectors. A region is cut into tiles small enough for
// 32-bit lanes. The lanes of each tile are added into lanes of doubles, where the sum of any region is exact.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/statistic/lanes_of_doubles.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"
#include "zorvan/primitives/kernels/statistic/zero_filled_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

class WordSum32;
class WordSum64;
class SignedWordSum32;
class SignedWordSum64;

#ifdef __AVX2__

/// Sums of pairs of words in the 32-bit lanes they share.
struct SignedPairs32 {
  __m256i lanes = _mm256_setzero_si256();
  void add(__m256i words) { lanes = _mm256_add_epi32(lanes, _mm256_madd_epi16(words, _mm256_set1_epi16(1))); }
  __m256i sums() const { return lanes; }
};

/// One accumulator gets both words of a lane as one number, the other one the high words alone: one operation
/// less than separating the words first. The difference is the sum of the low words.
struct UnsignedPairs32 {
  __m256i whole = _mm256_setzero_si256(), high = whole;
  void add(__m256i words) {
    whole = _mm256_add_epi32(whole, words);
    high = _mm256_add_epi32(high, _mm256_srli_epi32(words, 16));
  }
  __m256i sums() const {
    return _mm256_add_epi32(high, _mm256_sub_epi32(whole, _mm256_slli_epi32(high, 16)));
  }
};

struct Tiles32 {
  using Rows = ZeroFilled32;
  __m256d total = _mm256_setzero_pd();

  void add(__m256i lanes) { total = plus(total, lanes); }
  double sum() const { return sumOf(total); }
};

#ifdef __AVX512BW__
struct SignedPairs64 {
  __m512i lanes = _mm512_setzero_si512();
  void add(__m512i words) { lanes = _mm512_add_epi32(lanes, _mm512_madd_epi16(words, _mm512_set1_epi16(1))); }
  __m512i sums() const { return lanes; }
};

struct UnsignedPairs64 {
  __m512i whole = _mm512_setzero_si512(), high = whole;
  void add(__m512i words) {
    whole = _mm512_add_epi32(whole, words);
    high = _mm512_add_epi32(high, _mm512_srli_epi32(words, 16));
  }
  __m512i sums() const {
    return _mm512_add_epi32(high, _mm512_sub_epi32(whole, _mm512_slli_epi32(high, 16)));
  }
};

struct Tiles64 {
  using Rows = ZeroFilled64;
  __m512d total = _mm512_setzero_pd();

  void add(__m512i lanes) { total = plus(total, lanes); }
  double sum() const { return sumOf(total); }
};
#endif

template <class Tiles, class Pairs, int limit>
class TiledSum {
 public:
  static double of(const void* src, int srcStep, Size roi) {
    const Size tile = planTile(roi, limit);
    ZORVAN_NOTE_PLAN("planTile narrower than the region", tile.width < roi.width);
    ZORVAN_NOTE_PLAN("planTile lower than the region", tile.height < roi.height);
    const bool runTogether = tile.width == roi.width && srcStep == std::int64_t{2} * roi.width;
    return withPrefetch(wordSumDistances, roi, 2, [&](auto prefetchAfter) {
      Tiles tiles;
      for (std::int64_t r = 0; r < roi.height; r += tile.height) {
        const std::int64_t rows = roi.height - r < tile.height ? roi.height - r : tile.height;
        for (std::int64_t c = 0; c < roi.width; c += tile.width) {
          const std::int64_t columns = roi.width - c < tile.width ? roi.width - c : tile.width;
          const auto* corner = rowAt(static_cast<const unsigned char*>(src), srcStep, r) + 2 * c;
          tiles.add(runTogether ? run(corner, rows * columns, prefetchAfter)
                                : rowByRow(corner, srcStep, rows, columns, prefetchAfter, tiles));
        }
      }
      return tiles.sum();
    });
  }

 private:
  /// A tile of whole rows without gaps between them.
  static auto run(const unsigned char* p, std::int64_t pixels, auto prefetchAfter) {
    Pairs pairs;
    const auto add = [&pairs](auto words) { pairs.add(words); };
    Tiles::Rows::template forEachVector<2>(p, 2 * pixels, prefetchAfter, add, add);
    return pairs.sums();
  }

  /// Adds all strips but the last to `tiles`; returns the lanes of the last one.
  static auto rowByRow(const unsigned char* corner, int srcStep, std::int64_t rows, std::int64_t columns,
                       auto prefetchAfter, Tiles& tiles) {
    Pairs pairs;
    const auto add = [&pairs](auto words) { pairs.add(words); };
    for (std::int64_t row = 0; row < rows; ++row) {
      if (ZORVAN_PLANNED("rows of a further strip", row != 0 && row % stripRows == 0)) {
        tiles.add(pairs.sums());
        pairs = Pairs();
      }
      Tiles::Rows::template forEachVector<2>(rowAt(corner, srcStep, row), 2 * columns, prefetchAfter, add, add);
    }
    return pairs.sums();
  }
};

class WordSum32 : public TiledSum<Tiles32, UnsignedPairs32, unsignedTilePixels> {};
class SignedWordSum32 : public TiledSum<Tiles32, SignedPairs32, signedTilePixels> {};
#endif
#ifdef __AVX512BW__
class WordSum64 : public TiledSum<Tiles64, UnsignedPairs64, unsignedTilePixels> {};
class SignedWordSum64 : public TiledSum<Tiles64, SignedPairs64, signedTilePixels> {};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
