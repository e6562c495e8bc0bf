// The real processor, compared with the compiler's own support code.

#include <gtest/gtest.h>

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {

namespace {

using namespace Primitives;

TEST(ThisProcessor, HasTheFeaturesThatTheCompilerFinds) {
  std::uint64_t mask = 0;
  ASSERT_EQ(coreQueryFeatures(&mask), 0);
  const auto has = [mask](std::uint64_t feature) { return (mask & feature) == feature; };
  EXPECT_EQ(has(FeatureMmx), __builtin_cpu_supports("mmx") != 0);
  EXPECT_EQ(has(FeatureSse), __builtin_cpu_supports("sse") != 0);
  EXPECT_EQ(has(FeatureSse2), __builtin_cpu_supports("sse2") != 0);
  EXPECT_EQ(has(FeatureSse3), __builtin_cpu_supports("sse3") != 0);
  EXPECT_EQ(has(FeatureSsse3), __builtin_cpu_supports("ssse3") != 0);
  EXPECT_EQ(has(FeatureSse41), __builtin_cpu_supports("sse4.1") != 0);
  EXPECT_EQ(has(FeatureSse42), __builtin_cpu_supports("sse4.2") != 0);
  EXPECT_EQ(has(FeatureAes), __builtin_cpu_supports("aes") != 0);
  EXPECT_EQ(has(FeatureClmul), __builtin_cpu_supports("pclmul") != 0);
  // For the compiler a feature is missing if the operating system does not save its state.
  EXPECT_EQ(has(FeatureAvx | FeatureAvxOs), __builtin_cpu_supports("avx") != 0);
  EXPECT_EQ(has(FeatureAvx2Group | FeatureAvxOs),
            __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
                __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2"));
  EXPECT_EQ(has(FeatureAvx512F | FeatureAvx512Os), __builtin_cpu_supports("avx512f") != 0);
  EXPECT_EQ(has(FeatureAvx512Cd | FeatureAvx512Os), __builtin_cpu_supports("avx512cd") != 0);
  EXPECT_EQ(has(FeatureAvx512Bw | FeatureAvx512Os), __builtin_cpu_supports("avx512bw") != 0);
  EXPECT_EQ(has(FeatureAvx512Dq | FeatureAvx512Os), __builtin_cpu_supports("avx512dq") != 0);
  EXPECT_EQ(has(FeatureAvx512Vl | FeatureAvx512Os), __builtin_cpu_supports("avx512vl") != 0);
  EXPECT_EQ(has(FeatureAvx512Vbmi | FeatureAvx512Os), __builtin_cpu_supports("avx512vbmi") != 0);
  EXPECT_EQ(has(FeatureAvx512Ifma | FeatureAvx512Os), __builtin_cpu_supports("avx512ifma") != 0);
}

TEST(ThisProcessor, GetsTheNewestVariantThatItSupports) {
  EXPECT_EQ(variantIndex, -1);
  coreSelectVariant();
  int expected = 0;
  if (__builtin_cpu_supports("ssse3")) expected = 1;
  if (__builtin_cpu_supports("sse4.2")) expected = 2;
  if (__builtin_cpu_supports("avx")) expected = 3;
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi") &&
      __builtin_cpu_supports("bmi2")) {
    expected = 4;
  }
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512cd") &&
      __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
      __builtin_cpu_supports("avx512vl")) {
    expected = 5;
  }
  EXPECT_EQ(variantIndex, expected);
}

TEST(ThisProcessor, ReportsTheSameCacheTwice) {
  std::int32_t first = -2, second = -2, line = -2;
  const int status = coreGetCacheSize(&first);
  EXPECT_EQ(coreGetCacheSize(&second), status);
  EXPECT_EQ(second, first);
  coreGetCacheLineSize(&line);
  if (status == 0) {
    EXPECT_GT(first, 0);
    EXPECT_GE(line, 0);
  } else {
    EXPECT_EQ(first, status == 36 ? -1 : 0);
    EXPECT_EQ(line, 0);
  }
}

}  // namespace

}  // namespace Zorvan::Test
