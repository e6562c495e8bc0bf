// The guide's tables of failures, row by row: the code or text that each failure throws.

#include <cmath>
#include <limits>
#include <type_traits>

#include "examples/common/status_code.h"
#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;
using Ipp::eIppResultStatus;
using IppS::IppSMemory;

constexpr int nothingThrown = std::numeric_limits<int>::min();

/// The code of the IppException that `call` throws.
template <class Call>
int thrownCode(Call call) {
  try {
    call();
  } catch (const IppException& exception) {
    return Examples::codeOf(exception);
  }
  return nothingThrown;
}

/// Images of 4 by 3 pixels, all 1.
template <class T>
struct Image {
  std::vector<T> pixels = std::vector<T>(64, T(1));
  IppIMemory<T> image = IppIMemory<T>::CreateContainer(pixels.data(), 4, 3);
};

struct Images {
  Image<u8> a, b, mask;
  Image<u16> words;
  Image<int> numbers;
  Image<float> x, y;
};

/// Every operation on regions of existing images, by name.
struct Call {
  const char* name;
  void (*run)(Images& i, Rect rect);
};
const Call allCalls[] = {
    {"Fill", [](Images& i, Rect r) { Initializer::Fill<u8>(i.a.image, 7, r); }},
    {"FillWithMask", [](Images& i, Rect r) { Initializer::FillWithMask<u8>(i.a.image, i.mask.image, 7, r); }},
    {"Copy", [](Images& i, Rect r) { Initializer::Copy(i.a.image, i.b.image, r); }},
    {"CopyWithMask",
     [](Images& i, Rect r) { Initializer::CopyWithMask(i.a.image, i.b.image, i.mask.image, r); }},
    {"Convert to float", [](Images& i, Rect r) { Initializer::Convert(i.numbers.image, i.x.image, r); }},
    {"Convert to u8", [](Images& i, Rect r) { Initializer::Convert(i.numbers.image, i.a.image, r); }},
    {"Add", [](Images& i, Rect r) { IppIArithmetic<u8>::Add(i.a.image, i.b.image, r); }},
    {"AddC", [](Images& i, Rect r) { IppIArithmetic<float>::AddC(i.x.image, 1, r); }},
    {"Subtract", [](Images& i, Rect r) { IppIArithmetic<float>::Subtract(i.x.image, i.y.image, r); }},
    {"Multiply", [](Images& i, Rect r) { IppIArithmetic<u8>::Multiply(i.a.image, i.b.image, r); }},
    {"Divide u8", [](Images& i, Rect r) { IppIArithmetic<u8>::Divide(i.a.image, i.b.image, r); }},
    {"Divide float", [](Images& i, Rect r) { IppIArithmetic<float>::Divide(i.x.image, i.y.image, r); }},
    {"Square u8", [](Images& i, Rect r) { IppIArithmetic<u8>::Square(i.a.image, r); }},
    {"Square float", [](Images& i, Rect r) { IppIArithmetic<float>::Square(i.x.image, i.y.image, r); }},
    {"SquareRoot u8", [](Images& i, Rect r) { IppIArithmetic<u8>::SquareRoot(i.a.image, i.b.image, r); }},
    {"SquareRoot float", [](Images& i, Rect r) { IppIArithmetic<float>::SquareRoot(i.x.image, r); }},
    {"Absolute", [](Images& i, Rect r) { IppIArithmetic<float>::Absolute(i.x.image, r); }},
    {"AddWithMask",
     [](Images& i, Rect r) { IppIArithmetic<u8>::AddWithMask(i.a.image, i.x.image, i.mask.image, r); }},
    {"And", [](Images& i, Rect r) { IppILogical<u8>::And(i.a.image, i.b.image, r); }},
    {"Not", [](Images& i, Rect r) { IppILogical<u8>::Not(i.a.image, r); }},
    {"Compare", [](Images& i, Rect r) { Comparer<float>::Compare(i.x.image, i.a.image, r, 1, eEqual); }},
    {"Min", [](Images& i, Rect r) { Statistic<u8>::Min(i.a.image, r); }},
    {"Mean", [](Images& i, Rect r) { Statistic<float>::Mean(i.x.image, r); }},
    {"Mean with a mask", [](Images& i, Rect r) { Statistic<u8>::Mean(i.a.image, i.mask.image, r); }},
    {"Deviation",
     [](Images& i, Rect r) {
       Statistic<float>::MeanAndStandardDeviationWithMask(i.x.image, i.mask.image, r);
     }},
    {"Extremes", [](Images& i, Rect r) { Statistic<u8>::MinMaxIndexWithMask(i.a.image, i.mask.image, r); }},
    {"Erode",
     [](Images& i, Rect r) {
       IppIMorphology<u8>::Erode(i.a.image, i.b.image, r, {3, 3});
     }},
    {"Open",
     [](Images& i, Rect r) {
       IppIMorphology<float>::Open(i.x.image, i.y.image, r, {3, 3});
     }},
    {"Laplace",
     [](Images& i, Rect r) {
       FilteringFunction::LaplaceBorder3x3<float>(i.x.image, i.y.image, r, eBorderReplicate, 0);
     }},
    {"FloodFill",
     [](Images& i, Rect r) {
       ComputerVision::FloodFill<u8>(i.a.image, {0, 0}, 7, r);
     }},
};

/// Gives all images of a call another size or none of the pixels.
void reshape(Images& i, int width, int height, bool buffers = true) {
  const auto each = [&](auto& image) {
    using T = std::remove_reference_t<decltype(image.pixels[0])>;
    image.image = IppIMemory<T>::CreateContainer(buffers ? image.pixels.data() + 16 : nullptr, width, height);
  };
  each(i.a), each(i.b), each(i.mask), each(i.words), each(i.numbers), each(i.x), each(i.y);
}

bool isAnyOf(const std::string& name, std::initializer_list<const char*> names) {
  for (const char* each : names) {
    if (name == each) return true;
  }
  return false;
}

TEST(Failures, RegionsThatDoNotFitThrow29AndNothingIsWritten) {
  for (const Call& call : allCalls) {
    for (const Rect rect : {Rect{0, 0, 5, 3}, Rect{0, 0, 4, 4}, Rect{1, 0, 4, 1}, Rect{0, 3, 1, 1}}) {
      Images images;
      EXPECT_EQ(thrownCode([&] { call.run(images, rect); }), 29) << call.name;
      EXPECT_EQ(images.a.pixels, std::vector<u8>(64, 1));
      EXPECT_EQ(images.x.pixels, std::vector<float>(64, 1));
    }
  }
}

TEST(Failures, ImagesWithoutPixelsThrowMinus8) {
  for (const Call& call : allCalls) {
    Images images;
    reshape(images, 4, 3, false);
    EXPECT_EQ(thrownCode([&] { call.run(images, {0, 0, 4, 3}); }), -8) << call.name;
  }
}

TEST(Failures, RegionsWithoutAnExtentThrowMinus6ButForMorphologyAndFloodFill) {
  for (const Call& call : allCalls) {
    for (const Rect rect : {Rect{0, 0, 0, 3}, Rect{0, 0, 4, 0}, Rect{0, 0, -1, 3}}) {
      Images images;
      const auto run = [&] { call.run(images, rect); };
      if (isAnyOf(call.name, {"Erode", "Open"})) {
        EXPECT_EQ(plainTextOf(run), "Morph border get size error.");
      } else if (isAnyOf(call.name, {"FloodFill"})) {
        EXPECT_EQ(plainTextOf(run), "invalid length");
      } else {
        EXPECT_EQ(thrownCode(run), -6) << call.name;
      }
    }
  }
}

/// A negative x lets a region pass the test that is wider than its image.
TEST(Failures, RowsThatDoNotServeThrowMinus16WhereTheyAreTested) {
  for (const Call& call : allCalls) {
    if (isAnyOf(call.name, {"Laplace"})) continue;  // throws a text for an image of size 0 by 0
    Images none, narrow;
    reshape(none, 0, 3);
    reshape(narrow, 1, 3);
    const int code = thrownCode([&] { call.run(none, {-1, 0, 1, 1}); });
    const int codeOfNarrow = thrownCode([&] { call.run(narrow, {-2, 2, 3, 1}); });
    const bool testsSign =
        isAnyOf(call.name, {"Convert to u8", "Divide u8", "Divide float", "Square u8", "Square float",
                            "SquareRoot u8", "SquareRoot float", "Absolute", "And", "Not", "Compare"});
    const bool testsRow = isAnyOf(call.name, {"AddWithMask", "Mean with a mask", "Deviation", "Extremes",
                                              "Erode", "Open", "FloodFill"});
    EXPECT_EQ(code, testsSign || testsRow ? -16 : nothingThrown) << call.name;
    EXPECT_EQ(codeOfNarrow, testsRow ? -16 : nothingThrown) << call.name;
  }
}

/// Their stride has 32 bits.
TEST(Failures, RowsOf2GibAndMoreThrowMinus16) {
  Images images;
  reshape(images, 1 << 29, 1);
  const Rect rect{0, 0, 4, 1};
  EXPECT_EQ(thrownCode([&] { Initializer::Convert(images.numbers.image, images.a.image, rect); }), -16);
  EXPECT_EQ(thrownCode([&] { IppIArithmetic<float>::Square(images.x.image, rect); }), -16);
  EXPECT_EQ(thrownCode([&] { Statistic<float>::Mean(images.x.image, images.mask.image, rect); }), -16);
}

TEST(Failures, SeedsOutsideTheRegionThrowMinus11) {
  Image<u8> image;
  for (const Point seed : {Point{3, 0}, Point{0, 2}, Point{-1, 0}}) {
    EXPECT_EQ(thrownCode([&] { ComputerVision::FloodFill<u8>(image.image, seed, 7, {0, 0, 3, 2}); }), -11);
  }
}

TEST(Failures, MissingOperationsThrowMinus59) {
  Images i;
  const Rect rect{0, 0, 4, 3};
  EXPECT_EQ(thrownCode([&] { IppIArithmetic<u8>::Absolute(i.a.image, rect); }), -59);
  EXPECT_EQ(thrownCode([&] { IppILogical<float>::And(i.x.image, i.y.image, rect); }), -59);
  EXPECT_EQ(thrownCode([&] { Statistic<u16>::MinMaxIndexWithMask(i.words.image, i.mask.image); }), -59);
}

TEST(Failures, WarningsThrowTheirPositiveCodes) {
  Images i;
  const Rect rect{0, 0, 4, 3};
  i.mask.pixels.assign(64, 0);
  EXPECT_EQ(thrownCode([&] { Statistic<u8>::MinMaxIndexWithMask(i.a.image, i.mask.image); }), 1);
  i.x.pixels[5] = 0;
  EXPECT_EQ(thrownCode([&] { IppIArithmetic<float>::Divide(i.x.image, i.y.image, rect); }), 2);
  i.x.pixels[5] = -4;
  EXPECT_EQ(thrownCode([&] { IppIArithmetic<float>::SquareRoot(i.x.image, rect); }), 3);
  EXPECT_EQ(i.x.pixels[0], 1) << "all other pixels are written";
  EXPECT_TRUE(std::isnan(i.x.pixels[5]));
}

TEST(Failures, TextsOfContainers) {
  Image<u16> words;
  IppIMemory<u8> empty;
  double number = 1;
  const IppIMemory<double> doubles = IppIMemory<double>::CreateContainer(&number, 1, 1);
  const IppIMemory<float> unallocated = IppIMemory<float>::CreateContainer(nullptr, 4, 3);
  EXPECT_EQ(plainTextOf([] { Initializer::Allocate<u8>(0, 5); }), "invalid image size");
  EXPECT_EQ(plainTextOf([&] { IppIMemory<u8> copy(empty); }), "invalid image size");
  EXPECT_EQ(plainTextOf([] { IppIMemory<double>(4, 3); }).rfind("Cannot allocate memory.\n", 0), 0U);
  EXPECT_EQ(plainTextOf([&] { IppIMemory<double> copy(doubles); }).rfind("Cannot allocate memory.\n", 0), 0U);
  EXPECT_EQ(plainTextOf([&] { IppIMemory<u16> copy(words.image); }), "Assign error in IppIMemory");
  EXPECT_EQ(plainTextOf([&] { IppIMemory<float> copy(unallocated); }), "Assign error in IppIMemory");
  EXPECT_EQ(plainTextOf([&] {
              Initializer::Copy(words.image, {0, 0, 2, 2}, true);
            }),
            "Assign error in IppIMemory");
  EXPECT_EQ(plainTextOf([] { IppSMemory<u8>(0); }), "invalid length");
  EXPECT_EQ(plainTextOf([] { IppSMemory<int>(4); }), "not supported type");
}

TEST(Failures, TextsOfOperations) {
  Images i;
  const Rect rect{0, 0, 4, 3};
  IppIMemory<u8> none = IppIMemory<u8>::CreateContainer(i.a.pixels.data(), 0, 3);
  u8 pixel = 0;  // nothing is read before the failure
  IppIMemory<u8> long4 = IppIMemory<u8>::CreateContainer(&pixel, 357913900, 4);
  IppIMemory<u8> longer4 = IppIMemory<u8>::CreateContainer(&pixel, 500000000, 4);

  EXPECT_EQ(plainTextOf([&] { IppILogical<u8>::Not(i.a.image, {0, 0, 0, 2}, true); }), "invalid image size");
  EXPECT_EQ(plainTextOf([&] { Initializer::Copy(i.a.image, {0, 0, 2, 0}, true); }), "invalid image size");
  EXPECT_EQ(plainTextOf([&] {
              IppIArithmetic<u8>::AddCWithMask(none, i.mask.image, 1, {0, 0, 0, 3});
            }),
            "invalid image size");
  EXPECT_EQ(plainTextOf([&] {
              IppIMorphology<u8>::Erode(i.a.image, i.b.image, rect, {0, 3});
            }),
            "invalid image size");

  EXPECT_EQ(plainTextOf([&] {
              IppIMorphology<u8>::Erode(i.a.image, i.b.image, rect, {3, 0});
            }),
            "Morph border get size error.");
  EXPECT_EQ(plainTextOf([&] {
              IppIMorphology<u8>::Erode(i.a.image, {0, 0, 0, 3}, true, {3, 3});
            }),
            "Morph border get size error.");
  EXPECT_EQ(plainTextOf([&] {
              IppIMorphology<u8>::Erode(long4, long4, long4.SizeToRoi(), {3, 3});
            }),
            "Morph border init error.")
      << "work memory of 2 GiB less a few bytes is never given";
  EXPECT_EQ(plainTextOf([&] {
              IppIMorphology<u8>::Open(longer4, longer4, longer4.SizeToRoi(), {3, 3});
            }),
            "invalid length");

  EXPECT_EQ(plainTextOf([&] {
              FilteringFunction::LaplaceBorder3x3<u8>(none, i.b.image, {0, 0, 0, 0}, eBorderReplicate, 0);
            }),
            "invalid length");
  EXPECT_EQ(
      plainTextOf([&] { FilteringFunction::LaplaceBorder5x5<u8>(longer4, longer4, eBorderReplicate, 0); }),
      "invalid length");
}

TEST(Failures, AnImageOf2GibAndMoreHasNoPixels) {
  IppIMemory<u8> image = Initializer::Allocate<u8>(46341, 46341);
  EXPECT_FALSE(image.buffer());
  EXPECT_EQ(thrownCode([&] { Initializer::Fill<u8>(image, 1, {0, 0, 9, 9}); }), -8);
  EXPECT_FALSE(Initializer::Allocate<float>(1 << 15, 1 << 14).buffer());
}

/// If a NaN is selected, the values and positions are not specified, and so is whether anything is found.
TEST(Failures, ASelectedNanMayThrow1) {
  Image<float> image;
  Image<u8> mask;
  mask.pixels.assign(64, 0);
  mask.pixels[5] = 1;
  image.pixels[5] = std::numeric_limits<float>::quiet_NaN();
  const int code = thrownCode([&] {
    Statistic<float>::MinMaxIndexWithMask(image.image, mask.image, {0, 0, 4, 3});
  });
  EXPECT_TRUE(code == 1 || code == nothingThrown) << code;
}

TEST(Failures, ANanAmongTheDivisorsIsNoZero) {
  for (std::size_t place = 0; place < 12; ++place) {
    Images i;
    i.x.pixels[place] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(thrownCode([&] {
                IppIArithmetic<float>::Divide(i.x.image, i.y.image, {0, 0, 4, 3});
              }),
              nothingThrown);
    EXPECT_TRUE(std::isnan(i.y.pixels[place]));
  }
}

/// The code is that of every status.
TEST(Failures, CodesAreReadFromTheText) {
  for (const int code : {29, 1, 2, 3, -6, -8, -11, -16, -59, -231, 0, -2147483647 - 1}) {
    EXPECT_EQ(Examples::codeOf(IppException(static_cast<eIppResultStatus>(code))), code);
  }
}

template <class Argument, class = void>
constexpr bool canBeFilled = false;
template <class Argument>
constexpr bool canBeFilled<
    Argument, std::void_t<decltype(Initializer::Fill<u8>(std::declval<Argument>(), u8(1), Rect{}))>> = true;

static_assert(canBeFilled<IppIMemory<u8>&>);
static_assert(!canBeFilled<const IppIMemory<u8>&> && !canBeFilled<IppIMemory<u8>>,
              "images go in as references that are not const");

}  // namespace
}  // namespace Zorvan::Test
