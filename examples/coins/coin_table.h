#pragma once

#include <string>
#include <vector>

#include "pipeline.h"

namespace Coins {

/// A column of the table of coins.
struct Column {
  /// In the CSV file.
  const char* name;
  /// On the page and the terminal.
  const char* title;
  int decimals;
  double (*value)(const Coin& coin);
};

extern const std::vector<Column> coinColumns;

/// A number as text, with a decimal point in every locale.
std::string numberText(double value, int decimals);

/// The table as aligned text, for a terminal.
std::string coinText(const std::vector<Coin>& coins);

/// Writes the table as comma separated values, with the names in the first line. Throws std::runtime_error if
/// the file cannot be written in full.
void writeCoinCsv(const std::string& path, const std::vector<Coin>& coins);

}  // namespace Coins
