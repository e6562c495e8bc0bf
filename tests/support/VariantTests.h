#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {

/// The highest index of a variant that this processor can run; it can run all lower ones too.
int highestVariant();

/// During its lifetime all entries run in this variant.
class ForcedVariant {
 public:
  explicit ForcedVariant(int variant) : before_(Primitives::variantIndex) {
    Primitives::variantIndex = variant;
  }
  ~ForcedVariant() { Primitives::variantIndex = before_; }
  ForcedVariant(const ForcedVariant&) = delete;
  ForcedVariant& operator=(const ForcedVariant&) = delete;

 private:
  std::int32_t before_;
};

/// Registers one GoogleTest test for each variant, named `family.entry/variant`. `body` gets the variant's
/// index. Variants that this processor cannot run are reported as skipped.
void registerForEachVariant(const std::string& family, const std::string& entry,
                            std::function<void(int)> body);

/// Does the same for a body whose cases are drawn by forEachCase or forEachDraw, so that a fuzzer can draw
/// them.
void registerDrawnCases(const std::string& family, const std::string& entry, std::function<void(int)> body);

/// The name of a test and its body for any variant.
struct DrawnCases {
  std::string name;
  std::function<void(int)> body;
};

/// All that have been registered.
const std::vector<DrawnCases>& allDrawnCases();

/// Whether the name of a registered entry contains the text of `--entry=`.
bool entryWasFound();

}  // namespace Zorvan::Test
