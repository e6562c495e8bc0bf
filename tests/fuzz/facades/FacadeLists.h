#pragma once

// The lists of calls, one for each facade, and the forms of their lines.

#include <vector>

#include "tests/fuzz/facades/FacadeFuzz.h"
#include "tests/reference/Reference.h"
#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/ipp.h"

namespace Zorvan::Test {

using Run = void (*)(FuzzedDataProvider&);

std::vector<Run> initializerCalls();
std::vector<Run> arithmeticCalls();
std::vector<Run> logicalCalls();
std::vector<Run> statisticCalls();
std::vector<Run> morphologyCalls();
std::vector<Run> filteringCalls();
std::vector<Run> computervisionCalls();

/// An entry of floats, called with the scale factor that only entries of integers have.
template <class... Parameters>
auto unscaled(int (*entry)(Parameters...)) {
  return [entry](Parameters... parameters, int) { return entry(parameters...); };
}

#define ENTRY(name) Reference::ippi##name
#define SCALED(name, place)                                                                                 \
  ByPixelType {                                                                                             \
    ENTRY(name##_8u_##place##RSfs), ENTRY(name##_16u_##place##RSfs), unscaled(ENTRY(name##_32f_##place##R)) \
  }

constexpr double estimate = 1.0 / (1 << 20);  // results of estimates: some units in the last place

template <class Call>
void runOne(FuzzedDataProvider& input, const Call& call) {
  Fuzz(input).run(call);
}

#define IN const Fixed &fixed, Numbers &numbers
#define UNUSED static_cast<void>(fixed), static_cast<void>(numbers)

#define THREE_IMAGES(Class, Facade, T, tolerance, entry)                                                   \
  [](FuzzedDataProvider& input) {                                                                          \
    runOne(input, RegionCall<T, T, T>{#Class "<" #T ">::" #Facade " of three images",                      \
                                      [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b,                \
                                         IppIMemory<T>& c) { UNUSED, Class<T>::Facade(a, b, c, rect); },   \
                                      [](IN, Size roi, Operand<T> a, Operand<T> b, Operand<T> c) {         \
                                        UNUSED;                                                            \
                                        return entry(a.pixels, a.step, b.pixels, b.step, c.pixels, c.step, \
                                                     roi, 0);                                              \
                                      },                                                                   \
                                      Sharing::oneImage, tolerance});                                      \
  }
#define TWO_IMAGES(Class, Facade, T, tolerance, entry)                                         \
  [](FuzzedDataProvider& input) {                                                              \
    runOne(input, RegionCall<T, T>{#Class "<" #T ">::" #Facade " of two images",               \
                                   [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {     \
                                     UNUSED, Class<T>::Facade(a, b, rect);                     \
                                   },                                                          \
                                   [](IN, Size roi, Operand<T> a, Operand<T> b) {              \
                                     UNUSED;                                                   \
                                     return entry(a.pixels, a.step, b.pixels, b.step, roi, 0); \
                                   },                                                          \
                                   Sharing::oneImage, tolerance});                             \
  }
#define ONE_IMAGE(Class, Facade, T, tolerance, entry)                                                       \
  [](FuzzedDataProvider& input) {                                                                           \
    runOne(input, RegionCall<T>{#Class "<" #T ">::" #Facade " of one image",                                \
                                [](IN, Rect rect, IppIMemory<T>& a) { UNUSED, Class<T>::Facade(a, rect); }, \
                                [](IN, Size roi, Operand<T> a) {                                            \
                                  UNUSED;                                                                   \
                                  return entry(a.pixels, a.step, roi, 0);                                   \
                                },                                                                          \
                                Sharing::none, tolerance});                                                 \
  }

/// A call of which the facade and the definition are written out.
#define CALL(...) [](FuzzedDataProvider& input) { runOne(input, __VA_ARGS__); }

}  // namespace Zorvan::Test
