#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/EntryTests.h"
#include "tests/support/Limits.h"
#include "tests/support/Options.h"
#include "tests/support/ProcessorTests.h"
#include "tests/support/VariantTests.h"

namespace {

int fail(const char* text) {
  std::fprintf(stderr, "%s\n", text);
  return 2;
}

}  // namespace

// A program that tests nothing fails: options that select nothing are mistyped.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  Zorvan::Test::parseOptions(argc, argv);
  Zorvan::Test::registerProcessorTests();
  Zorvan::Test::registerEntryTests();
  Zorvan::Test::registerPlanOutcomeTests();
  if (!Zorvan::Test::options().entry.empty() && !Zorvan::Test::entryWasFound()) {
    return fail("no test has a name that contains the text of --entry");
  }

  const int result = RUN_ALL_TESTS();
  const bool listsOnly = GTEST_FLAG_GET(list_tests);
  if (!listsOnly && testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
    return fail("the options leave no test to run");
  }
  return result;
}
