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

constexpr int gap = 8;
constexpr u8 white = 255;
constexpr std::array shown{"picture", "outline", "mask", "found"};

}  // namespace

void writeMontage(const Examples::Report& report) {
  const Zorvan::Size size = report.figure(shown[0]).picture.size();
  IppIMemory<u8> montage = Initializer::Allocate<u8>(2 * size.width + gap, 2 * size.height + gap);
  Initializer::Fill<u8>(montage, white, montage.SizeToRoi());
  for (int i = 0; i < 4; ++i) {
    IppIMemory<u8> picture;
    picture = report.figure(shown[i]).picture;
    const Area place{i % 2 * (size.width + gap), i / 2 * (size.height + gap), size.width, size.height};
    IppIMemory<u8> view = Examples::viewOf(montage, place);
    Initializer::Copy(picture, view, Examples::rectOfView(place));
  }
  Examples::writePng(report.folder() + "/montage.png", montage);
}

}  // namespace Coins
