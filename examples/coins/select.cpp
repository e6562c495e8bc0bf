#include "BoxSums.h"
#include "Steps.h"

namespace Coins {

using Zorvan::Ipp::Image::Initializer;

namespace {

// The surroundings must hold more ground than coin, and the light must not change much inside them.
constexpr int kReach = 45;

// How much brighter than its surroundings a pixel must be: more than the ground's grain.
constexpr int kMargin = 12;

// Most of the square around a pixel must be selected. The square is wide enough to bridge the dark relief
// inside a coin, and narrow enough to leave coins apart.
constexpr int kCountReach = 5;

}  // namespace

IppIMemory<u8> selectBright(IppIMemory<u8>& picture, Report& report) {
  IppIMemory<u8> selected = Initializer::Allocate<u8>(picture.width(), picture.height());
  const double ms = Examples::timed([&] { Initializer::Fill<u8>(selected, 0, selected.SizeToRoi()); });

  const BoxSums sums(picture);
  const auto source = picture.buffer();
  const auto target = selected.buffer();
  for (std::int64_t r = 0; r < picture.height(); ++r) {
    for (std::int64_t c = 0; c < picture.width(); ++c) {
      const BoxSums::Sum around = sums.around(r, c, kReach);
      const std::int64_t at = r * picture.width() + c;
      if ((source[at] - kMargin) * around.pixels > around.total) target[at] = 255;
    }
  }
  report.add("bright", selected, ms,
             "Fill with 0; the demo's own loop selects what its surroundings outshine");
  return selected;
}

IppIMemory<int> countAround(IppIMemory<u8>& selected, Report& report) {
  IppIMemory<int> counts = Initializer::Allocate<int>(selected.width(), selected.height());
  const BoxSums sums(selected);
  const auto target = counts.buffer();
  for (std::int64_t r = 0; r < counts.height(); ++r) {
    for (std::int64_t c = 0; c < counts.width(); ++c) {
      target[r * counts.width() + c] = static_cast<int>(sums.around(r, c, kCountReach).total / 255);
    }
  }

  IppIMemory<u8> shown = Initializer::Allocate<u8>(counts.width(), counts.height());
  const double ms = Examples::timed([&] { Initializer::Convert(counts, shown, counts.SizeToRoi()); });
  report.add("counts", shown, ms, "32-bit counts of selected neighbours, Convert to 8 bits");
  return counts;
}

IppIMemory<u8> coinMask(IppIMemory<int>& counts, Report& report) {
  IppIMemory<float> exact = Initializer::Allocate<float>(counts.width(), counts.height());
  IppIMemory<u8> mask = Initializer::Allocate<u8>(counts.width(), counts.height());
  const double ms = Examples::timed([&] {
    Initializer::Convert(counts, exact, counts.SizeToRoi());
    Initializer::Fill<u8>(mask, 0, mask.SizeToRoi());
  });

  constexpr float kSquare = (2 * kCountReach + 1) * (2 * kCountReach + 1);
  const auto source = exact.buffer();
  const auto target = mask.buffer();
  for (std::int64_t at = 0; at < std::int64_t{mask.width()} * mask.height(); ++at) {
    if (source[at] > kSquare / 2) target[at] = 255;
  }
  report.add("mask", mask, ms, "Convert the counts to float; the demo's own loop selects more than half");
  return mask;
}

}  // namespace Coins
