#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "zorvan/operations/computervision/ComputerVisionMethods.h"
#include "zorvan/primitives/kernels/computervision/flood_window.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

TEST(FloodFillPlan, ReportsARecordForFourPixelsAndWraps) {
  EXPECT_EQ(reportedFillBufferBytes({1, 1}), 38);
  EXPECT_EQ(reportedFillBufferBytes({640, 480}), 6 * 640 * 480 + 32);
  EXPECT_EQ(reportedFillBufferBytes({0x7FFFFFFF, 1}), 26);
  EXPECT_EQ(reportedFillBufferBytes({65536, 65536}), 32);
}

TEST(FloodFillPlan, KnowsWhichLengthsFit) {
  for (const Size roi : {Size{1, 1}, Size{357913935, 1}, Size{1, 357913935}, Size{18918, 18918}}) {
    EXPECT_TRUE(fillBufferBytesFit(roi)) << roi.width << " x " << roi.height;
    EXPECT_EQ(reportedFillBufferBytes(roi), 6LL * roi.width * roi.height + 32);
  }
  for (const Size roi : {Size{357913936, 1}, Size{1, 357913936}, Size{18919, 18919}, Size{26755, 26755},
                         Size{715827883, 1}, Size{65536, 65536}, Size{0x7FFFFFFF, 0x7FFFFFFF}}) {
    EXPECT_FALSE(fillBufferBytesFit(roi)) << roi.width << " x " << roi.height;
  }
}

TEST(FloodFillPlan, TeethOnBothSidesNeedMoreThanReported) {
  EXPECT_EQ(mostFillRecords({1001, 3}), 1002);
  EXPECT_EQ(fillBufferBytes(1002), 24 * 1002 + 7);
  EXPECT_LT(reportedFillBufferBytes({1001, 3}), fillBufferBytes(1002));
}

TEST(FloodFillPlan, TheBoundHas64Bits) {
  EXPECT_EQ(mostFillRecords({0x7FFFFFFE, 0x7FFFFFFF}), std::int64_t{0x7FFFFFFF} * 0x7FFFFFFF / 3);
}

TEST(FloodFillPlan, TheFacadesWorkMemoryHoldsTheBoundInEveryRegionThatItTakes) {
  using Ipp::Image::ComputerVisions::workBytes;
  for (const Size roi : {Size{1, 1}, Size{1001, 3}, Size{640, 480}, Size{99999999, 3}, Size{18918, 18918},
                         Size{357913935, 1}, Size{1, 357913935}}) {
    EXPECT_GE(workBytes(roi), fillBufferBytes(mostFillRecords(roi))) << roi.width << " x " << roi.height;
    EXPECT_GE(workBytes(roi), reportedFillBufferBytes(roi)) << roi.width << " x " << roi.height;
  }
  EXPECT_EQ(workBytes({18919, 18919}), -1);
  EXPECT_EQ(workBytes({0, 1}), -1);
}

TEST(FloodFillPlan, SearchesByVectorsIfSixteenPixelsFollow) {
  EXPECT_FALSE(searchesByVectors(10, 25));
  EXPECT_TRUE(searchesByVectors(10, 26));
  EXPECT_FALSE(searchesByVectors(0, 0));
}

TEST(FloodFillPlan, UsesWindowsInLargeRegionsOfWholeBlocks) {
  EXPECT_FALSE(usesWindows({127, 128}));
  EXPECT_TRUE(usesWindows({128, 128}));
  EXPECT_FALSE(usesWindows({15, 10000}));
  EXPECT_TRUE(usesWindows({16, 1024}));
}

TEST(FloodFillPlan, WindowsHaveAPlaceForEachEndOfARunAndOfItsParent) {
  for (std::int64_t last = 15; last < 200; ++last) {
    for (std::int64_t first = 0; first <= last; ++first) {
      for (std::int64_t end = first; end <= last; ++end) {
        const EndWindows windows = EndWindows::around(first, end, last);
        const std::int64_t between = windows.right - windows.left - windows.rightPlace();
        const std::int64_t firstFrom = std::max<std::int64_t>(first - nearColumns, 0);
        const std::int64_t firstTo = std::min(first + nearColumns, last);
        const std::int64_t endFrom = std::max<std::int64_t>(end - nearColumns, 0);
        const std::int64_t endTo = std::min(end + nearColumns, last);
        const bool inBoth = firstFrom >= windows.left && endTo - windows.left - between < 2 * windowPixels;
        const bool inTheirOwn =
            between == 0 || (firstTo < windows.left + windowPixels && endFrom >= windows.right);
        ASSERT_TRUE(inBoth && inTheirOwn) << "columns " << first << " to " << end << " of 0 to " << last;
      }
    }
  }
}

TEST(FloodFillPlan, FollowsColumnsOfRowsThatAreNotWholePagesApart) {
  for (const int step : {4096, 8192, -4096}) EXPECT_FALSE(followsColumns(step)) << step;
  for (const int step : {1, 64, 4095, 4097, 6144, -4100}) EXPECT_TRUE(followsColumns(step)) << step;
}

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
