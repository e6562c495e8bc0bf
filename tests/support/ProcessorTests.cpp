#include "tests/support/ProcessorTests.h"

#include <cpuid.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/Options.h"
#include "tests/support/VariantTests.h"
#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {
namespace {

using namespace Primitives;

bool isGenuineIntel() {
  unsigned eax = 0, name[3] = {};
  __cpuid(0, eax, name[0], name[2], name[1]);
  return std::memcmp(name, "GenuineIntel", 12) == 0;
}

class ProcessorTest : public testing::Test {
 public:
  explicit ProcessorTest(void (*body)()) : body_(body) {}
  void TestBody() override { body_(); }

 private:
  void (*body_)();
};

void selectsTheExpectedVariant() {
  variantIndex = -1;
  u8 pixel = 0;
  EXPECT_EQ(ippiSet_8u_C1R(3, &pixel, 1, {1, 1}), 0);
  EXPECT_EQ(pixel, 3);
  EXPECT_EQ(variantIndex, options().expectedIndex);
  EXPECT_EQ(highestVariant(), options().expectedIndex);
}

void selectsAlikeForAllVendors() {
  const int status = coreSelectVariant();
  EXPECT_EQ(status == 20, !isGenuineIntel()) << "status " << status;
  EXPECT_EQ(variantIndex, options().expectedIndex);
}

void reportsTheExpectedCache() {
  std::int32_t size = -2;
  EXPECT_EQ(coreGetCacheSize(&size), 0);
  EXPECT_EQ(size, options().expectedCache);
}

void registerTest(const char* name, void (*body)()) {
  testing::RegisterTest("Processor", name, nullptr, nullptr, __FILE__, __LINE__,
                        [body]() -> testing::Test* { return new ProcessorTest(body); });
}

}  // namespace

void registerProcessorTests() {
  if (options().expectedIndex >= 0) {
    registerTest("SelectsTheExpectedVariant", selectsTheExpectedVariant);
    registerTest("SelectsAlikeForAllVendors", selectsAlikeForAllVendors);
  }
  if (options().expectedCache > 0) registerTest("ReportsTheExpectedCache", reportsTheExpectedCache);
}

}  // namespace Zorvan::Test
