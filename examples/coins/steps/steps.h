#pragma once

#include <deque>

#include "png_file.h"
#include "region.h"
#include "zorvan/ipp.h"

// The steps of the demo. Each is one function that uses the library's
// operations. The page shows its source beside the picture that it makes.

namespace Coins {

using Examples::Area;
using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

/// A connected area of a mask.
struct Object {
  /// Its bounding box in the picture.
  Area box{};
  /// Number of its pixels.
  double area = 0;
  /// A mask of the box's size that selects its pixels.
  IppIMemory<u8> mask;
};

/// Values measured in a picture under an object's mask.
struct Measures {
  Zorvan::MeanStdDev brightness;
  /// Positions are relative to the object's box.
  Zorvan::MinMaxIndex extremes;
  /// Of a circle with the object's area.
  double diameter;
};

// From the photograph to a mask of the coins.

/// An image that uses the decoder's memory, which must outlive it.
IppIMemory<u8> wrap(Examples::Picture& decoded);

/// The largest minus the smallest value around every pixel: bright where the
/// picture changes.
IppIMemory<u8> outline(IppIMemory<u8>& picture);

/// The same values as floats.
IppIMemory<float> toFloat(IppIMemory<u8>& image);

/// A mask of the pixels above `limit`, a whole number from 0 to 255.
IppIMemory<u8> above(IppIMemory<u8>& image, int limit);

/// Removes the long lines along the sides of the picture: scans and
/// photographs often end in a row of another brightness.
IppIMemory<u8> withoutSides(IppIMemory<u8>& rising);

/// Adds the pixels that the areas of the mask enclose.
IppIMemory<u8> fillHoles(IppIMemory<u8>& mask);

/// Removes areas into which no square of `side` pixels fits, and fills small
/// notches.
IppIMemory<u8> clean(IppIMemory<u8>& mask, int side);

// Each coin.

/// The connected areas of a mask, from the top.
std::deque<Object> separate(IppIMemory<u8>& mask);

/// The objects line by line from the top, each line from the left.
std::deque<Object> inReadingOrder(const std::deque<Object>& objects);

Measures measure(IppIMemory<u8>& picture, Object& object);

/// The picture with the objects' boxes and numbers in it.
IppIMemory<u8> drawBoxes(IppIMemory<u8>& picture,
                         const std::deque<Object>& objects);

/// Each object has its own grey.
IppIMemory<u8> drawLabels(IppIMemory<u8>& mask, std::deque<Object>& objects);

// Uses of masks.

IppIMemory<u8> fillCoins(IppIMemory<u8>& picture, IppIMemory<u8>& mask);

IppIMemory<u8> chequers(Zorvan::Size size);

/// The selected pixels of the picture on another background.
IppIMemory<u8> paste(IppIMemory<u8>& picture, IppIMemory<u8>& mask,
                     IppIMemory<u8>& ground);

struct Combined {
  IppIMemory<u8> both;
  IppIMemory<u8> either;
  IppIMemory<u8> onlyOne;
};

Combined combine(IppIMemory<u8>& mask, IppIMemory<u8>& other);

// The light and the noise of the photograph.

/// The background of the coins: the picture without everything that is brighter
/// than its surroundings and narrower than the mask of the opening.
IppIMemory<u8> background(IppIMemory<u8>& picture);

IppIMemory<u8> withoutBackground(IppIMemory<u8>& picture,
                                 IppIMemory<u8>& ground);

IppIMemory<u8> edges(IppIMemory<u8>& picture);

/// The mean of several frames where `mask` selects, 0 elsewhere.
IppIMemory<float> average(std::deque<IppIMemory<u8>>& frames,
                          IppIMemory<u8>& mask);

/// Standard deviation of the difference from the picture where `mask` selects.
double noiseOf(IppIMemory<float>& image, IppIMemory<u8>& picture,
               IppIMemory<u8>& mask);

// Regions.

/// The upper left quarter of the picture.
IppIMemory<u8> cropCorner(IppIMemory<u8>& picture);

/// A quarter from the middle of the picture.
IppIMemory<u8> cropMiddle(IppIMemory<u8>& picture);

/// The picture with all but one region black.
IppIMemory<u8> keepWindow(IppIMemory<u8>& picture);

}  // namespace Coins
