// Several threads on bands
//
// The library starts no threads. Its operations may run in several threads at
// the same time, if no thread writes pixels that another one uses. Here each
// thread has its own band. An exception in a thread is caught and rethrown in
// the main thread.

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
  for (std::future<void>& done : work) done.get();  // rethrows

  std::printf("a pixel and its complement: %d and %d\n", picture.buffer()[0],
              inverse.buffer()[0]);
  writePng("before.png", picture);
  writePng("after.png", inverse);
}
