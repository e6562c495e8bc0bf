#pragma once

// The vendor of the processor, from the registers of cpuid leaf 0. Compared as integers: a library call might
// use vector registers. Internal linkage, since the objects of each variant may include this.

#include <cstdint>

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Primitives {
namespace {

constexpr std::uint32_t vendorWord(const char (&text)[5]) {
  return std::uint32_t{static_cast<unsigned char>(text[0])} |
         std::uint32_t{static_cast<unsigned char>(text[1])} << 8 |
         std::uint32_t{static_cast<unsigned char>(text[2])} << 16 |
         std::uint32_t{static_cast<unsigned char>(text[3])} << 24;
}

/// The vendor string is in EBX, EDX, ECX, in this order.
constexpr bool isGenuineIntel(const std::uint32_t* leaf0) {
  return leaf0[Ebx] == vendorWord("Genu") && leaf0[Edx] == vendorWord("ineI") &&
         leaf0[Ecx] == vendorWord("ntel");
}

}  // namespace
}  // namespace Zorvan::Primitives
