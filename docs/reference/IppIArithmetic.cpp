#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(IppIArithmeticExamples, Sum) {
  //! [Add(a, b, c, rect)]
  auto a = image<u8>({{10, 200, 30}});
  auto b = image<u8>({{1, 100, 3}});
  auto c = image<u8>({{0, 0, 0}});
  IppIArithmetic<u8>::Add(a, b, c, c.SizeToRoi());
  expectRows(c, {{11, 255, 33}});
  //! [Add(a, b, c, rect)]
}

TEST(IppIArithmeticExamples, SumInPlace) {
  //! [Add(a, b, rect)]
  auto a = image<float>({{1, 2, 3}});
  auto b = image<float>({{0.5F, 0.5F, 0.5F}});
  IppIArithmetic<float>::Add(a, b, b.SizeToRoi());
  expectRows(b, {{1.5F, 2.5F, 3.5F}});
  //! [Add(a, b, rect)]
}

TEST(IppIArithmeticExamples, ConstantAdded) {
  //! [AddC(image, value, rect)]
  auto picture = image<u8>({{10, 200, 250}});
  IppIArithmetic<u8>::AddC(picture, 20, picture.SizeToRoi());
  expectRows(picture, {{30, 220, 255}});
  //! [AddC(image, value, rect)]
}

TEST(IppIArithmeticExamples, SumOfSelectedPixels) {
  //! [AddWithMask(src, srcDst, mask, rect)]
  auto frame = image<u8>({{10, 20, 30}});
  auto sum = image<float>({{250, 250, 250}});
  auto mask = image<u8>({{255, 0, 1}});
  IppIArithmetic<u8>::AddWithMask(frame, sum, mask, sum.SizeToRoi());
  expectRows(sum, {{260, 250, 280}});
  //! [AddWithMask(src, srcDst, mask, rect)]
}

TEST(IppIArithmeticExamples, ConstantAddedToSelectedPixels) {
  //! [AddCWithMask(image, mask, value, rect)]
  auto picture = image<u8>({{10, 20, 30}});
  auto mask = image<u8>({{255, 0, 1}});
  IppIArithmetic<u8>::AddCWithMask(picture, mask, 5, picture.SizeToRoi());
  EXPECT_EQ(picture.buffer()[0], 15);  // pixel 1 is undefined now
  EXPECT_EQ(picture.buffer()[2], 35);
  //! [AddCWithMask(image, mask, value, rect)]
}

TEST(IppIArithmeticExamples, Difference) {
  //! [Subtract(a, b, c, rect)]
  auto dark = image<u8>({{5, 5, 50}});
  auto picture = image<u8>({{10, 200, 30}});
  auto result = image<u8>({{0, 0, 0}});
  IppIArithmetic<u8>::Subtract(dark, picture, result, result.SizeToRoi());  // picture - dark
  expectRows(result, {{5, 195, 0}});
  //! [Subtract(a, b, c, rect)]
}

TEST(IppIArithmeticExamples, DifferenceInPlace) {
  //! [Subtract(a, b, rect)]
  auto dark = image<float>({{5, 5, 50}});
  auto picture = image<float>({{10, 200, 30}});
  IppIArithmetic<float>::Subtract(dark, picture, picture.SizeToRoi());  // picture - dark
  expectRows(picture, {{5, 195, -20}});
  //! [Subtract(a, b, rect)]
}

TEST(IppIArithmeticExamples, Product) {
  //! [Multiply(a, b, c, rect)]
  auto a = image<u8>({{2, 3, 100}});
  auto b = image<u8>({{10, 20, 30}});
  auto c = image<u8>({{0, 0, 0}});
  IppIArithmetic<u8>::Multiply(a, b, c, c.SizeToRoi());
  expectRows(c, {{20, 60, 255}});
  //! [Multiply(a, b, c, rect)]
}

TEST(IppIArithmeticExamples, ProductInPlace) {
  //! [Multiply(a, b, rect)]
  auto gain = image<float>({{0.5F, 1, 2}});
  auto picture = image<float>({{10, 20, 30}});
  IppIArithmetic<float>::Multiply(gain, picture, picture.SizeToRoi());
  expectRows(picture, {{5, 20, 60}});
  //! [Multiply(a, b, rect)]
}

TEST(IppIArithmeticExamples, Quotient) {
  //! [Divide(a, b, c, rect)]
  auto divisors = image<u8>({{4, 2, 3}});
  auto picture = image<u8>({{100, 5, 200}});
  auto result = image<u8>({{0, 0, 0}});
  IppIArithmetic<u8>::Divide(divisors, picture, result, result.SizeToRoi());  // picture / divisors
  expectRows(result, {{25, 2, 67}});                                          // 2.5 becomes 2, the even one
  //! [Divide(a, b, c, rect)]
}

TEST(IppIArithmeticExamples, QuotientInPlace) {
  //! [Divide(a, b, rect)]
  auto divisors = image<float>({{0, 2, 4}});
  auto picture = image<float>({{1, 1, 1}});
  try {
    IppIArithmetic<float>::Divide(divisors, picture, picture.SizeToRoi());
    FAIL();
  } catch (const IppException& warning) {  // of the zero; all pixels have been written
    EXPECT_STREQ(warning.what(),
                 "ippStsDivByZero: Zero value(s) for the divisor in the Div function( error Code : 2 )");
  }
  expectRows(picture, {{INFINITY, 0.5F, 0.25F}});
  //! [Divide(a, b, rect)]
}

TEST(IppIArithmeticExamples, AbsoluteValues) {
  //! [Absolute(src, dst, rect)]
  auto src = image<float>({{-1.5F, 0, 2}});
  auto dst = image<float>({{0, 0, 0}});
  IppIArithmetic<float>::Absolute(src, dst, dst.SizeToRoi());
  expectRows(dst, {{1.5F, 0, 2}});
  //! [Absolute(src, dst, rect)]
}

TEST(IppIArithmeticExamples, AbsoluteValuesInPlace) {
  //! [Absolute(image, rect)]
  auto picture = image<float>({{-1.5F, 0, 2}});
  IppIArithmetic<float>::Absolute(picture, picture.SizeToRoi());
  expectRows(picture, {{1.5F, 0, 2}});
  //! [Absolute(image, rect)]
}

TEST(IppIArithmeticExamples, Squares) {
  //! [Square(src, dst, rect)]
  auto src = image<u8>({{3, 10, 20}});
  auto dst = image<u8>({{0, 0, 0}});
  IppIArithmetic<u8>::Square(src, dst, dst.SizeToRoi());
  expectRows(dst, {{9, 100, 255}});
  //! [Square(src, dst, rect)]
}

TEST(IppIArithmeticExamples, SquaresInPlace) {
  //! [Square(image, rect)]
  auto picture = image<float>({{-3, 0.5F, 20}});
  IppIArithmetic<float>::Square(picture, picture.SizeToRoi());
  expectRows(picture, {{9, 0.25F, 400}});
  //! [Square(image, rect)]
}

TEST(IppIArithmeticExamples, SquareRoots) {
  //! [SquareRoot(src, dst, rect)]
  auto src = image<u8>({{0, 7, 100}});
  auto dst = image<u8>({{0, 0, 0}});
  IppIArithmetic<u8>::SquareRoot(src, dst, dst.SizeToRoi());
  expectRows(dst, {{0, 3, 10}});  // 2.65 becomes 3
  //! [SquareRoot(src, dst, rect)]
}

TEST(IppIArithmeticExamples, SquareRootsInPlace) {
  //! [SquareRoot(image, rect)]
  auto picture = image<float>({{0, 2, 100}});
  IppIArithmetic<float>::SquareRoot(picture, picture.SizeToRoi());
  expectRows(picture, {{0, 1.4142135F, 10}});
  //! [SquareRoot(image, rect)]
}

TEST(IppIArithmeticExamples, Objects) {
  //! [IppIArithmetic()]
  std::vector<IppIArithmetic<u8>> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(IppIArithmetic<u8>());
  EXPECT_EQ(objects.size(), 4U);
  //! [IppIArithmetic()]
}

TEST(IppIArithmeticExamples, Assignments) {
  //! [operator=(other)]
  IppIArithmetic<u8> first, second;
  second = first;
  second = IppIArithmetic<u8>();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
