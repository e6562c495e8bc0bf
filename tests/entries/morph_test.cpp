// Erosion, dilation, opening and closing against their definition, in every variant: all forms of masks, all
// borders, regions from one pixel up.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

#include "tests/support/EntryTests.h"
#include "tests/support/Limits.h"
#include "tests/support/MorphCall.h"
#include "tests/support/Options.h"
#include "tests/support/Random.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"

namespace Zorvan::Test {
namespace {

using namespace Primitives;
using namespace Primitives::Morphology;

template <class T, class Spec>
using MorphRoutine = typename MorphCall<T, Spec>::Routine;

/// One entry in one variant, beside its definition.
template <class T, class Spec>
struct Pair {
  MorphRoutine<T, Spec>* reference;
  MorphRoutine<T, Spec>* actual;

  /// False where the two differ.
  bool agreesOn(const MorphCase& c) const {
    const std::string difference = MorphCall<T, Spec>(c).compare(reference, actual);
    if (!difference.empty()) ADD_FAILURE() << difference;
    return difference.empty();
  }
};

// ---- masks ----

MorphMaskCells rowOf(int width) { return solidMask({width, 1}); }
MorphMaskCells columnOf(int height) { return solidMask({1, height}); }

MorphMaskCells crossOf(int side, int row, int column) {
  MorphMaskCells mask = emptyMask({side, side});
  for (int i = 0; i < side; ++i) mask.at(row, i) = mask.at(i, column) = 1;
  return mask;
}

MorphMaskCells drawn(Size size, const char* cells) {
  MorphMaskCells mask = emptyMask(size);
  for (std::size_t i = 0; i < mask.cells.size(); ++i) mask.cells[i] = cells[i] == '#' ? 7 : 0;
  return mask;
}

/// `percent` of the cells.
MorphMaskCells randomMask(Random& random, Size size, int percent) {
  MorphMaskCells mask = emptyMask(size);
  for (u8& cell : mask.cells) cell = random.below(100) < percent ? static_cast<u8>(1 + random.below(255)) : 0;
  return mask;
}

/// One run at a random place in each row.
MorphMaskCells randomRuns(Random& random, Size size) {
  MorphMaskCells mask = emptyMask(size);
  for (int r = 0; r < size.height; ++r) {
    const int from = random.below(size.width), to = random.below(size.width + 1);
    for (int c = from; c < to; ++c) mask.at(r, c) = 1;
  }
  return mask;
}

std::vector<MorphMaskCells> allMasks() {
  Random random(3);
  std::vector<MorphMaskCells> masks;
  for (const Size size : {Size{1, 1}, Size{2, 2}, Size{3, 3}, Size{4, 4}, Size{5, 5}, Size{3, 5}, Size{5, 3},
                          Size{2, 7}, Size{7, 7}, Size{9, 9}, Size{7, 5}, Size{5, 9}, Size{3, 7}}) {
    masks.push_back(solidMask(size));
  }
  for (const int n : {2, 3, 5, 6, 9, 17}) masks.push_back(rowOf(n)), masks.push_back(columnOf(n));
  masks.push_back(drawn({3, 3}, ".#.###.#."));
  masks.push_back(drawn({5, 5}, "..#...###.#####.###...#.."));
  masks.push_back(drawn({7, 7}, "...#....#####..#####.#######.#####..#####....#..."));
  masks.push_back(drawn({3, 3}, "#..#..###"));  // one row and one column that share a corner
  masks.push_back(crossOf(5, 2, 2));
  masks.push_back(crossOf(5, 4, 1));
  masks.push_back(crossOf(9, 0, 8));
  masks.push_back(crossOf(2, 0, 1));
  masks.push_back(drawn({3, 1}, "#.#"));
  masks.push_back(drawn({5, 3}, "#...#.....#...#"));
  masks.push_back(drawn({3, 5}, ".#..#.###.#..#."));
  masks.push_back(emptyMask({3, 3}));
  for (const Size size : {Size{3, 3}, Size{4, 5}, Size{6, 2}, Size{7, 7}, Size{8, 8}, Size{15, 3},
                          Size{17, 4}, Size{33, 3}, Size{3, 19}}) {
    masks.push_back(randomMask(random, size, 50));
    masks.push_back(randomRuns(random, size));
  }
  masks.push_back(randomMask(random, {13, 13}, 60));  // below the limit of listed cells
  masks.push_back(randomMask(random, {13, 13}, 85));  // above it
  masks.push_back(randomMask(random, {21, 20}, 50));
  masks.push_back(solidMask({31, 31}));
  masks.push_back(randomRuns(random, {31, 31}));
  return masks;
}

constexpr int borderTypes[] = {1, 3, 5, 6};
constexpr Content contents[] = {Content::random, Content::runs, Content::special, Content::halfEmpty};

MorphCase drawCase(Random& random, const MorphMaskCells& mask, Size roi) {
  const int sides = random.below(3) == 0 ? 0 : random.below(16) << 4;
  const Placement placements[] = {{Placement::Edge::front, 0},
                                  {Placement::Edge::back, 0},
                                  {Placement::Edge::inside, 1 + random.below(63)}};
  return {mask,
          roi,
          random.below(24) == 0 ? 240 : random.oneOf(borderTypes) | sides,
          4 * random.below(3),
          drawnContent(random, contents),
          random.oneOf(placements),
          random.next()};
}

int repeats(int few, int quick, int full) {
  return options().level == Level::few ? few : options().level == Level::quick ? quick : full;
}

/// Regions around the mask's size, then wide ones for the blocks and bands.
Size drawRegion(Random& random, Size mask, bool small) {
  if (small) return {1 + random.below(mask.width + 6), 1 + random.below(mask.height + 6)};
  return {mask.width + random.below(160), mask.height + random.below(12)};
}

template <class T, class Spec>
void manyMasks(const Pair<T, Spec>& pair) {
  Random random(options().seed);
  int differences = 0;
  for (const MorphMaskCells& mask : allMasks()) {
    const bool large = mask.size.width * mask.size.height > 300;
    for (int i = repeats(1, large ? 2 : 8, large ? 6 : 60); i > 0; --i) {
      const Size roi = drawRegion(random, mask.size, i % 3 != 0);
      differences += !pair.agreesOn(drawCase(random, mask, roi));
      if (differences >= 3) return;
    }
  }
}

MorphMaskCells drawnMask(Random& random) {
  const int most = random.below(16) == 0 ? 19 : 5;
  const Size size{1 + random.below(most), 1 + random.below(most)};
  switch (random.below(4)) {
    case 0:
      return randomMask(random, size, 10 + random.below(90));
    case 1:
      return randomRuns(random, size);
    case 2:
      return crossOf(size.width, random.below(size.width), random.below(size.width));
    default:
      return solidMask(size);
  }
}

/// Any mask on any small region.
template <class T, class Spec>
void drawnCases(const Pair<T, Spec>& pair) {
  bool agrees = true;
  forEachDraw([&](Random& random) {
    const MorphMaskCells mask = drawnMask(random);
    const Size roi{1 + random.below(random.below(8) == 0 ? 140 : 33), 1 + random.below(12)};
    agrees = agrees && pair.agreesOn(drawCase(random, mask, roi));
  });
}

/// Every small region with every border word, for masks with every form of stripes.
template <class T, class Spec>
void everyWord(const Pair<T, Spec>& pair) {
  Random random(options().seed);
  const int stride = repeats(5, 2, 1);
  for (const MorphMaskCells& mask :
       {solidMask({3, 3}), solidMask({5, 5}), solidMask({1, 4}), drawn({3, 3}, "##..#...#")}) {
    for (int width = 1; width <= mask.size.width + 5; width += 1 + random.below(stride)) {
      for (int height = 1; height <= mask.size.height + 5; height += 1 + random.below(stride)) {
        for (const int type : borderTypes) {
          for (int sides = 0; sides <= 0xF0; sides += 0x10) {
            const Placement::Edge edge = sides & 0x10 ? Placement::Edge::back : Placement::Edge::front;
            if (!pair.agreesOn({mask, {width, height}, type | sides, 0, Content::random, {edge, 0}, 9}))
              return;
          }
        }
      }
    }
  }
}

/// Rows of one vector, of each width of vectors.
template <class T, class Spec>
void rowsOfOneVector(const Pair<T, Spec>& pair) {
  Random random(options().seed);
  for (const int bytes : {16, 32, 64}) {
    for (const int side : {3, 5, 7, 9}) {
      for (int i = repeats(1, 2, 12); i > 0; --i) {
        const Size roi{bytes / static_cast<int>(sizeof(T)), 1 + random.below(12)};
        if (!pair.agreesOn(drawCase(random, solidMask({side, side}), roi))) return;
      }
    }
  }
}

/// Every width at every offset, in rows of results that lie alike.
template <class T, class Spec>
void everyOffset(const Pair<T, Spec>& pair) {
  const std::vector<MorphMaskCells> masks = allMasks();
  const MorphMaskCells solids[] = {solidMask({3, 3}), solidMask({5, 5}), solidMask({7, 7}),
                                   solidMask({9, 9}), solidMask({4, 4}), solidMask({2, 7}),
                                   solidMask({5, 3}), solidMask({3, 9})};
  bool agrees = true;
  forEachOffset([&](int width, int offset, Random& random) {
    const MorphMaskCells& mask = random.below(2) != 0 ? random.oneOf(solids) : random.oneOf(masks);
    MorphCase c = drawCase(random, mask, {width, drawnHeight(random, width)});
    c.gap = -width * static_cast<int>(sizeof(T)) & 63;
    c.placement = {Placement::Edge::inside, offset};
    agrees = agrees && pair.agreesOn(c);
  });
}

/// Rows longer than a band of the ring, and images higher than one long row.
template <class T, class Spec>
void largeRegions(const Pair<T, Spec>& pair) {
  Random random(options().seed);
  for (const auto& [mask, roi] :
       {std::pair{solidMask({3, 3}), Size{1030, 9}}, std::pair{solidMask({5, 5}), Size{6007, 9}},
        std::pair{solidMask({9, 9}), Size{4001, 12}}, std::pair{solidMask({31, 31}), Size{700, 36}},
        std::pair{solidMask({5, 5}), Size{9, 1100}}, std::pair{crossOf(5, 1, 3), Size{11, 1100}},
        std::pair{randomRuns(random, {5, 5}), Size{1030, 12}}}) {
    MorphCase c = drawCase(random, mask, roi);
    c.word = 1;
    if (!pair.agreesOn(c)) return;
  }
}

/// Rows longer than a strip.
template <class T, class Spec>
void strips(const Pair<T, Spec>& pair) {
  Random random(options().seed);
  for (const int side : {3, 9}) {
    const Size roi{70012 / static_cast<int>(sizeof(T)), side + 2};
    EXPECT_LT(planStripColumns(roi.width, side + 1, sizeof(T)), roi.width);
    for (int i = repeats(1, 1, 6); i > 0; --i) {
      if (!pair.agreesOn(drawCase(random, solidMask({side, side}), roi))) return;
    }
  }
}

/// Results of streaming stores, also from addresses before a whole vector.
template <class T, class Spec>
void streams(const Pair<T, Spec>& pair) {
  constexpr int e = sizeof(T), shifts[] = {0, 4, 60};
  Random random(options().seed);
  const Size roi{70016 / e, 105};
  for (const int vectorBytes : {16, 64}) {
    EXPECT_TRUE(planStreaming(resultBytes(roi, e), 70016, 70016, vectorBytes));
  }
  for (const Size mask : {Size{3, 3}, Size{3, 5}}) {
    for (int i = repeats(0, 1, 4); i > 0; --i) {
      MorphCase c = drawCase(random, solidMask(mask), roi);
      c.placement = {Placement::Edge::inside, random.oneOf(shifts)};
      c.gap = 0;
      if (!pair.agreesOn(c)) return;
    }
  }
}

/// Regions that the two passes divide into bands of rows, with all types of borders and sides in memory.
template <class T>
void bands(const Pair<T, MorphAdvSpec>& pair) {
  constexpr int e = sizeof(T);
  Random random(options().seed);
  const std::pair<MorphMaskCells, Size> cases[] = {{solidMask({3, 3}), {2200 / e, 240}},
                                                   {solidMask({4, 4}), {9000 / e, 52}},
                                                   {solidMask({5, 9}), {24000 / e, 36}},
                                                   {solidMask({1, 31}), {2900 / e, 126}},
                                                   {solidMask({3, 1}), {20000 / e, 26}},
                                                   {drawn({3, 3}, "#..#..###"), {4100 / e, 124}},
                                                   {randomMask(random, {5, 4}, 60), {9000 / e, 52}},
                                                   {emptyMask({3, 3}), {9000 / e, 56}},
                                                   {solidMask({3, 3}), {10, 16400}}};
  for (const auto& [mask, roi] : cases) {
    const int step = (roi.width * e + 31) & ~31;
    EXPECT_GT(planBands(roi, {mask.size.width | 1, mask.size.height | 1}, step), 1);
    for (int i = repeats(1, 1, 4); i > 0; --i) {
      if (!pair.agreesOn(drawCase(random, mask, roi))) return;
    }
  }
}

/// A result that overlaps its source: the source is read completely before the result is written.
template <class T>
void inPlace(MorphRoutine<T, MorphAdvSpec>* reference, MorphRoutine<T, MorphAdvSpec>* actual) {
  const Size roi{4096, 130};
  const MorphMaskCells mask = solidMask({5, 5});
  int specBytes = 0, bufferBytes = 0;
  MorphState<MorphAdvSpec, T>::sizes(roi, mask.size, &specBytes, &bufferBytes);
  std::vector<u8> state(static_cast<std::size_t>(specBytes)), work(static_cast<std::size_t>(bufferBytes));
  auto* const spec = reinterpret_cast<MorphAdvSpec*>(state.data());
  MorphState<MorphAdvSpec, T>::fill(roi, mask.cells.data(), mask.size, spec, work.data());
  constexpr int step = 4096 * sizeof(T);
  std::vector<T> src(4096 * 133), expected(4096 * 130);
  fillPixels<T>(src.data(), src.size(), Content::runs, options().seed);
  for (T& pixel : src) pixel = pixel != pixel ? T(0) : pixel;
  for (const std::size_t row : {0, 3}) {  // the result begins with the source or after its first rows
    std::vector<T> image = src;
    EXPECT_EQ(reference(src.data(), step, expected.data(), step, roi, 1, T(0), spec, work.data()), 0);
    EXPECT_EQ(actual(image.data(), step, &image[4096 * row], step, roi, 1, T(0), spec, work.data()), 0);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), image.begin() + 4096 * std::ptrdiff_t(row)));
  }
}

/// A result right below its source. Where the rows below the region are in memory, they are the first rows of
/// the result: they too are read before the result is written.
template <class T>
void belowItsSource(MorphRoutine<T, MorphAdvSpec>* reference, MorphRoutine<T, MorphAdvSpec>* actual) {
  constexpr Size roi{4092, 130};
  constexpr int pitch = 4096, step = pitch * sizeof(T), reach = 2;
  const MorphMaskCells mask = solidMask({2 * reach + 1, 2 * reach + 1});
  int specBytes = 0, bufferBytes = 0;
  MorphState<MorphAdvSpec, T>::sizes(roi, mask.size, &specBytes, &bufferBytes);
  std::vector<u8> state(static_cast<std::size_t>(specBytes)), work(static_cast<std::size_t>(bufferBytes));
  auto* const spec = reinterpret_cast<MorphAdvSpec*>(state.data());
  MorphState<MorphAdvSpec, T>::fill(roi, mask.cells.data(), mask.size, spec, work.data());
  std::vector<T> src(pitch * (2 * roi.height + 2 * reach)), expected = src;
  fillPixels<T>(src.data(), src.size(), Content::runs, options().seed);
  for (T& pixel : src) pixel = pixel != pixel ? T(0) : pixel;
  constexpr std::ptrdiff_t first = pitch * reach + reach, below = first + pitch * roi.height;
  // Of a negative word, bits 0 to 7 say what those of any other do.
  for (const int word : {0x21, 0xF1 - 0x100, 0x26 - 0x100}) {
    std::vector<T> image = src;
    EXPECT_EQ(reference(&src[first], step, expected.data(), step, roi, word, T(9), spec, work.data()), 0);
    EXPECT_EQ(actual(&image[first], step, &image[below], step, roi, word, T(9), spec, work.data()), 0);
    for (int row = 0; row < roi.height; ++row) {
      ASSERT_TRUE(
          std::equal(&expected[row * pitch], &expected[row * pitch + roi.width], &image[below + row * pitch]))
          << "word " << word << ", row " << row;
    }
  }
}

/// As many cells as the list takes, and one more: both forms compute the same image.
template <class T>
void listedAndTabled(MorphRoutine<T, MorphSpec>* reference, MorphRoutine<T, MorphSpec>* actual) {
  MorphMaskCells mask = emptyMask({17, 17});
  int cells = 0;
  for (int i = 0; i < 17 * 17 && cells < 127; i += 2, ++cells) mask.cells[static_cast<std::size_t>(i)] = 1;
  const Pair<T, MorphSpec> pair{reference, actual};
  MorphCase c{mask, {140, 21}, 1};
  EXPECT_TRUE(pair.agreesOn(c));
  c.mask.cells[17 * 17 - 1] = 1;
  EXPECT_TRUE(pair.agreesOn(c));
  c.mask.cells[17 * 17 - 3] = 1;
  EXPECT_TRUE(pair.agreesOn(c));
}

/// Pointers, then the size, then steps, then the word; nothing is written.
template <class T, class Spec>
void refusals(MorphRoutine<T, Spec>* reference, MorphRoutine<T, Spec>* actual) {
  constexpr int e = sizeof(T);
  const MorphMaskCells mask = solidMask({3, 3});
  int specBytes = 0, bufferBytes = 0;
  const Size roi{4, 4};
  MorphState<Spec, T>::sizes(roi, mask.size, &specBytes, &bufferBytes);
  std::vector<u8> state(static_cast<std::size_t>(specBytes)), work(static_cast<std::size_t>(bufferBytes));
  auto* const spec = reinterpret_cast<Spec*>(state.data());
  MorphState<Spec, T>::fill(roi, mask.cells.data(), mask.size, spec, work.data());
  std::vector<T> src(64, T(5)), around(100, T(5));
  const auto expectBoth = [&](int expected, const T* from, int fromStep, bool toNull, int toStep, Size size,
                              int word, const Spec* with, u8* buffer) {
    for (auto* routine : {reference, actual}) {
      std::vector<T> dst(64, T(9));
      EXPECT_EQ(
          routine(from, fromStep, toNull ? nullptr : dst.data(), toStep, size, word, T(0), with, buffer),
          expected);
      EXPECT_TRUE(expected == 0 || dst == std::vector<T>(64, T(9)));
    }
  };
  u8* const buffer = work.data();
  const Size empty{0, 4};
  expectBoth(-8, nullptr, 0, false, 0, empty, 0, spec, buffer);
  expectBoth(-8, src.data(), 0, true, 0, empty, 0, spec, buffer);
  expectBoth(-8, src.data(), 0, false, 0, empty, 0, nullptr, buffer);
  expectBoth(-8, src.data(), 0, false, 0, empty, 0, spec, nullptr);
  for (const Size bad : {Size{0, 4}, Size{4, 0}, Size{-1, 4}, Size{4, INT_MIN}}) {
    expectBoth(-6, src.data(), 0, false, 0, bad, 0, spec, buffer);
  }
  const int row = 4 * e, odd = row + 2;
  for (const int bad : {row - 1, 0, -row, INT_MIN}) {
    expectBoth(-16, src.data(), bad, false, odd, roi, 0, spec, buffer);
    expectBoth(-16, src.data(), odd, false, bad, roi, 0, spec, buffer);
  }
  if (e == 4) {
    expectBoth(-16, src.data(), INT_MAX, false, INT_MAX, {INT_MAX, 4}, 0, spec, buffer);  // not in 32 bits
    expectBoth(-108, src.data(), odd, false, row, roi, 0, spec, buffer);
    expectBoth(-108, src.data(), row, false, odd, roi, 0, spec, buffer);
  }
  for (const int word : {0, 2, 4, 7, 8, 15, 0x10, 0xE0, 0xF2, 0x1F0, 0xFF0, 4096, 4097, INT_MAX}) {
    expectBoth(-225, src.data(), row, false, row, roi, word, spec, buffer);
  }
  // 240 with a bit from 8 on is a word without a type for the single operations and the first pass
  const T* const inner = around.data() + 22;
  for (const int word : {1, 3, 5, 6, 240, 241, 0xFF1}) {
    expectBoth(0, inner, 10 * e, false, row, roi, word, spec, buffer);
  }
}

/// Sides in memory in bits 8 to 11 of the word: one entry takes them, the others do not.
template <class T>
void wordFolding(MorphRoutine<T, MorphSpec>* reference, MorphRoutine<T, MorphSpec>* actual) {
  for (int sides = 0; sides <= 0xF00; sides += 0x100) {
    // readable on all sides, so that both readings of the word are safe to run
    const MorphMaskCells mask = solidMask({3, 3});
    int specBytes = 0, bufferBytes = 0;
    MorphState<MorphSpec, T>::sizes({6, 6}, mask.size, &specBytes, &bufferBytes);
    std::vector<u8> state(static_cast<std::size_t>(specBytes)), work(static_cast<std::size_t>(bufferBytes));
    auto* const spec = reinterpret_cast<MorphSpec*>(state.data());
    MorphState<MorphSpec, T>::fill({6, 6}, mask.cells.data(), mask.size, spec, work.data());
    std::vector<T> image(64, T(50));
    image[0] = image[3] = image[8 * 4 + 7] = image[63] = T(90);
    image[7] = image[8 * 3] = image[8 * 7 + 2] = T(10);
    std::vector<T> expected(36), got(36);
    constexpr int e = sizeof(T);
    EXPECT_EQ(reference(&image[9], 8 * e, expected.data(), 6 * e, {6, 6}, 1 | sides, T(0), spec, work.data()),
              0);
    EXPECT_EQ(actual(&image[9], 8 * e, got.data(), 6 * e, {6, 6}, 1 | sides, T(0), spec, work.data()), 0);
    EXPECT_EQ(got, expected) << sides;
  }
}

/// The result for an image of equal pixels.
std::vector<float> resultFor(float pixel, const MorphMaskCells& mask,
                             MorphRoutine<float, MorphSpec>* routine) {
  const Size roi{21, 9};
  int specBytes = 0, bufferBytes = 0;
  MorphState<MorphSpec, float>::sizes(roi, mask.size, &specBytes, &bufferBytes);
  std::vector<u8> state(static_cast<std::size_t>(specBytes)), work(static_cast<std::size_t>(bufferBytes));
  auto* const spec = reinterpret_cast<MorphSpec*>(state.data());
  MorphState<MorphSpec, float>::fill(roi, mask.cells.data(), mask.size, spec, work.data());
  const std::vector<float> src(189, pixel);
  std::vector<float> dst(189);
  EXPECT_EQ(routine(src.data(), 84, dst.data(), 84, roi, 1, 0, spec, work.data()), 0);
  return dst;
}

/// Infinities never pass the start value of the accumulation. A NaN replaces the value before it.
void startValues(int variant) {
  const float infinity = std::numeric_limits<float>::infinity(), most = std::numeric_limits<float>::max();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  auto* const dilate = table.ippiMorphDilateBorder_32f_C1R.routine[1 + variant];
  auto* const erode = table.ippiMorphErodeBorder_32f_C1R.routine[1 + variant];
  for (const MorphMaskCells& mask :
       {solidMask({3, 3}), solidMask({5, 5}), solidMask({1, 3}), solidMask({3, 1}), crossOf(5, 2, 1),
        drawn({3, 1}, "#.#"), drawn({3, 3}, ".#.###.#.")}) {
    EXPECT_EQ(resultFor(-infinity, mask, dilate), std::vector<float>(189, -most));
    EXPECT_EQ(resultFor(infinity, mask, erode), std::vector<float>(189, most));
    for (auto* const routine : {dilate, erode}) {
      const std::vector<float> nans = resultFor(nan, mask, routine);
      EXPECT_TRUE(std::ranges::all_of(nans, [](float pixel) { return std::isnan(pixel); }));
    }
  }
}

template <class T, class Spec>
void registerMorph(const char* name, MorphRoutine<T, Spec>* reference,
                   const Row<MorphRoutine<T, Spec>>& row) {
  const auto add = [&](const char* what, auto body) {
    registerForEachVariant("Morphology", std::string(name) + what,
                           [=, &row](int variant) { body(reference, row.routine[1 + variant]); });
  };
  const auto onPair = [](auto body) {
    return [body](auto* expected, auto* actual) { body(Pair<T, Spec>{expected, actual}); };
  };
  registerDrawnCases("Morphology", std::string(name) + "_drawnCases", [=, &row](int variant) {
    drawnCases(Pair<T, Spec>{reference, row.routine[1 + variant]});
  });
  add("", onPair(manyMasks<T, Spec>));
  add("_everyWord", onPair(everyWord<T, Spec>));
  add("_rowsOfOneVector", onPair(rowsOfOneVector<T, Spec>));
  if (limitsAreLowered) {
    add("_everyOffset", onPair(everyOffset<T, Spec>));
  } else {
    add("_largeRegions", onPair(largeRegions<T, Spec>));
    add("_strips", onPair(strips<T, Spec>));
    add("_streams", onPair(streams<T, Spec>));
  }
  add("_refusals", refusals<T, Spec>);
  if constexpr (std::is_same_v<Spec, MorphSpec>) {
    add("_listedAndTabled", listedAndTabled<T>);
    add("_wordFolding", wordFolding<T>);
  } else {
    if (!limitsAreLowered) add("_bands", onPair(bands<T>));
    add("_inPlace", inPlace<T>);
    add("_belowItsSource", belowItsSource<T>);
  }
}

template <class T, class Spec>
void registerNamed(const char* name, int (*reference)(const T*, int, T*, int, Size, int, T, const Spec*, u8*),
                   const Row<int(const T*, int, T*, int, Size, int, T, const Spec*, u8*)>& row) {
  registerMorph<T, Spec>(name, reference, row);
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
#define REGISTER(name, ...) registerNamed(#name, &Reference::name, Primitives::table.name);
#define ENTRY(...) REGISTER(__VA_ARGS__)
#define COMMON_ENTRY(...)
#include "zorvan/primitives/frame/entries/Morphology.def"
#undef ENTRY
#undef COMMON_ENTRY
#undef REGISTER
  registerForEachVariant("Morphology", "startValues", startValues);
}
