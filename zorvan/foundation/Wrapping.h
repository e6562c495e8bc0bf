#pragma once

#include <cstdint>

namespace Zorvan::Primitives {

/// Sums and products that wrap on 32 bits. Always inlined: otherwise the linker could choose the copy of one
/// instruction set for callers of another.
[[gnu::always_inline]] constexpr std::int32_t wrappedSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
[[gnu::always_inline]] constexpr std::int32_t wrappedProduct(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

}  // namespace Zorvan::Primitives
