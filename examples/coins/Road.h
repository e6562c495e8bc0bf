#pragma once

#include <deque>
#include <vector>

#include "Report.h"
#include "Steps.h"

namespace Coins {

struct Coin {
  int number;
  Area box;
  double area;
  Measures measures;
};

/// The way from the picture to the measured coins, and what else their mask is good for. Every step goes into
/// the report.
std::vector<Coin> takeApart(Examples::Picture& decoded, Examples::Report& report);

}  // namespace Coins
