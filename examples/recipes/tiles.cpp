// Stitch tiles with overlap
//
// Filters and morphology use the pixels around each pixel, and treat the edge
// of the region like the edge of the picture. So a tile is cut with a margin of
// half the mask and filtered, and only its inner part is kept. The stitched
// tiles are equal to the result for the whole picture.

#include <algorithm>
#include <cstdio>

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  IppIMemory<u8> stitched(picture.size()), atOnce(picture.size());
  constexpr Zorvan::Size square{7, 7};
  constexpr int side = 64, margin = 7 / 2;

  for (int top = 0; top < picture.height(); top += side) {
    for (int left = 0; left < picture.width(); left += side) {
      const int right = std::min(left + side, picture.width());
      const int bottom = std::min(top + side, picture.height());
      // The tile with its margin, clipped to the picture.
      const int x = std::max(left - margin, 0), y = std::max(top - margin, 0);
      const Area wide{x, y, std::min(right + margin, picture.width()) - x,
                      std::min(bottom + margin, picture.height()) - y};
      IppIMemory<u8> from = viewOf(picture, wide);
      IppIMemory<u8> tile(wide.width, wide.height);
      IppIMorphology<u8>::Dilate(from, tile, rectOfView(wide), square);

      const Area kept{left, top, right - left, bottom - top};
      IppIMemory<u8> inner =
          viewOf(tile, {left - x, top - y, kept.width, kept.height});
      IppIMemory<u8> to = viewOf(stitched, kept);
      Initializer::Copy(inner, to, rectOfView(kept));
    }
  }

  const Rect whole = picture.SizeToRoi();
  IppIMorphology<u8>::Dilate(picture, atOnce, whole, square);
  IppILogical<u8>::Xor(stitched, atOnce, whole);
  std::printf("largest difference: %d\n", Statistic<u8>::Max(atOnce, whole));
  writePng("before.png", picture);
  writePng("after.png", stitched);
}
