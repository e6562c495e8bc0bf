#include <cmath>

#include "tests/entries/StatisticAgreement.h"
#include "tests/reference/Images.h"
#include "tests/support/EntryTests.h"

namespace Zorvan::Test {

namespace {

template <class Routine>
void registerStatistic(const char* name, const CheckRules& rules, Routine* reference,
                       const Primitives::Row<Routine>& row) {
  registerEntry<typename AgreementOf<Routine>::type>("Statistic", name, rules, reference, row);
}

/// Long rows, whose sums wrap in older variants, have a test of their own.
using WordMean = int(const u16*, int, const u8*, int, Size, double*);
void registerStatistic(const char* name, CheckRules rules, WordMean* reference,
                       const Primitives::Row<WordMean>& row) {
  rules.isOpen = [](const Case& c) { return c.roi.width > 32767; };
  registerEntry("Statistic", name, rules, reference, row);
}

/// With a selected NaN, results and status differ by variant: it is replaced by a number before both calls.
using FloatExtremes = int(const float*, int, const u8*, int, Size, float*, float*, Point*, Point*);
template <auto& routine>
int withoutNans(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, float* minValue,
                float* maxValue, Point* minIndex, Point* maxIndex) {
  for (int r = 0; src != nullptr && r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      if (std::isnan(Reference::get(src, srcStep, r, c))) {
        Reference::put(const_cast<float*>(src), srcStep, r, c, 2.5f);
      }
    }
  }
  return routine(src, srcStep, mask, maskStep, roi, minValue, maxValue, minIndex, maxIndex);
}
FloatExtremes* testedRoutine = nullptr;

void registerStatistic(const char* name, const CheckRules& rules, FloatExtremes*,
                       const Primitives::Row<FloatExtremes>& row) {
  registerDrawnCases("Statistic", name, [rules, &row](int variant) {
    testedRoutine = row.routine[1 + variant];
    checkEntry<SameValue>(&withoutNans<Reference::ippiMinMaxIndx_32f_C1MR>, &withoutNans<testedRoutine>,
                          rules);
  });
}

}  // namespace

void registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {12, 17, 23, 24, 32768, 40000};  // blocks of words, and short rows
  rules.parameters = {2, 0};                                // hints
  rules.largeRegions = {{256, 257}, {3, 30000}, {1, 70000}, {32769, 2}, {4097, 2049}};
  rules.forcedCacheBytes = {1 << 20};
#define REGISTER(name, ...) registerStatistic(#name, rules, &Reference::name, Primitives::table.name);
#define ENTRY(...) REGISTER(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Statistic.def"
#undef ENTRY
#undef REGISTER
}

}  // namespace Zorvan::Test
