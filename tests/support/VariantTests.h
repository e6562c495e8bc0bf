#pragma once

#include <functional>
#include <string>

namespace Zorvan::Test {

/// The highest index of a variant that this processor can run; it can run all lower ones too.
int highestVariant();

/// Registers one GoogleTest test for each variant, named `family.entry/variant`. `body` gets the variant's
/// index. Variants that this processor cannot run are reported as skipped.
void registerForEachVariant(const std::string& family, const std::string& entry,
                            std::function<void(int)> body);

/// Whether the name of a registered entry contains the text of `--entry=`.
bool entryWasFound();

}  // namespace Zorvan::Test
