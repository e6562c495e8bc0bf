#include "coin_table.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "text_file.h"

namespace Coins {

const std::vector<Column> coinColumns{
    {"coin", "number", 0, [](const Coin& c) -> double { return c.number; }},
    {"column", "left", 0, [](const Coin& c) -> double { return c.box.column; }},
    {"row", "top", 0, [](const Coin& c) -> double { return c.box.row; }},
    {"width", "width", 0, [](const Coin& c) -> double { return c.box.width; }},
    {"height", "height", 0, [](const Coin& c) -> double { return c.box.height; }},
    {"area", "area", 0, [](const Coin& c) { return c.area; }},
    {"diameter", "diameter", 1, [](const Coin& c) { return c.measures.diameter; }},
    {"mean", "mean", 1, [](const Coin& c) { return c.measures.brightness.Mean; }},
    {"deviation", "deviation", 1, [](const Coin& c) { return c.measures.brightness.StdDev; }},
    {"darkest", "darkest", 0, [](const Coin& c) -> double { return c.measures.extremes.Min; }},
    {"darkest_column", "at column", 0,
     [](const Coin& c) -> double { return c.box.column + c.measures.extremes.MinIndex.x; }},
    {"darkest_row", "row", 0,
     [](const Coin& c) -> double { return c.box.row + c.measures.extremes.MinIndex.y; }},
    {"brightest", "brightest", 0, [](const Coin& c) -> double { return c.measures.extremes.Max; }},
    {"brightest_column", "at column", 0,
     [](const Coin& c) -> double { return c.box.column + c.measures.extremes.MaxIndex.x; }},
    {"brightest_row", "row", 0,
     [](const Coin& c) -> double { return c.box.row + c.measures.extremes.MaxIndex.y; }},
};

std::string numberText(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

std::string coinText(const std::vector<Coin>& coins) {
  const auto cell = [](const Column& column, const std::string& text) {
    const std::size_t width = std::max<std::size_t>(std::strlen(column.title), 4) + 2;
    return std::string(width - std::min(width, text.size()), ' ') + text;
  };
  std::string text;
  for (const Column& column : coinColumns) text += cell(column, column.title);
  text += "\n";
  for (const Coin& coin : coins) {
    for (const Column& column : coinColumns)
      text += cell(column, numberText(column.value(coin), column.decimals));
    text += "\n";
  }
  return text;
}

void writeCoinCsv(const std::string& path, const std::vector<Coin>& coins) {
  std::string text;
  const auto line = [&](auto cellOf) {
    for (std::size_t i = 0; i < coinColumns.size(); ++i) text += (i == 0 ? "" : ",") + cellOf(coinColumns[i]);
    text += "\n";
  };
  line([](const Column& column) { return std::string(column.name); });
  for (const Coin& coin : coins) {
    line([&](const Column& column) { return numberText(column.value(coin), column.decimals); });
  }
  Examples::writeText(path, text);
}

}  // namespace Coins
