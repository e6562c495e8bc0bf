#include <gtest/gtest.h>

#include "tests/support/EntryTests.h"
#include "tests/support/Options.h"
#include "tests/support/ProcessorTests.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  Zorvan::Test::parseOptions(argc, argv);
  Zorvan::Test::registerProcessorTests();
  Zorvan::Test::registerEntryTests();
  return RUN_ALL_TESTS();
}
