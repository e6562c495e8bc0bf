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

/// Finds and measures the coins of the picture, and shows further uses of their mask. Every step is added to
/// the report.
std::vector<Coin> runPipeline(Examples::Picture& decoded, Examples::Report& report,
                              const Settings& settings = {});

/// For a report without coins: the likely reason, and which option to change.
std::string whyNothing(const Examples::Report& report, const Settings& settings);

}  // namespace Coins
