#pragma once

namespace Zorvan::Test {

/// With `--expected-index=`, registers the tests that this processor selects that variant.
void registerProcessorTests();

}  // namespace Zorvan::Test
