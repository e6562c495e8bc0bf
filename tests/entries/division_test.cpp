// Quotients: single pixels equal the definition. In vectors they come from an estimate of the reciprocal,
// which may round a tie, or a float's last bits, differently than a division; they equal the steps of that
// estimate.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/reference/Images.h"
#include "tests/support/EntryTests.h"
#include "tests/support/Quotients.h"

namespace Zorvan::Test {
namespace {

template <class T>
struct Image {
  T* first;
  int step;
};
/// The n-th image of a call.
template <class T, class Call>
Image<T> imageOf(const Call& call, const Case& c, std::size_t n) {
  const int step = c.images[n].step(c.roi.width * static_cast<int>(sizeof(T)), sizeof(T));
  const int back = step < 0 ? -step * (c.roi.height - 1) : 0;
  return {reinterpret_cast<T*>(call.blocks()[n].data() + back), step};
}

template <class T, class Routine>
class DivisionCheck;

template <class T, class... More>
class DivisionCheck<T, int(const T*, More...)> {
 public:
  using Call = EntryCall<int(const T*, More...)>;
  using Routine = int (*)(const T*, More...);

  DivisionCheck(int variant, Routine reference, Routine actual)
      : variant_(variant), reference_(reference), actual_(actual) {}

  void cases(const CaseRange& range, const std::vector<int>& factors) {
    std::size_t next = 0;
    forEachCase(range, Call::imageCount(), [&](const Case& c) {
      if (!testing::Test::HasFailure())
        compare(c, factors[(options().level == Level::fuzz ? c.seed : next++) % factors.size()]);
    });
  }

  /// Null pointers before sizes before steps, and nothing written.
  void refusals() {
    for (const StepType type : {StepType::onePixelMore, StepType::zero, StepType::negative}) {
      for (int odd = 0; odd < Call::imageCount(); ++odd) {
        Case c{{5, 2}, {}, options().seed};
        c.images.assign(static_cast<std::size_t>(Call::imageCount()),
                        {StepType::onePixelMore, {Placement::Edge::inside, 0}, Content::random});
        c.images[static_cast<std::size_t>(odd)].stepType = type;
        for (int null = -1; null < Call::pointerCount(); ++null) {
          for (const Size roi : {Size{5, 2}, Size{0, 2}, Size{5, 0}, Size{-1, 2}, Size{5, -1}, Size{0, 0}}) {
            if (null < 0 && roi.width > 0 && roi.height > 0) continue;
            Call expected(c, 0, 0), actual(c, 0, 1);
            for (Call* call : {&expected, &actual}) {
              if (null >= 0) call->setNull(null);
              call->setRoi(roi);
            }
            EXPECT_EQ(expected.run(reference_), actual.run(actual_)) << null << " " << roi.width;
            expectSameBlocks(expected, actual, c);
          }
        }
      }
    }
  }

 private:
  void compare(const Case& c, int f) {
    Call expected(c, f, 0), actual(c, f, 1);
    const std::size_t last = c.images.size() - 1, second = c.images.size() == 3 ? 1 : last;
    std::vector<T> divisors, numerators;
    for (int r = 0; r < c.roi.height; ++r) {
      for (int i = 0; i < c.roi.width; ++i) {
        const auto d = imageOf<T>(expected, c, 0), x = imageOf<T>(expected, c, second);
        divisors.push_back(Reference::get(d.first, d.step, r, i));
        numerators.push_back(Reference::get(x.first, x.step, r, i));
      }
    }
    int expectedStatus = expected.run(reference_), actualStatus = 0;
    const std::string where = c.text() + "\n  scale factor " + std::to_string(f);
    const std::string fault = faultOf([&] { actualStatus = actual.run(actual_); });
    ASSERT_EQ(fault, "") << where;
    ASSERT_EQ(expectedStatus, actualStatus) << where;

    const auto want = imageOf<T>(expected, c, last), got = imageOf<T>(actual, c, last);
    const auto d = imageOf<T>(actual, c, 0), x = imageOf<T>(actual, c, second);
    for (int r = want.step == 0 ? c.roi.height - 1 : 0; r < c.roi.height; ++r) {
      const auto rowOf = [r](const Image<T>& image) {
        return reinterpret_cast<const T*>(reinterpret_cast<const char*>(image.first) +
                                          std::ptrdiff_t{r} * image.step);
      };
      const InVectors vectors = vectorsOfRow(variant_, rowOf(d), rowOf(x), rowOf(got), c.roi.width);
      const std::size_t row = static_cast<std::size_t>(r * c.roi.width);
      std::vector<T> quotients;
      for (int i = 0; i < c.roi.width; ++i) quotients.push_back(Reference::get(want.first, want.step, r, i));
      if (expectedStatus >= 0)
        putVectorQuotients(variant_, vectors, &divisors[row], &numerators[row], quotients.data(), f);
      for (int i = 0; i < c.roi.width; ++i) {
        const std::size_t at = static_cast<std::size_t>(i);
        const T a = quotients[at], b = Reference::get(got.first, got.step, r, i);
        ASSERT_TRUE(samePixel(a, b)) << +numerators[row + at] << " / " << +divisors[row + at] << " is " << +b
                                     << " instead of " << +a << " at " << i << " of row " << r << "\n"
                                     << where;
        Reference::put(want.first, want.step, r, i, b);
      }
    }
    expectSameBlocks(expected, actual, c);
  }

  void expectSameBlocks(const Call& expected, const Call& actual, const Case& c) {
    for (std::size_t b = 0; b < expected.blocks().size(); ++b) {
      ASSERT_TRUE(expected.blocks()[b].sameBytes(actual.blocks()[b]))
          << expected.blocks()[b].difference(actual.blocks()[b]) << c.text();
    }
  }

  int variant_;
  Routine reference_, actual_;
};

template <class T, class... More>
void registerDivision(const std::string& name, int (*reference)(const T*, More...),
                      const Primitives::Row<int(const T*, More...)>& row) {
  registerDrawnCases("Division", name, [reference, &row](int variant) {
    DivisionCheck<T, int(const T*, More...)> check(variant, reference, row.routine[1 + variant]);
    CaseRange range;
    check.cases(range, {0,
                        1,
                        -1,
                        0,
                        2,
                        -2,
                        8,
                        9,
                        -15,
                        -16,
                        0,
                        15,
                        16,
                        17,
                        -30,
                        -31,
                        -32,
                        5,
                        -7,
                        40,
                        -40,
                        2147483647,
                        -2147483647 - 1});
    if (options().level != Level::fuzz) check.refusals();
  });
}

/// The status reports zero divisors but not NaNs, in every place of rows of every length.
void nansAndZeros(int variant) {
  const auto divide = Primitives::table.ippiDiv_32f_C1R.routine[1 + variant];
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (int n = 1; n <= 70; ++n) {
    for (std::size_t place = 0; place < static_cast<std::size_t>(n); ++place) {
      std::vector<float> divisors(70, 2.0F), numerators(70, 3.0F), quotients(70);
      const auto run = [&] {
        return divide(divisors.data(), 4 * n, numerators.data(), 4 * n, quotients.data(), 4 * n, {n, 1});
      };
      divisors[place] = nan;
      ASSERT_EQ(run(), 0) << "a NaN as divisor " << place << " of " << n;
      ASSERT_TRUE(std::isnan(quotients[place]));
      numerators[place] = nan;
      ASSERT_EQ(run(), 0);
      ASSERT_TRUE(std::isnan(quotients[place]));
      divisors[place] = 0;
      ASSERT_EQ(run(), 2) << "a zero under a NaN, place " << place << " of " << n;
      ASSERT_TRUE(std::isnan(quotients[place]));
    }
  }
}

}  // namespace

void registerEntryTests() {
#define CHECK(name, ...) registerDivision(#name, &Reference::name, Primitives::table.name);
#define ENTRY(...) CHECK(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Divide.def"
#undef ENTRY
#undef CHECK
  registerForEachVariant("Division", "NansAndZeros", nansAndZeros);
}

}  // namespace Zorvan::Test
