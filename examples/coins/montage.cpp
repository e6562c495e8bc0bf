#include <array>
#include <stdexcept>

#include "Png.h"
#include "Region.h"
#include "Steps.h"

namespace Coins {

using Examples::Area;
using Zorvan::Ipp::Image::Initializer;

namespace {

constexpr int kGap = 8;
constexpr u8 kPaper = 255;
constexpr std::array kShown{"picture", "mask", "filled", "pasted"};

const Report::Step& stepOf(const Report& report, const std::string& title) {
  for (const Report::Step& step : report.steps()) {
    if (step.title == title) return step;
  }
  throw std::logic_error("No step of the report is called " + title);
}

}  // namespace

void writeMontage(const Report& report) {
  const Zorvan::Size size = stepOf(report, kShown[0]).picture.size();
  IppIMemory<u8> montage = Initializer::Allocate<u8>(2 * size.width + kGap, 2 * size.height + kGap);
  Initializer::Fill<u8>(montage, kPaper, montage.SizeToRoi());
  for (int i = 0; i < 4; ++i) {
    IppIMemory<u8> picture;
    picture = stepOf(report, kShown[i]).picture;
    const Area place{i % 2 * (size.width + kGap), i / 2 * (size.height + kGap), size.width, size.height};
    IppIMemory<u8> view = Examples::viewOf(montage, place);
    Initializer::Copy(picture, view, Examples::rectOfView(place));
  }
  Examples::writePng(report.folder() + "/montage.png", montage);
}

}  // namespace Coins
