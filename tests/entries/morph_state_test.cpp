// The state of morphology, byte for byte: records, tables and flags, in memory of exactly the reported size.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/EntryTests.h"
#include "tests/support/Guarded.h"
#include "tests/support/MorphCall.h"
#include "tests/support/Random.h"

namespace Zorvan::Test {
namespace {

using namespace Primitives;

/// The record by its definition, written one value at a time over the memory's previous bytes.
class ExpectedState {
 public:
  ExpectedState(const unsigned char* before, std::size_t bytes, const unsigned char* home)
      : bytes_(before, before + bytes), home_(home) {}

  template <class T>
  void put(std::size_t offset, T value) {
    std::memcpy(bytes_.data() + offset, &value, sizeof value);
  }
  const std::vector<unsigned char>& bytes() const { return bytes_; }

  /// `mask(row, column)` is the padded mask.
  template <class Mask>
  void record(std::size_t at, int w, int h, Mask mask) {
    const int W = w | 1, H = h | 1;
    const std::size_t cells = at + 136, columns = cells + static_cast<std::size_t>(W * H),
                      runs = columns + static_cast<std::size_t>(2 * (W + 1) * H);
    bool allSet = true, noneSet = true, contiguous = true;
    std::vector<int> rowCounts(static_cast<std::size_t>(H)), columnCounts(static_cast<std::size_t>(W));
    for (int r = 0; r < H; ++r) {
      std::string row;
      int listed = 0;
      for (int c = 0; c < W; ++c) {
        const bool set = mask(r, c);
        row += set ? '#' : '.';
        (set ? noneSet : allSet) = false;
        put(cells + static_cast<std::size_t>(r * W + c), static_cast<u8>(set ? 255 : 0));
        if (!set) continue;
        ++rowCounts[static_cast<std::size_t>(r)];
        ++columnCounts[static_cast<std::size_t>(c)];
        put(columns + static_cast<std::size_t>(2 * (r * (W + 1) + ++listed)), static_cast<u16>(c));
      }
      put(columns + static_cast<std::size_t>(2 * r * (W + 1)), static_cast<u16>(listed));
      if (!contiguous) continue;  // the run table ends at the row that broke the rule
      const std::size_t first = row.find('#');
      const std::size_t end = first == std::string::npos ? first : row.find('.', first);
      const std::size_t cut = end == std::string::npos ? row.size() : end;
      put(runs + static_cast<std::size_t>(4 * r),
          static_cast<u16>(first == std::string::npos ? 0 : cut - first));
      put(runs + static_cast<std::size_t>(4 * r + 2),
          static_cast<u16>(first == std::string::npos ? 0xFFFF : first));
      if (end != std::string::npos && row.find('#', end) != std::string::npos) contiguous = false;
    }
    const int row = onlyFull(rowCounts, H), column = onlyFull(columnCounts, W);
    const bool cross = row >= 0 && column >= 0 && W >= 2 && H >= 2;
    if (cross) {
      put(runs, static_cast<u16>(row));
      put(runs + 2, static_cast<u16>(column));
    }
    const bool emptyEdge = rowCounts.front() == 0 || rowCounts.back() == 0 || columnCounts.front() == 0 ||
                           columnCounts.back() == 0;
    const std::string picture(drawing(W, H, mask));
    const std::uint32_t known = picture == ".#.\n###\n.#.\n"                       ? 0x100
                                : picture == "..#..\n.###.\n#####\n.###.\n..#..\n" ? 0x300
                                : picture == "...#...\n.#####.\n.#####.\n#######\n.#####.\n.#####.\n...#...\n"
                                    ? 0x500
                                    : 0;
    put(at, home_ + cells);
    put(at + 8, W);
    put(at + 12, H);
    put(at + 16, w / 2);
    put(at + 20, h / 2);
    put(at + 24, home_ + columns);
    put(at + 32, contiguous ? 1 : 0);
    put(at + 40, home_ + runs);
    put(at + 48, (allSet ? 2u : 0u) | (noneSet ? 4u : 0u) | (emptyEdge ? 8u : 0u) | (contiguous ? 16u : 0u) |
                     (cross ? 32u : 0u) | known);
    put(at + 52, cross ? 1 : 0);
    put(at + 56, known != 0 ? 1 : 0);
  }

  const unsigned char* home() const { return home_; }

 private:
  static int onlyFull(const std::vector<int>& counts, int full) {
    int found = -1;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (counts[i] == full) {
        if (found >= 0) return -1;
        found = static_cast<int>(i);
      } else if (counts[i] > 1) {
        return -1;
      }
    }
    return found;
  }
  template <class Mask>
  static std::string drawing(int W, int H, Mask mask) {
    std::string text;
    for (int r = 0; r < H; ++r, text += '\n') {
      for (int c = 0; c < W; ++c) text += mask(r, c) ? '#' : '.';
    }
    return text;
  }

  std::vector<unsigned char> bytes_;
  const unsigned char* home_;
};

std::vector<MorphMaskCells> masks() {
  Random random(5);
  std::vector<MorphMaskCells> all;
  for (const char* text : {".#.###.#.", "###......", "#.#......", "#..#..###", "........."}) {
    MorphMaskCells mask = emptyMask({3, 3});
    for (std::size_t i = 0; i < 9; ++i) mask.cells[i] = text[i] == '#';
    all.push_back(mask);
  }
  MorphMaskCells tall = emptyMask({3, 5});
  for (int r = 0; r < 5; ++r) tall.at(r, 1) = 1;
  for (int c = 0; c < 3; ++c) tall.at(2, c) = 1;
  all.push_back(tall);
  for (const char* text :
       {"..#...###.#####.###...#..", "...#....#####..#####.#######.#####..#####....#..."}) {
    const int side = text[25] == 0 ? 5 : 7;
    MorphMaskCells mask = emptyMask({side, side});
    for (std::size_t i = 0; i < mask.cells.size(); ++i) mask.cells[i] = text[i] == '#' ? 200 : 0;
    all.push_back(mask);
  }
  for (int width = 1; width < 9; ++width) {
    for (int height = 1; height < 9; ++height) {
      all.push_back(solidMask({width, height}));
      for (const int percent : {20, 60, 95}) {
        MorphMaskCells mask = emptyMask({width, height});
        for (u8& cell : mask.cells)
          cell = random.below(100) < percent ? static_cast<u8>(1 + random.below(255)) : 0;
        all.push_back(mask);
      }
    }
  }
  all.push_back(solidMask({40, 33}));
  return all;
}

constexpr Placement placements[] = {
    {Placement::Edge::front, 0}, {Placement::Edge::back, 0}, {Placement::Edge::inside, 7}};

template <class T, class Spec>
void fillState(const MorphMaskCells& mask, const Placement& placement) {
  const int w = mask.size.width, h = mask.size.height, W = w | 1, H = h | 1;
  int specBytes = 0, bufferBytes = 0;
  ASSERT_EQ((MorphState<Spec, T>::sizes({20, 10}, mask.size, &specBytes, &bufferBytes)), 0);
  std::vector<u8> cells = mask.cells;  // with the cells after the last one
  Random random(9);
  while (cells.size() < static_cast<std::size_t>(W * H)) cells.push_back(static_cast<u8>(random.below(2)));

  const Block state(0, static_cast<std::size_t>(specBytes), placement, 3);
  const Block untouched(1, static_cast<std::size_t>(specBytes), placement, 3);
  ExpectedState expected(untouched.data(), untouched.size(), state.data());
  const auto asGiven = [&](int r, int c) {
    const int row = r - (H - h), column = c - (W - w);
    return row >= 0 && column >= 0 && cells[static_cast<std::size_t>(row * w + column)] != 0;
  };
  if constexpr (std::is_same_v<Spec, MorphSpec>) {
    EXPECT_EQ(specBytes, W * H + 4 * H * (W + 1) + 136);
    expected.record(0, w, h, asGiven);
  } else {
    const std::size_t S = static_cast<std::size_t>(W * H + 4 * H * (W + 1) + 136);
    EXPECT_EQ(static_cast<std::size_t>(specBytes), static_cast<std::size_t>(W * H) + 2 * S + 64);
    const std::vector<u8> rotated(cells.rbegin(), cells.rend());
    expected.put(0, expected.home() + 64);
    expected.put(8, expected.home() + 64 + S);
    expected.record(64, w, h, asGiven);
    expected.record(64 + S, w, h, [&](int r, int c) {
      return r < h && c < w && rotated[static_cast<std::size_t>(r * w + c)] != 0;
    });
    for (std::size_t i = 0; i < rotated.size(); ++i) expected.put(64 + 2 * S + i, rotated[i]);
  }
  u8 buffer = 77;
  ASSERT_EQ((MorphState<Spec, T>::fill({20, 10}, cells.data(), mask.size,
                                       reinterpret_cast<Spec*>(state.data()), &buffer)),
            0);
  EXPECT_EQ(buffer, 77);
  const std::vector<unsigned char> got(state.data(), state.data() + state.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    ASSERT_EQ(int{got[i]}, int{expected.bytes()[i]}) << "byte " << i << ", mask " << w << " by " << h;
  }
  std::memcpy(state.data(), untouched.data(), state.size());
  EXPECT_TRUE(state.sameBytes(untouched)) << "something around the record was written";
}

template <class Types>
class EachState : public testing::Test {};
template <class Pixel, class Record>
struct StateOf {
  using T = Pixel;
  using Spec = Record;
};
using AllStates = testing::Types<StateOf<u8, MorphSpec>, StateOf<float, MorphSpec>, StateOf<u8, MorphAdvSpec>,
                                 StateOf<float, MorphAdvSpec>>;
TYPED_TEST_SUITE(EachState, AllStates);

TYPED_TEST(EachState, IsTheRecordByteForByte) {
  for (const MorphMaskCells& mask : masks()) {
    for (const Placement& placement : placements) {
      fillState<typename TypeParam::T, typename TypeParam::Spec>(mask, placement);
      if (testing::Test::HasFailure()) return;
    }
  }
}

TYPED_TEST(EachState, RefusesPointersBeforeSizes) {
  using State = MorphState<typename TypeParam::Spec, typename TypeParam::T>;
  int spec = 5, buffer = 6;
  const Size good{3, 3}, bad{0, 3};
  EXPECT_EQ(State::sizes(bad, good, nullptr, &buffer), -8);
  EXPECT_EQ(State::sizes(bad, good, &spec, nullptr), -8);
  u8 memory[2000] = {};
  const u8 mask[9] = {};
  auto* const record = reinterpret_cast<typename TypeParam::Spec*>(memory);
  EXPECT_EQ(State::fill(bad, nullptr, good, record, memory), -8);
  EXPECT_EQ(State::fill(bad, mask, good, nullptr, memory), -8);
  EXPECT_EQ(State::fill(bad, mask, good, record, nullptr), -8);
  for (const Size size : {Size{0, 3}, Size{3, 0}, Size{-1, 3}, Size{3, INT_MIN}}) {
    EXPECT_EQ(State::sizes(size, good, &spec, &buffer), -6);
    EXPECT_EQ(State::sizes(good, size, &spec, &buffer), -6);
    EXPECT_EQ(State::fill(size, mask, good, record, memory), -6);
    EXPECT_EQ(State::fill(good, mask, size, record, memory), -6);
  }
  EXPECT_EQ(spec, 5);
  EXPECT_EQ(buffer, 6);
  for (const u8 byte : memory) ASSERT_EQ(byte, 0);
}

TYPED_TEST(EachState, SizesWrapOn32Bits) {
  using State = MorphState<typename TypeParam::Spec, typename TypeParam::T>;
  int spec = 0, buffer = 0;
  EXPECT_EQ(State::sizes({INT_MAX, INT_MAX}, {INT_MAX, INT_MAX}, &spec, &buffer), 0);
  EXPECT_EQ(State::sizes({1, 1}, {65537, 65537}, &spec, &buffer), 0);
  const bool single = std::is_same_v<typename TypeParam::Spec, MorphSpec>;
  const std::int64_t W = 65537, S = W * W + 4 * W * (W + 1) + 136;
  EXPECT_EQ(spec, static_cast<std::int32_t>(static_cast<std::uint32_t>(single ? S : W * W + 2 * S + 64)));
}

std::uint32_t flagsOf(const MorphMaskCells& mask) {
  std::vector<u8> state(4000);
  u8 buffer = 0;
  ippiMorphologyBorderInit_8u_C1R({1, 1}, mask.cells.data(), mask.size,
                                  reinterpret_cast<MorphSpec*>(state.data()), &buffer);
  std::uint32_t flags = 0;
  std::memcpy(&flags, state.data() + 48, 4);
  return flags;
}

TEST(MorphFlags, OfWellKnownMasks) {
  EXPECT_EQ(flagsOf(solidMask({3, 3})), 18u);
  EXPECT_EQ(flagsOf(solidMask({1, 1})), 18u);
  EXPECT_EQ(flagsOf(emptyMask({3, 3})), 0x1Cu);
  const auto all = masks();
  EXPECT_EQ(flagsOf(all[0]), 0x130u);
  EXPECT_EQ(flagsOf(all[6]), 0x310u);
  EXPECT_EQ(flagsOf(all[7]), 0x510u);
  EXPECT_EQ(flagsOf(all[5]) & 0x20, 0u);  // a full row and a full column, but not a square
}

}  // namespace
}  // namespace Zorvan::Test

// One routine serves all variants of these entries: the tests above are all there is.
void Zorvan::Test::registerEntryTests() {}
