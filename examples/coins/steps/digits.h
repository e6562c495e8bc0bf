#pragma once

#include "zorvan/ipp.h"

namespace Coins {

/// Writes a number, white on black, beginning at (column, row). Digits that do
/// not fit into the picture are omitted.
void drawNumber(Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture, int number,
                int column, int row);

}  // namespace Coins
