#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Report.h"
#include "pipeline.h"

namespace Coins {

/// Writes `index.html` into the report's folder: the coins, their table, and for every step its pictures and
/// its code. The page needs the pictures in its folder and nothing else.
void writePage(const Examples::Report& report, const std::vector<Coin>& coins, const std::string& source,
               const Settings& settings);

/// Whether writePage() wrote the file.
bool isPage(const std::filesystem::path& path);

}  // namespace Coins
