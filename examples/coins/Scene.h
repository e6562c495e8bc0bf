#pragma once

#include "Png.h"

namespace Coins {

/// A drawn stand-in for the photograph: coins on an unevenly lit ground.
Examples::Picture drawScene();

}  // namespace Coins
