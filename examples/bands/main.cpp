// Prints how much faster five operations are in bands of rows than one after the other over the whole image.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>

#include "bands.h"

namespace {

using Clock = std::chrono::steady_clock;
using Mark = void (*)(Bands::Frame&, float, Bands::Between&, Bands::IppIMemory<Bands::u8>&);

constexpr float level = 100;

double milliseconds(Mark mark, Bands::Frame& frame, Bands::Between& between,
                    Bands::IppIMemory<Bands::u8>& mask) {
  const auto start = Clock::now();
  mark(frame, level, between, mask);
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// One line of the table: the shortest times, measured alternately, for at least a third of a second.
void compare(Zorvan::Size size) {
  Bands::Frame frame(size);
  Bands::Between ofWhole(size), ofBand(Bands::sizeBetween(size.width));
  Bands::IppIMemory<Bands::u8> mask(size);
  double whole = std::numeric_limits<double>::infinity(), bands = whole;
  const auto end = Clock::now() + std::chrono::milliseconds(333);
  for (int round = 0; round < 5 || Clock::now() < end; ++round) {
    whole = std::min(whole, milliseconds(Bands::markAtOnce, frame, ofWhole, mask));
    bands = std::min(bands, milliseconds(Bands::markInBands, frame, ofBand, mask));
  }
  std::printf("| %dx%d | %d | %.3f | %.3f | %.2f |\n", size.width, size.height, Bands::rowsOfBand(size.width),
              whole, bands, whole / bands);
}

}  // namespace

int main() {
  std::printf("| image | rows of a band | whole, ms | in bands, ms | times |\n|---|--:|--:|--:|--:|\n");
  for (const Zorvan::Size size : {Zorvan::Size{320, 240},
                                  {640, 480},
                                  {1280, 960},
                                  {1920, 1080},
                                  {2560, 1920},
                                  {4000, 3000},
                                  {6000, 4000}}) {
    compare(size);
  }
}
