#include "tests/entries/StatisticAgreement.h"
#include "tests/entries/StatisticRules.h"
#include "tests/support/EntryTests.h"

namespace Zorvan::Test {

template <class Routine>
void registerStatistic(const char* name, const CheckRules& rules, Routine* reference,
                       const Primitives::Row<Routine>& row) {
  registerEntry<typename AgreementOf<Routine>::type>("Statistic", name, rules, reference, row);
}

void registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {12, 17, 23, 24, 32768, 40000};  // blocks of words, and short rows
  rules.parameters = {2, 0};                                // hints
  rules.largeRegions = {{256, 257}, {3, 30000}, {1, 70000}, {32769, 2}};
  rules.forcedCacheBytes = {1 << 20};
  registerExtremeRules();
  registerMeanRules();
#define REGISTER(name, ...) registerStatistic(#name, rules, &Reference::name, Primitives::table.name);
#define ENTRY(...) REGISTER(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Statistic.def"
#undef ENTRY
#undef REGISTER
}

}  // namespace Zorvan::Test
