#pragma once

// A processor that the test makes up. The source next to this defines coreCpuid and coreXgetbv, so that a
// program that is linked with it never reads the real processor.

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
  /// A processor of the named vendor with nothing but leaf 0 and leaf 1, both without a feature.
  FakeProcessor();

  void setHighestLeaf(std::uint32_t leaf);
  void setHighestExtendedLeaf(std::uint32_t leaf);
  /// Twelve characters.
  void setVendor(const char* vendor);
  /// Leaf 4 answers by sub-leaf; all others for sub-leaf 0 only.
  void setLeaf(std::uint32_t leaf, const Registers& registers, std::uint32_t subleaf = 0);
  void setBit(std::uint32_t leaf, int reg, int bit);
  void clearBit(std::uint32_t leaf, int reg, int bit);
  /// What xgetbv answers for register 0.
  void setSavedState(std::uint64_t state) { savedState_ = state; }

  /// A leaf that was not set answers zeros, one beyond the highest leaf all ones: whoever uses it is found
  /// out.
  Registers answer(std::uint32_t leaf, std::uint32_t subleaf);
  std::uint64_t answerXgetbv(std::uint32_t reg);

  int cpuidCalls() const { return cpuidCalls_; }
  int xgetbvCalls() const { return xgetbvCalls_; }
  /// Uses of xgetbv on which a real processor would have trapped, or that ask for another register.
  int faults() const { return faults_; }

 private:
  std::map<std::pair<std::uint32_t, std::uint32_t>, Registers> leaves_;
  std::uint64_t savedState_ = 0;
  std::atomic<int> cpuidCalls_{0}, xgetbvCalls_{0}, faults_{0};
};

/// Makes the library ask this processor from now on, and forget all that it knows of another.
void play(FakeProcessor& processor);

/// Puts the process-wide state back to what it is at load.
void forgetProcessor();

}  // namespace Zorvan::Test
