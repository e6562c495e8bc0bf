#pragma once

// A processor whose answers the test sets. The source of this header defines coreCpuid and coreXgetbv, so
// that a program that is linked with it never reads the real processor.

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <utility>

namespace Zorvan::Test {

/// EAX, EBX, ECX, EDX.
using Registers = std::array<std::uint32_t, 4>;

class FakeProcessor {
 public:
  /// A processor of GenuineIntel with only the leaves 0 and 1, without a feature.
  FakeProcessor();

  void setHighestLeaf(std::uint32_t leaf);
  void setHighestExtendedLeaf(std::uint32_t leaf);
  /// Twelve characters.
  void setVendor(const char* vendor);
  /// Leaf 4 answers by sub-leaf; all others for sub-leaf 0 only.
  void setLeaf(std::uint32_t leaf, const Registers& registers, std::uint32_t subleaf = 0);
  void setBit(std::uint32_t leaf, int reg, int bit);
  void clearBit(std::uint32_t leaf, int reg, int bit);
  /// The answer of xgetbv for register 0.
  void setSavedState(std::uint64_t state) { savedState_ = state; }

  /// Zeros for a leaf that was not set, all ones for one above the highest leaf, so that a use of it shows.
  Registers answer(std::uint32_t leaf, std::uint32_t subleaf);
  std::uint64_t answerXgetbv(std::uint32_t reg);

  int cpuidCalls() const { return cpuidCalls_; }
  int xgetbvCalls() const { return xgetbvCalls_; }
  /// Calls of xgetbv that would trap on a real processor, or that read another register.
  int faults() const { return faults_; }

 private:
  std::map<std::pair<std::uint32_t, std::uint32_t>, Registers> leaves_;
  std::uint64_t savedState_ = 0;
  std::atomic<int> cpuidCalls_{0}, xgetbvCalls_{0}, faults_{0};
};

/// Makes the library read this processor from now on, and resets its state.
void fakeWith(FakeProcessor& processor);

/// Resets the process-wide state to its initial values.
void resetProcessorState();

}  // namespace Zorvan::Test
