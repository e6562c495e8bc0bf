#pragma once

#include <string>

namespace Coins {

/// Options that adapt the demo to a picture. The defaults are for the photograph of coins.
struct Settings {
  /// Dilate minus erode exceeds this at the rim of an object, and seldom in the noise of the background.
  int threshold = 30;
  /// Objects into which no square of this side fits are removed.
  int open = 9;
  /// The name of the objects, in the plural.
  std::string name = "coins";
};

/// "24 coins", or "coins: 1", because the settings have no singular.
std::string counted(std::size_t count, const Settings& settings);

}  // namespace Coins
