#include <algorithm>

#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> chequers(Zorvan::Size size) {
  constexpr int kSquare = 24;
  constexpr u8 kLight = 250, kDark = 228;
  IppIMemory<u8> board(size);
  for (int row = 0; row < size.height; row += kSquare) {
    for (int column = 0; column < size.width; column += kSquare) {
      const Area square{column, row, std::min(kSquare, size.width - column),
                        std::min(kSquare, size.height - row)};
      IppIMemory<u8> view = Examples::viewOf(board, square);
      const bool light = (row + column) / kSquare % 2 == 0;
      Initializer::Fill<u8>(view, light ? kLight : kDark,
                            Examples::rectOfView(square));
    }
  }
  return board;
}

}  // namespace Coins
