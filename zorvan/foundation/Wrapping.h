#pragma once

#include <cstdint>

namespace Zorvan::Primitives {

/// Sums and products on 32 bits that wrap, as the figures of regions and steps do. Always inlined: code for
/// one instruction set must not leave a copy behind that the linker could give to another.
[[gnu::always_inline]] constexpr std::int32_t wrappedSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
[[gnu::always_inline]] constexpr std::int32_t wrappedProduct(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

}  // namespace Zorvan::Primitives
