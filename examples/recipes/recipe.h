#pragma once

// The common parts of the recipes: input pictures, and the examples' helpers. A
// recipe writes before.png and after.png into the folder where it runs, and may
// print a text.

#include "png_file.h"
#include "region.h"
#include "to_bytes.h"
#include "zorvan/ipp.h"

namespace Recipes {

using namespace Zorvan::Ipp::Image;
using Examples::Area;
using Examples::rectOf;
using Examples::rectOfView;
using Examples::toBytes;
using Examples::viewOf;
using Examples::writePng;
using Zorvan::Rect;
using Zorvan::u8;

/// Twelve coins on a background that gets darker to the lower right: 240 pixels
/// wide, 160 high.
IppIMemory<u8> coinPicture();

/// The mask of the coins: 255 in them, 0 elsewhere.
IppIMemory<u8> coinMask();

/// The same, with a hole in each coin.
IppIMemory<u8> ringMask();

/// Discs, some of which touch each other.
IppIMemory<u8> touchingMask();

/// Adds noise of up to +-`strength` to every pixel. The same `seed` makes the
/// same noise.
void addNoise(IppIMemory<u8>& picture, int strength, unsigned seed);

/// Makes `image` an image of the size of `like`, filled with `value`.
template <class T, class Other>
void makeConstant(IppIMemory<T>& image, const IppIMemory<Other>& like,
                  T value) {
  image = IppIMemory<T>(like.size());
  Initializer::Fill<T>(image, value, image.SizeToRoi());
}

/// The pixels as floats: the recipe "8-bit to float".
IppIMemory<float> toFloat(IppIMemory<u8>& picture);

}  // namespace Recipes
