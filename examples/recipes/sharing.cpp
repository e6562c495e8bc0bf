// Images that share memory, and images that do not
//
// Assignment shares the pixels, and copy construction copies them. A wrapped
// image uses memory that it does not keep alive. Here a bar is drawn into one
// image of each type, and the program prints whether the first image has it.

#include <cstdio>

#include "recipe.h"

using namespace Recipes;

void drawBar(IppIMemory<u8>& picture, int row, u8 grey) {
  const Area bar{0, row, picture.width(), 8};
  IppIMemory<u8> view = viewOf(picture, bar);
  Initializer::Fill<u8>(view, grey, rectOfView(bar));
}

int main() {
  IppIMemory<u8> picture = coinPicture();
  const IppIMemory<u8> before = picture;  // a copy

  IppIMemory<u8> shared;
  shared = picture;                 // the same pixels
  IppIMemory<u8> copied = picture;  // its own pixels
  auto wrapped =
      IppIMemory<u8>::CreateContainer(picture.buffer().get(), picture.size());

  drawBar(shared, 20, 255);
  drawBar(copied, 70, 0);
  drawBar(wrapped, 120, 0);

  std::printf("through assignment:        %d\n", picture.buffer()[20 * 240]);
  std::printf("through copy construction: %d\n", picture.buffer()[70 * 240]);
  std::printf("through wrapping:          %d\n", picture.buffer()[120 * 240]);
  writePng("before.png", before);
  writePng("after.png", picture);
}
