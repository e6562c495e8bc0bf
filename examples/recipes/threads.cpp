// Several threads on bands
//
// The library starts no threads, and its operations may run on several at the
// same time, as long as no two write the same pixels. Here each thread has a
// band of its own. What a thread throws is caught in it, and passed on.

#include <cstdio>
#include <future>
#include <vector>

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  IppIMemory<u8> inverse(picture.size());
  Initializer::Fill<u8>(inverse, 0, inverse.SizeToRoi());

  constexpr int bands = 4;
  const int rows = picture.height() / bands;
  std::vector<std::future<void>> work;
  for (int band = 0; band < bands; ++band) {
    work.push_back(std::async(std::launch::async, [&, band] {
      const Area area{0, band * rows, picture.width(), rows};
      IppIMemory<u8> from = viewOf(picture, area), to = viewOf(inverse, area);
      IppILogical<u8>::Not(from, to, rectOfView(area));
    }));
  }
  for (std::future<void>& done : work) done.get();  // throws what it threw

  std::printf("a pixel and its complement: %d and %d\n", picture.buffer()[0],
              inverse.buffer()[0]);
  writePng("before.png", picture);
  writePng("after.png", inverse);
}
