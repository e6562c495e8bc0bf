#pragma once

#include <string>

namespace Coins {

/// What fits the demo to a picture. The defaults fit the photograph of coins.
struct Settings {
  /// Dilate minus erode rises above this at the rim of an object, and seldom in the grain of the ground.
  int threshold = 30;
  /// Side of the smallest square that an object holds.
  int open = 9;
  /// What the objects are, in the plural.
  std::string name = "coins";
};

/// "24 coins"; one is "coins: 1", as the settings know no singular.
std::string counted(std::size_t count, const Settings& settings);

}  // namespace Coins
