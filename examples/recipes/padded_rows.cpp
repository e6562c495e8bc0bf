// A camera buffer with padded rows
//
// Rows of the library's images have no gaps between them. A buffer with padded
// rows is wrapped as an image as wide as its stride. A region of the true width
// excludes the padding. Each image of a call uses its own width, so one copy
// removes the padding.

#include <vector>

#include "recipe.h"

using namespace Recipes;

int main() {
  // A camera may deliver rows of 200 pixels with a stride of 256 bytes.
  constexpr int width = 200, height = 150, stride = 256;
  std::vector<u8> buffer(stride * height, 255);
  IppIMemory<u8> scene = coinPicture();
  auto padded = IppIMemory<u8>::CreateContainer(buffer.data(), stride, height);
  Initializer::Copy(scene, padded, {0, 0, width, height});

  IppIMemory<u8> tight(width, height);
  Initializer::Copy(padded, tight, tight.SizeToRoi());

  writePng("before.png", padded);
  writePng("after.png", tight);
}
