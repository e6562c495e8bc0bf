#include "montage.h"

#include <array>

#include "png_file.h"
#include "region.h"

namespace Coins {

using Examples::Area;
using Zorvan::u8;
using Zorvan::Ipp::Image::Initializer;
using Zorvan::Ipp::Image::IppIMemory;

namespace {

constexpr int kGap = 8;
constexpr u8 kPaper = 255;
constexpr std::array kShown{"picture", "outline", "mask", "found"};

}  // namespace

void writeMontage(const Examples::Report& report) {
  const Zorvan::Size size = report.figure(kShown[0]).picture.size();
  IppIMemory<u8> montage = Initializer::Allocate<u8>(2 * size.width + kGap, 2 * size.height + kGap);
  Initializer::Fill<u8>(montage, kPaper, montage.SizeToRoi());
  for (int i = 0; i < 4; ++i) {
    IppIMemory<u8> picture;
    picture = report.figure(kShown[i]).picture;
    const Area place{i % 2 * (size.width + kGap), i / 2 * (size.height + kGap), size.width, size.height};
    IppIMemory<u8> view = Examples::viewOf(montage, place);
    Initializer::Copy(picture, view, Examples::rectOfView(place));
  }
  Examples::writePng(report.folder() + "/montage.png", montage);
}

}  // namespace Coins
