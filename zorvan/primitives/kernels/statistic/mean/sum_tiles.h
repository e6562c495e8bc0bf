#pragma once

// Exact sums of regions of words with 32- and 64-byte vectors. A region is cut into tiles small enough for
// 32-bit lanes. The lanes of each tile are added into lanes of doubles, where the sum of any region is exact.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/folds.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"
#include "zorvan/primitives/kernels/statistic/zero_filled_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// Sums of pairs of words in the 32-bit lanes they share.
template <class Vector>
struct SignedPairs {
  using Integers = decltype(Vector::bits);
  Integers lanes = zeroes<Integers>();
  void add(Integers words) { lanes = add_epi32(lanes, madd_epi16(words, broadcastWords<Integers>(1))); }
  Integers sums() const { return lanes; }
};

/// One accumulator gets both words of a lane as one number, the other one the high words alone: one operation
/// less than separating the words first. The difference is the sum of the low words.
template <class Vector>
struct UnsignedPairs {
  using Integers = decltype(Vector::bits);
  Integers whole = zeroes<Integers>(), high = whole;
  void add(Integers words) {
    whole = add_epi32(whole, words);
    high = add_epi32(high, srli_epi32<16>(words));
  }
  Integers low() const { return sub_epi32(whole, slli_epi32<16>(high)); }
  Integers sums() const { return add_epi32(high, low()); }
};

template <class Rows, template <class> class Pairs, int limit>
class TiledSum {
  using Lanes = Pairs<typename Rows::Vector>;
  using Doubles = typename Rows::Doubles;

 public:
  template <class T>
  static double of(Plane<const T> src, Size roi) {
    const Size tile = planTile(roi, limit);
    ZORVAN_NOTE_PLAN("planTile narrower than the region", tile.width < roi.width);
    ZORVAN_NOTE_PLAN("planTile lower than the region", tile.height < roi.height);
    const bool oneRun = tile.width == roi.width && src.step == std::int64_t{sizeof(T)} * roi.width;
    return withPrefetch(wordSumDistances, roi, sizeof(T), [&](auto prefetchAfter) {
      Doubles total{};
      for (std::int64_t r = 0; r < roi.height; r += tile.height) {
        const std::int64_t rows = roi.height - r < tile.height ? roi.height - r : tile.height;
        for (std::int64_t c = 0; c < roi.width; c += tile.width) {
          const std::int64_t columns = roi.width - c < tile.width ? roi.width - c : tile.width;
          const Plane<const T> part = src.from(r, c);
          total = oneRun ? add(total, part, 1, rows * columns, prefetchAfter)
                         : add(total, part, rows, columns, prefetchAfter);
        }
      }
      return sumOf(total);
    });
  }

 private:
  /// Out of line, where the loops over short rows have all registers.
  template <class T>
  [[gnu::noinline]] static Doubles add(Doubles total, Plane<const T> tile, std::int64_t rows,
                                       std::int64_t columns, auto prefetchAfter) {
    Lanes lanes;
    const auto addWords = [&lanes](auto words) { lanes.add(words); };
    for (std::int64_t r = 0; r < rows; ++r) {
      if (ZORVAN_PLANNED("rows of a further strip", r != 0 && r % stripRows == 0)) {
        total = addWidened(total, lanes.sums());
        lanes = Lanes();
      }
      Rows::forEachVector(tile.at(r), columns, prefetchAfter, addWords, addWords);
    }
    return addWidened(total, lanes.sums());
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
