#pragma once

namespace Zorvan::Test {

/// Registers tests of what `--expected-index=` and `--expected-cache=` say of this processor.
void registerProcessorTests();

}  // namespace Zorvan::Test
