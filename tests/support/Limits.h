#pragma once

namespace Zorvan::Test {

/// Whether this program's kernels have low limits on the sizes of images, so that small images reach every
/// path. Every test program of entries is linked with both.
extern const bool limitsAreLowered;

/// Whether a test has run its entry at all offsets, as at least one of every family does.
extern bool allOffsetsWereUsed;

/// With lowered limits and in runs of all cases, registers a test for each variant that reports every outcome
/// of a plan that no earlier test has reached. Called last.
void registerPlanOutcomeTests();

}  // namespace Zorvan::Test
