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

/// A drawn stand-in for the photograph: coins on an unevenly lit ground.
Examples::Picture drawScene();

}  // namespace Coins
