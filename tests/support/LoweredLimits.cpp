// For programs that run the kernels with lowered limits. The kernels record the outcomes of their plans; the
// test here compares them with all possible ones.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tests/support/Limits.h"
#include "tests/support/Options.h"
#include "tests/support/VariantTests.h"
#include "zorvan/primitives/frame/Variants.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives {

PlanRecord* firstPlanRecord = nullptr;

}  // namespace Zorvan::Primitives

namespace Zorvan::Test {

const bool limitsAreLowered = true;

namespace {

using Primitives::PlanRecord;

/// The enumerator after the last `= ` in the text of a template argument, without its scope. Empty for a
/// number without an enumerator, which compilers print as a cast.
std::string enumeratorOf(const std::string& text) {
  const std::size_t from = text.rfind("= ") + 2;
  const std::string value = text.substr(from, text.find_first_of(";]", from) - from);
  const std::size_t scope = value.rfind("::");
  const bool isCast = value.find(')', scope == std::string::npos ? 0 : scope) != std::string::npos;
  return isCast || scope == std::string::npos ? "" : value.substr(scope + 2);
}

/// Empty if there is no such outcome.
std::string nameOf(const PlanRecord& record, int outcome) {
  if (record.isBoolean) return outcome == 0 ? "no" : outcome == 1 ? "yes" : "";
  return enumeratorOf(record.outcomes[outcome]);
}

/// Outcomes of an enumeration of two plans that only the other plan has.
bool isOfAnotherPlan(const std::string& plan, const std::string& outcome) {
  return plan == "planMorphForm" && outcome == "scan";
}

bool hasSuite(const std::string& name) {
  const testing::UnitTest& all = *testing::UnitTest::GetInstance();
  for (int i = 0; i < all.total_test_suite_count(); ++i) {
    if (all.GetTestSuite(i)->name() == name) return true;
  }
  return false;
}

/// Plans of fills and copies, which entries of other families call in some cases.
bool isOfAnotherProgram(const std::string& plan) {
  const bool fills = plan.find("Fill") != std::string::npos, copies = plan.find("Copy") != std::string::npos;
  return (fills && !hasSuite("Set")) || (copies && !hasSuite("Copy"));
}

void everyOutcome(int variant) {
  if (!allOffsetsWereUsed) return;  // a program of examples and special values
  std::map<std::string, std::map<std::string, bool>> plans;
  for (const PlanRecord* record = Primitives::firstPlanRecord; record != nullptr; record = record->next) {
    if (record->variant != std::string(Primitives::variantNames[variant])) continue;
    for (int outcome = 0; outcome < PlanRecord::most; ++outcome) {
      const std::string name = nameOf(*record, outcome);
      if (!name.empty()) plans[record->plan][name] |= record->reached[outcome];
    }
  }
  for (const auto& [plan, outcomes] : plans) {
    if (isOfAnotherProgram(plan)) continue;
    for (const auto& [outcome, reached] : outcomes) {
      EXPECT_TRUE(reached || isOfAnotherPlan(plan, outcome)) << plan << ": never " << outcome;
    }
  }
}

}  // namespace

void registerPlanOutcomeTests() {
  const bool isWholeRun = options().everyOffset && options().entry.empty();
  if (isWholeRun) registerForEachVariant("PlanOutcomes", "AllReached", everyOutcome);
}

}  // namespace Zorvan::Test
