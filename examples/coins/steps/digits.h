#pragma once

#include "zorvan/ipp.h"

namespace Coins {

/// Writes a number, white on black, from (column, row) on. What does not fit
/// into the picture is left out.
void drawNumber(Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture, int number,
                int column, int row);

}  // namespace Coins
