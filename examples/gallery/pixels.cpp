// Operations in which each pixel of the result depends on one place.

#include "gallery.h"

namespace Gallery {
namespace {

/// Bright on the right, dark on the left.
IppIMemory<u8> rampPicture() {
  IppIMemory<u8> ramp(240, 160);
  for (int i = 0; i < 240 * 160; ++i) ramp.buffer()[i] = static_cast<u8>(i % 240);
  return ramp;
}

/// From 0.25 on the left to almost 4 on the right.
IppIMemory<float> factors() {
  IppIMemory<float> image(240, 160);
  for (int i = 0; i < 240 * 160; ++i) image.buffer()[i] = 0.25f + static_cast<float>(i % 240) / 64;
  return image;
}

}  // namespace

void showInitializer(Rows& rows) {
  rows.section("Initializer: allocate, copy, fill, convert");
  IppIMemory<u8> picture = coinPicture(), mask = coinMask(), image, result;
  const Rect region{20, 60, 120, 100}, corner{0, 0, 150, 100};

  const auto fresh = [&] { makeConstant<u8>(image, picture, 40); };
  VALUE_ROW("A new image; its pixels are not set.", {}, "240 x 160 pixels",
            image = Initializer::Allocate<u8>(240, 160));
  fresh();
  ROW("A region is copied into the same place of another image.",
      rows.inputs("picture", picture, "image", image), image, Initializer::Copy(picture, image, region));
  fresh();
  ROW("A whole image is copied.", rows.inputs("picture", picture, "image", image), image,
      Initializer::Copy(picture, image));
  ROW("A region is copied into a new image of the region's size.", rows.inputs("picture", picture), result,
      result = Initializer::Copy(picture, corner, true));
  fresh();
  ROW("The pixels that a mask selects are copied.",
      rows.inputs("picture", picture, "image", image, "mask", mask), image,
      Initializer::CopyWithMask(picture, image, mask, region));
  image = IppIMemory<u8>(picture);
  ROW("A region gets a value.", rows.inputs("image", image), image,
      Initializer::Fill<u8>(image, 255, region));
  image = IppIMemory<u8>(picture);
  ROW("The pixels that a mask selects get a value.", rows.inputs("image", image, "mask", mask), image,
      Initializer::FillWithMask<u8>(image, mask, 255, region));

  IppIMemory<int> numbers(240, 160);
  for (int i = 0; i < 240 * 160; ++i) numbers.buffer()[i] = picture.buffer()[i] * 4 - 200;
  const Rect whole = picture.SizeToRoi();
  makeConstant<u8>(image, picture, 0);
  ROW("32-bit integers are converted to bytes, saturated to 0 to 255, or to floats.",
      rows.inputs("numbers", numbers), image, Initializer::Convert(numbers, image, whole));
}

void showArithmetic(Rows& rows) {
  rows.section("IppIArithmetic: sums, products, quotients, roots");
  IppIMemory<u8> a = coinPicture(), b = rampPicture(), mask = coinMask(), c, image;
  IppIMemory<float> floats = toFloat(a), divisors = factors(), sum, result;
  const Rect whole = a.SizeToRoi();
  makeConstant<u8>(c, a, 0);
  makeConstant(result, a, 0.0f);
  const auto freshImage = [&] { image = IppIMemory<u8>(b); };

  ROW("c = a + b. Sums saturate to 255.", rows.inputs("a", a, "b", b), c,
      IppIArithmetic<u8>::Add(a, b, c, whole));
  freshImage();
  ROW("image = a + image.", rows.inputs("a", a, "image", image), image,
      IppIArithmetic<u8>::Add(a, image, whole));
  freshImage();
  ROW("image = image + 60.", rows.inputs("image", image), image, IppIArithmetic<u8>::AddC(image, 60, whole));
  makeConstant(sum, a, 100.0f);
  ROW("Pixels that a mask selects are added to a float image.", rows.inputs("a", a, "sum", sum, "mask", mask),
      sum, IppIArithmetic<u8>::AddWithMask(a, sum, mask, whole));
  freshImage();
  rows.row(
      "image = image + 60 where a mask selects. The other pixels have no defined result; they are black "
      "here.",
      rows.inputs("image", image, "mask", mask), "IppIArithmetic<u8>::AddCWithMask(image, mask, 60, whole)",
      [&] {
        IppIArithmetic<u8>::AddCWithMask(image, mask, 60, whole);
        return rows.picture("image", IppILogical<u8>::And(image, mask, whole, true));
      });
  ROW("c = b - a: the first image is subtracted from the second. Differences saturate to 0.",
      rows.inputs("a", a, "b", b), c, IppIArithmetic<u8>::Subtract(a, b, c, whole));
  freshImage();
  ROW("image = image - a.", rows.inputs("a", a, "image", image), image,
      IppIArithmetic<u8>::Subtract(a, image, whole));
  ROW("result = divisors * floats.", rows.inputs("divisors", divisors, "floats", floats), result,
      IppIArithmetic<float>::Multiply(divisors, floats, result, whole));
  result = IppIMemory<float>(floats);
  ROW("result = divisors * result.", rows.inputs("divisors", divisors, "result", result), result,
      IppIArithmetic<float>::Multiply(divisors, result, whole));
  makeConstant(result, a, 0.0f);
  ROW("result = floats / divisors: the second image is divided by the first.",
      rows.inputs("divisors", divisors, "floats", floats), result,
      IppIArithmetic<float>::Divide(divisors, floats, result, whole));
  result = IppIMemory<float>(floats);
  ROW("result = result / divisors.", rows.inputs("divisors", divisors, "result", result), result,
      IppIArithmetic<float>::Divide(divisors, result, whole));

  IppIMemory<float> centred = floats;
  IppIArithmetic<float>::AddC(centred, -100, whole);
  makeConstant(result, a, 0.0f);
  ROW("The absolute values of floats.", rows.inputs("centred", centred), result,
      IppIArithmetic<float>::Absolute(centred, result, whole));
  result = IppIMemory<float>(centred);
  ROW("The same in place.", rows.inputs("result", result), result,
      IppIArithmetic<float>::Absolute(result, whole));
  ROW("Squares.", rows.inputs("floats", floats), result,
      IppIArithmetic<float>::Square(floats, result, whole));
  result = IppIMemory<float>(floats);
  ROW("Squares in place.", rows.inputs("result", result), result,
      IppIArithmetic<float>::Square(result, whole));
  ROW("Square roots.", rows.inputs("floats", floats), result,
      IppIArithmetic<float>::SquareRoot(floats, result, whole));
  result = IppIMemory<float>(floats);
  ROW("Square roots in place.", rows.inputs("result", result), result,
      IppIArithmetic<float>::SquareRoot(result, whole));
}

void showLogical(Rows& rows) {
  rows.section("IppILogical: bits of bytes and masks");
  IppIMemory<u8> a = coinMask(), b = coinPicture(), c, image, result;
  const Rect whole = a.SizeToRoi(), corner{0, 0, 150, 100};
  makeConstant<u8>(c, a, 0);
  const auto fresh = [&] { image = IppIMemory<u8>(b); };

  ROW("c = a & b: the pixels under the mask.", rows.inputs("a", a, "b", b), c,
      IppILogical<u8>::And(a, b, c, whole));
  fresh();
  ROW("image = a & image.", rows.inputs("a", a, "image", image), image,
      IppILogical<u8>::And(a, image, whole));
  ROW("A new image of the region's size.", rows.inputs("a", a, "b", b), result,
      result = IppILogical<u8>::And(a, b, corner, true));
  ROW("c = a | b.", rows.inputs("a", a, "b", b), c, IppILogical<u8>::Or(a, b, c, whole));
  fresh();
  ROW("image = a | image.", rows.inputs("a", a, "image", image), image, IppILogical<u8>::Or(a, image, whole));
  ROW("A new image of the region's size.", rows.inputs("a", a, "b", b), result,
      result = IppILogical<u8>::Or(a, b, corner, true));
  ROW("c = a ^ b: where two masks differ; here the coins are inverted.", rows.inputs("a", a, "b", b), c,
      IppILogical<u8>::Xor(a, b, c, whole));
  fresh();
  ROW("image = a ^ image.", rows.inputs("a", a, "image", image), image,
      IppILogical<u8>::Xor(a, image, whole));
  ROW("A new image of the region's size.", rows.inputs("a", a, "b", b), result,
      result = IppILogical<u8>::Xor(a, b, corner, true));
  ROW("The complement: 255 minus the pixel.", rows.inputs("b", b), c, IppILogical<u8>::Not(b, c, whole));
  fresh();
  ROW("The complement in place.", rows.inputs("image", image), image, IppILogical<u8>::Not(image, whole));
  ROW("A new image of the region's size.", rows.inputs("b", b), result,
      result = IppILogical<u8>::Not(b, corner, true));
}

void showComparer(Rows& rows) {
  rows.section("Comparer: floats and a constant");
  IppIMemory<u8> picture = coinPicture(), mask;
  IppIMemory<float> floats = toFloat(picture);
  const Rect whole = picture.SizeToRoi();
  makeConstant<u8>(mask, picture, 0);
  ROW("255 where the comparison is true, 0 elsewhere.", rows.inputs("floats", floats), mask,
      Comparer<float>::Compare(floats, mask, whole, 130, Zorvan::eGreater));
}

}  // namespace Gallery
