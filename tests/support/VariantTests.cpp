#include "tests/support/VariantTests.h"

#include <gtest/gtest.h>

#include "tests/support/Options.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Test {
namespace {

class VariantTest : public testing::Test {
 public:
  VariantTest(int variant, std::function<void(int)> body) : variant_(variant), body_(std::move(body)) {}

  void TestBody() override {
    if (variant_ > highestVariant()) {
      GTEST_SKIP() << Primitives::variantNames[variant_] << " does not run on this processor";
    }
    body_(variant_);
  }

 private:
  int variant_;
  std::function<void(int)> body_;
};

bool foundEntry = false;
std::vector<DrawnCases> drawnCases;

bool contains(const std::string& name, const std::string& part) {
  return name.find(part) != std::string::npos;
}

}  // namespace

int highestVariant() {
  static const int highest = [] {
    Primitives::coreSelectVariant();
    return std::int32_t{Primitives::variantIndex};
  }();
  return highest;
}

void registerForEachVariant(const std::string& family, const std::string& entry,
                            std::function<void(int)> body) {
  if (!contains(entry, options().entry)) return;
  foundEntry = true;
  for (int variant = 0; variant < Primitives::variantCount; ++variant) {
    const std::string name = Primitives::variantNames[variant];
    if (!contains(name, options().variant)) continue;
    testing::RegisterTest(family.c_str(), (entry + "/" + name).c_str(), nullptr, nullptr, __FILE__, __LINE__,
                          [variant, body]() -> testing::Test* { return new VariantTest(variant, body); });
  }
}

void registerDrawnCases(const std::string& family, const std::string& entry, std::function<void(int)> body) {
  drawnCases.push_back({family + "." + entry, body});
  registerForEachVariant(family, entry, std::move(body));
}

const std::vector<DrawnCases>& allDrawnCases() { return drawnCases; }

bool entryWasFound() { return foundEntry; }

}  // namespace Zorvan::Test
