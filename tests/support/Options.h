#pragma once

#include <cstdint>
#include <string>

namespace Zorvan::Test {

/// How many shapes a test of an entry goes through: a few for slow emulators, a good sample for every change,
/// all of them, or ones drawn at random, as many as asked for.
enum class Level { few, quick, full, fuzz };

/// What the command line of a test program asks for, besides GoogleTest's own flags.
struct Options {
  Level level = Level::quick;
  std::uint64_t seed = 1;
  bool everyOffset =
      false;               ///< with lowered limits: every width at every offset within a line, else a sample
  int rounds = 500;        ///< cases of each entry and variant at the level `fuzz`
  std::string entry;       ///< only entries whose name contains this
  std::string variant;     ///< only variants whose name contains this
  int expectedIndex = -1;  ///< the variant that this processor has to select; -1 for any
};

const Options& options();

/// With lowered limits the full level adds the systematic cases alone: all else has been run with the
/// library's. Takes `--level=`, `--seed=`, `--entry=`, `--variant=`, `--rounds=` and `--expected-index=`;
/// ends the program with a text on anything else, and on a variant or a number that is none.
void parseOptions(int argc, char** argv);

}  // namespace Zorvan::Test
