#pragma once

namespace Zorvan::Primitives {
namespace {

/// How a vector is stored, as a template argument.
enum class Stores {
  plain,      ///< at any address
  aligned,    ///< at a multiple of the vector's width
  streaming,  ///< likewise, non-temporal: `fenceStores` ends every path that uses them, but for long sums of
              ///< floats
};

template <Stores stores, class Vector>
[[gnu::always_inline]] inline void storeVector(Vector vector, void* p) {
  if constexpr (stores == Stores::plain) vector.store(p);
  if constexpr (stores == Stores::aligned) vector.storeAligned(p);
  if constexpr (stores == Stores::streaming) vector.stream(p);
}

}  // namespace
}  // namespace Zorvan::Primitives
