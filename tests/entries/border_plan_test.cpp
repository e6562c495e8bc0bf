// The division of a region into pieces and their copies with a border, against an image that is extended in
// all directions pixel by pixel.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "tests/support/Random.h"
#include "zorvan/primitives/kernels/neighbourhood/border_stripes.h"

namespace Zorvan::Primitives {
namespace {

using Test::Random;

constexpr int borderTypes[] = {1, 3, 6};

/// Index `i` of `n` by the definition of the border type; -1 for the constant.
int placeOf(int i, int n, int type) {
  if (type == 1) return std::clamp(i, 0, n - 1);
  if (type == 6) return i >= 0 && i < n ? i : -1;
  if (n == 1) return 0;
  int step = i < 0 ? -1 : 1, at = 0;  // go from index 0, back at the ends
  for (int k = 0; k < std::abs(i); ++k) {
    if (at + step < 0 || at + step >= n) step = -step;
    at += step;
  }
  return at;
}

TEST(BorderCopy, ExtendsByTheDefinitionOfTheType) {
  Random random(1);
  for (const int type : borderTypes) {
    for (const Size size : {Size{1, 1}, Size{2, 1}, Size{1, 2}, Size{3, 2}, Size{5, 7}, Size{40, 3}}) {
      for (const int above : {0, 1, 9}) {
        for (const int left : {0, 2, 11, 35}) {
          const Size built{size.width + left + 3, size.height + above + 5};
          const auto srcStep = static_cast<std::size_t>(size.width + 1);
          std::vector<float> src(srcStep * static_cast<std::size_t>(size.height));
          for (float& pixel : src) pixel = static_cast<float>(random.below(1000));
          const auto dstStep = static_cast<std::size_t>(built.width);
          std::vector<float> dst(dstStep * static_cast<std::size_t>(built.height) + 1, -1.0f);
          copyWithBorder(Plane<const float>{src.data(), static_cast<std::int64_t>(4 * srcStep)}, size,
                         Plane<float>{dst.data(), static_cast<std::int64_t>(4 * dstStep)}, built, above, left,
                         static_cast<BorderType>(type), 77.0f);
          for (int r = 0; r < built.height; ++r) {
            for (int c = 0; c < built.width; ++c) {
              const int row = placeOf(r - above, size.height, type);
              const int column = placeOf(c - left, size.width, type);
              const float expected =
                  row < 0 || column < 0
                      ? 77.0f
                      : src[static_cast<std::size_t>(row) * srcStep + static_cast<std::size_t>(column)];
              ASSERT_EQ(dst[static_cast<std::size_t>(r) * dstStep + static_cast<std::size_t>(c)], expected)
                  << "type " << type << ", row " << r << ", column " << c << " of " << built.width << " by "
                  << built.height;
            }
          }
          EXPECT_EQ(dst.back(), -1.0f);
        }
      }
    }
  }
}

/// Every pixel is computed once, from the copy of its own piece.
TEST(BorderPlan, ServesEveryPixelOnce) {
  for (const Size mask : {Size{1, 1}, Size{3, 3}, Size{5, 5}, Size{1, 5}, Size{5, 1}, Size{9, 3}}) {
    const Reach reach = Reach::ofMask(mask);
    for (int width = 1; width <= 14; ++width) {
      for (int height = 1; height <= 14; ++height) {
        for (int sides = 0; sides <= 0xF0; sides += 0x10) {
          const BorderPlan plan = planBorder({width, height}, reach, {1 | sides});
          std::vector<int> served(static_cast<std::size_t>(width * height), 0);
          const auto serve = [&](const Part& part) {
            for (int r = 0; r < part.size.height; ++r) {
              for (int c = 0; c < part.size.width; ++c) {
                ++served[static_cast<std::size_t>((part.row + r) * width + part.column + c)];
              }
            }
          };
          for (int i = 0; i < plan.count; ++i) {
            const BorderPiece& piece = plan.pieces[i];
            EXPECT_EQ(piece.built.width, piece.to.size.width + mask.width - 1);
            EXPECT_EQ(piece.built.height, piece.to.size.height + mask.height - 1);
            EXPECT_EQ(piece.from.row - piece.above, piece.to.row - reach.above);
            EXPECT_EQ(piece.from.column - piece.left, piece.to.column - reach.left);
            serve(piece.to);
          }
          if (plan.hasCentre) serve(plan.centre);
          EXPECT_TRUE(std::all_of(served.begin(), served.end(), [](int n) { return n == 1; }))
              << width << " by " << height << ", mask " << mask.width << " by " << mask.height << ", sides "
              << sides;
        }
      }
    }
  }
}

TEST(BorderPlan, BuildsTheWholeUpToTheMasksSize) {
  const Reach reach = Reach::ofMask({3, 3});
  EXPECT_FALSE(planBorder({3, 100}, reach, {1}).hasCentre);
  EXPECT_FALSE(planBorder({100, 3}, reach, {1 | 0x70}).hasCentre);
  EXPECT_EQ(planBorder({3, 3}, reach, {0xF0}).count, 0);
  const BorderPlan plan = planBorder({4, 100}, reach, {1});
  EXPECT_EQ(plan.count, 4);
  EXPECT_EQ(plan.centre.size.width, 2);
  EXPECT_EQ(plan.centre.size.height, 98);
}

TEST(BorderPlan, LeavesOutStripesThatNothingReads) {
  EXPECT_EQ(planBorder({10, 10}, Reach::ofMask({1, 5}), {1}).count, 2);
  EXPECT_EQ(planBorder({10, 10}, Reach::ofMask({5, 1}), {1}).count, 2);
  EXPECT_EQ(planBorder({10, 10}, Reach::ofMask({1, 1}), {1}).count, 0);
  EXPECT_EQ(planBorder({10, 10}, Reach::ofMask({1, 5}), {1 | 0x30}).count, 0);
}

/// Runs a sum over the neighbourhood, through the pieces and by definition, for every set of sides in memory.
/// Corners beside a side in memory extend the pixels of that memory.
TEST(BorderStripes, EqualAnExtendedImage) {
  Random random(7);
  constexpr int around = 4, side = 24;
  std::vector<s16> image(side * side);
  for (s16& pixel : image) pixel = static_cast<s16>(random.below(100));
  const auto pixelAt = [&](int row, int column) {
    return image[static_cast<std::size_t>((row + around) * side + column + around)];
  };
  const Plane<const s16> src{image.data() + around * side + around, 2 * side};

  for (const Size mask : {Size{3, 3}, Size{5, 5}, Size{5, 3}, Size{1, 5}, Size{7, 1}}) {
    const Reach reach = Reach::ofMask(mask);
    for (const Size roi : {Size{8, 8}, Size{16, 9}, Size{9, 16}, Size{6, 7}, Size{3, 9}, Size{1, 1}}) {
      for (const int type : borderTypes) {
        for (int sides = 0; sides <= 0xF0; sides += 0x10) {
          const bool whole = mask.width >= roi.width || mask.height >= roi.height;
          const int unread = (reach.left == 0 ? 0xC0 : 0) | (reach.above == 0 ? 0x30 : 0);
          const int counted = (sides | unread) == 0xF0 ? 0xF0 : whole ? 0 : sides | unread;
          const auto extended = [&](int row, int column) -> int {
            const auto clip = [&](int i, int n, bool before, bool after) {
              return (i < 0 && before) || (i >= n && after) ? i : placeOf(i, n, type);
            };
            const int r = clip(row, roi.height, (counted & 0x10) != 0, (counted & 0x20) != 0);
            const int c = clip(column, roi.width, (counted & 0x40) != 0, (counted & 0x80) != 0);
            const bool outside =
                type == 6 &&
                ((row < 0 && !(counted & 0x10)) || (row >= roi.height && !(counted & 0x20)) ||
                 (column < 0 && !(counted & 0x40)) || (column >= roi.width && !(counted & 0x80)));
            return outside ? 55 : pixelAt(r, c);
          };
          std::vector<s16> result(static_cast<std::size_t>(roi.width * roi.height), -1), area(2000);
          runWithBorder<s16>(src, {result.data(), 2 * roi.width}, roi, reach, {type | sides}, 55, area.data(),
                             [&](Plane<const s16> from, Plane<s16> to, Size size) {
                               for (int r = 0; r < size.height; ++r) {
                                 for (int c = 0; c < size.width; ++c) {
                                   int sum = 0;
                                   for (int i = -reach.above; i <= reach.below; ++i) {
                                     for (int j = -reach.left; j <= reach.right; ++j)
                                       sum += *from.at(r + i, c + j);
                                   }
                                   *to.at(r, c) = static_cast<s16>(sum);
                                 }
                               }
                             });
          for (int r = 0; r < roi.height; ++r) {
            for (int c = 0; c < roi.width; ++c) {
              int sum = 0;
              for (int i = -reach.above; i <= reach.below; ++i) {
                for (int j = -reach.left; j <= reach.right; ++j) sum += extended(r + i, c + j);
              }
              ASSERT_EQ(result[static_cast<std::size_t>(r * roi.width + c)], sum)
                  << "row " << r << ", column " << c << " of " << roi.width << " by " << roi.height
                  << ", mask " << mask.width << " by " << mask.height << ", word " << (type | sides);
            }
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
