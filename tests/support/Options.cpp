#include "tests/support/Options.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace Zorvan::Test {
namespace {

Options parsed;

[[noreturn]] void refuse(std::string_view argument) {
  std::fprintf(stderr,
               "unknown argument: %.*s\n"
               "known: --level=few|quick|full|fuzz --rounds=N --seed=N --entry=TEXT --variant=TEXT "
               "--expected-index=N, and "
               "GoogleTest's --gtest_... flags\n",
               static_cast<int>(argument.size()), argument.data());
  std::exit(2);
}

Level levelOf(std::string_view name, std::string_view argument) {
  if (name == "few") return Level::few;
  if (name == "quick") return Level::quick;
  if (name == "full") return Level::full;
  if (name == "fuzz") return Level::fuzz;
  refuse(argument);
}

}  // namespace

const Options& options() { return parsed; }

void parseOptions(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    const auto equals = argument.find('=');
    if (equals == std::string_view::npos) refuse(argument);
    const std::string_view key = argument.substr(0, equals);
    const std::string value(argument.substr(equals + 1));
    if (key == "--level") {
      parsed.level = levelOf(value, argument);
    } else if (key == "--seed") {
      parsed.seed = std::strtoull(value.c_str(), nullptr, 0);
    } else if (key == "--rounds") {
      parsed.rounds = std::atoi(value.c_str());
    } else if (key == "--entry") {
      parsed.entry = value;
    } else if (key == "--variant") {
      parsed.variant = value;
    } else if (key == "--expected-index") {
      parsed.expectedIndex = std::atoi(value.c_str());
    } else {
      refuse(argument);
    }
  }
}

}  // namespace Zorvan::Test
