#include "zorvan/primitives/kernels/common/cache_query.h"

#include <gtest/gtest.h>

#include "tests/support/Cache.h"

namespace Zorvan::Test {
namespace {

using namespace Primitives;

TEST(CacheQuery, KnowsWhatTheProcessorReports) {
  const ForcedCache cache(1 << 20, 128);
  EXPECT_TRUE(queryCacheSize().known);
  EXPECT_EQ(queryCacheSize().bytes, 1 << 20);
  EXPECT_EQ(queryCacheLineSize(), 128);
}

TEST(CacheQuery, KnowsNothingWithoutAReport) {
  for (const int status : {36, 37}) {
    const ForcedCache cache(1 << 20, 128, status);
    EXPECT_FALSE(queryCacheSize().known) << status;
    EXPECT_EQ(queryCacheLineSize(), 0) << status;
  }
}

}  // namespace
}  // namespace Zorvan::Test
