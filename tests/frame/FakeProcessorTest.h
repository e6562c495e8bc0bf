#pragma once

#include <gtest/gtest.h>

#include "tests/support/FakeProcessor.h"
#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {

/// Starts each test with a processor without features and a library in its initial state.
class FakeProcessorTest : public testing::Test {
 protected:
  void SetUp() override { fakeWith(processor); }
  void TearDown() override { EXPECT_EQ(processor.faults(), 0); }

  std::uint64_t mask() {
    resetProcessorState();
    std::uint64_t mask = 0;
    EXPECT_EQ(Primitives::coreBuildFeatureMask(&mask), 1);
    return mask;
  }

  /// Sets all features that the fifth and later variants need, and the state that the operating system saves.
  void giveAvx512() {
    processor.setHighestLeaf(7);
    processor.setSavedState(0xE7);
    processor.setLeaf(1, {0x00050654, 0, 0xFFFFFFFF, 0xFFFFFFFF});
    processor.setLeaf(
        7, {0, 1u << 3 | 1u << 5 | 1u << 8 | 1u << 16 | 1u << 17 | 1u << 28 | 1u << 30 | 1u << 31, 0, 0});
  }

  FakeProcessor processor;
};

}  // namespace Zorvan::Test
