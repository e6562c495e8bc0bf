// Flat-field division, with its warning
//
// A picture is divided by a picture of an empty white sheet, which removes
// uneven light. Dead pixels of the sheet are zero, and a zero divisor raises
// the status 2 after all pixels have been written. It is a warning; its code
// distinguishes it from errors. The affected pixels are then replaced.

#include <cstdio>

#include "recipe.h"
#include "status_code.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> coins = coinMask(), scene;
  makeConstant<u8>(scene, coins, 40);
  Initializer::FillWithMask<u8>(scene, coins, 240, scene.SizeToRoi());

  // The light: brighter in the upper left, and five dead pixels.
  IppIMemory<u8> sheet(scene.size()), picture(scene.size());
  for (int i = 0; i < sheet.width() * sheet.height(); ++i) {
    const int light = 250 - i % sheet.width() / 2 - i / sheet.width() / 3;
    sheet.buffer()[i] = static_cast<u8>(i % 8000 == 4000 ? 0 : light);
    picture.buffer()[i] =
        static_cast<u8>(scene.buffer()[i] * sheet.buffer()[i] / 255);
  }

  const Rect whole = picture.SizeToRoi();
  IppIMemory<float> divisors = toFloat(sheet), flat = toFloat(picture), white;
  makeConstant(white, picture, 255.0f);
  IppIArithmetic<float>::Multiply(white, flat, whole);
  try {
    // The second image is divided by the first, in place.
    IppIArithmetic<float>::Divide(divisors, flat, whole);
  } catch (const Zorvan::Ipp::IppException& raised) {
    constexpr int divideByZero = Zorvan::Ipp::ippStsDivByZero;
    if (Examples::codeOf(raised) != divideByZero) throw;
    std::printf("warning: %s\n", raised.what());
    IppIMemory<u8> dead(picture.size());
    Comparer<float>::Compare(divisors, dead, whole, 0, Zorvan::eEqual);
    Initializer::FillWithMask<float>(flat, dead, 0, whole);
  }

  writePng("before.png", picture);
  writePng("after.png", toBytes(flat));
}
