#pragma once

namespace Zorvan::Test {

/// Whether this program's kernels have low limits on the sizes of images, so that small ones take every path.
/// Every test program of entries exists with both.
extern const bool limitsAreLowered;

/// Whether some test has run its entry through all offsets, as one at least of every family does.
extern bool allOffsetsWereUsed;

/// With lowered limits and in runs of all cases, a test for each variant that names every outcome of a plan
/// that no test before it has led to. Registered last.
void registerPlanOutcomeTests();

}  // namespace Zorvan::Test
