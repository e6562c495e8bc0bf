// In place of libFuzzer, where the compiler has none: runs the program once on each input of a corpus.
// usage: replay_<name> corpus

#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::string line;  // the input, in hexadecimal digits

extern "C" void printInput(int) {
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::signal(SIGABRT, printInput);
  std::ifstream corpus(argv[1]);
  int inputs = 0;
  for (; std::getline(corpus, line); ++inputs) {
    std::vector<std::uint8_t> input;
    for (std::size_t i = 0; i + 1 < line.size(); i += 2) {
      input.push_back(static_cast<std::uint8_t>(std::stoi(line.substr(i, 2), nullptr, 16)));
    }
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
  std::printf("%d inputs\n", inputs);
  return inputs > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
