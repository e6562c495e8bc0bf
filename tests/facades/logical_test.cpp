#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::Comparer;
using Ipp::Image::Initializer;
using Bytes = Ipp::Image::IppILogical<u8>;
using Floats = Ipp::Image::IppILogical<float>;

constexpr const char* noEntryText =
    "ippStsDataTypeErr: Data type is incorrect or not supported( error Code : -59 )";
constexpr const char* badStepText = "ippStsStepErr: Step value is not valid( error Code : -16 )";

/// The overloads of one operation with two sources.
template <class T>
struct Operation {
  const char* name;
  void (*inPlace)(IppIMemory<T>&, IppIMemory<T>&, Rect);
  void (*combine)(IppIMemory<T>&, IppIMemory<T>&, IppIMemory<T>&, Rect);
  IppIMemory<T> (*create)(IppIMemory<T>&, IppIMemory<T>&, Rect, bool);
  int (*of)(int, int);
};

template <class T>
const std::vector<Operation<T>>& operations() {
  using Logical = Ipp::Image::IppILogical<T>;
  static const std::vector<Operation<T>> all = {
      {"and", Logical::And, Logical::And, Logical::And, [](int a, int b) { return a & b; }},
      {"or", Logical::Or, Logical::Or, Logical::Or, [](int a, int b) { return a | b; }},
      {"xor", Logical::Xor, Logical::Xor, Logical::Xor, [](int a, int b) { return a ^ b; }}};
  return all;
}

std::vector<u8> pattern(int count, int factor) {
  std::vector<u8> pixels;
  for (int i = 0; i < count; ++i) pixels.push_back(static_cast<u8>(i * factor + 3));
  return pixels;
}

u8 at(const std::vector<u8>& pixels, int i) { return pixels[static_cast<std::size_t>(i)]; }

TEST(Logical, CombinesInPlaceInTheSecondImage) {
  for (const auto& operation : operations<u8>()) {
    auto a = pattern(12, 37), b = pattern(12, 91);
    const auto first = a, second = b;
    auto src = wrap(a, 4, 3), srcDst = wrap(b, 4, 3);
    operation.inPlace(src, srcDst, Rect{0, 1, 3, 2});
    EXPECT_EQ(a, first);
    for (int i = 0; i < 12; ++i) {
      const bool inside = (i >= 1 && i <= 3) || (i >= 5 && i <= 7);
      EXPECT_EQ(at(b, i), inside ? operation.of(at(first, i), at(second, i)) : at(second, i))
          << operation.name << i;
    }
  }
}

TEST(Logical, CombinesIntoAThirdImageEachByItsOwnWidth) {
  for (const auto& operation : operations<u8>()) {
    auto a = pattern(20, 37), b = pattern(24, 91);
    std::vector<u8> target(12, 9);
    auto src1 = wrap(a, 5, 4), src2 = wrap(b, 6, 4), dst = wrap(target, 3, 4);
    operation.combine(src1, src2, dst, Rect{1, 1, 2, 2});
    const auto of = [&](int i, int j) { return static_cast<u8>(operation.of(at(a, i), at(b, j))); };
    const std::vector<u8> expected = {9, 9, 9, 9, of(6, 7), of(7, 8), 9, of(11, 13), of(12, 14), 9, 9, 9};
    EXPECT_EQ(target, expected) << operation.name;
  }
}

TEST(Logical, TheDestinationMayBeASource) {
  for (const auto& operation : operations<u8>()) {
    auto a = pattern(300, 37), b = pattern(300, 91);
    const auto first = a;
    auto one = wrap(a, 100, 3), two = wrap(b, 100, 3);
    operation.combine(one, two, one, one.SizeToRoi());
    for (int i = 0; i < 300; ++i) EXPECT_EQ(at(a, i), operation.of(at(first, i), at(b, i)));
  }
}

TEST(Logical, ComplementsInPlaceAndIntoAnotherImage) {
  auto source = pattern(12, 37);
  std::vector<u8> target(12, 9);
  auto src = wrap(source, 4, 3), dst = wrap(target, 4, 3);
  const auto isInside = [](int i) { return (i >= 4 && i <= 6) || (i >= 8 && i <= 10); };
  Bytes::Not(src, dst, Rect{1, 0, 3, 2});
  for (int i = 0; i < 12; ++i) EXPECT_EQ(at(target, i), isInside(i) ? 255 - at(source, i) : 9) << i;
  Bytes::Not(dst, Rect{1, 0, 3, 2});
  for (int i = 0; i < 12; ++i) EXPECT_EQ(at(target, i), isInside(i) ? at(source, i) : 9) << i;
}

TEST(Logical, TheRectHasToFitEachImage) {
  std::vector<u8> large(12, 7), small(9, 9);
  auto wide = wrap(large, 4, 3), narrow = wrap(small, 3, 3);
  const Rect rect{0, 0, 4, 3};
  for (const auto& operation : operations<u8>()) {
    EXPECT_EQ(ippTextOf([&] { operation.inPlace(wide, narrow, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { operation.inPlace(narrow, wide, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { operation.combine(narrow, wide, wide, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { operation.combine(wide, narrow, wide, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { operation.combine(wide, wide, narrow, rect); }), rectDoesNotFitText);
  }
  EXPECT_EQ(ippTextOf([&] { Bytes::Not(narrow, rect); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { Bytes::Not(wide, narrow, rect); }), rectDoesNotFitText);
  EXPECT_EQ(large, std::vector<u8>(12, 7));
  EXPECT_EQ(small, std::vector<u8>(9, 9));
}

TEST(Logical, EmptyImagesAndRegionsAreTheEntrysMatter) {
  std::vector<u8> pixels(12, 7);
  auto image = wrap(pixels, 4, 3);
  IppIMemory<u8> empty, flat = IppIMemory<u8>::CreateContainer(pixels.data(), 0, 3);
  for (const auto& operation : operations<u8>()) {
    EXPECT_EQ(ippTextOf([&] { operation.inPlace(image, image, Rect{0, 0, 0, 2}); }), badSizeText);
    EXPECT_EQ(ippTextOf([&] { operation.inPlace(image, empty, Rect{0, 0, 0, 0}); }), noBufferText);
    EXPECT_EQ(ippTextOf([&] { operation.inPlace(image, flat, Rect{0, 0, 0, 0}); }), badStepText);
    EXPECT_EQ(ippTextOf([&] { operation.create(empty, image, Rect{0, 0, 2, 2}, true); }), noBufferText);
    EXPECT_EQ(ippTextOf([&] { operation.create(image, flat, Rect{0, 0, 2, 2}, true); }), badStepText);
    EXPECT_EQ(ippTextOf([&] { operation.create(image, image, Rect{0, 0, 0, 2}, false); }), badSizeText);
    EXPECT_EQ(plainTextOf([&] {
                operation.create(image, image, Rect{0, 0, 0, 2}, true);
              }),
              "invalid image size");
    EXPECT_EQ(plainTextOf([&] {
                operation.create(empty, image, Rect{0, 0, 2, 2}, false);
              }),
              "invalid image size");
  }
  EXPECT_EQ(ippTextOf([&] { Bytes::Not(empty, Rect{0, 0, 0, 0}); }), noBufferText);
  EXPECT_EQ(ippTextOf([&] { Bytes::Not(image, Rect{0, 0, 2, 0}, false); }), badSizeText);
  EXPECT_EQ(plainTextOf([&] { Bytes::Not(image, Rect{0, 0, 2, 0}, true); }), "invalid image size");
  EXPECT_EQ(pixels, std::vector<u8>(12, 7));
}

TEST(LogicalNewImage, CombinationsOfARegionFillAnImageOfItsSizeFromAnyOrigin) {
  auto a = pattern(30, 37), b = pattern(40, 91);
  auto src1 = wrap(a, 6, 5), src2 = wrap(b, 8, 5);
  for (const auto& operation : operations<u8>()) {
    const auto result = operation.create(src1, src2, Rect{2, 1, 4, 3}, true);
    ASSERT_EQ(result.width(), 4);
    ASSERT_EQ(result.height(), 3);
    for (int i = 0; i < 12; ++i) {
      const int r = 2 + i / 4, c = 1 + i % 4;
      EXPECT_EQ(result.buffer()[i], operation.of(at(a, 6 * r + c), at(b, 8 * r + c))) << operation.name << i;
    }
  }
}

TEST(LogicalNewImage, CombinationsInTheSourcesSizeAreABlockInTheCorner) {
  auto a = pattern(30, 37), b = pattern(40, 91);
  auto src1 = wrap(a, 6, 5), src2 = wrap(b, 8, 5);
  for (const auto& operation : operations<u8>()) {
    const auto result = operation.create(src1, src2, Rect{2, 1, 4, 3}, false);
    ASSERT_EQ(result.width(), 6);
    ASSERT_EQ(result.height(), 5);
    for (int r = 0; r < 3; ++r) {
      for (int c = 0; c < 4; ++c) {
        EXPECT_EQ(result.buffer()[6 * r + c],
                  operation.of(at(a, 6 * (2 + r) + 1 + c), at(b, 8 * (2 + r) + 1 + c)));
      }
    }
  }
}

TEST(LogicalNewImage, CombinationsOfARegionLargerThanTheFirstSourceHaveRoomBehind) {
  auto a = pattern(600, 37), b = pattern(600, 91);
  auto src1 = wrap(a, 3, 2), src2 = wrap(b, 4, 9);  // there are more pixels after both images
  for (const auto& operation : operations<u8>()) {
    const auto result = operation.create(src1, src2, Rect{0, 0, 4, 90}, false);
    ASSERT_EQ(result.width(), 3);
    ASSERT_EQ(result.height(), 2);
    for (int i = 0; i < 6; ++i) {
      // The fourth pixel of a row lies at the beginning of the next row, which overwrites it.
      EXPECT_EQ(result.buffer()[i], operation.of(at(a, i), at(b, 4 * (i / 3) + i % 3))) << i;
    }
  }
}

TEST(LogicalNewImage, TheComplementOfARegionAtTheOriginIsACrop) {
  auto source = pattern(20, 37);
  auto src = wrap(source, 5, 4);
  const auto crop = Bytes::Not(src, Rect{0, 0, 3, 2}, true);
  ASSERT_EQ(crop.width(), 3);
  ASSERT_EQ(crop.height(), 2);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(crop.buffer()[i], 255 - at(source, 5 * (i / 3) + i % 3)) << i;
}

TEST(LogicalNewImage, TheComplementInTheSourcesSizeKeepsItsPlace) {
  auto source = pattern(20, 37);
  auto src = wrap(source, 5, 4);
  const auto result = Bytes::Not(src, Rect{1, 2, 3, 2}, false);
  ASSERT_EQ(result.width(), 5);
  ASSERT_EQ(result.height(), 4);
  for (const int i : {7, 8, 9, 12, 13, 14}) EXPECT_EQ(result.buffer()[i], 255 - at(source, i)) << i;
}

TEST(LogicalNewImage, TheComplementOfARegionElsewhereShiftsItsRowsPastTheImage) {
  auto source = pattern(60, 37);
  auto src = wrap(source, 6, 10);
  // The region starts at element 1 * 4 + 2 of the result: pixels after its 12 are dropped.
  const auto result = Bytes::Not(src, Rect{1, 2, 4, 3}, true);
  const int from[] = {8, 9, 10, 11, 14, 15};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(result.buffer()[6 + i], 255 - at(source, from[i])) << i;
}

TEST(LogicalNewImage, TheComplementStaysInMemoryOfItsOwn) {
  std::vector<u8> source(200 * 200, 1);
  auto src = wrap(source, 200, 200);
  for (const bool sizeFromRect : {true, false}) {
    EXPECT_EQ(Bytes::Not(src, Rect{100, 100, 50, 50}, sizeFromRect).width(), sizeFromRect ? 50 : 200);
    EXPECT_EQ(Bytes::Not(src, Rect{199, 199, 1, 1}, sizeFromRect).width(), sizeFromRect ? 1 : 200);
  }
  // There are pixels before and after this image: the caller is responsible for a region that contains them,
  // which is valid here.
  auto middle = IppIMemory<u8>::CreateContainer(source.data() + 100 * 200, 200, 2);
  for (const Rect rect : {Rect{-1, 0, 200, 2}, Rect{0, -7, 100, 1}, Rect{-50, -50, 60, 60},
                          Rect{0, 0, 300, 20}, Rect{1, 1, 200, 60}}) {
    for (const bool sizeFromRect : {true, false}) {
      const auto result = Bytes::Not(middle, rect, sizeFromRect);
      EXPECT_EQ(result.width(), sizeFromRect ? rect.width : 200);
    }
  }
  EXPECT_EQ(source, std::vector<u8>(200 * 200, 1));
}

TEST(LogicalNewImage, TheComplementFromInFrontOfTheSource) {
  auto source = pattern(40, 37);
  auto src = IppIMemory<u8>::CreateContainer(source.data() + 10, 5, 4);
  const auto result = Bytes::Not(src, Rect{-1, 0, 5, 2}, false);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(result.buffer()[i], 255 - at(source, 10 + i)) << i;
}

TEST(LogicalOfFloats, AllTwelveFunctionsThrowAndTouchNothing) {
  std::vector<float> a(12, 1.5F), b(12, -2.5F), c(12, 3.5F);
  auto one = wrap(a, 4, 3), two = wrap(b, 4, 3), three = wrap(c, 4, 3);
  const Rect rect{0, 1, 3, 2}, bad{0, 0, 5, 3};
  for (const auto& operation : operations<float>()) {
    EXPECT_EQ(ippTextOf([&] { operation.inPlace(one, two, rect); }), noEntryText);
    EXPECT_EQ(ippTextOf([&] { operation.combine(one, two, three, rect); }), noEntryText);
    EXPECT_EQ(ippTextOf([&] { operation.inPlace(one, two, bad); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { operation.combine(one, two, three, bad); }), rectDoesNotFitText);
    for (const bool sizeFromRect : {true, false}) {
      EXPECT_EQ(ippTextOf([&] { operation.create(one, two, rect, sizeFromRect); }), noEntryText);
      EXPECT_EQ(ippTextOf([&] { operation.create(one, two, bad, sizeFromRect); }), noEntryText);
    }
    EXPECT_EQ(plainTextOf([&] { operation.create(one, two, Rect{0, 0, 0, 2}, true); }), "invalid image size");
  }
  EXPECT_EQ(ippTextOf([&] { Floats::Not(one, rect); }), noEntryText);
  EXPECT_EQ(ippTextOf([&] { Floats::Not(one, two, rect); }), noEntryText);
  EXPECT_EQ(ippTextOf([&] { Floats::Not(one, bad); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { Floats::Not(one, two, bad); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { Floats::Not(one, rect, true); }), noEntryText);
  EXPECT_EQ(ippTextOf([&] { Floats::Not(one, bad, false); }), noEntryText);
  IppIMemory<float> empty;
  EXPECT_EQ(ippTextOf([&] { Floats::Not(empty, Rect{0, 0, 0, 0}); }), noEntryText);
  EXPECT_EQ(a, std::vector<float>(12, 1.5F));
  EXPECT_EQ(b, std::vector<float>(12, -2.5F));
  EXPECT_EQ(c, std::vector<float>(12, 3.5F));
}

/// The result of Compare for one pixel.
int compared(float pixel, float value, eComparison comparison) {
  std::vector<float> source = {pixel};
  std::vector<u8> target = {9};
  auto src = wrap(source, 1, 1);
  auto dst = wrap(target, 1, 1);
  Comparer<float>::Compare(src, dst, Rect{0, 0, 1, 1}, value, comparison);
  return target[0];
}

TEST(Comparer, TheFiveOperators) {
  std::vector<float> source = {1, 2, 3};
  auto src = wrap(source, 3, 1);
  const std::vector<u8> expected[] = {{255, 0, 0}, {255, 255, 0}, {0, 255, 0}, {0, 255, 255}, {0, 0, 255}};
  for (const eComparison comparison : {eLess, eLessEqual, eEqual, eGreaterEqual, eGreater}) {
    std::vector<u8> target(3, 9);
    auto dst = wrap(target, 3, 1);
    Comparer<float>::Compare(src, dst, src.SizeToRoi(), 2.0F, comparison);
    EXPECT_EQ(target, expected[comparison]);
  }
}

TEST(Comparer, NarrowsItsConstantToAWholeNumberOf8Bits) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  const std::pair<float, float> narrowed[] = {{3.7F, 3},
                                              {0.5F, 0},
                                              {-0.5F, 0},
                                              {-1.0F, 255},
                                              {-3.7F, 253},
                                              {255.9F, 255},
                                              {256.0F, 0},
                                              {300.0F, 44},
                                              {1000.0F, 232},
                                              {65535.0F, 255},
                                              {std::numeric_limits<float>::quiet_NaN(), 0},
                                              {2147483520.0F, 128},  // the largest float below 2^31
                                              {2147483648.0F, 0},
                                              {-2147483648.0F, 0},
                                              {-2147483904.0F, 0},
                                              {4294967295.0F, 0},
                                              {1e20F, 0},
                                              {infinity, 0},
                                              {-infinity, 0}};
  for (const auto& [value, whole] : narrowed) {
    EXPECT_EQ(compared(whole, value, eEqual), 255) << value;
    EXPECT_EQ(compared(std::nextafter(whole, -1.0F), value, eLess), 255) << value;
    EXPECT_EQ(compared(std::nextafter(whole, 1e6F), value, eGreater), 255) << value;
    EXPECT_EQ(compared(whole, value, eLess), 0) << value;
  }
  EXPECT_EQ(compared(0.5F, 0.5F, eEqual), 0);
  EXPECT_EQ(compared(0.0F, 0.5F, eEqual), 255);
}

TEST(Comparer, ANanIsNeitherLessNorEqual) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const eComparison comparison : {eLess, eLessEqual, eEqual}) EXPECT_EQ(compared(nan, 5, comparison), 0);
  EXPECT_EQ(compared(nan, 5, eGreater), compared(nan, 5, eGreaterEqual));
}

TEST(Comparer, ZerosAreEqualAndInfinitiesAreOutermost) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(compared(-0.0F, 0.0F, eEqual), 255);
  EXPECT_EQ(compared(0.0F, -0.0F, eLess), 0);
  EXPECT_EQ(compared(infinity, 255, eGreater), 255);
  EXPECT_EQ(compared(-infinity, 0, eLess), 255);
}

TEST(Comparer, EachImageHasItsOwnWidth) {
  auto source = counted<float>(20);
  std::vector<u8> target(12, 9);
  auto src = wrap(source, 5, 4);
  auto dst = wrap(target, 3, 4);
  Comparer<float>::Compare(src, dst, Rect{1, 1, 2, 2}, 11, eGreaterEqual);
  EXPECT_EQ(target, (std::vector<u8>{9, 9, 9, 9, 0, 0, 9, 255, 255, 9, 9, 9}));
}

TEST(Comparer, AnUnknownOperatorLeavesTheDestination) {
  auto source = counted<float>(4);
  std::vector<u8> target(4, 9);
  auto src = wrap(source, 2, 2);
  auto dst = wrap(target, 2, 2);
  for (const int comparison : {5, 7, -1}) {
    Comparer<float>::Compare(src, dst, src.SizeToRoi(), 2, static_cast<eComparison>(comparison));
  }
  EXPECT_EQ(target, std::vector<u8>(4, 9));
  EXPECT_EQ(ippTextOf([&] {
              Comparer<float>::Compare(src, dst, Rect{0, 0, 0, 2}, 2, static_cast<eComparison>(5));
            }),
            badSizeText);
}

TEST(Comparer, Refusals) {
  std::vector<float> source(12, 1);
  std::vector<u8> target(9, 9);
  auto src = wrap(source, 4, 3);
  auto dst = wrap(target, 3, 3);
  const auto textFor = [](IppIMemory<float>& from, IppIMemory<u8>& to, Rect rect) {
    return ippTextOf([&] { Comparer<float>::Compare(from, to, rect, 2, eLess); });
  };
  IppIMemory<float> noSource;
  IppIMemory<u8> noTarget, flat = IppIMemory<u8>::CreateContainer(target.data(), 0, 3);
  EXPECT_EQ(textFor(src, dst, src.SizeToRoi()), rectDoesNotFitText);
  EXPECT_EQ(textFor(noSource, dst, Rect{0, 0, 3, 3}), rectDoesNotFitText);
  EXPECT_EQ(textFor(src, dst, Rect{0, 0, 3, -1}), badSizeText);
  EXPECT_EQ(textFor(noSource, dst, Rect{0, 0, 0, 0}), noBufferText);
  EXPECT_EQ(textFor(src, noTarget, Rect{0, 0, 0, 0}), noBufferText);
  EXPECT_EQ(textFor(src, flat, Rect{0, 0, 0, 0}), badStepText);
  EXPECT_EQ(target, std::vector<u8>(9, 9));
}

TEST(Comparer, ItsOutcomeIsAMask) {
  auto source = counted<float>(6);
  std::vector<u8> bytes(6), picture(6, 1);
  auto src = wrap(source, 3, 2);
  auto mask = wrap(bytes, 3, 2), image = wrap(picture, 3, 2);
  Comparer<float>::Compare(src, mask, src.SizeToRoi(), 3, eGreater);
  Initializer::FillWithMask(image, mask, u8(200), image.SizeToRoi());
  EXPECT_EQ(picture, (std::vector<u8>{1, 1, 1, 1, 200, 200}));
}

TEST(LogicalClasses, AreAssignedWithoutEffect) {
  Bytes a, b;
  EXPECT_EQ(&(a = b), &a);
  EXPECT_EQ(&(a = Bytes()), &a);
  Floats c, d;
  EXPECT_EQ(&(c = d), &c);
  EXPECT_EQ(&(c = Floats()), &c);
  Comparer<float> e, f;
  EXPECT_EQ(&(e = f), &e);
  EXPECT_EQ(&(e = Comparer<float>()), &e);
}

}  // namespace
}  // namespace Zorvan::Test
