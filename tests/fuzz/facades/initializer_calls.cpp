// Calls of Initializer.

#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;
using Ipp::ByPixelType;

#define OF_ALL_TYPES(name)                                                                                \
  (ByPixelType{ENTRY(name##_8u_C1R), ENTRY(name##_16u_C1R), ENTRY(name##_16s_C1R), ENTRY(name##_32s_C1R), \
               ENTRY(name##_32f_C1R)})
#define MASKED_OF_ALL_TYPES(name)                                                     \
  (ByPixelType{ENTRY(name##_8u_C1MR), ENTRY(name##_16u_C1MR), ENTRY(name##_16s_C1MR), \
               ENTRY(name##_32s_C1MR), ENTRY(name##_32f_C1MR)})

#define INITIALIZER(T)                                                                                       \
  CALL(RegionCall<T>{                                                                                        \
      "Fill<" #T ">",                                                                                        \
      [](IN, Rect rect, IppIMemory<T>& a) { UNUSED, Initializer::Fill<T>(a, fixed.as<T>(), rect); },         \
      [](IN, Size roi, Operand<T> a) {                                                                       \
        UNUSED;                                                                                              \
        return OF_ALL_TYPES(Set)(fixed.as<T>(), a.pixels, a.step, roi);                                      \
      }}),                                                                                                   \
      CALL(RegionCall<T, u8>{"FillWithMask<" #T ">",                                                         \
                             [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                     \
                               UNUSED, Initializer::FillWithMask<T>(a, mask, fixed.as<T>(), rect);           \
                             },                                                                              \
                             [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                              \
                               UNUSED;                                                                       \
                               return MASKED_OF_ALL_TYPES(Set)(fixed.as<T>(), a.pixels, a.step, roi,         \
                                                               mask.pixels, mask.step);                      \
                             }}),                                                                            \
      CALL(RegionCall<T, T>{"Copy<" #T ">",                                                                  \
                            [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {                          \
                              UNUSED, Initializer::Copy<T>(a, b, rect);                                      \
                            },                                                                               \
                            [](IN, Size roi, Operand<T> a, Operand<T> b) {                                   \
                              UNUSED;                                                                        \
                              return OF_ALL_TYPES(Copy)(a.pixels, a.step, b.pixels, b.step, roi);            \
                            }}),                                                                             \
      CALL(                                                                                                  \
          RegionCall<T, T, u8>{"CopyWithMask<" #T ">",                                                       \
                               [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<u8>& mask) { \
                                 UNUSED, Initializer::CopyWithMask<T>(a, b, mask, rect);                     \
                               },                                                                            \
                               [](IN, Size roi, Operand<T> a, Operand<T> b, Operand<u8> mask) {              \
                                 UNUSED;                                                                     \
                                 return MASKED_OF_ALL_TYPES(Copy)(a.pixels, a.step, b.pixels, b.step, roi,   \
                                                                  mask.pixels, mask.step);                   \
                               }}),                                                                          \
      CALL(NewImageCall<T, T>{"Copy<" #T "> to a new image",                                                 \
                              [](const Fixed&, Rect rect, bool sizeFromRect, IppIMemory<T>& a) {             \
                                return Initializer::Copy<T>(a, rect, sizeFromRect);                          \
                              },                                                                             \
                              [](IN, Size roi, Operand<T> a, Operand<T> b) {                                 \
                                UNUSED;                                                                      \
                                return OF_ALL_TYPES(Copy)(a.pixels, a.step, b.pixels, b.step, roi);          \
                              },                                                                             \
                              true})

#define CONVERSION(T, entry)                                                        \
  CALL(RegionCall<int, T>{"Convert to " #T,                                         \
                          [](IN, Rect rect, IppIMemory<int>& a, IppIMemory<T>& b) { \
                            UNUSED, Initializer::Convert<int, T>(a, b, rect);       \
                          },                                                        \
                          [](IN, Size roi, Operand<int> a, Operand<T> b) {          \
                            UNUSED;                                                 \
                            return entry(a.pixels, a.step, b.pixels, b.step, roi);  \
                          }})

}  // namespace

std::vector<Run> initializerCalls() {
  return {INITIALIZER(u8),
          INITIALIZER(u16),
          INITIALIZER(s16),
          INITIALIZER(int),
          INITIALIZER(float),
          CONVERSION(u8, ENTRY(Convert_32s8u_C1R)),
          CONVERSION(float, ENTRY(Convert_32s32f_C1R))};
}

}  // namespace Zorvan::Test
