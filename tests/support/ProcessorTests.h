#pragma once

namespace Zorvan::Test {

/// Registers the tests of the processor that the command line describes: that the first call of an entry
/// selects the variant of `--expected-index=`. Without that option there is nothing to expect.
void registerProcessorTests();

}  // namespace Zorvan::Test
