// In bands and at once, the masks are equal.

#include "bands.h"

#include <algorithm>
#include <cstdio>

namespace {

using namespace Zorvan::Ipp::Image;
using Bands::u8;

bool agree(Zorvan::Size size) {
  Bands::Frame frame(size);
  IppIMemory<u8> atOnce(size), inBands(size);
  Initializer::Fill<u8>(inBands, 7, inBands.SizeToRoi());  // neither of the values of a mask
  Bands::Between ofWhole(size), ofBand(Bands::sizeBetween(size.width));
  Bands::markAtOnce(frame, 250, ofWhole, atOnce);
  Bands::markInBands(frame, 250, ofBand, inBands);

  const std::ptrdiff_t pixels = std::ptrdiff_t{size.width} * size.height;
  const u8* const mask = atOnce.buffer().get();
  const auto marked = std::count(mask, mask + pixels, 255);
  const bool same = std::equal(mask, mask + pixels, inBands.buffer().get());
  const bool some = pixels < 100 || (marked > 0 && marked < pixels);
  std::printf("%dx%d: bands of %d rows, %td pixels marked, %s\n", size.width, size.height,
              Bands::rowsOfBand(size.width), marked, same ? "equal" : "NOT EQUAL");
  return same && some;
}

}  // namespace

int main() {
  bool allAgree = true;
  // whole numbers of bands, one row more, one row less, one band, and a single row
  for (const Zorvan::Size size :
       {Zorvan::Size{1248, 64}, {1248, 65}, {1248, 63}, {2000, 901}, {320, 20}, {999, 1}, {1, 50}}) {
    allAgree = agree(size) && allAgree;
  }
  return allAgree ? 0 : 1;
}
