#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <utility>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

template <class T>
using Arithmetic = Ipp::Image::IppIArithmetic<T>;
using Bytes = Arithmetic<u8>;
using Floats = Arithmetic<float>;

constexpr float floatInfinity = std::numeric_limits<float>::infinity();

constexpr const char* noTypeText =
    "ippStsDataTypeErr: Data type is incorrect or not supported( error Code : -59 )";
constexpr const char* zeroDivisorText =
    "ippStsDivByZero: Zero value(s) for the divisor in the Div function( error Code : 2 )";
constexpr const char* negativeRootText =
    "ippStsSqrtNegArg: Negative value(s) for the argument in the Sqrt function( error Code : 3 )";

template <class T>
class EachArithmeticType : public testing::Test {};
using ArithmeticTypes = testing::Types<u8, float>;
TYPED_TEST_SUITE(EachArithmeticType, ArithmeticTypes);

/// An image of 3 by 2 pixels around pixels that the test can read.
template <class T>
struct Picture {
  explicit Picture(std::vector<T> values) : pixels(std::move(values)), image(wrap(pixels, 3, 2)) {}
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;

  std::vector<T> pixels;
  IppIMemory<T> image;
};
constexpr Rect wholeRect{0, 0, 3, 2};

template <class T>
using Binary = void (*)(IppIMemory<T>&, IppIMemory<T>&, IppIMemory<T>&, Rect);
template <class T>
using BinaryInPlace = void (*)(IppIMemory<T>&, IppIMemory<T>&, Rect);

/// The overloads with three and with two images on the same pixels.
template <class T>
void expectBoth(Binary<T> three, BinaryInPlace<T> two, const std::vector<T>& a, const std::vector<T>& b,
                const std::vector<T>& expected) {
  Picture<T> first(a), second(b), result(std::vector<T>(6, T(9)));
  three(first.image, second.image, result.image, wholeRect);
  EXPECT_EQ(result.pixels, expected);
  EXPECT_EQ(first.pixels, a);
  EXPECT_EQ(second.pixels, b);
  two(first.image, second.image, wholeRect);
  EXPECT_EQ(second.pixels, expected);
  EXPECT_EQ(first.pixels, a);
}

TYPED_TEST(EachArithmeticType, Add) {
  using T = TypeParam;
  expectBoth<T>(&Arithmetic<T>::Add, &Arithmetic<T>::Add, {1, 2, 3, 4, 5, 6}, {10, 20, 30, 40, 50, 60},
                {11, 22, 33, 44, 55, 66});
}

TYPED_TEST(EachArithmeticType, SubtractSubtractsTheFirst) {
  using T = TypeParam;
  expectBoth<T>(&Arithmetic<T>::Subtract, &Arithmetic<T>::Subtract, {1, 2, 3, 4, 5, 60},
                {10, 20, 30, 40, 50, 60}, {9, 18, 27, 36, 45, 0});
}

TYPED_TEST(EachArithmeticType, Multiply) {
  using T = TypeParam;
  expectBoth<T>(&Arithmetic<T>::Multiply, &Arithmetic<T>::Multiply, {1, 2, 3, 4, 5, 0},
                {10, 20, 30, 40, 50, 60}, {10, 40, 90, 160, 250, 0});
}

TYPED_TEST(EachArithmeticType, DivideDividesTheSecondByTheFirst) {
  using T = TypeParam;
  expectBoth<T>(&Arithmetic<T>::Divide, &Arithmetic<T>::Divide, {1, 2, 4, 8, 16, 32}, {10, 20, 40, 40, 64, 0},
                {10, 10, 10, 5, 4, 0});
}

TEST(ByteArithmetic, IsLimitedAndRounded) {
  expectBoth<u8>(&Bytes::Add, &Bytes::Add, {200, 255, 100, 0, 1, 128}, {55, 255, 200, 0, 255, 128},
                 {255, 255, 255, 0, 255, 255});
  expectBoth<u8>(&Bytes::Subtract, &Bytes::Subtract, {200, 255, 100, 0, 1, 128}, {55, 255, 99, 7, 0, 129},
                 {0, 0, 0, 7, 0, 1});
  expectBoth<u8>(&Bytes::Multiply, &Bytes::Multiply, {16, 15, 255, 1, 0, 2}, {16, 17, 255, 255, 255, 127},
                 {255, 255, 255, 255, 0, 254});
  expectBoth<u8>(&Bytes::Divide, &Bytes::Divide, {2, 2, 2, 3, 3, 255}, {1, 3, 5, 4, 5, 254},
                 {0, 2, 2, 1, 2, 1});
}

TYPED_TEST(EachArithmeticType, AddC) {
  using T = TypeParam;
  Picture<T> picture({0, 1, 2, 3, 4, 5});
  Arithmetic<T>::AddC(picture.image, T(7), Rect{0, 1, 2, 1});
  EXPECT_EQ(picture.pixels, (std::vector<T>{0, 8, 9, 3, 4, 5}));
  Arithmetic<T>::AddC(picture.image, T(0), wholeRect);
  EXPECT_EQ(picture.pixels, (std::vector<T>{0, 8, 9, 3, 4, 5}));
}

TEST(ByteArithmetic, AddCSaturates) {
  Picture<u8> picture({0, 1, 55, 56, 200, 255});
  Bytes::AddC(picture.image, 200, wholeRect);
  EXPECT_EQ(picture.pixels, (std::vector<u8>{200, 201, 255, 255, 255, 255}));
}

TEST(FloatArithmetic, AddCAcceptsAnyFloat) {
  Picture<float> picture({0, 1, -1, floatInfinity, 0.5F, 16777216.0F});
  Floats::AddC(picture.image, -1.5F, wholeRect);
  EXPECT_EQ(picture.pixels, (std::vector<float>{-1.5F, -0.5F, -2.5F, floatInfinity, -1.0F, 16777214.0F}));
}

TYPED_TEST(EachArithmeticType, AddWithMaskAddsSelectedPixels) {
  Picture<TypeParam> src({1, 2, 3, 4, 5, 255});
  Picture<float> sum({0.5F, 0.5F, 0.5F, -100, 1e9F, 0.5F});
  Picture<u8> mask({1, 0, 128, 255, 0, 2});
  Arithmetic<TypeParam>::AddWithMask(src.image, sum.image, mask.image, wholeRect);
  EXPECT_EQ(sum.pixels, (std::vector<float>{1.5F, 0.5F, 3.5F, -96, 1e9F, 255.5F}));
}

TYPED_TEST(EachArithmeticType, AddWithMaskUsesEachImagesOwnWidth) {
  std::vector<TypeParam> source(20, TypeParam(3));
  std::vector<float> sums(12, 1.0F);
  std::vector<u8> bytes(49, 1);
  auto src = wrap(source, 5, 4);
  auto sum = wrap(sums, 3, 4);
  auto mask = wrap(bytes, 7, 7);
  Arithmetic<TypeParam>::AddWithMask(src, sum, mask, Rect{1, 1, 2, 2});
  EXPECT_EQ(sums, (std::vector<float>{1, 1, 1, 1, 4, 4, 1, 4, 4, 1, 1, 1}));
}

/// The mask is the last image of the parameters, but is tested before the sum.
TYPED_TEST(EachArithmeticType, AddWithMaskTestsTheMaskSecond) {
  Picture<TypeParam> src({1, 2, 3, 4, 5, 6});
  std::vector<float> sums(6, 1.0F);
  std::vector<u8> bytes(6, 1);
  const auto attempt = [&](Size source, Size sum, Size mask) {
    auto a = wrap(src.pixels, source.width, source.height);
    auto b = wrap(sums, sum.width, sum.height);
    auto c = wrap(bytes, mask.width, mask.height);
    return ippTextOf([&] { Arithmetic<TypeParam>::AddWithMask(a, b, c, wholeRect); });
  };
  EXPECT_EQ(attempt({3, 2}, {3, 2}, {3, 1}), rectDoesNotFitText);
  EXPECT_EQ(attempt({3, 2}, {2, 2}, {3, 2}), rectDoesNotFitText);
  EXPECT_EQ(attempt({3, 1}, {3, 2}, {3, 2}), rectDoesNotFitText);
  EXPECT_EQ(sums, std::vector<float>(6, 1.0F));
  EXPECT_EQ(attempt({3, 2}, {3, 2}, {3, 2}), "no exception");
}

TYPED_TEST(EachArithmeticType, AddCWithMaskAddsToSelectedPixels) {
  using T = TypeParam;
  Picture<T> picture({0, 10, 20, 30, 40, 50});
  Picture<u8> mask({255, 255, 255, 255, 255, 255});
  Arithmetic<T>::AddCWithMask(picture.image, mask.image, T(7), wholeRect);
  EXPECT_EQ(picture.pixels, (std::vector<T>{7, 17, 27, 37, 47, 57}));

  Picture<u8> some({0, 1, 0, 0, 128, 0});
  Arithmetic<T>::AddCWithMask(picture.image, some.image, T(2), wholeRect);
  EXPECT_EQ(picture.pixels[1], T(19));
  EXPECT_EQ(picture.pixels[4], T(49));
}

TEST(ByteArithmetic, AddCWithMaskSaturates) {
  Picture<u8> picture({0, 55, 56, 200, 255, 100});
  Picture<u8> mask({255, 255, 255, 255, 255, 255});
  Bytes::AddCWithMask(picture.image, mask.image, 200, wholeRect);
  EXPECT_EQ(picture.pixels, (std::vector<u8>{200, 255, 255, 255, 255, 255}));
}

TYPED_TEST(EachArithmeticType, AddCWithMaskKeepsWhatIsOutsideTheRegion) {
  using T = TypeParam;
  std::vector<T> pixels(200 * 100, T(1));
  std::vector<u8> bytes(200 * 100, 1);
  auto image = wrap(pixels, 200, 100);
  auto mask = wrap(bytes, 200, 100);
  Arithmetic<T>::AddCWithMask(image, mask, T(4), Rect{10, 20, 30, 40});
  for (int r = 0; r < 100; ++r) {
    for (int c = 0; c < 200; ++c) {
      const bool inside = r >= 10 && r < 50 && c >= 20 && c < 50;
      ASSERT_EQ(pixels[static_cast<std::size_t>(r * 200 + c)], T(inside ? 5 : 1)) << r << ", " << c;
    }
  }
}

/// A region that passes its test may begin before the first pixel of an image or end after the last, where
/// the caller has pixels; so must the new image then.
TYPED_TEST(EachArithmeticType, AddCWithMaskReachesPixelsAroundTheImage) {
  using T = TypeParam;
  std::vector<T> pixels(1000, T(1));
  std::vector<u8> bytes(1000, 1);
  auto image = IppIMemory<T>::CreateContainer(pixels.data() + 200, 10, 20);
  auto mask = IppIMemory<u8>::CreateContainer(bytes.data() + 200, 10, 20);
  Arithmetic<T>::AddCWithMask(image, mask, T(4), Rect{5, 5, 5, 15});  // rows 5 to 19, and columns 5 to 9
  Arithmetic<T>::AddCWithMask(image, mask, T(8), Rect{2, 10, 8, 10});
  Arithmetic<T>::AddCWithMask(image, mask, T(16), Rect{-9, -3, 7, 4});
  Arithmetic<T>::AddCWithMask(image, mask, T(32), Rect{0, -19, 10, 39});
  std::vector<T> expected(1000, T(1));
  const auto add = [&expected](int first, int width, int height, int value) {
    for (int r = 0; r < height; ++r) {
      for (int c = 0; c < width; ++c) {
        auto& pixel = expected[static_cast<std::size_t>(200 + first + r * 10 + c)];
        pixel = static_cast<T>(pixel + static_cast<T>(value));
      }
    }
  };
  add(5 * 10 + 5, 5, 15, 4);
  add(2 * 10 + 10, 8, 10, 8);
  add(-9 * 10 - 3, 7, 4, 16);
  add(-19, 10, 39, 32);
  EXPECT_EQ(pixels, expected);
}

TYPED_TEST(EachArithmeticType, AddCWithMaskFailsAsItsStepsDo) {
  using T = TypeParam;
  Picture<T> picture({0, 10, 20, 30, 40, 50});
  Picture<u8> mask({1, 1, 1, 1, 1, 1});
  IppIMemory<T> empty;
  IppIMemory<u8> noMask;
  auto low = wrap(mask.pixels, 3, 1);
  const auto run = [](IppIMemory<T>& image, IppIMemory<u8>& bytes, Rect rect) {
    Arithmetic<T>::AddCWithMask(image, bytes, T(1), rect);
  };
  EXPECT_EQ(plainTextOf([&] { run(empty, mask.image, wholeRect); }), "invalid image size");
  EXPECT_EQ(ippTextOf([&] { run(picture.image, mask.image, Rect{0, 0, 4, 2}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] {
              run(picture.image, mask.image, Rect{0, 0, 1 << 30, 1 << 30});
            }),
            rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { run(picture.image, low, wholeRect); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { run(picture.image, noMask, Rect{0, 0, 0, 0}); }), noBufferText);
  EXPECT_EQ(ippTextOf([&] { run(picture.image, mask.image, Rect{0, 0, 0, 2}); }), badSizeText);
  auto lost = IppIMemory<T>::CreateContainer(nullptr, 3, 2);
  EXPECT_EQ(ippTextOf([&] { run(lost, mask.image, wholeRect); }), noBufferText);
  EXPECT_EQ(picture.pixels, (std::vector<T>{0, 10, 20, 30, 40, 50}));
}

TEST(ByteArithmetic, ZeroDivisorsThrowAfterAllPixelsHaveBeenWritten) {
  Picture<u8> a({0, 2, 0, 4, 5, 1}), b({7, 7, 0, 8, 30, 255}), c({9, 9, 9, 9, 9, 9});
  const std::vector<u8> expected = {255, 4, 0, 2, 6, 255};
  EXPECT_EQ(ippTextOf([&] { Bytes::Divide(a.image, b.image, c.image, wholeRect); }), zeroDivisorText);
  EXPECT_EQ(c.pixels, expected);
  EXPECT_EQ(ippTextOf([&] { Bytes::Divide(a.image, b.image, wholeRect); }), zeroDivisorText);
  EXPECT_EQ(b.pixels, expected);
}

TEST(FloatArithmetic, ZeroDivisorsThrowAfterAllPixelsHaveBeenWritten) {
  Picture<float> a({0, 2, 0, 4, 5, -0.0F}), b({7, 7, -3, 8, 30, 1}), c({9, 9, 9, 9, 9, 9});
  const std::vector<float> expected = {floatInfinity, 3.5F, -floatInfinity, 2, 6, floatInfinity};
  EXPECT_EQ(ippTextOf([&] { Floats::Divide(a.image, b.image, c.image, wholeRect); }), zeroDivisorText);
  EXPECT_EQ(c.pixels, expected);
  EXPECT_EQ(ippTextOf([&] { Floats::Divide(a.image, b.image, wholeRect); }), zeroDivisorText);
  EXPECT_EQ(b.pixels, expected);
}

TEST(FloatArithmetic, NegativeRootsThrowAfterAllPixelsHaveBeenWritten) {
  Picture<float> src({4, -1, 9, 0, -0.0F, 16}), dst({7, 7, 7, 7, 7, 7});
  EXPECT_EQ(ippTextOf([&] { Floats::SquareRoot(src.image, dst.image, wholeRect); }), negativeRootText);
  EXPECT_EQ(ippTextOf([&] { Floats::SquareRoot(src.image, wholeRect); }), negativeRootText);
  for (const auto* pixels : {&dst.pixels, &src.pixels}) {
    EXPECT_EQ((*pixels)[0], 2);
    EXPECT_TRUE(std::isnan((*pixels)[1]));
    EXPECT_EQ((*pixels)[2], 3);
    EXPECT_TRUE((*pixels)[3] == 0 && !std::signbit((*pixels)[3]));
    EXPECT_TRUE((*pixels)[4] == 0 && std::signbit((*pixels)[4]));
    EXPECT_EQ((*pixels)[5], 4);
  }
}

TEST(FloatArithmetic, NegativeZeroIsNoNegativeRoot) {
  Picture<float> src({-0.0F, 0, 1, 4, 9, 16}), dst({7, 7, 7, 7, 7, 7});
  Floats::SquareRoot(src.image, dst.image, wholeRect);
  EXPECT_EQ(dst.pixels, (std::vector<float>{-0.0F, 0, 1, 2, 3, 4}));
}

TEST(ByteArithmetic, SquaresAreLimitedAndRootsRounded) {
  Picture<u8> src({0, 1, 15, 16, 17, 255}), dst({9, 9, 9, 9, 9, 9});
  Bytes::Square(src.image, dst.image, wholeRect);
  EXPECT_EQ(dst.pixels, (std::vector<u8>{0, 1, 225, 255, 255, 255}));
  Bytes::Square(src.image, wholeRect);
  EXPECT_EQ(src.pixels, dst.pixels);

  Picture<u8> squares({0, 2, 3, 6, 7, 255}), roots({9, 9, 9, 9, 9, 9});
  Bytes::SquareRoot(squares.image, roots.image, wholeRect);
  EXPECT_EQ(roots.pixels, (std::vector<u8>{0, 1, 2, 2, 3, 16}));
  Bytes::SquareRoot(squares.image, wholeRect);
  EXPECT_EQ(squares.pixels, roots.pixels);
}

TEST(FloatArithmetic, Squares) {
  Picture<float> src({0, -1.5F, 3, 1e30F, -floatInfinity, 0.5F}), dst({9, 9, 9, 9, 9, 9});
  Floats::Square(src.image, dst.image, wholeRect);
  EXPECT_EQ(dst.pixels, (std::vector<float>{0, 2.25F, 9, floatInfinity, floatInfinity, 0.25F}));
  Floats::Square(src.image, wholeRect);
  EXPECT_EQ(src.pixels, dst.pixels);
}

TEST(FloatArithmetic, AbsoluteClearsTheSign) {
  Picture<float> src(
      {-1, 1, -0.0F, -floatInfinity, std::copysign(std::numeric_limits<float>::quiet_NaN(), -1.0F), -1e-40F});
  Picture<float> dst({9, 9, 9, 9, 9, 9});
  Floats::Absolute(src.image, dst.image, wholeRect);
  Floats::Absolute(src.image, wholeRect);
  EXPECT_EQ(std::memcmp(src.pixels.data(), dst.pixels.data(), 24), 0);
  for (const float pixel : dst.pixels) EXPECT_FALSE(std::signbit(pixel));
  EXPECT_EQ(dst.pixels[0], 1);
  EXPECT_EQ(dst.pixels[3], floatInfinity);
  EXPECT_TRUE(std::isnan(dst.pixels[4]));
  EXPECT_EQ(dst.pixels[5], 1e-40F);
}

TEST(ByteArithmetic, HasNoAbsoluteValue) {
  Picture<u8> src({1, 2, 3, 4, 5, 6}), dst({9, 9, 9, 9, 9, 9});
  IppIMemory<u8> empty;
  EXPECT_EQ(ippTextOf([&] { Bytes::Absolute(src.image, dst.image, wholeRect); }), noTypeText);
  EXPECT_EQ(ippTextOf([&] { Bytes::Absolute(src.image, wholeRect); }), noTypeText);
  EXPECT_EQ(ippTextOf([&] { Bytes::Absolute(empty, Rect{0, 0, 0, 0}); }), noTypeText);
  EXPECT_EQ(ippTextOf([&] { Bytes::Absolute(src.image, dst.image, Rect{0, 0, 4, 2}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { Bytes::Absolute(src.image, Rect{0, 0, 3, 3}); }), rectDoesNotFitText);
  EXPECT_EQ(dst.pixels, std::vector<u8>(6, 9));
}

/// Every overload: with each of its images too small for the region, with an empty region, and without
/// pixels.
template <class T>
void expectFailures(const std::function<void(IppIMemory<T>&, IppIMemory<T>&, IppIMemory<T>&, Rect)>& call,
                    int images) {
  Picture<T> a({1, 2, 3, 4, 5, 6}), b({1, 2, 3, 4, 5, 6}), c({9, 9, 9, 9, 9, 9});
  std::vector<T> few(6, T(9));
  for (int small = 0; small < images; ++small) {
    auto low = wrap(few, 3, 1);
    IppIMemory<T>* const operands[] = {&a.image, &b.image, &c.image};
    const auto of = [&](int i) -> IppIMemory<T>& { return i == small ? low : *operands[i]; };
    EXPECT_EQ(ippTextOf([&] { call(of(0), of(1), of(2), wholeRect); }), rectDoesNotFitText) << small;
    IppIMemory<T> empty;
    const auto orEmpty = [&](int i) -> IppIMemory<T>& { return i == small ? empty : *operands[i]; };
    EXPECT_EQ(ippTextOf([&] {
                call(orEmpty(0), orEmpty(1), orEmpty(2), Rect{0, 0, 0, 0});
              }),
              noBufferText)
        << small;
  }
  EXPECT_EQ(ippTextOf([&] { call(a.image, b.image, c.image, Rect{0, 0, 0, 2}); }), badSizeText);
  EXPECT_EQ(ippTextOf([&] { call(a.image, b.image, c.image, Rect{0, 0, 3, -1}); }), badSizeText);
  EXPECT_EQ(a.pixels, (std::vector<T>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(b.pixels, a.pixels);
  EXPECT_EQ(c.pixels, std::vector<T>(6, T(9)));
  EXPECT_EQ(few, c.pixels);
}

TYPED_TEST(EachArithmeticType, EveryFormTestsItsRegion) {
  using T = TypeParam;
  using Image = IppIMemory<T>;
  using A = Arithmetic<T>;
  const Binary<T> threes[] = {&A::Add, &A::Subtract, &A::Multiply, &A::Divide};
  const BinaryInPlace<T> twos[] = {&A::Add,    &A::Subtract, &A::Multiply,
                                   &A::Divide, &A::Square,   &A::SquareRoot};
  void (*const ones[])(Image&, Rect) = {&A::Square, &A::SquareRoot};
  for (const auto form : threes) {
    expectFailures<T>([form](Image& a, Image& b, Image& c, Rect rect) { form(a, b, c, rect); }, 3);
  }
  for (const auto form : twos) {
    expectFailures<T>([form](Image& a, Image& b, Image&, Rect rect) { form(a, b, rect); }, 2);
  }
  for (const auto form : ones) {
    expectFailures<T>([form](Image& a, Image&, Image&, Rect rect) { form(a, rect); }, 1);
  }
  expectFailures<T>([](Image& a, Image&, Image&, Rect rect) { A::AddC(a, T(1), rect); }, 1);
}

TEST(FloatArithmetic, AbsoluteTestsItsRegion) {
  using Image = IppIMemory<float>;
  expectFailures<float>([](Image& a, Image& b, Image&, Rect rect) { Floats::Absolute(a, b, rect); }, 2);
  expectFailures<float>([](Image& a, Image&, Image&, Rect rect) { Floats::Absolute(a, rect); }, 1);
}

TYPED_TEST(EachArithmeticType, TheRegionStartsAtTheSwappedOriginOfEachImage) {
  using T = TypeParam;
  auto source = counted<T>(20);
  std::vector<T> target(12, T(100));
  auto src = wrap(source, 5, 4), dst = wrap(target, 3, 4);
  Arithmetic<T>::Add(src, dst, Rect{1, 1, 2, 2});  // row 1, column 1 of both
  EXPECT_EQ(target, (std::vector<T>{100, 100, 100, 100, 106, 107, 100, 111, 112, 100, 100, 100}));
}

TYPED_TEST(EachArithmeticType, AnImageMayBeItsOwnSource) {
  using T = TypeParam;
  Picture<T> picture({1, 2, 3, 4, 5, 6});
  Arithmetic<T>::Add(picture.image, picture.image, wholeRect);
  EXPECT_EQ(picture.pixels, (std::vector<T>{2, 4, 6, 8, 10, 12}));
  Arithmetic<T>::Multiply(picture.image, picture.image, picture.image, wholeRect);
  EXPECT_EQ(picture.pixels, (std::vector<T>{4, 16, 36, 64, 100, 144}));
}

TYPED_TEST(EachArithmeticType, IsAssignedWithoutEffect) {
  Arithmetic<TypeParam> a, b;
  EXPECT_EQ(&(a = b), &a);
  EXPECT_EQ(&(a = Arithmetic<TypeParam>()), &a);
}

}  // namespace
}  // namespace Zorvan::Test
