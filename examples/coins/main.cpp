// Counts and measures the objects of a picture with the library's operations, and writes a page that shows
// every step.

#include <fcntl.h>
#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include "FreshFolder.h"
#include "Report.h"
#include "coin_table.h"
#include "montage.h"
#include "page.h"
#include "pipeline.h"
#include "png_file.h"
#include "scene.h"

namespace {

constexpr const char* usage =
    "Use: coins [option...] <picture.png> <output folder>    an 8-bit grey PNG\n"
    "     coins [option...] --scene <output folder>          a drawn scene\n"
    "  --threshold=30    0 to 255: brightness changes by more than this at the rim of an object\n"
    "  --open=9          1 to 255: objects into which no square of this side fits are removed\n"
    "  --name=coins      the name of the objects, in the plural\n"
    "  --help            this text\n";

struct WrongUse : std::runtime_error {
  using runtime_error::runtime_error;
};

struct Order {
  bool help = false;
  bool scene = false;
  std::string picture;
  std::string folder;
  Coins::Settings settings;
};

int wholeNumber(const std::string& option, const std::string& text, int least, int most) {
  int value = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end || value < least || value > most) {
    throw WrongUse("--" + option + ": '" + text + "' is not a whole number from " + std::to_string(least) +
                   " to " + std::to_string(most));
  }
  return value;
}

std::string noun(const std::string& text) {
  const bool printable =
      std::none_of(text.begin(), text.end(), [](unsigned char c) { return std::iscntrl(c); });
  if (text.empty() || !printable) throw WrongUse("--name: a word is needed, such as stars");
  return text;
}

Order parse(int argumentCount, char** arguments) {
  enum Option { threshold = 1, open, name, scene, help };
  static const option options[] = {{"threshold", required_argument, nullptr, threshold},
                                   {"open", required_argument, nullptr, open},
                                   {"name", required_argument, nullptr, name},
                                   {"scene", no_argument, nullptr, scene},
                                   {"help", no_argument, nullptr, help},
                                   {nullptr, 0, nullptr, 0}};
  Order order;
  for (int found; (found = getopt_long(argumentCount, arguments, "", options, nullptr)) != -1;) {
    if (found == threshold) {
      order.settings.threshold = wholeNumber("threshold", optarg, 0, 255);
    } else if (found == open) {
      order.settings.open = wholeNumber("open", optarg, 1, 255);
    } else if (found == name) {
      order.settings.name = noun(optarg);
    } else if (found == scene) {
      order.scene = true;
    } else if (found == help) {
      order.help = true;
      return order;
    } else {
      throw WrongUse("an option is wrong");
    }
  }
  if (argumentCount - optind != (order.scene ? 1 : 2))
    throw WrongUse("a picture and an output folder are needed");
  if (!order.scene) order.picture = arguments[optind++];
  order.folder = arguments[optind];
  return order;
}

volatile std::sig_atomic_t interrupted = 0;

/// A first Ctrl-C ends the program at the next step, so that it can remove the unfinished folder. A second
/// one ends it at once.
void endAtNextStep() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = 1; };
  action.sa_flags = SA_RESETHAND;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

/// Throws if the printed text could not be written.
void requireOutput() {
  std::cout.flush();
  if (!std::cout) throw std::runtime_error("the standard output cannot be written");
}

/// Whether an earlier run wrote the file. Its name is not enough, because cameras number their pictures too:
/// the folder must also contain the page of a run.
bool isResult(const std::filesystem::path& path) {
  if (!Coins::isPage(path.parent_path() / "index.html")) return false;
  const std::string file = path.filename().string();
  if (file == "index.html" || file == "coins.csv" || file == "montage.png") return true;
  const std::size_t digits = file.find_first_not_of("0123456789");
  return digits != std::string::npos && digits >= 2 && file[digits] == '-' && path.extension() == ".png";
}

void run(const Order& order) {
  Examples::Picture decoded = order.scene ? Coins::drawScene() : Examples::readPng(order.picture);
  Examples::FreshFolder fresh(order.folder, isResult);
  const auto begins = [](const std::string& heading) {
    if (interrupted != 0) throw std::runtime_error("interrupted");
    std::cout << "... " << heading << std::endl;
    requireOutput();
  };
  Examples::Report report(fresh.path(), begins);
  const std::vector<Coins::Coin> coins = Coins::runPipeline(decoded, report, order.settings);

  begins("Write the page");
  Coins::writeCoinCsv(report.folder() + "/coins.csv", coins);
  Coins::writeMontage(report);
  Coins::writePage(report, coins,
                   order.scene ? "A drawn scene" : std::filesystem::path(order.picture).filename().string(),
                   order.settings);
  fresh.putInPlace();

  std::cout << "\n"
            << report.table()
            << "Times are of one run of each step. They include the first access to new memory.\n\n";
  if (coins.empty()) {
    std::cout << Coins::whyNothing(report, order.settings) << "\n\n";
  } else {
    std::cout << Coins::coinText(coins) << Coins::counted(coins.size(), order.settings) << "\n\n";
  }
  std::cout << "The page is " << order.folder << "/index.html, the table also " << order.folder
            << "/coins.csv\n";
  requireOutput();
}

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    // Otherwise the first file that the program opens would become the standard output.
    if (fcntl(STDOUT_FILENO, F_GETFD) == -1) throw std::runtime_error("the standard output is closed");
    std::signal(SIGPIPE, SIG_IGN);
    endAtNextStep();
    const Order order = parse(argumentCount, arguments);
    if (order.help) {
      std::cout << usage;
      requireOutput();
    } else {
      run(order);
    }
  } catch (const WrongUse& error) {
    std::cerr << "coins: " << error.what() << "\n" << usage;
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "coins: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
