#include <gtest/gtest.h>

#include "tests/support/CacheQueries.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_plan.h"

namespace Zorvan::Primitives {
namespace {

using Answer = Test::CacheAnswer;
using Cache = Test::CacheQueries;

constexpr int kMiB = 1 << 20;
constexpr Answer kTinyCache{true, 1};
constexpr Answer kUnknownCache{false, 0};

/// Rows of `rowBytes` that are `gap` bytes apart in both images.
CopyShape shapeOf(std::int64_t rowBytes, std::int64_t rows, int gap = 1) {
  const int step = static_cast<int>(rowBytes) + gap;
  return {rowBytes, rows, step, step};
}

// The oldest variant.

TEST(RowCopyPlan, StreamsAboveAMebibyte) {
  for (const int bytes : {kMiB - 1, kMiB, kMiB + 1}) {
    EXPECT_EQ((planRowCopy<1>({bytes, 1}, 0, 0).streaming), bytes > kMiB) << bytes;
  }
  for (const int pixels : {kMiB / 4 - 1, kMiB / 4, kMiB / 4 + 1}) {
    EXPECT_EQ((planRowCopy<4>({pixels, 1}, 0, 0).streaming), pixels > kMiB / 4) << pixels;
  }
}

TEST(RowCopyPlan, RowsFuseOnlyWithoutAGapInBothImages) {
  for (const int srcStep : {39, 40, 41}) {
    for (const int dstStep : {39, 40, 41}) {
      const bool fused = srcStep == 40 && dstStep == 40;
      const CopyPlan plan = planRowCopy<4>({10, 3}, srcStep, dstStep);
      EXPECT_EQ(plan.rows, fused ? 1 : 3);
      EXPECT_EQ(plan.rowBytes, fused ? 120 : 40);
    }
  }
}

TEST(RowCopyPlan, Only8BitRowsStopFusingAt32768Pixels) {
  for (const int figure : {32767, 32768, 32769}) {
    EXPECT_EQ((planRowCopy<1>({figure, 2}, figure, figure).rows), figure < 32768 ? 1 : 2) << figure;
    EXPECT_EQ((planRowCopy<1>({2, figure}, 2, 2).rows), figure < 32768 ? 1 : figure) << figure;
    EXPECT_EQ((planRowCopy<2>({figure, 2}, 2 * figure, 2 * figure).rows), 1) << figure;
    EXPECT_EQ((planRowCopy<4>({2, figure}, 8, 8).rows), 1) << figure;
  }
}

TEST(RowCopyPlan, TotalsBeyond32BitsAreWhole) {
  const CopyPlan plan = planRowCopy<4>({1 << 20, 1 << 12}, 1 << 22, 1 << 22);
  EXPECT_EQ(plan.rows, 1);
  EXPECT_EQ(plan.rowBytes, std::int64_t{1} << 34);
  EXPECT_TRUE(plan.streaming);
}

// The variants that read leaf 2.

TEST(Leaf2CopyPlan, AsksAbove128KibibytesOnly) {
  for (const int bytes : {0x20000 - 1, 0x20000, 0x20000 + 1}) {
    Cache cache{kTinyCache};
    EXPECT_EQ(planLeaf2Copy(shapeOf(bytes, 1), cache.query()).streaming, bytes > 0x20000) << bytes;
    EXPECT_EQ(cache.queries, bytes > 0x20000 ? 1 : 0) << bytes;
  }
}

TEST(Leaf2CopyPlan, AsksForRowsOf64BytesOnly) {
  for (const int bytes : {63, 64, 65}) {
    Cache cache{kTinyCache};
    EXPECT_EQ(planLeaf2Copy(shapeOf(bytes, 10000), cache.query()).streaming, bytes >= 64) << bytes;
    EXPECT_EQ(cache.queries, bytes >= 64 ? 1 : 0) << bytes;
  }
  Cache cache{kTinyCache};
  EXPECT_TRUE(planLeaf2Copy(shapeOf(8, 0x8000, 0), cache.query()).streaming)
      << "one row once they run together";
}

TEST(Leaf2CopyPlan, StreamsAboveHalfTheCache) {
  for (const int bytes : {kMiB - 1, kMiB, kMiB + 1}) {
    Cache cache{{true, 2 * kMiB}};
    EXPECT_EQ(planLeaf2Copy(shapeOf(bytes, 1), cache.query()).streaming, bytes > kMiB) << bytes;
  }
  Cache cache{kUnknownCache};
  EXPECT_FALSE(planLeaf2Copy(shapeOf(kMiB, 64), cache.query()).streaming);
  EXPECT_EQ(cache.queries, 1);
}

TEST(Leaf2CopyPlan, RowsFuseOnlyWithoutAGapInBothImages) {
  for (const int srcStep : {39, 40, 41}) {
    for (const int dstStep : {39, 40, 41}) {
      Cache cache{kTinyCache};
      const bool fused = srcStep == 40 && dstStep == 40;
      const CopyPlan plan = planLeaf2Copy({40, 3, srcStep, dstStep}, cache.query());
      EXPECT_EQ(plan.rows, fused ? 1 : 3);
      EXPECT_EQ(plan.rowBytes, fused ? 120 : 40);
    }
  }
}

// The first variant with 32-byte vectors.

TEST(ShortOrLargeCopyPlan, RowsBelow1024BytesNeverAsk) {
  for (const int bytes : {1023, 1024, 1025}) {
    Cache cache{kTinyCache};
    EXPECT_EQ(planShortOrLargeCopy(shapeOf(bytes, 4096), cache.query()).streaming, bytes >= 1024) << bytes;
    EXPECT_EQ(cache.queries, bytes >= 1024 ? 1 : 0) << bytes;
  }
}

TEST(ShortOrLargeCopyPlan, AsksAboveTwoMebibytes) {
  for (const int bytes : {2 * kMiB - 1, 2 * kMiB, 2 * kMiB + 1}) {
    Cache cache{kTinyCache};
    EXPECT_EQ(planShortOrLargeCopy(shapeOf(bytes, 1), cache.query()).streaming, bytes > 2 * kMiB) << bytes;
    EXPECT_EQ(cache.queries, bytes > 2 * kMiB ? 1 : 0) << bytes;
  }
}

TEST(ShortOrLargeCopyPlan, StreamsWhenBothImagesExceedTheCache) {
  for (const int bytes : {4 * kMiB - 1, 4 * kMiB, 4 * kMiB + 1}) {
    Cache cache{{true, 8 * kMiB}};
    EXPECT_EQ(planShortOrLargeCopy(shapeOf(bytes, 1), cache.query()).streaming, bytes > 4 * kMiB) << bytes;
  }
  Cache cache{kUnknownCache};
  EXPECT_FALSE(planShortOrLargeCopy(shapeOf(4 * kMiB, 1), cache.query()).streaming);
  EXPECT_EQ(cache.queries, 1);
}

TEST(ShortOrLargeCopyPlan, RowsFuseOnlyWithoutAGapInBothImages) {
  for (const int srcStep : {1024, 1025}) {
    for (const int dstStep : {1024, 1025}) {
      Cache cache{kTinyCache};
      const bool fused = srcStep == 1024 && dstStep == 1024;
      const CopyPlan plan = planShortOrLargeCopy({1024, 4096, srcStep, dstStep}, cache.query());
      EXPECT_EQ(plan.rows, fused ? 1 : 4096);
      EXPECT_TRUE(plan.streaming);
    }
  }
}

// The newest two variants.

constexpr CopyAddresses kApart{0x10000, 0x20000 + 2048};

TEST(CopyAddresses, JustAheadIsFrom0To159ModuloThePage) {
  for (const std::uintptr_t page : {0u, 4096u, 12288u}) {
    for (const std::uintptr_t src : {0u, 64u, 3936u}) {
      for (const std::uintptr_t delta : {0u, 1u, 159u, 160u, 161u}) {
        const std::uintptr_t dst = page + src + delta;
        const bool samePage = src + delta < 4096;  // the difference is of places in the page: it never wraps
        EXPECT_EQ((CopyAddresses{0x10000 + src, 0x20000 + dst}).destinationJustAhead(),
                  samePage && delta < 160)
            << src << " " << delta;
      }
    }
  }
  EXPECT_FALSE((CopyAddresses{0x10001, 0x20000}).destinationJustAhead());
  EXPECT_FALSE((CopyAddresses{0x10FFF, 0x20000}).destinationJustAhead());
}

TEST(RunCopyPlan, GoesBackwardFrom32768BytesOn) {
  for (const int length : {32767, 32768, 32769}) {
    Cache cache{kTinyCache};
    EXPECT_EQ(planRunCopy({0x1000, 0x2000}, length, cache.query()),
              length < 32768 ? RunCopyForm::forward : RunCopyForm::backward);
    EXPECT_EQ(planRunCopy(kApart, length, cache.query()), RunCopyForm::forward);
    EXPECT_EQ(cache.queries, 0);
  }
}

TEST(RunCopyPlan, AsksAboveFourMebibytes) {
  for (const int length : {4 * kMiB - 1, 4 * kMiB, 4 * kMiB + 1}) {
    Cache cache{kTinyCache};
    EXPECT_EQ(planRunCopy(kApart, length, cache.query()),
              length > 4 * kMiB ? RunCopyForm::streaming : RunCopyForm::forward);
    EXPECT_EQ(cache.queries, length > 4 * kMiB ? 1 : 0);
  }
}

TEST(RunCopyPlan, StreamsFromHalfTheCacheOn) {
  for (const int length : {8 * kMiB - 1, 8 * kMiB, 8 * kMiB + 1}) {
    Cache cache{{true, 16 * kMiB}};
    EXPECT_EQ(planRunCopy(kApart, length, cache.query()),
              length >= 8 * kMiB ? RunCopyForm::streaming : RunCopyForm::forward);
    EXPECT_EQ(planRunCopy({0x1000, 0x2000}, length, cache.query()),
              length >= 8 * kMiB ? RunCopyForm::streaming : RunCopyForm::backward);
  }
  Cache cache{kUnknownCache};
  EXPECT_EQ(planRunCopy(kApart, 64 * kMiB, cache.query()), RunCopyForm::forward);
  EXPECT_EQ(cache.queries, 1);
}

TEST(WideCopyPlan, AnImageWithoutGapsIsARun) {
  for (const int srcStep : {63, 64, 65}) {
    for (const int dstStep : {63, 64, 65}) {
      Cache cache{kTinyCache};
      EXPECT_EQ(planWideCopy(kApart, {64, 100000, srcStep, dstStep}, cache.query()),
                srcStep == 64 && dstStep == 64 ? WideCopyForm::run : WideCopyForm::narrowRows);
      EXPECT_EQ(cache.queries, 0);
    }
  }
}

TEST(WideCopyPlan, RowsBelow512BytesAreNarrow) {
  for (const int bytes : {511, 512, 513}) {
    Cache cache{kTinyCache};
    EXPECT_EQ(planWideCopy(kApart, {bytes, 4, 1024, 1024}, cache.query()),
              bytes < 512    ? WideCopyForm::narrowRows
              : bytes == 512 ? WideCopyForm::alignedRows
                             : WideCopyForm::unalignedRows);
  }
}

TEST(WideCopyPlan, TotalsOf2GibibytesStreamWithoutAsking) {
  for (const std::int64_t rows : {0x7FFFFF, 0x800000}) {
    Cache cache{{true, kMiB}};
    const bool above = rows == 0x800000;
    EXPECT_EQ(planWideCopy(kApart, {256, rows, 256, 256}, cache.query()),
              above ? WideCopyForm::streamedAlignedRows : WideCopyForm::run);
    EXPECT_EQ(planWideCopy(kApart, {256, rows, 0, 0}, cache.query()),
              above ? WideCopyForm::streamedAlignedRows : WideCopyForm::narrowRows);
    EXPECT_EQ(cache.queries, 0);
  }
  Cache cache{kUnknownCache};
  EXPECT_EQ(planWideCopy(kApart, {0x7FFFFFFF, 1, 0, 0}, cache.query()), WideCopyForm::unalignedRows);
  EXPECT_EQ(cache.queries, 1);
}

TEST(WideCopyPlan, AsksAboveThreeMebibytes) {
  for (const int bytes : {3 * kMiB - 1, 3 * kMiB, 3 * kMiB + 1}) {
    Cache cache{kTinyCache};
    const WideCopyForm form = planWideCopy(kApart, shapeOf(bytes, 1), cache.query());
    EXPECT_EQ(form, bytes > 3 * kMiB ? WideCopyForm::streamedRows : WideCopyForm::unalignedRows);
    EXPECT_EQ(cache.queries, bytes > 3 * kMiB ? 1 : 0);
  }
}

TEST(WideCopyPlan, StreamsFromHalfTheCacheOn) {
  for (const int bytes : {8 * kMiB - 1, 8 * kMiB, 8 * kMiB + 1}) {
    Cache cache{{true, 16 * kMiB}};
    EXPECT_EQ(planWideCopy(kApart, shapeOf(bytes, 1), cache.query()),
              bytes >= 8 * kMiB ? WideCopyForm::streamedRows : WideCopyForm::unalignedRows);
  }
  Cache cache{kUnknownCache};
  EXPECT_EQ(planWideCopy(kApart, shapeOf(64 * kMiB, 1), cache.query()), WideCopyForm::unalignedRows);
}

TEST(WideCopyPlan, AlignedRowsNeedDestinationStepAndWidth) {
  Cache cache{kTinyCache};
  const auto form = [&](std::uintptr_t dst, int dstStep, int bytes) {
    return planWideCopy({0x10001, 0x20800 + dst}, {bytes, 4, 3001, dstStep}, cache.query());
  };
  EXPECT_EQ(form(0, 1024, 544), WideCopyForm::alignedRows);
  EXPECT_EQ(form(32, 1056, 544), WideCopyForm::alignedRows);
  EXPECT_EQ(form(0, -1024, 544), WideCopyForm::alignedRows);
  EXPECT_EQ(form(16, 1024, 544), WideCopyForm::unalignedRows);
  EXPECT_EQ(form(0, 1040, 544), WideCopyForm::unalignedRows);
  EXPECT_EQ(form(0, 1024, 560), WideCopyForm::unalignedRows);
  EXPECT_EQ(cache.queries, 0);
}

TEST(WideCopyPlan, StreamedAlignedRowsNeedWholeLinesButHalfLineWidths) {
  Cache cache{kTinyCache};
  const auto form = [&](std::uintptr_t dst, int dstStep, int bytes) {
    return planWideCopy({0x10001, 0x20800 + dst}, {bytes, 8000, 3001, dstStep}, cache.query());
  };
  EXPECT_EQ(form(0, 1024, 544), WideCopyForm::streamedAlignedRows);
  EXPECT_EQ(form(0, -1024, 544), WideCopyForm::streamedAlignedRows);
  EXPECT_EQ(form(32, 1024, 544), WideCopyForm::streamedRows);
  EXPECT_EQ(form(0, 1056, 544), WideCopyForm::streamedRows);
  EXPECT_EQ(form(0, 1024, 560), WideCopyForm::streamedRows);
}

TEST(WideCopyPlan, AlignedRowsGoBackwardOnlyWithEqualSteps) {
  Cache cache{kTinyCache};
  for (const std::uintptr_t delta : {0u, 32u, 128u, 160u, 192u}) {
    const CopyAddresses at{0x10100, 0x20100 + delta};
    EXPECT_EQ(planWideCopy(at, {544, 4, 1024, 1024}, cache.query()),
              delta < 160 ? WideCopyForm::alignedRowsBackward : WideCopyForm::alignedRows);
    EXPECT_EQ(planWideCopy(at, {544, 4, 1056, 1024}, cache.query()), WideCopyForm::alignedRows);
    EXPECT_EQ(planWideCopy(at, {544, 4, 1024, 0}, cache.query()), WideCopyForm::alignedRows);
  }
  for (const std::uintptr_t srcDelta : {159u, 160u}) {  // the source decides by bytes, also between vectors
    EXPECT_EQ(planWideCopy({0x10400 - srcDelta, 0x20400}, {544, 4, 1024, 1024}, cache.query()),
              srcDelta < 160 ? WideCopyForm::alignedRowsBackward : WideCopyForm::alignedRows);
  }
  EXPECT_EQ(planWideCopy({0x10120, 0x20100}, {544, 4, 1024, 1024}, cache.query()), WideCopyForm::alignedRows);
}

}  // namespace
}  // namespace Zorvan::Primitives
