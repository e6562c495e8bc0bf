// For programs that run the kernels of the library.

#include "tests/support/Limits.h"

namespace Zorvan::Test {

const bool limitsAreLowered = false;

void registerPlanOutcomeTests() {}

}  // namespace Zorvan::Test
