#include <type_traits>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::FilteringFunction;

template <class T>
class EachFilteredType : public testing::Test {};
using FilteredTypes = testing::Types<u8, s16, float>;
TYPED_TEST_SUITE(EachFilteredType, FilteredTypes);

/// Some pixels that differ from their neighbours.
template <class T>
std::vector<T> waves(int count) {
  std::vector<T> pixels;
  for (int i = 0; i < count; ++i) pixels.push_back(static_cast<T>(i * 37 % 101));
  return pixels;
}

TYPED_TEST(EachFilteredType, AFieldWithoutChangeBecomesZero) {
  using T = TypeParam;
  for (const bool use3x3 : {true, false}) {
    std::vector<T> pixels(20 * 9, T(10)), result(20 * 9, T(1));
    auto src = wrap(pixels, 20, 9), dst = wrap(result, 20, 9);
    FilteringFunction::LaplaceBorder<T>(src, dst, use3x3, eBorderReplicate, T(99));
    EXPECT_EQ(result, std::vector<T>(20 * 9, T(0)));
    EXPECT_EQ(pixels, std::vector<T>(20 * 9, T(10)));
  }
}

TYPED_TEST(EachFilteredType, AConstantBorderHasItsValue) {
  using T = TypeParam;
  std::vector<T> pixels(6 * 5, T(10)), result(6 * 5);
  auto src = wrap(pixels, 6, 5), dst = wrap(result, 6, 5);
  FilteringFunction::LaplaceBorder3x3<T>(src, dst, eBorderConstant, T(0));
  for (int i = 0; i < 30; ++i) {
    const int x = i % 6, y = i / 6, edges = (x == 0 || x == 5) + (y == 0 || y == 4);
    EXPECT_EQ(result[static_cast<std::size_t>(i)], T(edges == 0 ? 0 : edges == 1 ? 30 : 50)) << i;
  }
}

TYPED_TEST(EachFilteredType, AllFormsAgree) {
  using T = TypeParam;
  auto pixels = waves<T>(30 * 20);
  auto src = wrap(pixels, 30, 20);
  const Rect part{3, 4, 17, 11}, whole = src.SizeToRoi();
  for (const eBorderType border : {eBorderConstant, eBorderReplicate}) {
    for (const Rect rect : {part, whole}) {
      std::vector<T> expected(600, T(1)), result(600, T(1));
      auto want = wrap(expected, 30, 20), got = wrap(result, 30, 20);
      FilteringFunction::LaplaceBorder<T>(src, want, rect, true, border, T(5));
      FilteringFunction::LaplaceBorder3x3<T>(src, got, rect, border, T(5));
      EXPECT_EQ(result, expected);
      FilteringFunction::LaplaceBorder<T>(src, want, rect, false, border, T(5));
      FilteringFunction::LaplaceBorder5x5<T>(src, got, rect, border, T(5));
      EXPECT_EQ(result, expected);
    }
    std::vector<T> expected(600, T(1)), result(600, T(1));
    auto want = wrap(expected, 30, 20), got = wrap(result, 30, 20);
    FilteringFunction::LaplaceBorder3x3<T>(src, want, whole, border, T(5));
    FilteringFunction::LaplaceBorder3x3<T>(src, got, border, T(5));
    EXPECT_EQ(result, expected);
    FilteringFunction::LaplaceBorder<T>(src, got, true, border, T(5));
    EXPECT_EQ(result, expected);
    FilteringFunction::LaplaceBorder5x5<T>(src, want, whole, border, T(5));
    FilteringFunction::LaplaceBorder5x5<T>(src, got, border, T(5));
    EXPECT_EQ(result, expected);
  }
}

/// The border begins at the region's edge, even if the image has pixels there.
TYPED_TEST(EachFilteredType, ARegionIsFilteredAsAnImageOfItsOwn) {
  using T = TypeParam;
  auto pixels = waves<T>(30 * 20);
  std::vector<T> result(600, T(1)), cut, alone(17 * 11), region;
  const Rect rect{3, 4, 17, 11};  // row 3, column 4
  for (int y = 0; y < 11; ++y) {
    for (int x = 0; x < 17; ++x) cut.push_back(pixels[static_cast<std::size_t>((3 + y) * 30 + 4 + x)]);
  }
  auto src = wrap(pixels, 30, 20), dst = wrap(result, 30, 20), cutSrc = wrap(cut, 17, 11),
       cutDst = wrap(alone, 17, 11);
  FilteringFunction::LaplaceBorder5x5<T>(src, dst, rect, eBorderReplicate, T(0));
  FilteringFunction::LaplaceBorder5x5<T>(cutSrc, cutDst, eBorderReplicate, T(0));
  int others = 0;
  for (int i = 0; i < 600; ++i) {
    const int x = i % 30 - 4, y = i / 30 - 3;
    const T pixel = result[static_cast<std::size_t>(i)];
    if (x >= 0 && x < 17 && y >= 0 && y < 11) {
      region.push_back(pixel);
    } else {
      others += pixel != T(1);
    }
  }
  EXPECT_EQ(region, alone);
  EXPECT_EQ(others, 0);
}

TYPED_TEST(EachFilteredType, AnyOtherBorderIsReplicate) {
  using T = TypeParam;
  auto pixels = waves<T>(9 * 8);
  auto src = wrap(pixels, 9, 8);
  std::vector<T> expected(72), result(72);
  auto want = wrap(expected, 9, 8), got = wrap(result, 9, 8);
  FilteringFunction::LaplaceBorder3x3<T>(src, want, eBorderReplicate, T(1));
  for (const int other : {2, -1, 240, 256}) {
    FilteringFunction::LaplaceBorder3x3<T>(src, got, static_cast<eBorderType>(other), T(50));
    EXPECT_EQ(result, expected);
  }
}

TYPED_TEST(EachFilteredType, ARegionAsWideAsTheKernelIsFilteredAsAnImageOfItsOwn) {
  using T = TypeParam;
  for (const bool use3x3 : {true, false}) {
    const int extent = use3x3 ? 3 : 5, width = extent + 1, height = 3000;
    auto pixels = waves<T>(width * height);
    std::vector<T> result(pixels.size()), cut, alone(static_cast<std::size_t>(extent * height)), region;
    for (int i = 0; i < width * height; ++i) {
      if (i % width < extent) cut.push_back(pixels[static_cast<std::size_t>(i)]);
    }
    auto src = wrap(pixels, width, height), dst = wrap(result, width, height);
    auto cutSrc = wrap(cut, extent, height), cutDst = wrap(alone, extent, height);
    FilteringFunction::LaplaceBorder<T>(src, dst, {0, 0, extent, height}, use3x3, eBorderReplicate, T(0));
    FilteringFunction::LaplaceBorder<T>(cutSrc, cutDst, use3x3, eBorderReplicate, T(0));
    for (int i = 0; i < width * height; ++i) {
      if (i % width < extent) region.push_back(result[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(region, alone);
  }
}

TYPED_TEST(EachFilteredType, RefusesWhatDoesNotFit) {
  using T = TypeParam;
  std::vector<T> pixels(30, T(1)), result(30, T(2)), less(25, T(2));
  auto src = wrap(pixels, 6, 5), dst = wrap(result, 6, 5), narrow = wrap(less, 5, 5), low = wrap(less, 6, 4);
  const auto filter = [](auto& from, auto& to, Rect rect) {
    FilteringFunction::LaplaceBorder<T>(from, to, rect, true, eBorderReplicate, T(0));
  };
  EXPECT_EQ(ippTextOf([&] { filter(src, dst, {0, 0, 7, 5}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { filter(src, dst, {0, 1, 6, 5}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { filter(src, narrow, {0, 0, 6, 5}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { FilteringFunction::LaplaceBorder3x3<T>(src, narrow, eBorderReplicate, T(0)); }),
            rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { FilteringFunction::LaplaceBorder5x5<T>(src, low, eBorderReplicate, T(0)); }),
            rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { filter(src, dst, {0, 0, 0, 5}); }), badSizeText);
  EXPECT_EQ(ippTextOf([&] { filter(src, dst, {0, 0, 6, -1}); }), badSizeText);
  auto empty = IppIMemory<T>::CreateContainer(nullptr, 6, 5);
  EXPECT_EQ(ippTextOf([&] { filter(empty, dst, {0, 0, 6, 5}); }), noBufferText);
  EXPECT_EQ(ippTextOf([&] { filter(src, empty, {0, 0, 6, 5}); }), noBufferText);
  IppIMemory<T> none;
  EXPECT_EQ(plainTextOf([&] { filter(none, dst, {0, 0, 0, 0}); }), "invalid length");
  EXPECT_EQ(result, std::vector<T>(30, T(2)));
}

/// The number of bytes for a high image with so few columns exceeds the 32 bits of the size entry, which
/// returns a small number.
TEST(LaplaceBorder, RefusesAWholeImageWhoseWorkMemoryCannotBeReported) {
  const int width = 5, height = 477'218'600;
  std::vector<u8> pixels(100, 1);
  auto src = IppIMemory<u8>::CreateContainer(pixels.data(), width, height);
  auto dst = IppIMemory<u8>::CreateContainer(pixels.data(), width, height);
  EXPECT_EQ(plainTextOf([&] { FilteringFunction::LaplaceBorder5x5<u8>(src, dst, eBorderReplicate, 0); }),
            "invalid length");
  EXPECT_EQ(pixels, std::vector<u8>(100, 1));
}

TEST(BorderType, HasAFixedUnderlyingType) {
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<eBorderType>, std::int32_t>));
}

TEST(FilteringFunctionClass, AssignmentsDoNothing) {
  FilteringFunction a, b;
  a = b;
  a = FilteringFunction();
  EXPECT_TRUE(std::is_empty_v<FilteringFunction>);
}

}  // namespace
}  // namespace Zorvan::Test
