// Takes a picture of coins apart with the library's operations, and leaves a picture of every step.

#include <exception>
#include <iostream>
#include <string>

#include "Png.h"
#include "Report.h"
#include "Scene.h"
#include "Steps.h"

namespace {

constexpr const char* kUsage =
    "Use: coins <picture.png> <output folder>    an 8-bit grey PNG\n"
    "     coins --scene <output folder>          a drawn scene\n";

void run(const std::string& source, const std::string& folder) {
  using Coins::IppIMemory;
  using Coins::u8;

  Examples::Picture decoded = source == "--scene" ? Coins::drawScene() : Examples::readPng(source);
  Examples::Report report(folder);

  // The image wraps the decoder's memory: no pixel is copied, and `decoded` must outlive the image.
  IppIMemory<u8> picture;
  const double ms = Examples::timed([&] {
    picture = IppIMemory<u8>::CreateContainer(decoded.pixels.data(), decoded.width, decoded.height);
  });
  report.add("picture", picture, ms, "CreateContainer around the decoder's memory");

  Coins::crop(picture, report);
  IppIMemory<u8> bright = Coins::selectBright(picture, report);
  IppIMemory<int> counts = Coins::countAround(bright, report);
  IppIMemory<u8> mask = Coins::coinMask(counts, report);
  Coins::fillCoins(picture, mask, report);
  Coins::paste(picture, mask, report);
  Coins::writeMontage(report);

  std::cout
      << report.table()
      << "Times are those of the library's operations, run once, with the first touch of new memory.\n\n"
      << "The pictures are in " << folder << ", four of them side by side in " << folder << "/montage.png\n";
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) {
    std::cerr << kUsage;
    return 2;
  }
  try {
    run(arguments[1], arguments[2]);
  } catch (const std::exception& error) {
    std::cerr << "coins: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
