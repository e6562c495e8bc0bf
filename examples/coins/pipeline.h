#pragma once

#include <deque>
#include <string>
#include <vector>

#include "Report.h"
#include "Settings.h"
#include "steps.h"

namespace Coins {

struct Coin {
  int number;
  Area box;
  double area;
  Measures measures;
};

/// From the picture to the measured coins, and what else their mask is good for. Every step goes into the
/// report.
std::vector<Coin> takeApart(Examples::Picture& decoded, Examples::Report& report,
                            const Settings& settings = {});

/// For a report in which nothing was found: why that may be, and which option to change.
std::string whyNothing(const Examples::Report& report, const Settings& settings);

}  // namespace Coins
