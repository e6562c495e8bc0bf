#pragma once

#include <functional>
#include <string>

namespace Zorvan::Test {

/// The highest index of a variant that this processor runs; it runs all below too.
int highestVariant();

/// Registers one GoogleTest test for each variant, named `family.entry/variant`. `body` gets the variant's
/// index. A variant that this processor does not run is reported as skipped.
void registerForEachVariant(const std::string& family, const std::string& entry,
                            std::function<void(int)> body);

/// Whether `--entry=` has selected anything of what was registered.
bool hasWantedEntry();

}  // namespace Zorvan::Test
