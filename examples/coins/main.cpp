// Counts and measures the coins of a photograph with the library's operations, and leaves a page of every
// step.

#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "CoinTable.h"
#include "Montage.h"
#include "Page.h"
#include "Png.h"
#include "Report.h"
#include "Road.h"
#include "Scene.h"

namespace {

constexpr const char* kUsage =
    "Use: coins <picture.png> <output folder>    an 8-bit grey PNG\n"
    "     coins --scene <output folder>          a drawn scene\n";

void run(const std::string& source, const std::string& folder) {
  const bool drawn = source == "--scene";
  Examples::Picture decoded = drawn ? Coins::drawScene() : Examples::readPng(source);
  Examples::Report report(folder);
  const std::vector<Coins::Coin> coins = Coins::takeApart(decoded, report);

  Coins::writeCoinCsv(folder + "/coins.csv", coins);
  Coins::writeMontage(report);
  Coins::writePage(report, coins,
                   drawn ? "A drawn scene" : std::filesystem::path(source).filename().string());

  std::cout << report.table()
            << "Times are those of one run of each step, with the first touch of new memory.\n\n"
            << Coins::coinText(coins) << coins.size() << (coins.size() == 1 ? " coin\n\n" : " coins\n\n")
            << "The page is " << folder << "/index.html, the table also " << folder << "/coins.csv\n";
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) {
    std::cerr << kUsage;
    return 2;
  }
  try {
    run(arguments[1], arguments[2]);
  } catch (const std::exception& error) {
    std::cerr << "coins: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
