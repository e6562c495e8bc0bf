#pragma once

#include <vector>

#include "png_file.h"

namespace Coins {

struct Disc {
  double row;
  double column;
  double radius;
};

/// The coins of the scene.
std::vector<Disc> sceneCoins();

/// A drawn replacement for the photograph: coins on a background with uneven light.
Examples::Picture drawScene();

}  // namespace Coins
