#pragma once

// The comparison of one call with its reference, for every test that has both.

#include <cstddef>
#include <cstring>
#include <span>
#include <string>

#include "tests/support/Faults.h"
#include "tests/support/Guarded.h"

namespace Zorvan::Test {

/// Of work memory, which a call leaves with any content, only the bytes around are compared.
inline bool sameAround(const Block& expected, Block& actual) {
  std::memcpy(actual.data(), expected.data(), expected.size());
  return expected.sameBytes(actual);
}

/// Runs the call under test and returns its first difference from the reference, or an empty text: a fault,
/// the status, or a block. `agree(expected, actual)` compares blocks. It may replace accepted bytes of
/// `actual` with the expected ones, so that the text shows the first byte that it does not accept.
template <class Status, class Run, class Agree>
std::string differenceOf(Status expectedStatus, Run run, std::span<const Block> expected,
                         std::span<Block> actual, Agree agree) {
  Status status{};
  if (const std::string fault = faultOf([&] { status = run(); }); !fault.empty()) return fault;
  if (status != expectedStatus) {
    return "status " + std::to_string(status) + " instead of " + std::to_string(expectedStatus);
  }
  for (std::size_t b = 0; b < expected.size(); ++b) {
    if (!agree(expected[b], actual[b])) {
      return "block " + std::to_string(b) + ": " + expected[b].difference(actual[b]);
    }
  }
  return "";
}

}  // namespace Zorvan::Test
