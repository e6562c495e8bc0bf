// Calls of Statistic.

#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

// The facade converts a mean to the pixel type, toward zero.
#define EXTREME(T, Name, bits)                                                                        \
  CALL(RegionCall<T>{#Name "<" #T ">",                                                                \
                     [](IN, Rect rect, IppIMemory<T>& a) {                                            \
                       UNUSED, numbers = {static_cast<double>(Statistic<T>::Name(a, rect))};          \
                     },                                                                               \
                     [](IN, Size roi, Operand<T> a) {                                                 \
                       T result{};                                                                    \
                       const int status = ENTRY(Name##_##bits##_C1R)(a.pixels, a.step, roi, &result); \
                       UNUSED, numbers = {static_cast<double>(result)};                               \
                       return status;                                                                 \
                     }})
#define STATISTIC(T, bits, hint)                                                                           \
  EXTREME(T, Min, bits), EXTREME(T, Max, bits),                                                            \
      CALL(RegionCall<T>{"Mean<" #T ">",                                                                   \
                         [](IN, Rect rect, IppIMemory<T>& a) {                                             \
                           UNUSED, numbers = {static_cast<double>(Statistic<T>::Mean(a, rect))};           \
                         },                                                                                \
                         [](IN, Size roi, Operand<T> a) {                                                  \
                           double mean = 0;                                                                \
                           const int status = ENTRY(Mean_##bits##_C1R)(a.pixels, a.step, roi, &mean hint); \
                           UNUSED, numbers = {static_cast<double>(static_cast<T>(mean))};                  \
                           return status;                                                                  \
                         },                                                                                \
                         Sharing::none, estimate}),                                                        \
      CALL(RegionCall<T, u8>{"Mean<" #T "> under a mask",                                                  \
                             [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                   \
                               UNUSED, numbers = {static_cast<double>(Statistic<T>::Mean(a, mask, rect))}; \
                             },                                                                            \
                             [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                            \
                               double mean = 0;                                                            \
                               const int status = ENTRY(Mean_##bits##_C1MR)(a.pixels, a.step, mask.pixels, \
                                                                            mask.step, roi, &mean);        \
                               UNUSED, numbers = {static_cast<double>(static_cast<T>(mean))};              \
                               return status;                                                              \
                             },                                                                            \
                             Sharing::oneImage, estimate})
#define SECOND , 2

#define MASKED_STATISTIC(T, bits)                                                                            \
  CALL(RegionCall<T, u8>{"MeanAndStandardDeviationWithMask<" #T ">",                                         \
                         [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                         \
                           const auto found = Statistic<T>::MeanAndStandardDeviationWithMask(a, mask, rect); \
                           UNUSED, numbers = {found.Mean, found.StdDev};                                     \
                         },                                                                                  \
                         [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                                  \
                           double mean = 0, deviation = 0;                                                   \
                           const int status = ENTRY(Mean_StdDev_##bits##_C1MR)(                              \
                               a.pixels, a.step, mask.pixels, mask.step, roi, &mean, &deviation);            \
                           UNUSED, numbers = {mean, deviation};                                              \
                           return status;                                                                    \
                         },                                                                                  \
                         Sharing::oneImage, 1.0 / 256}),                                                     \
      CALL(RegionCall<T, u8>{                                                                                \
          "MinMaxIndexWithMask<" #T ">",                                                                     \
          [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                                        \
            const auto found = Statistic<T>::MinMaxIndexWithMask(a, mask, rect);                             \
            UNUSED, numbers = {found.Min,                                                                    \
                               found.Max,                                                                    \
                               double(found.MinIndex.x),                                                     \
                               double(found.MinIndex.y),                                                     \
                               double(found.MaxIndex.x),                                                     \
                               double(found.MaxIndex.y)};                                                    \
          },                                                                                                 \
          [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                                                 \
            float low = 0, high = 0;                                                                         \
            Point lowAt{}, highAt{};                                                                         \
            const int status = ENTRY(MinMaxIndx_##bits##_C1MR)(a.pixels, a.step, mask.pixels, mask.step,     \
                                                               roi, &low, &high, &lowAt, &highAt);           \
            UNUSED,                                                                                          \
                numbers = {low, high, double(lowAt.x), double(lowAt.y), double(highAt.x), double(highAt.y)}; \
            return status;                                                                                   \
          },                                                                                                 \
          Sharing::oneImage})

}  // namespace

std::vector<Run> statisticCalls() {
  return {STATISTIC(u8, 8u, ), STATISTIC(u16, 16u, ), STATISTIC(float, 32f, SECOND), MASKED_STATISTIC(u8, 8u),
          MASKED_STATISTIC(float, 32f)};
}

}  // namespace Zorvan::Test
