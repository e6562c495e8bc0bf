#pragma once

// The pictures of the stored results. Whole-number arithmetic draws them, so that they are the same
// everywhere.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/Random.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Test {

enum class Motif { empty, full, ramp, chequers, discs, noise, sparse, anyBits, special };

struct Picture {
  Motif motif;
  Size size;

  /// Finite floats, and no negative zero.
  bool isFinite() const { return motif != Motif::special; }
  /// Floats are whole numbers from 0 to 255, whose sums and products are exact.
  bool isWhole() const { return isFinite() && motif != Motif::anyBits; }
  /// Bytes are odd or zero: no quotient lies halfway between two numbers.
  bool isOdd() const {
    return motif == Motif::empty || motif == Motif::full || motif == Motif::chequers || motif == Motif::discs;
  }

  std::string text() const {
    constexpr const char* names[] = {"empty", "full",   "ramp",     "chequers", "discs",
                                     "noise", "sparse", "any bits", "special"};
    return std::string(names[static_cast<int>(motif)]) + " " + std::to_string(size.width) + "x" +
           std::to_string(size.height);
  }
};

constexpr Picture pictures[] = {
    {Motif::noise, {1, 1}},      {Motif::noise, {2, 1}},      {Motif::ramp, {1, 5}},
    {Motif::discs, {7, 7}},      {Motif::noise, {7, 20}},     {Motif::chequers, {16, 16}},
    {Motif::anyBits, {17, 3}},   {Motif::discs, {31, 33}},    {Motif::ramp, {64, 9}},
    {Motif::sparse, {65, 21}},   {Motif::noise, {83, 22}},    {Motif::empty, {100, 41}},
    {Motif::full, {101, 40}},    {Motif::special, {127, 15}}, {Motif::special, {40, 47}},
    {Motif::anyBits, {129, 31}}, {Motif::discs, {301, 210}},  {Motif::noise, {521, 263}},
    {Motif::sparse, {20011, 3}}, {Motif::discs, {1031, 509}},
};

/// A byte of a motif of whole numbers.
inline int byteOf(Motif motif, Size size, int x, int y, Random& random) {
  switch (motif) {
    case Motif::full:
      return 255;
    case Motif::ramp:
      return (3 * x + 5 * y) % 256;
    case Motif::chequers:
      return (x / 3 + y / 3) % 2 != 0 ? 201 : 0;
    case Motif::discs: {
      const int side = 20 + (size.width + size.height) / 40;
      const int dx = x % side - side / 2, dy = y % side - side / 2;
      const bool isInside = 9 * (dx * dx + dy * dy) < side * side;
      return isInside ? 31 + 2 * ((x / side + y / side) % 100) : 0;
    }
    case Motif::noise:
      return random.below(256);
    case Motif::sparse:
      return random.below(8) == 0 ? random.below(256) : 0;
    default:
      return 0;
  }
}

template <class T>
T pixelOf(Motif motif, Size size, int x, int y, Random& random) {
  using Limits = std::numeric_limits<T>;
  if (motif == Motif::special) {
    if constexpr (std::is_same_v<T, float>) {
      const float values[] = {0.0F,
                              -0.0F,
                              1.0F,
                              -1.0F,
                              0.5F,
                              2.5F,
                              255.5F,
                              16777217.0F,
                              Limits::max(),
                              Limits::lowest(),
                              Limits::min(),
                              -Limits::min(),
                              1e-41F,
                              -1e-41F,
                              3.7F,
                              Limits::infinity(),
                              -Limits::infinity(),
                              Limits::quiet_NaN()};
      return random.oneOf(values);
    } else {
      const T values[] = {T(0),   T(1),          T(-1),         T(2),     T(127),  T(128),
                          T(255), Limits::min(), Limits::max(), T(32767), T(32768)};
      return random.oneOf(values);
    }
  }
  if (motif == Motif::anyBits) {
    if constexpr (std::is_same_v<T, float>) {
      // Numbers from 2 to the power of -20 to 2 to the power of 20, of either sign.
      const std::uint64_t bits = random.next();
      const auto exponent = static_cast<std::uint32_t>(107 + (bits >> 40) % 41);
      const std::uint32_t word = (static_cast<std::uint32_t>(bits) & 0x807FFFFFU) | exponent << 23;
      float value;
      std::memcpy(&value, &word, sizeof value);
      return value;
    } else {
      return static_cast<T>(random.next());
    }
  }
  const int byte = byteOf(motif, size, x, y, random);
  if constexpr (std::is_same_v<T, s16>) return static_cast<T>(257 * byte - 32768);
  if constexpr (std::is_same_v<T, u16>) return static_cast<T>(257 * byte);
  if constexpr (std::is_same_v<T, int>) return 8 * byte - 1000;
  return static_cast<T>(byte);
}

/// The pixels of image number `image` of a call, row by row: the picture, then the mirrored picture with
/// other noise, then sparse noise, which selects few pixels if it is a mask.
template <class T>
const std::vector<T>& pixelsOf(const Picture& picture, int image) {
  static std::map<std::pair<const Picture*, int>, std::vector<T>> drawn;
  std::vector<T>& pixels = drawn[{&picture, image}];
  if (!pixels.empty()) return pixels;
  Random random(static_cast<std::uint64_t>(1 + image + 8 * (&picture - pictures)));
  const Motif motif = image < 2 ? picture.motif : Motif::sparse;
  const auto [width, height] = picture.size;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      pixels.push_back(pixelOf<T>(motif, picture.size, image == 0 ? x : width - 1 - x, y, random));
    }
  }
  return pixels;
}

}  // namespace Zorvan::Test
