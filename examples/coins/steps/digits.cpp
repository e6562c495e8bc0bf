#include "digits.h"

#include <string>

#include "region.h"

namespace Coins {
namespace {

using Examples::Area;
using Zorvan::u8;
using Zorvan::Ipp::Image::Initializer;
using Zorvan::Ipp::Image::IppIMemory;

constexpr int glyphWidth = 5;
constexpr int glyphHeight = 7;

// Seven rows of five pixels each.
constexpr const char* glyphs[10] = {" ### #   ##  ### # ###  ##   # ### ",
                                    "  #   ##    #    #    #    #   ### ",
                                    " ### #   #    #   #   #   #   #####",
                                    " ### #   #    #  ##     ##   # ### ",
                                    "   #   ##  # # #  # #####   #    # ",
                                    "######    ####     #    ##   # ### ",
                                    " ### #    #    #### #   ##   # ### ",
                                    "#####    #   #   #    #    #    #  ",
                                    " ### #   ##   # ### #   ##   # ### ",
                                    " ### #   ##   # ####    #    # ### "};

/// The pixels of a digit as a mask.
IppIMemory<u8> glyph(char digit) {
  IppIMemory<u8> mask(glyphWidth, glyphHeight);
  const auto pixels = mask.buffer();
  for (int i = 0; i < glyphWidth * glyphHeight; ++i)
    pixels[i] = glyphs[digit - '0'][i] == '#' ? 255 : 0;
  return mask;
}

}  // namespace

void drawNumber(IppIMemory<u8>& picture, int number, int column, int row) {
  for (const char digit : std::to_string(number)) {
    const Area ground{column, row, glyphWidth + 2, glyphHeight + 2};
    if (column + ground.width > picture.width() ||
        row + ground.height > picture.height())
      return;
    IppIMemory<u8> back = Examples::viewOf(picture, ground);
    Initializer::Fill<u8>(back, 0, Examples::rectOfView(ground));
    const Area place{column + 1, row + 1, glyphWidth, glyphHeight};
    IppIMemory<u8> view = Examples::viewOf(picture, place);
    IppIMemory<u8> mask = glyph(digit);
    Initializer::FillWithMask<u8>(view, mask, 255, Examples::rectOfView(place));
    column += glyphWidth + 1;
  }
}

}  // namespace Coins
