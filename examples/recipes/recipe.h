#pragma once

// What the recipes have in common: pictures to work on, and the examples'
// helpers. A recipe shows what it did by before.png and after.png in the folder
// where it runs, and by what it prints.

#include "png_file.h"
#include "region.h"
#include "zorvan/ipp.h"

namespace Recipes {

using namespace Zorvan::Ipp::Image;
using Examples::Area;
using Examples::rectOf;
using Examples::rectOfView;
using Examples::viewOf;
using Examples::writePng;
using Zorvan::Rect;
using Zorvan::u8;

/// Twelve coins on a ground that gets darker to the lower right: 240 pixels
/// wide, 160 high.
IppIMemory<u8> coinPicture();

/// The coins' mask: 255 in them, 0 around.
IppIMemory<u8> coinMask();

/// The same, with a hole in each coin.
IppIMemory<u8> ringMask();

/// Discs of which some touch each other.
IppIMemory<u8> touchingMask();

/// Adds noise of up to +-`strength` to every pixel. Each `seed` makes another
/// noise, and always the same.
void addNoise(IppIMemory<u8>& picture, int strength, unsigned seed);

/// An image of `value` everywhere, of the size of `like`.
template <class T, class Other>
void makeConstant(IppIMemory<T>& image, const IppIMemory<Other>& like,
                  T value) {
  image = IppIMemory<T>(like.size());
  Initializer::Fill<T>(image, value, image.SizeToRoi());
}

/// The pixels as floats: the recipe "8-bit to float".
IppIMemory<float> toFloat(IppIMemory<u8>& picture);

/// The pixels rounded and limited to 0 to 255: the recipe "Save what one looks
/// at".
IppIMemory<u8> toBytes(const IppIMemory<float>& image);

}  // namespace Recipes
