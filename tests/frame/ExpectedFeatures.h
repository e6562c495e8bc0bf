#pragma once

#include <cstdint>

namespace Zorvan::Test {

constexpr std::uint64_t bit(int number) { return std::uint64_t{1} << number; }

/// A bit of the mask and the bit of a cpuid leaf from which it comes.
struct FeatureSource {
  int maskBit;
  std::uint32_t leaf;
  char reg;
  int bit;
};

inline constexpr std::uint32_t extendedLeaf1 = 0x80000001;

// Repeated on purpose: the list that the library expands is under test.
inline constexpr FeatureSource featureSources[] = {
    {0, 1, 'd', 23},  {1, 1, 'd', 25},  {2, 1, 'd', 26},  {3, 1, 'c', 0},
    {4, 1, 'c', 9},   {5, 1, 'c', 22},  {6, 1, 'c', 19},  {7, 1, 'c', 20},
    {8, 1, 'c', 28},  {10, 1, 'c', 25}, {11, 1, 'c', 1},  {13, 1, 'c', 30},
    {14, 1, 'c', 29}, {16, 7, 'b', 19}, {17, 7, 'b', 18}, {18, extendedLeaf1, 'c', 8},
    {19, 7, 'b', 29}, {20, 7, 'b', 16}, {21, 7, 'b', 28}, {22, 7, 'b', 27},
    {23, 7, 'b', 26}, {24, 7, 'b', 30}, {25, 7, 'b', 17}, {26, 7, 'b', 31},
    {27, 7, 'c', 1},  {28, 7, 'b', 14}, {29, 7, 'd', 3},  {30, 7, 'd', 2},
    {32, 7, 'b', 21}, {34, 7, 'c', 14}, {35, 7, 'c', 12},
};

}  // namespace Zorvan::Test
