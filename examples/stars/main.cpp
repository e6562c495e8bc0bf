// Counts the stars of a picture and lists the ten brightest.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "png_file.h"
#include "sky.h"
#include "stars.h"

namespace {

using namespace Zorvan::Ipp::Image;

constexpr std::size_t listed = 10;

IppIMemory<Zorvan::u8> load(const std::string& path) {
  const Examples::Picture picture = Examples::readPng(path);
  IppIMemory<Zorvan::u8> image(Zorvan::Size{picture.width, picture.height});
  std::copy(picture.pixels.begin(), picture.pixels.end(), image.buffer().get());
  return image;
}

/// A white frame, two pixels away from the star, where the picture has room for it.
void frame(IppIMemory<Zorvan::u8>& picture, Examples::Area box) {
  const int left = std::max(box.column - 4, 0), top = std::max(box.row - 4, 0);
  const int right = std::min(box.column + box.width + 3, picture.width() - 1);
  const int bottom = std::min(box.row + box.height + 3, picture.height() - 1);
  for (const Examples::Area line : {Examples::Area{left, top, right - left + 1, 1},
                                    {left, bottom, right - left + 1, 1},
                                    {left, top, 1, bottom - top + 1},
                                    {right, top, 1, bottom - top + 1}}) {
    auto view = Examples::viewOf(picture, line);
    Initializer::Fill<Zorvan::u8>(view, 255, Examples::rectOfView(line));
  }
}

int run(const std::string& source, const std::string& folder) {
  std::filesystem::create_directories(folder);
  IppIMemory<Zorvan::u8> picture(Zorvan::Size{1, 1});
  picture = source == "--scene" ? Stars::drawSky(1).picture : load(source);
  Stars::Result result = Stars::findStars(picture);

  std::printf("%zu stars brighter than %d above the background\n\n", result.stars.size(), result.threshold);
  std::printf("     column   row  pixels    light\n");
  IppIMemory<Zorvan::u8> found = picture;  // a copy of the pixels
  for (std::size_t i = 0; i < std::min(listed, result.stars.size()); ++i) {
    const Stars::Star& star = result.stars[i];
    std::printf("%3zu   %5d %5d   %5.0f  %7.0f\n", i + 1, star.centre.x, star.centre.y, star.area,
                star.light);
    frame(found, star.box);
  }

  Examples::writePng(folder + "/1-picture.png", picture);
  Examples::writePng(folder + "/2-background.png", result.background);
  Examples::writePng(folder + "/3-mask.png", result.mask);
  Examples::writePng(folder + "/4-brightest.png", found);
  std::printf("\nPictures: %s\n", folder.c_str());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(
        stderr,
        "Use: stars PICTURE.png|--scene FOLDER\n"
        "Counts the stars of an 8-bit grey picture, or of a drawn sky, and writes pictures of the steps.\n");
    return 2;
  }
  try {
    return run(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "stars: %s\n", error.what());
    return 1;
  }
}
