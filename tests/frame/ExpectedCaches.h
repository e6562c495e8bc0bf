#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace Zorvan::Test {

/// The size of the cache that a descriptor byte of leaf 2 stands for, or 0. Repeated on purpose: the list
/// that the library expands is under test.
inline std::array<std::int32_t, 256> sizesOfDescriptors() {
  const std::pair<std::int32_t, std::vector<std::uint32_t>> table[] = {
      {25165824, {0xEC}},
      {18874368, {0xEB}},
      {16777216, {0x4D}},
      {12582912, {0xEA, 0x4C}},
      {8388608, {0xE4, 0xDE, 0x4B, 0x47}},
      {6291456, {0x4E, 0x4A}},
      {4194304, {0xE3, 0xDD, 0xD8, 0x49, 0x29, 0x46}},
      {3145728, {0x48}},
      {2097152, {0xE2, 0xDC, 0xD7, 0xD2, 0x25, 0x7D, 0x85, 0x45}},
      {1048576, {0xD6, 0xD1, 0x23, 0x87, 0x7C, 0x78, 0x84, 0x44}},
      {524288, {0xD0, 0x22, 0x7B, 0x80, 0x86, 0x3E, 0x7F, 0x83, 0x43}},
      {393216, {0x3D}},
      {262144, {0x21, 0x7A, 0x82, 0x3C, 0x3F, 0x42}},
      {196608, {0x3A}},
      {131072, {0x79, 0x39, 0x3B, 0x41}},
  };
  std::array<std::int32_t, 256> sizes{};
  for (const auto& [size, descriptors] : table) {
    for (const std::uint32_t descriptor : descriptors) sizes[descriptor] = size;
  }
  return sizes;
}

}  // namespace Zorvan::Test
