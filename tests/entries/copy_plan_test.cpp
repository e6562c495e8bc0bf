#include <gtest/gtest.h>

#include "tests/support/CacheQueries.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_plan.h"

namespace Zorvan::Primitives::Copy {
namespace {

using Answer = Test::CacheAnswer;
using Cache = Test::CacheQueries;

constexpr int mebibyte = 1 << 20;
constexpr Answer tinyCache{true, 1};
constexpr Answer unknownCache{false, 0};

/// Rows of `rowBytes` that are `gap` bytes apart in both images.
CopyShape shapeOf(std::int64_t rowBytes, std::int64_t rows, int gap = 1) {
  const int step = static_cast<int>(rowBytes) + gap;
  return {rowBytes, rows, step, step};
}

// The oldest variant.

TEST(Copy16Plan, StreamsAboveAMebibyte) {
  for (const int bytes : {mebibyte - 1, mebibyte, mebibyte + 1}) {
    EXPECT_EQ((planCopy16<1>({bytes, 1}, 0, 0).streaming), bytes > mebibyte) << bytes;
  }
  for (const int pixels : {mebibyte / 4 - 1, mebibyte / 4, mebibyte / 4 + 1}) {
    EXPECT_EQ((planCopy16<4>({pixels, 1}, 0, 0).streaming), pixels > mebibyte / 4) << pixels;
  }
}

TEST(Copy16Plan, RowsFuseOnlyWithoutAGapInBothImages) {
  for (const int srcStep : {39, 40, 41}) {
    for (const int dstStep : {39, 40, 41}) {
      const bool fused = srcStep == 40 && dstStep == 40;
      const CopyPlan plan = planCopy16<4>({10, 3}, srcStep, dstStep);
      EXPECT_EQ(plan.rows, fused ? 1 : 3);
      EXPECT_EQ(plan.rowBytes, fused ? 120 : 40);
    }
  }
}

TEST(Copy16Plan, Only8BitRowsStopFusingAt32768Pixels) {
  for (const int size : {32767, 32768, 32769}) {
    EXPECT_EQ((planCopy16<1>({size, 2}, size, size).rows), size < 32768 ? 1 : 2) << size;
    EXPECT_EQ((planCopy16<1>({2, size}, 2, 2).rows), size < 32768 ? 1 : size) << size;
    EXPECT_EQ((planCopy16<2>({size, 2}, 2 * size, 2 * size).rows), 1) << size;
    EXPECT_EQ((planCopy16<4>({2, size}, 8, 8).rows), 1) << size;
  }
}

TEST(Copy16Plan, TotalsBeyond32BitsAreWhole) {
  const CopyPlan plan = planCopy16<4>({1 << 20, 1 << 12}, 1 << 22, 1 << 22);
  EXPECT_EQ(plan.rows, 1);
  EXPECT_EQ(plan.rowBytes, std::int64_t{1} << 34);
  EXPECT_TRUE(plan.streaming);
}

// The variants that read leaf 2.

TEST(Leaf2CopyPlan, QueriesAbove128KibibytesOnly) {
  for (const int bytes : {0x20000 - 1, 0x20000, 0x20000 + 1}) {
    Cache cache{tinyCache};
    EXPECT_EQ(planLeaf2Copy(shapeOf(bytes, 1), cache.query()).streaming, bytes > 0x20000) << bytes;
    EXPECT_EQ(cache.queries, bytes > 0x20000 ? 1 : 0) << bytes;
  }
}

TEST(Leaf2CopyPlan, QueriesForRowsOf64BytesOnly) {
  for (const int bytes : {63, 64, 65}) {
    Cache cache{tinyCache};
    EXPECT_EQ(planLeaf2Copy(shapeOf(bytes, 10000), cache.query()).streaming, bytes >= 64) << bytes;
    EXPECT_EQ(cache.queries, bytes >= 64 ? 1 : 0) << bytes;
  }
  Cache cache{tinyCache};
  EXPECT_TRUE(planLeaf2Copy(shapeOf(8, 0x8000, 0), cache.query()).streaming)
      << "rows without gaps are one row";
}

TEST(Leaf2CopyPlan, StreamsAboveHalfTheCache) {
  for (const int bytes : {mebibyte - 1, mebibyte, mebibyte + 1}) {
    Cache cache{{true, 2 * mebibyte}};
    EXPECT_EQ(planLeaf2Copy(shapeOf(bytes, 1), cache.query()).streaming, bytes > mebibyte) << bytes;
  }
  Cache cache{unknownCache};
  EXPECT_FALSE(planLeaf2Copy(shapeOf(mebibyte, 64), cache.query()).streaming);
  EXPECT_EQ(cache.queries, 1);
}

TEST(Leaf2CopyPlan, RowsFuseOnlyWithoutAGapInBothImages) {
  for (const int srcStep : {39, 40, 41}) {
    for (const int dstStep : {39, 40, 41}) {
      Cache cache{tinyCache};
      const bool fused = srcStep == 40 && dstStep == 40;
      const CopyPlan plan = planLeaf2Copy({40, 3, srcStep, dstStep}, cache.query());
      EXPECT_EQ(plan.rows, fused ? 1 : 3);
      EXPECT_EQ(plan.rowBytes, fused ? 120 : 40);
    }
  }
}

// The first variant with 32-byte vectors.

TEST(ShortOrLargeCopyPlan, RowsBelow1024BytesNeverQuery) {
  for (const int bytes : {1023, 1024, 1025}) {
    Cache cache{tinyCache};
    EXPECT_EQ(planShortOrLargeCopy(shapeOf(bytes, 4096), cache.query()).streaming, bytes >= 1024) << bytes;
    EXPECT_EQ(cache.queries, bytes >= 1024 ? 1 : 0) << bytes;
  }
}

TEST(ShortOrLargeCopyPlan, QueriesAboveTwoMebibytes) {
  for (const int bytes : {2 * mebibyte - 1, 2 * mebibyte, 2 * mebibyte + 1}) {
    Cache cache{tinyCache};
    EXPECT_EQ(planShortOrLargeCopy(shapeOf(bytes, 1), cache.query()).streaming, bytes > 2 * mebibyte)
        << bytes;
    EXPECT_EQ(cache.queries, bytes > 2 * mebibyte ? 1 : 0) << bytes;
  }
}

TEST(ShortOrLargeCopyPlan, StreamsWhenBothImagesExceedTheCache) {
  for (const int bytes : {4 * mebibyte - 1, 4 * mebibyte, 4 * mebibyte + 1}) {
    Cache cache{{true, 8 * mebibyte}};
    EXPECT_EQ(planShortOrLargeCopy(shapeOf(bytes, 1), cache.query()).streaming, bytes > 4 * mebibyte)
        << bytes;
  }
  Cache cache{unknownCache};
  EXPECT_FALSE(planShortOrLargeCopy(shapeOf(4 * mebibyte, 1), cache.query()).streaming);
  EXPECT_EQ(cache.queries, 1);
}

TEST(ShortOrLargeCopyPlan, RowsFuseOnlyWithoutAGapInBothImages) {
  for (const int srcStep : {1024, 1025}) {
    for (const int dstStep : {1024, 1025}) {
      Cache cache{tinyCache};
      const bool fused = srcStep == 1024 && dstStep == 1024;
      const CopyPlan plan = planShortOrLargeCopy({1024, 4096, srcStep, dstStep}, cache.query());
      EXPECT_EQ(plan.rows, fused ? 1 : 4096);
      EXPECT_TRUE(plan.streaming);
    }
  }
}

// The newest two variants.

constexpr CopyAddresses apartInPage{0x10000, 0x20000 + 2048};

TEST(CopyAddresses, JustAfterIsFrom0To159ModuloThePage) {
  for (const std::uintptr_t page : {0u, 4096u, 12288u}) {
    for (const std::uintptr_t src : {0u, 64u, 3936u}) {
      for (const std::uintptr_t delta : {0u, 1u, 159u, 160u, 161u}) {
        const std::uintptr_t dst = page + src + delta;
        const bool samePage = src + delta < 4096;  // the difference of places in the page does not wrap
        EXPECT_EQ((CopyAddresses{0x10000 + src, 0x20000 + dst}).destinationJustAfter(),
                  samePage && delta < 160)
            << src << " " << delta;
      }
    }
  }
  EXPECT_FALSE((CopyAddresses{0x10001, 0x20000}).destinationJustAfter());
  EXPECT_FALSE((CopyAddresses{0x10FFF, 0x20000}).destinationJustAfter());
}

TEST(RunCopyPlan, GoesBackwardFrom32768BytesOn) {
  for (const int length : {32767, 32768, 32769}) {
    Cache cache{tinyCache};
    EXPECT_EQ(planRunCopy({0x1000, 0x2000}, length, cache.query()),
              length < 32768 ? RunCopyForm::forward : RunCopyForm::backward);
    EXPECT_EQ(planRunCopy(apartInPage, length, cache.query()), RunCopyForm::forward);
    EXPECT_EQ(cache.queries, 0);
  }
}

TEST(RunCopyPlan, QueriesAboveFourMebibytes) {
  for (const int length : {4 * mebibyte - 1, 4 * mebibyte, 4 * mebibyte + 1}) {
    Cache cache{tinyCache};
    EXPECT_EQ(planRunCopy(apartInPage, length, cache.query()),
              length > 4 * mebibyte ? RunCopyForm::streaming : RunCopyForm::forward);
    EXPECT_EQ(cache.queries, length > 4 * mebibyte ? 1 : 0);
  }
}

TEST(RunCopyPlan, StreamsFromHalfTheCacheOn) {
  for (const int length : {8 * mebibyte - 1, 8 * mebibyte, 8 * mebibyte + 1}) {
    Cache cache{{true, 16 * mebibyte}};
    EXPECT_EQ(planRunCopy(apartInPage, length, cache.query()),
              length >= 8 * mebibyte ? RunCopyForm::streaming : RunCopyForm::forward);
    EXPECT_EQ(planRunCopy({0x1000, 0x2000}, length, cache.query()),
              length >= 8 * mebibyte ? RunCopyForm::streaming : RunCopyForm::backward);
  }
  Cache cache{unknownCache};
  EXPECT_EQ(planRunCopy(apartInPage, 64 * mebibyte, cache.query()), RunCopyForm::forward);
  EXPECT_EQ(cache.queries, 1);
}

TEST(Copy32Plan, AnImageWithoutGapsIsARun) {
  for (const int srcStep : {63, 64, 65}) {
    for (const int dstStep : {63, 64, 65}) {
      Cache cache{tinyCache};
      EXPECT_EQ(planCopy32(apartInPage, {64, 100000, srcStep, dstStep}, cache.query()),
                srcStep == 64 && dstStep == 64 ? Copy32Form::run : Copy32Form::narrowRows);
      EXPECT_EQ(cache.queries, 0);
    }
  }
}

TEST(Copy32Plan, RowsBelow512BytesAreNarrow) {
  for (const int bytes : {511, 512, 513}) {
    Cache cache{tinyCache};
    EXPECT_EQ(planCopy32(apartInPage, {bytes, 4, 1024, 1024}, cache.query()),
              bytes < 512    ? Copy32Form::narrowRows
              : bytes == 512 ? Copy32Form::alignedRows
                             : Copy32Form::unalignedRows);
  }
}

TEST(Copy32Plan, TotalsOf2GibibytesStreamWithoutAQuery) {
  for (const std::int64_t rows : {0x7FFFFF, 0x800000}) {
    Cache cache{{true, mebibyte}};
    const bool above = rows == 0x800000;
    EXPECT_EQ(planCopy32(apartInPage, {256, rows, 256, 256}, cache.query()),
              above ? Copy32Form::streamingAlignedRows : Copy32Form::run);
    EXPECT_EQ(planCopy32(apartInPage, {256, rows, 0, 0}, cache.query()),
              above ? Copy32Form::streamingAlignedRows : Copy32Form::narrowRows);
    EXPECT_EQ(cache.queries, 0);
  }
  Cache cache{unknownCache};
  EXPECT_EQ(planCopy32(apartInPage, {0x7FFFFFFF, 1, 0, 0}, cache.query()), Copy32Form::unalignedRows);
  EXPECT_EQ(cache.queries, 1);
}

TEST(Copy32Plan, QueriesAboveThreeMebibytes) {
  for (const int bytes : {3 * mebibyte - 1, 3 * mebibyte, 3 * mebibyte + 1}) {
    Cache cache{tinyCache};
    const Copy32Form form = planCopy32(apartInPage, shapeOf(bytes, 1), cache.query());
    EXPECT_EQ(form, bytes > 3 * mebibyte ? Copy32Form::streamingRows : Copy32Form::unalignedRows);
    EXPECT_EQ(cache.queries, bytes > 3 * mebibyte ? 1 : 0);
  }
}

TEST(Copy32Plan, StreamsFromHalfTheCacheOn) {
  for (const int bytes : {8 * mebibyte - 1, 8 * mebibyte, 8 * mebibyte + 1}) {
    Cache cache{{true, 16 * mebibyte}};
    EXPECT_EQ(planCopy32(apartInPage, shapeOf(bytes, 1), cache.query()),
              bytes >= 8 * mebibyte ? Copy32Form::streamingRows : Copy32Form::unalignedRows);
  }
  Cache cache{unknownCache};
  EXPECT_EQ(planCopy32(apartInPage, shapeOf(64 * mebibyte, 1), cache.query()), Copy32Form::unalignedRows);
}

TEST(Copy32Plan, AlignedRowsNeedDestinationStepAndWidth) {
  Cache cache{tinyCache};
  const auto form = [&](std::uintptr_t dst, int dstStep, int bytes) {
    return planCopy32({0x10001, 0x20800 + dst}, {bytes, 4, 3001, dstStep}, cache.query());
  };
  EXPECT_EQ(form(0, 1024, 544), Copy32Form::alignedRows);
  EXPECT_EQ(form(32, 1056, 544), Copy32Form::alignedRows);
  EXPECT_EQ(form(0, -1024, 544), Copy32Form::alignedRows);
  EXPECT_EQ(form(16, 1024, 544), Copy32Form::unalignedRows);
  EXPECT_EQ(form(0, 1040, 544), Copy32Form::unalignedRows);
  EXPECT_EQ(form(0, 1024, 560), Copy32Form::unalignedRows);
  EXPECT_EQ(cache.queries, 0);
}

TEST(Copy32Plan, StreamingAlignedRowsNeedWholeLinesButHalfLineWidths) {
  Cache cache{tinyCache};
  const auto form = [&](std::uintptr_t dst, int dstStep, int bytes) {
    return planCopy32({0x10001, 0x20800 + dst}, {bytes, 8000, 3001, dstStep}, cache.query());
  };
  EXPECT_EQ(form(0, 1024, 544), Copy32Form::streamingAlignedRows);
  EXPECT_EQ(form(0, -1024, 544), Copy32Form::streamingAlignedRows);
  EXPECT_EQ(form(32, 1024, 544), Copy32Form::streamingRows);
  EXPECT_EQ(form(0, 1056, 544), Copy32Form::streamingRows);
  EXPECT_EQ(form(0, 1024, 560), Copy32Form::streamingRows);
}

TEST(Copy32Plan, AlignedRowsGoBackwardOnlyWithEqualSteps) {
  Cache cache{tinyCache};
  for (const std::uintptr_t delta : {0u, 32u, 128u, 160u, 192u}) {
    const CopyAddresses at{0x10100, 0x20100 + delta};
    EXPECT_EQ(planCopy32(at, {544, 4, 1024, 1024}, cache.query()),
              delta < 160 ? Copy32Form::alignedRowsBackward : Copy32Form::alignedRows);
    EXPECT_EQ(planCopy32(at, {544, 4, 1056, 1024}, cache.query()), Copy32Form::alignedRows);
    EXPECT_EQ(planCopy32(at, {544, 4, 1024, 0}, cache.query()), Copy32Form::alignedRows);
  }
  for (const std::uintptr_t srcDelta : {159u, 160u}) {  // the source counts in bytes, also between vectors
    EXPECT_EQ(planCopy32({0x10400 - srcDelta, 0x20400}, {544, 4, 1024, 1024}, cache.query()),
              srcDelta < 160 ? Copy32Form::alignedRowsBackward : Copy32Form::alignedRows);
  }
  EXPECT_EQ(planCopy32({0x10120, 0x20100}, {544, 4, 1024, 1024}, cache.query()), Copy32Form::alignedRows);
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
