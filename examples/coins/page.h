#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Report.h"
#include "pipeline.h"

namespace Coins {

/// Writes `index.html` into the report's folder: the coins, their table, and every step's pictures beside its
/// code. It needs nothing but the pictures beside it.
void writePage(const Examples::Report& report, const std::vector<Coin>& coins, const std::string& source,
               const Settings& settings);

/// Whether a file is a page that writePage() has written.
bool isPage(const std::filesystem::path& path);

}  // namespace Coins
