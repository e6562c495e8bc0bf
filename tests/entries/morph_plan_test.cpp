#include <gtest/gtest.h>

#include <algorithm>

#include "zorvan/primitives/frame/MorphSizes.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"

namespace Zorvan::Primitives::Morphology {
namespace {

constexpr auto notCounted = [] {
  ADD_FAILURE() << "cells are counted for masks without a form only";
  return 0;
};

TEST(MorphForm, OfSolidMasksIsSeparable) { EXPECT_EQ(planMorphForm(18, notCounted), MorphForm::separable); }

TEST(MorphForm, OfOtherMasksGoesByFlagsInOrder) {
  EXPECT_EQ(planMorphForm(0x130, notCounted), MorphForm::known3);
  EXPECT_EQ(planMorphForm(0x310, notCounted), MorphForm::known5);
  EXPECT_EQ(planMorphForm(0x510, notCounted), MorphForm::known7);
  EXPECT_EQ(planMorphForm(0x30, notCounted), MorphForm::cross);
  EXPECT_EQ(planMorphForm(0x20, notCounted), MorphForm::cross);
  EXPECT_EQ(planMorphForm(0x18, notCounted), MorphForm::runs);
}

TEST(MorphForm, ListsFewerThan128Cells) {
  EXPECT_EQ(planMorphForm(0, [] { return 127; }), MorphForm::cellList);
  EXPECT_EQ(planMorphForm(0, [] { return 128; }), MorphForm::cellTable);
  EXPECT_EQ(planMorphForm(8, [] { return 129; }), MorphForm::cellTable);
}

TEST(MorphForm, OfTheOldestVariantsIsSolidOrNot) {
  EXPECT_EQ(planOldMorphForm(18), MorphForm::separable);
  EXPECT_EQ(planOldMorphForm(0x130), MorphForm::scan);
}

TEST(MorphRing, StaysInItsPlace) {
  for (const int pixelBytes : {1, 4}) {
    for (int height = 3; height < 40; height += 2) {
      for (const int width : {1, 7, 8, 9, 31, 32, 33, 63, 64, 65, 511, 512, 513, 1000, 4096, 20000}) {
        const int columns = planRingColumns(width, height, pixelBytes);
        ASSERT_GE(columns, 1);
        ASSERT_LE(columns, width);
        ASSERT_TRUE(columns == width || columns * pixelBytes % 64 == 0);
        const std::int64_t step = planRingStep(columns, height, pixelBytes);
        ASSERT_EQ(step % 32, 0);
        ASSERT_GE(step, columns * pixelBytes);
        ASSERT_LE((height - 1) * step, height * ringRowBytes(width, pixelBytes));
      }
    }
  }
}

TEST(MorphRing, IsCutIntoBandsAboveItsShareOfTheCache) {
  EXPECT_EQ(planRingColumns(5440, 3, 1), 5440);  // 3 rows of 5440 bytes are 16320
  EXPECT_LT(planRingColumns(5480, 3, 1), 5480);
  EXPECT_EQ(planRingColumns(100000, 1001, 1), 512);
}

TEST(MorphBordered, TakesTheUsualSquares) {
  for (const int side : {3, 5, 7, 9}) EXPECT_TRUE(planBordered({side, side}, 3));
  for (const Size other : {Size{1, 1}, Size{3, 5}, Size{9, 7}, Size{11, 11}, Size{1, 3}, Size{3, 1}}) {
    EXPECT_FALSE(planBordered(other, 3));
  }
}

TEST(MorphBordered, BeginsAtTheLeast) {
  EXPECT_FALSE(planBordered({3, 3}, 5));
  EXPECT_TRUE(planBordered({5, 5}, 5));
  EXPECT_TRUE(planBordered({9, 9}, largestBordered));
  EXPECT_FALSE(planBordered({9, 9}, noneBordered));
}

TEST(MorphBordered, TakesRowsOfAVectorOrLongerByTheReachAtBothEnds) {
  EXPECT_TRUE(planBorderedRows(32, 9, 32));
  EXPECT_FALSE(planBorderedRows(31, 9, 32));
  EXPECT_FALSE(planBorderedRows(33, 9, 32));
  EXPECT_FALSE(planBorderedRows(39, 9, 32));
  EXPECT_TRUE(planBorderedRows(40, 9, 32));
  EXPECT_TRUE(planBorderedRows(34, 3, 32));
}

TEST(MorphBordered, TakesNoRowsShorterThanTheMask) {
  EXPECT_FALSE(planBorderedRows(4, 9, 4));
  EXPECT_FALSE(planBorderedRows(4, 5, 4));
  EXPECT_TRUE(planBorderedRows(4, 3, 4));
  EXPECT_TRUE(planBorderedRows(12, 9, 4));
}

TEST(MorphStrips, HoldTheRowsThatAreReadInTheirShareOfTheCache) {
  EXPECT_EQ(planStripColumns(65536, 4, 1), 65536);  // 64 KiB each
  EXPECT_EQ(planStripColumns(65537, 4, 1), 65536);
  EXPECT_EQ(planStripColumns(16384, 4, 4), 16384);
  EXPECT_EQ(planStripColumns(16385, 4, 4), 16384);
  EXPECT_EQ(planStripColumns(26176, 10, 1), 26176);  // in whole lines
  EXPECT_EQ(planStripColumns(26177, 10, 1), 26176);
  EXPECT_EQ(planStripColumns(1, 10, 1), 1);
}

TEST(MorphStreaming, TakesLargeResultsWithBlocksInStep) {
  EXPECT_EQ(resultBytes({1024, 1024}, 4), streamFromBytes);
  EXPECT_FALSE(planStreaming(streamFromBytes - 1, 1024, 1024, 64));
  EXPECT_TRUE(planStreaming(streamFromBytes, 1024, 1024, 64));
  EXPECT_TRUE(planStreaming(streamFromBytes + 1, 1024, 4096, 64));
  EXPECT_FALSE(planStreaming(streamFromBytes, 1024, 1025, 64));
  EXPECT_FALSE(planStreaming(streamFromBytes, 127, 128, 64));
  EXPECT_TRUE(planStreaming(streamFromBytes, 128, 128, 64));
  EXPECT_FALSE(planStreaming(0, 1024, 1024, 64));
}

TEST(MorphStreaming, TakesLargerResultsInPartsOfLines) {
  EXPECT_EQ(resultBytes({1024, 1792}, 4), streamPartsFromBytes);
  for (const int vectorBytes : {16, 32}) {
    EXPECT_FALSE(planStreaming(streamPartsFromBytes - 1, 1024, 1024, vectorBytes));
    EXPECT_TRUE(planStreaming(streamPartsFromBytes, 1024, 1024, vectorBytes));
    EXPECT_FALSE(planStreaming(streamPartsFromBytes, 127, 128, vectorBytes));
    EXPECT_TRUE(planStreaming(streamPartsFromBytes, 128, 128, vectorBytes));
    EXPECT_FALSE(planStreaming(streamPartsFromBytes, 1024, 1024 + 32, vectorBytes));
  }
}

TEST(MorphPrefetch, TakesLargeSources) {
  EXPECT_FALSE(planPrefetch(resultBytes({1024, 1792}, 4) - 1));
  EXPECT_TRUE(planPrefetch(resultBytes({1024, 1792}, 4)));
  EXPECT_FALSE(planPrefetch(0));
}

TEST(MorphBands, MindWhatAnyWordWithSidesInMemoryReads) {
  for (const int type : {1, 3, 5, 6}) EXPECT_FALSE(planReadsBeside(type));
  for (const int word : {0x11, 0x81, 240, 241, 0x101, 0x801, -15, -1, 1 - 0x200}) {
    EXPECT_TRUE(planReadsBeside(word)) << word;
  }
}

TEST(MorphBands, AreAsHighAsTheCacheHolds) {
  // 256 KiB hold 256 rows of 1 KiB, of which the mask reads two beside a band.
  EXPECT_EQ(planBands({1024, 2 * 254 - 1}, {3, 3}, 1024), 1);
  EXPECT_EQ(planBands({1024, 2 * 254}, {3, 3}, 1024), 2);
  EXPECT_EQ(planBands({1024, 3 * 254 - 1}, {3, 3}, 1024), 2);
  EXPECT_EQ(planBands({1024, 3 * 254}, {3, 3}, 1024), 3);
  EXPECT_EQ(planBands({1024, 1}, {3, 3}, 1024), 1);
}

TEST(MorphBands, AreAtLeastTwiceAsHighAsTheMask) {
  EXPECT_EQ(planBands({100000, 4 * 9 - 1}, {9, 9}, 100000), 1);
  EXPECT_EQ(planBands({100000, 4 * 9}, {9, 9}, 100000), 2);
  EXPECT_EQ(planBands({1 << 20, 4}, {3, 1}, 1 << 20), 2);
}

TEST(MorphBands, TakeRegionsWiderThanTheMask) {
  EXPECT_EQ(planBands({3, 100000}, {3, 3}, 32), 1);
  EXPECT_GT(planBands({4, 100000}, {3, 3}, 32), 1);
}

TEST(MorphBands, DivideTheRowsEvenly) {
  for (const int height : {508, 509, 1000, 4096}) {
    const int bands = planBands({1024, height}, {3, 3}, 1024);
    int end = 0;
    for (int band = 1; band <= bands; ++band) {
      const int rows = planBandEnd(height, bands, band) - end;
      EXPECT_GE(rows, 254);
      EXPECT_LE(rows, height / bands + 1);
      end += rows;
    }
    EXPECT_EQ(end, height);
  }
}

TEST(MorphPackedRows, AreShortAndWithoutAGap) {
  EXPECT_TRUE(planPackedRows(4, 2, 3, 1));
  EXPECT_FALSE(planPackedRows(5, 2, 3, 1));
  EXPECT_TRUE(planPackedRows(64, 62, 3, 1));
  EXPECT_FALSE(planPackedRows(65, 63, 3, 1));
  EXPECT_TRUE(planPackedRows(24, 2, 5, 4));
}

TEST(MorphSizes, FollowTheRule) {
  const MorphMeasures<WrappingNumber> example({100, 100}, {3, 3}, 4);
  EXPECT_EQ(example.builtPixels().value(), 306);
  EXPECT_EQ(example.ringSize().value(), 1344);
  EXPECT_EQ(example.bufferSize().value(), 2656);
  EXPECT_EQ(example.specSize().value(), 193);
  EXPECT_EQ(example.compound().spec.value(), 9 + 2 * 193 + 64);
  EXPECT_EQ(example.compound().buffer.value(), 2 * 2656 + 102 * 416);
}

TEST(MorphSizes, OfAMaskAsLargeAsTheRegionTakeItWhole) {
  EXPECT_EQ((MorphMeasures<WrappingNumber>({3, 100}, {3, 3}, 1).builtPixels().value()), 5 * 102);
  EXPECT_EQ((MorphMeasures<WrappingNumber>({4, 100}, {3, 3}, 1).builtPixels().value()), 102 * 3);
  EXPECT_EQ((MorphMeasures<WrappingNumber>({10, 10}, {1, 5}, 1).builtPixels().value()), 10 * 6);
  EXPECT_EQ((MorphMeasures<WrappingNumber>({10, 10}, {5, 1}, 1).builtPixels().value()), 10 * 6);
  EXPECT_EQ((MorphMeasures<WrappingNumber>({10, 10}, {4, 4}, 1).builtPixels().value()), 14 * 6);
}

TEST(MorphSizes, WrapOrDoNotFit) {
  const Size most{0x7FFFFFFF, 0x7FFFFFFF};
  EXPECT_FALSE((MorphMeasures<ExactNumber>(most, most, 4).bufferSize().fits()));
  EXPECT_FALSE((MorphMeasures<ExactNumber>({1, 1}, {65536, 65536}, 1).specSize().fits()));
  EXPECT_EQ((MorphMeasures<WrappingNumber>({1, 1}, {65537, 65537}, 1).cells().value()), 131073);
  EXPECT_TRUE((MorphMeasures<ExactNumber>({100, 100}, {3, 3}, 4).compound().buffer.fits()));
}

/// The largest piece that a border is built for fits the work memory to the last byte.
TEST(MorphSizes, HoldTheRingAndTheLargestPiece) {
  for (const int pixelBytes : {1, 4}) {
    for (int w = 1; w < 9; ++w) {
      for (int h = 1; h < 9; ++h) {
        for (int width = 1; width < 24; ++width) {
          for (int height = 1; height < 24; ++height) {
            const MorphMeasures<WrappingNumber> measures({width, height}, {w, h}, pixelBytes);
            const int area = measures.bufferSize().value() - 31 - measures.ringSize().value();
            const int maskWidth = w | 1, maskHeight = h | 1;
            const bool whole = maskWidth >= width || maskHeight >= height;
            const int built =
                whole ? (width + maskWidth - 1) * (height + maskHeight - 1)
                      : std::max(h == 1 ? 0 : (width + maskWidth - 1) * (maskHeight - 1) * 3 / 2,
                                 w == 1 ? 0 : (maskWidth - 1) * 3 / 2 * (height + maskHeight - 1));
            ASSERT_GE(area, built * pixelBytes) << w << " by " << h << ", " << width << " by " << height;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
