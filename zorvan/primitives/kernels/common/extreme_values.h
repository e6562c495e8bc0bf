#pragma once

#include <limits>

namespace Zorvan::Primitives {
namespace {

/// The limits of a type as constants: calls of std::numeric_limits would leave its functions in the objects
/// of every variant.
template <class T>
constexpr T lowest = std::numeric_limits<T>::lowest();
template <class T>
constexpr T highest = std::numeric_limits<T>::max();
template <class T>
constexpr T infinite = std::numeric_limits<T>::infinity();
template <class T>
constexpr T quietNaN = std::numeric_limits<T>::quiet_NaN();

}  // namespace
}  // namespace Zorvan::Primitives
