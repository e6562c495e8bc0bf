// A camera buffer with padded rows
//
// Rows of the library's images lie side by side without a gap. A buffer whose
// rows are padded is wrapped as an image as wide as its pitch; a region of the
// true width leaves the padding out. Each image of a call goes by its own
// width, so one copy makes the rows tight.

#include <vector>

#include "recipe.h"

using namespace Recipes;

int main() {
  // What a camera may deliver: rows of 200 pixels, 256 bytes apart.
  constexpr int width = 200, height = 150, pitch = 256;
  std::vector<u8> buffer(pitch * height, 255);
  IppIMemory<u8> scene = coinPicture();
  auto padded = IppIMemory<u8>::CreateContainer(buffer.data(), pitch, height);
  Initializer::Copy(scene, padded, {0, 0, width, height});

  IppIMemory<u8> tight(width, height);
  Initializer::Copy(padded, tight, tight.SizeToRoi());

  writePng("before.png", padded);
  writePng("after.png", tight);
}
