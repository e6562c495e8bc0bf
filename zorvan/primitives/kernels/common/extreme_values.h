#pragma once

#include <limits>

namespace Zorvan::Primitives {
namespace {

/// The limits of a type as constants: a call of a function that computes them would leave the function in
/// every variant's object.
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
