// The first call of a process, through every entry, each in its own process: the call selects the variant,
// and the routine receives every argument as the caller passed it.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "tests/frame/FirstCall.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Table.h"

namespace Zorvan::Test {
namespace {

constexpr const char* callFlag = "--call=";
constexpr const char* raceFlag = "--race";

using namespace Primitives;

/// The output of a new process about its first call: empty if it succeeded.
std::string firstCallOf(const std::string& requested) {
#define CALL(name, ...) \
  if (requested == #name) return callFirst(&name, table.name);
#define ENTRY(...) CALL(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef CALL
  return "no entry " + requested;
}

std::vector<std::string> entryNames() {
  return {
#define NAME(name, ...) #name,
#define ENTRY(...) NAME(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef NAME
  };
}

/// Two threads that make the first call of the process at the same moment, one with a floating-point
/// argument, one with more arguments than fit into registers.
std::string raceForTheFirstCall() {
  std::atomic<int> waiting{2};
  const auto together = [&waiting] {
    --waiting;
    while (waiting != 0) {
    }
  };
  float filled[100] = {};
  std::string copied = "nothing";
  std::thread filler([&] {
    together();
    ippiSet_32f_C1R(1.25F, filled, 40, {10, 10});
  });
  std::thread copier([&] {
    u8 src[64], dst[64] = {}, mask[64];
    std::memset(src, 7, sizeof src);
    std::memset(mask, 255, sizeof mask);
    together();
    ippiCopy_8u_C1MR(src, 8, dst, 8, {8, 8}, mask, 8);
    copied = std::memcmp(src, dst, sizeof dst) == 0 ? "" : "the masked copy lost an argument";
  });
  filler.join();
  copier.join();
  for (const float pixel : filled) {
    if (pixel != 1.25F) return "the fill lost its value";
  }
  return copied;
}

/// Runs this program again with one flag and returns its output.
std::string inFreshProcess(const std::string& flag) {
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    dup2(pipeEnds[1], STDOUT_FILENO);
    execl("/proc/self/exe", "first_call_tests", flag.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(pipeEnds[1]);
  std::string printed;
  char buffer[512];
  for (ssize_t n; (n = read(pipeEnds[0], buffer, sizeof buffer)) > 0;)
    printed.append(buffer, static_cast<std::size_t>(n));
  close(pipeEnds[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) printed += " (the process ended with status " + std::to_string(status) + ")";
  return printed;
}

class FirstCall : public testing::TestWithParam<std::string> {};

TEST_P(FirstCall, KeepsEveryArgument) { EXPECT_EQ(inFreshProcess(callFlag + GetParam()), ""); }

INSTANTIATE_TEST_SUITE_P(Entries, FirstCall, testing::ValuesIn(entryNames()),
                         [](const auto& test) { return test.param; });

TEST(FirstCalls, MayComeFromTwoThreadsAtOnce) {
  for (int i = 0; i < 20; ++i) EXPECT_EQ(inFreshProcess(raceFlag), "");
}

TEST(FirstCalls, AStoredMinusOneSelectsAgain) {
  u8 pixel = 0;
  EXPECT_EQ(ippiSet_8u_C1R(3, &pixel, 1, {1, 1}), 0);
  const std::int32_t selected = variantIndex;
  variantIndex = -1;
  EXPECT_EQ(ippiSet_8u_C1R(4, &pixel, 1, {1, 1}), 0);
  EXPECT_EQ(variantIndex, selected);
  EXPECT_EQ(pixel, 4);
}

TEST(Rows, EndInANullWord) {
  const auto* words = reinterpret_cast<void* const*>(&table);
  for (std::size_t row = 0; row < sizeof(Table) / (8 * sizeof(void*)); ++row) {
    for (std::size_t word = 0; word < 7; ++word) EXPECT_NE(words[8 * row + word], nullptr);
    EXPECT_EQ(words[8 * row + 7], nullptr);
  }
}

TEST(Rows, OfFreeHoldOneRoutine) {
  for (int variant = 1; variant <= variantCount; ++variant) {
    EXPECT_EQ(table.ippiFree.routine[variant], table.ippiFree.routine[1]);
    EXPECT_EQ(table.ippsFree.routine[variant], table.ippsFree.routine[1]);
  }
}

}  // namespace
}  // namespace Zorvan::Test

int main(int argc, char** argv) {
  if (argc == 2) {
    const std::string flag = argv[1];
    const bool isCall = flag.rfind(Zorvan::Test::callFlag, 0) == 0;
    if (isCall || flag == Zorvan::Test::raceFlag) {
      const std::string said =
          isCall ? Zorvan::Test::firstCallOf(flag.substr(std::strlen(Zorvan::Test::callFlag)))
                 : Zorvan::Test::raceForTheFirstCall();
      std::fputs(said.c_str(), stdout);
      return 0;
    }
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
