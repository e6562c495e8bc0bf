#include <algorithm>

#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> chequers(Zorvan::Size size) {
  constexpr int squareSide = 24;
  constexpr u8 lightValue = 250, darkValue = 228;
  IppIMemory<u8> board(size);
  for (int row = 0; row < size.height; row += squareSide) {
    for (int column = 0; column < size.width; column += squareSide) {
      const Area square{column, row, std::min(squareSide, size.width - column),
                        std::min(squareSide, size.height - row)};
      IppIMemory<u8> view = Examples::viewOf(board, square);
      const bool light = (row + column) / squareSide % 2 == 0;
      Initializer::Fill<u8>(view, light ? lightValue : darkValue,
                            Examples::rectOfView(square));
    }
  }
  return board;
}

}  // namespace Coins
