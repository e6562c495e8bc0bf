#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::IppIMorphology;

template <class T>
class Morphology : public testing::Test {};
using PixelTypes = testing::Types<u8, float>;
TYPED_TEST_SUITE(Morphology, PixelTypes);

/// The overloads of one operation of the facade, and its definition.
template <class T>
struct Operation {
  const char* name;
  IppIMemory<T> (*returned)(IppIMemory<T>&, Rect, bool, Size);
  void (*filling)(IppIMemory<T>&, IppIMemory<T>&, Rect, Size);
  std::vector<bool> dilates;  ///< for each pass
};

template <class T>
std::vector<Operation<T>> operations() {
  using M = IppIMorphology<T>;
  return {{"Erode", &M::Erode, &M::Erode, {false}},
          {"Dilate", &M::Dilate, &M::Dilate, {true}},
          {"Open", &M::Open, &M::Open, {false, true}},
          {"Close", &M::Close, &M::Close, {true, false}}};
}

template <class T>
std::vector<T> noise(int count) {
  std::vector<T> pixels;
  unsigned state = 12345;
  for (int i = 0; i < count; ++i) {
    state = state * 1664525u + 1013904223u;
    pixels.push_back(static_cast<T>(state >> 24));
  }
  return pixels;
}

/// The extreme of the rectangle around each pixel, with the edge repeated outside. `turned` rotates the
/// rectangle.
template <class T>
std::vector<T> onePass(const std::vector<T>& src, Size size, Size mask, bool dilate, bool turned) {
  std::vector<T> dst;
  const int before = turned ? mask.width / 2 : (mask.width - 1) / 2;
  const int above = turned ? mask.height / 2 : (mask.height - 1) / 2;
  for (int r = 0; r < size.height; ++r) {
    for (int c = 0; c < size.width; ++c) {
      T extreme = src[static_cast<std::size_t>(r * size.width + c)];
      for (int i = 0; i < mask.height; ++i) {
        for (int j = 0; j < mask.width; ++j) {
          const int row = std::clamp(r + i - above, 0, size.height - 1);
          const int column = std::clamp(c + j - before, 0, size.width - 1);
          const T pixel = src[static_cast<std::size_t>(row * size.width + column)];
          extreme = dilate ? std::max(extreme, pixel) : std::min(extreme, pixel);
        }
      }
      dst.push_back(extreme);
    }
  }
  return dst;
}

template <class T>
std::vector<T> defined(const Operation<T>& operation, std::vector<T> pixels, Size size, Size mask) {
  bool turned = false;
  for (const bool dilate : operation.dilates) {
    pixels = onePass(pixels, size, mask, dilate, turned);
    turned = true;
  }
  return pixels;
}

template <class T>
std::vector<T> pixelsOf(const IppIMemory<T>& image) {
  const T* const first = image.buffer().get();
  return {first, first + image.width() * image.height()};
}

/// Also masks for which the library allocates a block: other widths, tall ones, even ones.
constexpr Size maskSizes[] = {{1, 1},  {3, 3},   {5, 5},  {7, 7},  {9, 9},   {2, 2},   {4, 4}, {6, 3},
                              {8, 8},  {3, 5},   {5, 3},  {1, 7},  {7, 1},   {10, 10}, {3, 4}, {9, 31},
                              {3, 99}, {11, 11}, {3, 90}, {12, 2}, {31, 31}, {64, 1}};

TYPED_TEST(Morphology, FindsTheExtremeOfTheRectangle) {
  using T = TypeParam;
  const Size size{41, 37};
  auto source = noise<T>(size.width * size.height);
  auto src = wrap(source, size.width, size.height);
  for (const auto& operation : operations<T>()) {
    for (const Size mask : maskSizes) {
      const auto expected = defined(operation, source, size, mask);
      std::vector<T> pixels(source.size(), T(1));
      auto dst = wrap(pixels, size.width, size.height);
      operation.filling(src, dst, src.SizeToRoi(), mask);
      EXPECT_EQ(pixels, expected) << operation.name << " " << mask.width << " by " << mask.height;
      EXPECT_EQ(pixelsOf(operation.returned(src, src.SizeToRoi(), true, mask)), expected) << operation.name;
      EXPECT_EQ(pixelsOf(operation.returned(src, src.SizeToRoi(), false, mask)), expected) << operation.name;
    }
  }
}

TYPED_TEST(Morphology, SeesNothingAroundTheRegion) {
  using T = TypeParam;
  std::vector<T> source(100, T(200)), part;
  const auto inside = noise<T>(20);
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 5; ++c) {
      source[static_cast<std::size_t>((r + 2) * 10 + c + 3)] = inside[static_cast<std::size_t>(r * 5 + c)];
    }
  }
  auto src = wrap(source, 10, 10);
  for (const auto& operation : operations<T>()) {
    std::vector<T> pixels(100, T(9));
    auto dst = wrap(pixels, 10, 10);
    operation.filling(src, dst, Rect{2, 3, 5, 4}, Size{3, 3});
    const auto expected = defined(operation, inside, {5, 4}, {3, 3});
    for (int i = 0; i < 100; ++i) {
      const int r = i / 10 - 2, c = i % 10 - 3;
      const bool in = r >= 0 && r < 4 && c >= 0 && c < 5;
      EXPECT_EQ(pixels[static_cast<std::size_t>(i)],
                in ? expected[static_cast<std::size_t>(r * 5 + c)] : T(9))
          << operation.name << " " << i;
    }
  }
}

TYPED_TEST(Morphology, ReturnsAnImageOfTheRequestedSize) {
  using T = TypeParam;
  auto source = noise<T>(120);
  auto src = wrap(source, 12, 10);
  for (const auto& operation : operations<T>()) {
    auto cut = operation.returned(src, Rect{0, 0, 5, 4}, true, Size{3, 3});
    EXPECT_EQ(cut.width(), 5);
    EXPECT_EQ(cut.height(), 4);
    auto whole = operation.returned(src, Rect{1, 2, 5, 4}, false, Size{3, 3});
    EXPECT_EQ(whole.width(), 12);
    EXPECT_EQ(whole.height(), 10);
    std::vector<T> there(120);
    auto dst = wrap(there, 12, 10);
    operation.filling(src, dst, Rect{1, 2, 5, 4}, Size{3, 3});
    const auto got = pixelsOf(whole);
    for (int r = 1; r < 5; ++r) {
      for (int c = 2; c < 7; ++c) {
        EXPECT_EQ(got[static_cast<std::size_t>(r * 12 + c)], there[static_cast<std::size_t>(r * 12 + c)]);
      }
    }
  }
}

/// The rows lie after the image's last pixel, in memory that the library allocates. Address sanitizers check
/// this.
TYPED_TEST(Morphology, ReturnsTheShiftedRowsOfAFarRegion) {
  using T = TypeParam;
  auto source = noise<T>(400);
  auto src = wrap(source, 20, 20);
  for (const auto& operation : operations<T>()) {
    for (const Rect rect : {Rect{1, 0, 5, 4}, Rect{10, 3, 7, 9}, Rect{12, 12, 8, 8}, Rect{3, 11, 2, 2}}) {
      std::vector<T> there(400);
      auto dst = wrap(there, 20, 20);
      operation.filling(src, dst, rect, Size{3, 3});
      const auto got = pixelsOf(operation.returned(src, rect, true, Size{3, 3}));
      ASSERT_EQ(static_cast<int>(got.size()), rect.width * rect.height);
      for (int r = 0; r < rect.height; ++r) {
        for (int c = 0; c < rect.width; ++c) {
          const int at = (rect.x + r) * rect.width + rect.y + c;
          if (at >= rect.width * rect.height) continue;
          EXPECT_EQ(got[static_cast<std::size_t>(at)],
                    there[static_cast<std::size_t>((rect.x + r) * 20 + rect.y + c)]);
        }
      }
    }
  }
}

TYPED_TEST(Morphology, RefusesRegionsThatDoNotFitBeforeAllElse) {
  using T = TypeParam;
  std::vector<T> large(100), small(81);
  auto src = wrap(large, 10, 10), dst = wrap(small, 9, 9);
  for (const auto& operation : operations<T>()) {
    for (const Size mask : {Size{3, 3}, Size{0, 0}}) {
      EXPECT_EQ(ippTextOf([&] { operation.filling(src, dst, Rect{0, 0, 10, 9}, mask); }), rectDoesNotFitText);
      EXPECT_EQ(ippTextOf([&] { operation.filling(src, dst, Rect{0, 0, 9, 10}, mask); }), rectDoesNotFitText);
      EXPECT_EQ(ippTextOf([&] { operation.filling(dst, src, Rect{1, 0, 9, 9}, mask); }), rectDoesNotFitText);
      EXPECT_EQ(ippTextOf([&] { operation.filling(dst, src, Rect{0, 1, 9, 9}, mask); }), rectDoesNotFitText);
    }
    EXPECT_NO_THROW(operation.returned(src, Rect{2, 0, 9, 8}, false, Size{3, 3}));
  }
}

TYPED_TEST(Morphology, ReportsWrongSizes) {
  using T = TypeParam;
  std::vector<T> pixels(100);
  auto src = wrap(pixels, 10, 10), dst = wrap(pixels, 10, 10);
  const Rect good{0, 0, 4, 4};
  for (const auto& operation : operations<T>()) {
    const auto bothSay = [&](Rect rect, Size mask, const char* text) {
      EXPECT_EQ(plainTextOf([&] { operation.filling(src, dst, rect, mask); }), text) << operation.name;
      EXPECT_EQ(plainTextOf([&] { operation.returned(src, rect, true, mask); }), text) << operation.name;
    };
    bothSay(good, {0, 3}, "invalid image size");
    bothSay(good, {-1, 3}, "invalid image size");
    bothSay({0, 0, 0, 4}, {0, 3}, "invalid image size");
    bothSay(good, {3, 0}, "Morph border get size error.");
    bothSay(good, {3, -5}, "Morph border get size error.");
    bothSay(good, {10, INT_MIN}, "Morph border get size error.");
    bothSay({0, 0, 0, 4}, {3, 3}, "Morph border get size error.");
    bothSay({0, 0, 4, 0}, {3, 3}, "Morph border get size error.");
    bothSay({0, 0, -1, 4}, {3, 3}, "Morph border get size error.");
    bothSay(good, {65535, 65535}, "invalid length");  // the sizes wrap to positive ones
    bothSay(good, {INT_MAX, INT_MAX}, "invalid length");
    bothSay(good, {3, INT_MAX}, "invalid length");
  }
}

/// The length of the work memory is about 6 times that of a row, or 3 times that of a column, and wraps to a
/// small one. The images have one pixel in memory: a region that is refused is not read.
TYPED_TEST(Morphology, RefusesRegionsWhoseWorkMemoryHasNoLength) {
  using T = TypeParam;
  const int bytes = sizeof(T);
  const auto expectRefused = [](Size size, Size mask) {
    std::vector<T> one(1);
    auto src = IppIMemory<T>::CreateContainer(one.data(), size);
    auto dst = IppIMemory<T>::CreateContainer(one.data(), size);
    for (const auto& operation : operations<T>()) {
      EXPECT_EQ(plainTextOf([&] { operation.filling(src, dst, src.SizeToRoi(), mask); }), "invalid length")
          << operation.name << " of " << size.width << " x " << size.height << ", " << mask.width << " x "
          << mask.height;
    }
  };
  for (const Size mask : {Size{3, 3}, Size{4097, 3}}) expectRefused({715827884 / bytes, 1}, mask);
  for (const Size mask : {Size{3, 3}, Size{3, 4097}}) expectRefused({1, 1431655768 / bytes}, mask);
}

TYPED_TEST(Morphology, NeedsImagesWithPixels) {
  using T = TypeParam;
  std::vector<T> pixels(100);
  auto full = wrap(pixels, 10, 10);
  auto none = IppIMemory<T>::CreateContainer(nullptr, 10, 10);
  for (const auto& operation : operations<T>()) {
    EXPECT_EQ(ippTextOf([&] { operation.filling(none, full, Rect{0, 0, 4, 4}, Size{3, 3}); }), noBufferText);
    EXPECT_EQ(ippTextOf([&] { operation.filling(full, none, Rect{0, 0, 4, 4}, Size{3, 3}); }), noBufferText);
    EXPECT_EQ(ippTextOf([&] { operation.returned(none, Rect{0, 0, 4, 4}, true, Size{3, 3}); }), noBufferText);
  }
}

TYPED_TEST(Morphology, KeepsConstantsAndOrder) {
  using T = TypeParam;
  std::vector<T> flat(400, T(42)), source = noise<T>(400), pixels(400);
  auto constant = wrap(flat, 20, 20), src = wrap(source, 20, 20), dst = wrap(pixels, 20, 20);
  for (const auto& operation : operations<T>()) {
    operation.filling(constant, dst, dst.SizeToRoi(), Size{5, 5});
    EXPECT_EQ(pixels, flat) << operation.name;
  }
  IppIMorphology<T>::Open(src, dst, dst.SizeToRoi(), Size{3, 3});
  for (std::size_t i = 0; i < 400; ++i) EXPECT_LE(pixels[i], source[i]);
  IppIMorphology<T>::Close(src, dst, dst.SizeToRoi(), Size{3, 3});
  for (std::size_t i = 0; i < 400; ++i) EXPECT_GE(pixels[i], source[i]);
}

TYPED_TEST(Morphology, AssignmentsReturnTheObject) {
  IppIMorphology<TypeParam> one, other;
  EXPECT_EQ(&(one = other), &one);
  EXPECT_EQ(&(one = std::move(other)), &one);
}

}  // namespace
}  // namespace Zorvan::Test
