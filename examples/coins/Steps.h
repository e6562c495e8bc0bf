#pragma once

#include "Report.h"
#include "zorvan/ipp.h"

// The steps of the demo, in the order in which main() takes them. Each adds its pictures to the report, with
// the time that the library's operations took.

namespace Coins {

using Examples::Report;
using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

/// Cuts out the upper left quarter, one region away from the origin, and blackens all but one region.
void crop(IppIMemory<u8>& picture, Report& report);

/// A mask of the pixels that are brighter than their surroundings: 255 where they are, 0 elsewhere.
IppIMemory<u8> selectBright(IppIMemory<u8>& picture, Report& report);

/// For every pixel the number of pixels around it that `selected` selects.
IppIMemory<int> countAround(IppIMemory<u8>& selected, Report& report);

/// A mask of the coins: pixels around which most pixels are selected.
IppIMemory<u8> coinMask(IppIMemory<int>& counts, Report& report);

/// Puts the coins on a new background.
void paste(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report);

/// Fills the coins with one value.
void fillCoins(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report);

/// Writes four of the report's pictures side by side, as `montage.png`.
void writeMontage(const Report& report);

}  // namespace Coins
