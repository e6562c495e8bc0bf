#include <algorithm>

#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> withoutSides(IppIMemory<u8>& rising) {
  const int width = rising.width(), height = rising.height();
  IppIMemory<u8> inner = rising;  // a copy of the pixels
  // An opening with a line keeps runs of at least its length. In the two
  // outermost rows and columns only the edge of the picture has such runs; a
  // round rim has not.
  const auto longest = [](int side) { return std::max(61, side / 5); };
  const auto clear = [&](Area side, Zorvan::Size line) {
    const Zorvan::Rect all = Examples::rectOfView(side);
    IppIMemory<u8> view = Examples::viewOf(inner, side);
    IppIMemory<u8> runs(side.width, side.height);
    IppIMorphology<u8>::Open(view, runs, all, line);
    IppIArithmetic<u8>::Subtract(runs, view, all);
  };
  const int across = std::min(2, width), down = std::min(2, height);
  const Zorvan::Size upright{1, longest(height)}, level{longest(width), 1};
  clear({0, 0, across, height}, upright);
  clear({width - across, 0, across, height}, upright);
  clear({0, 0, width, down}, level);
  clear({0, height - down, width, down}, level);
  return inner;
}

}  // namespace Coins
