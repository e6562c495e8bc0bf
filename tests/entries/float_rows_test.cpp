// Rows of floats that all begin on a boundary of 32 bytes, but only each second one on a cache line.

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "tests/support/EntryTests.h"

namespace Zorvan::Test {
namespace {

constexpr int width = 64, height = 4, stepInFloats = width + 8, step = stepInFloats * 4;

struct Image {
  alignas(64) float pixels[stepInFloats * height];
};

Image image() {
  Image made;
  for (int i = 0; i < stepInFloats * height; ++i) made.pixels[i] = static_cast<float>(i * i % 1000);
  return made;
}

void expectSame(const Image& got, const Image& want) { EXPECT_EQ(std::memcmp(&got, &want, sizeof got), 0); }

void sums(int variant) {
  const Image src = image();
  Image want{}, got{};
  const auto add = Primitives::table.ippiAdd_32f_C1R.routine[1 + variant];
  for (const auto& [routine, dst] : {std::pair{&Reference::ippiAdd_32f_C1R, &want}, std::pair{add, &got}}) {
    EXPECT_EQ(routine(src.pixels, step, src.pixels, step, dst->pixels, step, {width, height}), 0);
  }
  expectSame(got, want);
}

void constants(int variant) {
  Image want = image(), got = image();
  EXPECT_EQ(Reference::ippiAddC_32f_C1IR(0.3F, want.pixels, step, {width, height}), 0);
  const auto add = Primitives::table.ippiAddC_32f_C1IR.routine[1 + variant];
  EXPECT_EQ(add(0.3F, got.pixels, step, {width, height}), 0);
  expectSame(got, want);
}

}  // namespace

void registerEntryTests() {
  registerForEachVariant("FloatRows", "ippiAdd_32f_C1R", sums);
  registerForEachVariant("FloatRows", "ippiAddC_32f_C1IR", constants);
}

}  // namespace Zorvan::Test
