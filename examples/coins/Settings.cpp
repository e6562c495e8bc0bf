#include "Settings.h"

namespace Coins {

std::string counted(std::size_t count, const Settings& settings) {
  return count == 1 ? settings.name + ": 1" : std::to_string(count) + " " + settings.name;
}

}  // namespace Coins
