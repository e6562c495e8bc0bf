#include <algorithm>

#include "Region.h"
#include "Steps.h"

namespace Coins {

using Examples::Area;
using Zorvan::Ipp::Image::Initializer;

namespace {

constexpr int kSquare = 24;
constexpr u8 kLight = 250;
constexpr u8 kDark = 228;
constexpr u8 kSilhouette = 255;

void fillChequers(IppIMemory<u8>& image) {
  for (int row = 0; row < image.height(); row += kSquare) {
    for (int column = 0; column < image.width(); column += kSquare) {
      const Area square{column, row, std::min(kSquare, image.width() - column),
                        std::min(kSquare, image.height() - row)};
      IppIMemory<u8> view = Examples::viewOf(image, square);
      const bool light = (row + column) / kSquare % 2 == 0;
      Initializer::Fill<u8>(view, light ? kLight : kDark, Examples::rectOfView(square));
    }
  }
}

}  // namespace

void paste(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  IppIMemory<u8> board = Initializer::Allocate<u8>(picture.width(), picture.height());
  const double fillMs = Examples::timed([&] { fillChequers(board); });
  // The board goes on to take the coins: the report keeps its picture in a copy.
  const IppIMemory<u8> empty = board;
  report.add("board", empty, fillMs, "Fill, square by square");

  const double ms =
      Examples::timed([&] { Initializer::CopyWithMask(picture, board, mask, board.SizeToRoi()); });
  report.add("pasted", board, ms, "CopyWithMask: the coins on the new ground");
}

void fillCoins(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  IppIMemory<u8> filled = picture;  // a copy of the pixels
  const double ms =
      Examples::timed([&] { Initializer::FillWithMask<u8>(filled, mask, kSilhouette, filled.SizeToRoi()); });
  report.add("filled", filled, ms, "FillWithMask: the coins in one value");
}

}  // namespace Coins
