#pragma once

#include <string>
#include <vector>

#include "pipeline.h"

namespace Coins {

/// The columns of the table of coins, in every form of it.
struct Column {
  const char* name;
  /// For people: what the name stands for, in its unit.
  const char* title;
  int decimals;
  double (*value)(const Coin& coin);
};

extern const std::vector<Column> coinColumns;

/// A figure as text, with a point whatever the place.
std::string figureText(double value, int decimals);

/// The table as aligned text, for a terminal.
std::string coinText(const std::vector<Coin>& coins);

/// The table as comma separated values, names in the first line. Throws std::runtime_error if the file cannot
/// be written in full.
void writeCoinCsv(const std::string& path, const std::vector<Coin>& coins);

/// Writes a file. Throws std::runtime_error if it cannot be written in full.
void writeText(const std::string& path, const std::string& text);

}  // namespace Coins
