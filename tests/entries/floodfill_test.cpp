// Flood fill in every variant against the breadth-first reference: the pixels, the bytes between and around
// the rows, the record and the status. The work memory has the size that is enough for every image and ends
// at an unreadable page.

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

#include "tests/entries/FillShapes.h"
#include "tests/support/EntryTests.h"
#include "tests/support/Limits.h"
#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"

namespace Zorvan::Test {
namespace {

using Primitives::_IppiConnectedComp;

template <class T>
using FillRoutine = int(T*, int, Size, Point, T, _IppiConnectedComp*, u8*);

template <class T>
struct FillEntry {
  const char* name;
  FillRoutine<T>* reference;
  const Primitives::Row<FillRoutine<T>>* row;
};

/// The image, the record and the work memory of one call.
template <class T>
struct FillCall {
  Block blocks[3];
  Block &image = blocks[0], &region = blocks[1], &work = blocks[2];
  Size roi;
  int step;

  FillCall(int side, Size size, int moreBytes, Placement placement, std::uint64_t seed)
      : blocks{{side, imageBytes(size, moreBytes), placement, seed},
               {2 + side, sizeof(_IppiConnectedComp), {Placement::Edge::inside, 0}, seed},
               {4 + side,
                static_cast<std::size_t>(Primitives::fillBufferBytes(Primitives::mostFillRecords(size))),
                {Placement::Edge::back, 0},
                seed}},
        roi(size),
        step(size.width * static_cast<int>(sizeof(T)) + moreBytes) {}

  static std::size_t imageBytes(Size size, int moreBytes) {
    const int rowBytes = size.width * static_cast<int>(sizeof(T));
    return static_cast<std::size_t>((size.height - 1) * (rowBytes + moreBytes) + rowBytes);
  }

  /// Also the gaps between the rows hold `gap`: a fill must not flow through them.
  template <class PixelAt>
  void draw(T gap, PixelAt pixelAt) {
    for (std::size_t at = 0; at + sizeof(T) <= image.size(); at += sizeof(T)) {
      std::memcpy(image.data() + at, &gap, sizeof gap);
    }
    for (int y = 0; y < roi.height; ++y) {
      for (int x = 0; x < roi.width; ++x) {
        const T pixel = pixelAt(x, y);
        std::memcpy(image.data() + y * step + x * static_cast<int>(sizeof(T)), &pixel, sizeof pixel);
      }
    }
  }

  int run(FillRoutine<T>* routine, Point seed, T value) {
    return routine(reinterpret_cast<T*>(image.data()), step, roi, seed, value,
                   reinterpret_cast<_IppiConnectedComp*>(region.data()), work.data());
  }
};

/// Draws the same image twice and fills one by the reference, the other by the entry. False after a
/// difference.
template <class T, class PixelAt>
bool agreeOn(const FillEntry<T>& entry, int variant, Size roi, int moreBytes, Placement placement, Point seed,
             T gap, T value, PixelAt pixelAt, const std::string& what) {
  FillCall<T> expected(0, roi, moreBytes, placement, 5), actual(1, roi, moreBytes, placement, 5);
  expected.draw(gap, pixelAt);
  actual.draw(gap, pixelAt);
  const int expectedStatus = expected.run(entry.reference, seed, value);
  const std::string difference = differenceOf(
      expectedStatus, [&] { return actual.run(entry.row->routine[1 + variant], seed, value); },
      expected.blocks, actual.blocks,
      [&](const Block& want, Block& got) {
        return &want == &expected.work ? sameAround(want, got) : want.sameBytes(got);
      });
  if (difference.empty()) return true;
  ADD_FAILURE() << difference << "\n  " << what << ", region " << roi.width << " by " << roi.height
                << ", seed " << seed.x << ", " << seed.y << ", " << moreBytes << " bytes between rows";
  return false;
}

template <class T>
constexpr T oldPixel = T(7);
template <class T>
constexpr T otherPixel = T(9);
template <class T>
constexpr T newPixel = T(200);

/// With a random number of bytes between the rows or a given one, and at a random place or a given offset.
template <class T>
bool agreeOnShape(const FillEntry<T>& entry, int variant, FillShape shape, Size roi, Point seed,
                  Random& random, int givenMoreBytes = -1, int givenOffset = -1) {
  const std::uint64_t noise = random.next();
  std::vector<T> pixels;
  Random draw(noise);
  for (int y = 0; y < roi.height; ++y) {
    for (int x = 0; x < roi.width; ++x) {
      pixels.push_back(isInShape(shape, x, y, roi, draw) ? oldPixel<T> : otherPixel<T>);
    }
  }
  const int anyMoreBytes = static_cast<int>(sizeof(T)) * (random.below(3) == 0 ? 0 : random.below(70));
  const int moreBytes = givenMoreBytes >= 0 ? givenMoreBytes : anyMoreBytes;
  const Placement placements[] = {
      {Placement::Edge::front, 0}, {Placement::Edge::back, 0}, {Placement::Edge::inside, random.below(64)}};
  const Placement given{Placement::Edge::inside, givenOffset};
  return agreeOn<T>(
      entry, variant, roi, moreBytes, givenOffset >= 0 ? given : random.oneOf(placements), seed, oldPixel<T>,
      newPixel<T>, [&](int x, int y) { return pixels[static_cast<std::size_t>(y * roi.width + x)]; },
      "shape " + std::to_string(static_cast<int>(shape)));
}

/// Every shape at every small size from every seed, and at larger sizes from some.
template <class T>
void shapes(const FillEntry<T>& entry, int variant) {
  Random random(options().seed);
  const bool full = options().level == Level::full;
  const std::vector<Size> small = {{1, 1}, {2, 1}, {1, 2}, {3, 3}, {7, 1},
                                   {1, 7}, {5, 3}, {4, 5}, {9, 7}, {19, 4}};
  const std::vector<int> widths = {15, 16, 17, 18, 31,  32,  33,  47,  48, 63,
                                   64, 65, 66, 80, 127, 128, 129, 200, 257};
  for (const FillShape shape : allFillShapes) {
    for (const Size roi : small) {
      for (int y = 0; y < roi.height; ++y) {
        for (int x = 0; x < roi.width; ++x) {
          if (!agreeOnShape(entry, variant, shape, roi, {x, y}, random)) return;
        }
      }
    }
    for (const int width : widths) {
      for (const int height : {1, 2, 3, 11, 40}) {
        const Size roi{width, height};
        const int seeds = full ? 12 : 3;
        for (int i = 0; i < seeds; ++i) {
          const Point seed{i == 0 ? 0 : random.below(width), i == 1 ? height - 1 : random.below(height)};
          if (!agreeOnShape(entry, variant, shape, roi, seed, random)) return;
        }
      }
    }
    if (!agreeOnShape(entry, variant, shape, {1, 300}, {0, 150}, random)) return;
    if (!agreeOnShape(entry, variant, shape, {301, 210}, {150, 105}, random)) return;
  }
}

/// Every width at every offset, half of them with steps of whole cache lines.
template <class T>
void everyOffset(const FillEntry<T>& entry, int variant) {
  bool agrees = true;
  forEachOffset([&](int width, int offset, Random& random) {
    const Size roi{width, drawnHeight(random, width)};
    const Point seed{random.below(roi.width), random.below(roi.height)};
    const int moreBytes = random.below(2) == 0 ? -1 : -width * static_cast<int>(sizeof(T)) & 63;
    agrees = agrees &&
             agreeOnShape(entry, variant, random.oneOf(allFillShapes), roi, seed, random, moreBytes, offset);
  });
}

/// Any shape, or the given pixels.
template <class T>
void drawnCases(const FillEntry<T>& entry, int variant) {
  bool agrees = true;
  forEachDraw([&](Random& random) {
    const Size roi = drawnSize(random);
    const Point seed{random.below(roi.width), random.below(roi.height)};
    if (givenPixels.empty() || random.below(2) == 0) {
      const FillShape shape = random.oneOf(allFillShapes);
      agrees = agrees && agreeOnShape(entry, variant, shape, roi, seed, random);
      return;
    }
    const int moreBytes = static_cast<int>(sizeof(T)) * random.below(70);
    const auto pixelAt = [roi](int x, int y) {
      const auto index = static_cast<std::uint64_t>(y * roi.width + x);
      return (givenPixel<u8>(index / 8) >> index % 8 & 1) != 0 ? otherPixel<T> : oldPixel<T>;
    };
    agrees = agrees && agreeOn<T>(entry, variant, roi, moreBytes, {Placement::Edge::inside, random.below(64)},
                                  seed, oldPixel<T>, newPixel<T>, pixelAt, "given pixels");
  });
}

/// Rows that lie whole pages apart, whose columns are not followed in registers.
template <class T>
void pagedRows(const FillEntry<T>& entry, int variant) {
  Random random(options().seed + 2);
  for (const FillShape shape : allFillShapes) {
    for (const Size roi : {Size{1, 40}, Size{2, 9}, Size{9, 40}, Size{33, 21}, Size{130, 24}}) {
      for (const int step : {4096, 8192}) {
        const Point seed{random.below(roi.width), random.below(roi.height)};
        const int moreBytes = step - roi.width * static_cast<int>(sizeof(T));
        if (!agreeOnShape(entry, variant, shape, roi, seed, random, moreBytes)) return;
      }
    }
  }
}

/// All images of two colours at some small sizes, from every seed.
template <class T>
void allSmallImages(const FillEntry<T>& entry, int variant) {
  std::vector<Size> sizes = {{3, 3}, {2, 4}, {5, 2}};
  if (options().level == Level::full) sizes.insert(sizes.end(), {{4, 3}, {3, 4}, {2, 5}, {11, 1}});
  for (const Size roi : sizes) {
    for (int image = 0; image < 1 << (roi.width * roi.height); ++image) {
      for (int at = 0; at < roi.width * roi.height; ++at) {
        const Point seed{at % roi.width, at / roi.width};
        const auto pixelAt = [&](int x, int y) {
          return (image >> (y * roi.width + x) & 1) != 0 ? oldPixel<T> : otherPixel<T>;
        };
        if (!agreeOn<T>(entry, variant, roi, 0, {Placement::Edge::back, 0}, seed, oldPixel<T>, newPixel<T>,
                        pixelAt, "image " + std::to_string(image))) {
          return;
        }
      }
    }
  }
}

/// Images of the values that the format treats specially, filled with such values too: extremes, and for
/// floats NaN, both zeros, infinities and denormals.
template <class T>
void specialPixels(const FillEntry<T>& entry, int variant) {
  Random random(options().seed + 1);
  const auto& special = specialValues<T>();
  const int rounds = options().level == Level::full ? 20000 : 3000;
  for (int i = 0; i < rounds; ++i) {
    const T colours[] = {random.oneOf(special), random.oneOf(special), random.oneOf(special)};
    const int mostOf = random.below(3);
    const Size roi{1 + random.below(90), 1 + random.below(6)};
    std::vector<T> pixels;
    for (int n = 0; n < roi.width * roi.height; ++n) {
      pixels.push_back(colours[random.below(8) != 0 ? mostOf : random.below(3)]);
    }
    const T value = random.below(2) != 0 ? random.oneOf(special) : random.oneOf(colours);
    const Point seed{random.below(roi.width), random.below(roi.height)};
    const auto pixelAt = [&](int x, int y) { return pixels[static_cast<std::size_t>(y * roi.width + x)]; };
    if (!agreeOn<T>(entry, variant, roi, 0, {Placement::Edge::inside, random.below(64)}, seed, colours[0],
                    value, pixelAt, "special values")) {
      return;
    }
  }
}

/// Every combination of bad arguments returns the status of the first that is tested, and changes nothing.
template <class T>
void refusals(const FillEntry<T>& entry, int variant) {
  constexpr int pixelBytes = sizeof(T);
  for (int null = -1; null < 3; ++null) {
    for (const Size roi :
         {Size{5, 2}, Size{0, 2}, Size{5, 0}, Size{-1, 2}, Size{5, -3}, Size{0x7FFFFFFF, 2}}) {
      for (const int step :
           {5 * pixelBytes, 6 * pixelBytes, 5 * pixelBytes + 1, 5 * pixelBytes - 1, 0, -64}) {
        for (const Point seed :
             {Point{0, 0}, Point{4, 1}, Point{5, 1}, Point{4, 2}, Point{-1, 0}, Point{0, -1}}) {
          FillCall<T> expected(0, {6, 3}, 0, {Placement::Edge::inside, 0}, 9),
              actual(1, {6, 3}, 0, {Placement::Edge::inside, 0}, 9);
          const auto call = [&](FillCall<T>& side, FillRoutine<T>* routine) {
            return routine(null == 0 ? nullptr : reinterpret_cast<T*>(side.image.data()), step, roi, seed,
                           T(3),
                           null == 1 ? nullptr : reinterpret_cast<_IppiConnectedComp*>(side.region.data()),
                           null == 2 ? nullptr : side.work.data());
          };
          EXPECT_EQ(call(expected, entry.reference), call(actual, entry.row->routine[1 + variant]))
              << "null " << null << ", region " << roi.width << " by " << roi.height << ", step " << step
              << ", seed " << seed.x << ", " << seed.y;
          EXPECT_TRUE(expected.image.sameBytes(actual.image));
          EXPECT_TRUE(expected.region.sameBytes(actual.region));
        }
      }
    }
  }
}

/// One row, or an old value equal to the new one, uses no work memory: any pointer will do.
template <class T>
void untouchedMemory(const FillEntry<T>& entry, int variant) {
  auto* const nowhere = reinterpret_cast<u8*>(std::uintptr_t{64});
  const auto routine = entry.row->routine[1 + variant];
  T pixels[6] = {T(4), T(4), T(4), T(4), T(1), T(1)};
  _IppiConnectedComp region{-1, {-2, -3, -4}, {-5, -6, -7, -8}};
  EXPECT_EQ(routine(pixels, 3 * sizeof(T), {3, 2}, {1, 0}, T(4), &region, nowhere), 0);
  EXPECT_EQ(region.area, -1);
  EXPECT_EQ(region.rect.height, -8);
  EXPECT_EQ(routine(pixels, 6 * sizeof(T), {6, 1}, {1, 0}, T(5), &region, nowhere), 0);
  EXPECT_EQ(region.area, 4);
  EXPECT_EQ(region.value[0], 5);
  EXPECT_EQ(region.value[1], 0);
  EXPECT_EQ(region.value[2], 0);
  EXPECT_EQ(region.rect.width, 4);
  EXPECT_EQ(region.rect.height, 1);
}

template <class T>
void registerFill(const char* name, FillRoutine<T>* reference, const Primitives::Row<FillRoutine<T>>& row) {
  const FillEntry<T> entry{name, reference, &row};
  const auto add = [&](const char* type, void (*body)(const FillEntry<T>&, int)) {
    registerForEachVariant("FloodFill", std::string(name) + "/" + type,
                           [entry, body](int variant) { body(entry, variant); });
  };
  registerDrawnCases("FloodFill", std::string(name) + "/DrawnCases",
                     [entry](int variant) { drawnCases(entry, variant); });
  add("Shapes", shapes);
  add("PagedRows", pagedRows);
  if (limitsAreLowered) add("EveryOffset", everyOffset);
  add("AllSmallImages", allSmallImages);
  add("SpecialPixels", specialPixels);
  add("Refusals", refusals);
  add("UntouchedMemory", untouchedMemory);
}

using SizeRoutine = int(Size, int*);

void registerFill(const char* name, SizeRoutine* reference, const Primitives::Row<SizeRoutine>& row) {
  registerForEachVariant("FloodFill", name, [reference, &row](int variant) {
    const auto routine = row.routine[1 + variant];
    for (const Size roi : {Size{1, 1}, Size{7, 3}, Size{4096, 4096}, Size{20000, 20000}, Size{65536, 65536},
                           Size{0x7FFFFFFF, 0x7FFFFFFF}, Size{0x7FFFFFFF, 1}, Size{46341, 46341}, Size{0, 1},
                           Size{1, 0}, Size{-1, -1}}) {
      int expected = -77, actual = -77;
      EXPECT_EQ(routine(roi, &actual), reference(roi, &expected));
      EXPECT_EQ(actual, expected) << roi.width << " by " << roi.height;
      EXPECT_EQ(routine(roi, nullptr), -8);
    }
    int bytes = 0;
    routine({10, 20}, &bytes);
    EXPECT_EQ(bytes, 1232);
  });
}

}  // namespace

void registerEntryTests() {
#define REGISTER(name, ...) registerFill(#name, &Reference::name, Primitives::table.name);
#define ENTRY(...) REGISTER(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/FloodFill.def"
#undef ENTRY
#undef REGISTER
}

}  // namespace Zorvan::Test
