// Images of one call that overlap, through the exported classes, in every variant: each case that the guide's
// table allows. The result of an operation in place is that of separate images.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "tests/support/Cache.h"
#include "tests/support/EntryTests.h"
#include "tests/support/Guarded.h"
#include "tests/support/Random.h"
#include "zorvan/ipp.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;
using Ipp::IppException;

/// Pixels for which no operation has a warning, except zero divisors of bytes.
template <class T>
T drawPixel(Random& random) {
  if constexpr (std::is_same_v<T, u8>) return static_cast<u8>(random.below(256));
  return static_cast<T>(static_cast<float>(random.below(4000) + 1) * 0.25F);
}

/// Runs `call`. A warning is ignored: all pixels have been written.
template <class Call>
void runAll(Call call) {
  try {
    call();
  } catch (const IppException& raised) {
    if (std::string(raised.what()).find("error Code : 2 ") == std::string::npos) throw;
  }
}

/// The position of a region: the number of bytes after a 64-byte boundary at which it starts, and the width
/// of the image.
struct Position {
  Size region;
  int imageWidth;
  int shift;

  std::string text() const {
    return std::to_string(region.width) + "x" + std::to_string(region.height) + " in an image " +
           std::to_string(imageWidth) + " wide, at " + std::to_string(shift);
  }
};

/// Many widths with and without a gap between the rows, at addresses of every alignment; then images that may
/// be written with streaming stores.
template <class T, class Use>
void forEachPosition(Use use) {
  Random random(options().seed);
  const bool full = options().level == Level::full;
  const int apart = options().level == Level::few ? 13 : 1;
  for (int width = 1; width <= 140; width += full || width < 36 ? apart : 7 * apart) {
    for (const int height : {1, 2, 3, 5}) {
      for (const int gap : {0, 1 + random.below(70)}) {
        const int shift = random.below(64 / int{sizeof(T)}) * int{sizeof(T)};
        use(Position{{width, height}, width + gap, shift});
      }
    }
  }
  if (options().level == Level::few) return;
  {
    const ForcedCache cache(0);
    use(Position{{1031, 509}, 1031, 0});
  }
  if (!full) return;
  const ForcedCache cache(1 << 20);
  use(Position{{1024, 509}, 1088, 4});
  use(Position{{1600, 1030}, 1600, 32});
}

/// An image in guarded memory, twice: for the call and for the definition.
template <class T>
class Pair {
 public:
  Pair(int slot, const Position& position, std::uint64_t seed)
      : position_(position),
        actual_(block(2 * slot, position, seed)),
        expected_(block(2 * slot + 1, position, seed)) {
    Random random(seed);
    for (int row = 0; row < position.region.height; ++row) {
      for (int column = 0; column < position.region.width; ++column) {
        at(actual_, row, column) = at(expected_, row, column) = drawPixel<T>(random);
      }
    }
  }

  IppIMemory<T> image() const {
    return IppIMemory<T>::CreateContainer(reinterpret_cast<T*>(actual_.data()), position_.imageWidth,
                                          std::max(position_.region.height, 1));
  }
  T& expected(int row, int column) const { return at(expected_, row, column); }
  T& actual(int row, int column) const { return at(actual_, row, column); }

  /// All pixels of the region are equal, and the bytes around it are the same.
  testing::AssertionResult agrees() const {
    for (int row = 0; row < position_.region.height; ++row) {
      for (int column = 0; column < position_.region.width; ++column) {
        T &want = expected(row, column), got = actual(row, column);
        if (want != got) {
          return testing::AssertionFailure() << "row " << row << ", column " << column << ": " << +got
                                             << " instead of " << +want << " in " << position_.text();
        }
        want = got;  // zeros may differ in their sign
      }
    }
    if (expected_.sameBytes(actual_)) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "around " << position_.text() << ": " << expected_.difference(actual_);
  }

 private:
  static Block block(int slot, const Position& position, std::uint64_t seed) {
    const int pixels = (position.region.height - 1) * position.imageWidth + position.region.width;
    return Block(slot, static_cast<std::size_t>(pixels) * sizeof(T),
                 {Placement::Edge::inside, position.shift}, seed);
  }
  T& at(const Block& block, int row, int column) const {
    return reinterpret_cast<T*>(block.data())[row * position_.imageWidth + column];
  }

  Position position_;
  Block actual_, expected_;
};

/// An operation on images of one type, of which the last is written, and its result for the pixels of the
/// first two.
template <class T>
struct Operation {
  const char* name;
  std::size_t images;
  void (*run)(std::vector<IppIMemory<T>>& images, Rect rect);
  T (*pixel)(T first, T second);
  bool (*isClose)(T first, T second, T result) = nullptr;  ///< of operations that may have several results
};

/// `identity` has a number for each image: equal numbers are the same image.
template <class T>
void checkSame(const Operation<T>& operation, const std::vector<int>& identity, const Position& position) {
  std::vector<Pair<T>> pairs;
  pairs.reserve(3);
  for (int i = 0; i <= *std::max_element(identity.begin(), identity.end()); ++i) {
    pairs.emplace_back(i, position, options().seed + static_cast<std::uint64_t>(i));
  }
  std::vector<IppIMemory<T>> images(identity.size());
  const auto pairOf = [&](std::size_t i) -> Pair<T>& { return pairs[static_cast<std::size_t>(identity[i])]; };
  for (std::size_t i = 0; i < images.size(); ++i) images[i] = pairOf(i).image();

  runAll([&] { operation.run(images, {0, 0, position.region.width, position.region.height}); });
  const Pair<T>& dst = pairOf(images.size() - 1);
  for (int row = 0; row < position.region.height; ++row) {
    for (int column = 0; column < position.region.width; ++column) {
      const T first = pairOf(0).expected(row, column), second = pairOf(1).expected(row, column);
      const T result = dst.actual(row, column);
      const bool isClose = operation.isClose != nullptr && operation.isClose(first, second, result);
      dst.expected(row, column) = isClose ? result : operation.pixel(first, second);
    }
  }
  for (const Pair<T>& pair : pairs) ASSERT_TRUE(pair.agrees()) << operation.name;
}

template <class T>
void checkOperation(const Operation<T>& operation) {
  const std::vector<std::vector<int>> ofThree{{0, 1, 2}, {0, 0, 1}, {0, 1, 0}, {0, 1, 1}, {0, 0, 0}};
  const std::vector<std::vector<int>> ofTwo{{0, 1}, {0, 0}};
  forEachPosition<T>([&](const Position& position) {
    if (testing::Test::HasFatalFailure()) return;
    for (const auto& identity : operation.images == 3 ? ofThree : ofTwo)
      checkSame(operation, identity, position);
  });
}

u8 limited(int x) { return static_cast<u8>(std::clamp(x, 0, 255)); }
u8 rounded(double x) { return static_cast<u8>(std::min(255.0, std::nearbyint(x))); }

template <class T>
T sum(T a, T b) {
  if constexpr (std::is_same_v<T, u8>) return limited(a + b);
  return a + b;
}
template <class T>
T difference(T a, T b) {
  if constexpr (std::is_same_v<T, u8>) return limited(b - a);
  return b - a;
}
template <class T>
T product(T a, T b) {
  if constexpr (std::is_same_v<T, u8>) return limited(a * b);
  return a * b;
}
template <class T>
T quotient(T a, T b) {
  if constexpr (std::is_same_v<T, u8>)
    return a == 0 ? (b == 0 ? 0 : 255) : rounded(static_cast<double>(b) / a);
  return b / a;
}
template <class T>
bool isCloseTo(double want, T result) {
  return std::abs(want - static_cast<double>(result)) <= want / (1 << 20);
}
/// A quotient of bytes halfway between two numbers may be either.
template <class T>
bool isQuotient(T a, T b, T result) {
  if constexpr (std::is_same_v<T, u8>) return a != 0 && 2 * std::abs(b - result * a) <= a;
  return isCloseTo(static_cast<double>(b) / a, result);
}
template <class T>
T root(T a, T) {
  if constexpr (std::is_same_v<T, u8>) return rounded(std::sqrt(static_cast<double>(a)));
  return static_cast<T>(std::sqrt(a));
}

#define TWO(function, ...)                                                                                  \
  {                                                                                                         \
    "in place " #function, 2, [](std::vector<IppIMemory<T>>& i, Rect rect) { function(i[0], i[1], rect); }, \
        __VA_ARGS__                                                                                         \
  }
#define THREE(function, ...)                                                                               \
  {                                                                                                        \
#function, 3,                                                                                          \
        [](std::vector <IppIMemory <T>> & i, Rect rect) { function(i[0], i[1], i[2], rect); }, __VA_ARGS__ \
  }

template <class T>
void arithmetic(int variant) {
  const ForcedVariant forced(variant);
  using A = IppIArithmetic<T>;
  const Operation<T> operations[] = {
      THREE(A::Add, sum),
      TWO(A::Add, sum),
      THREE(A::Subtract, difference),
      TWO(A::Subtract, difference),
      THREE(A::Multiply, product),
      TWO(A::Multiply, product),
      THREE(A::Divide, quotient, isQuotient),
      TWO(A::Divide, quotient, isQuotient),
      TWO(A::SquareRoot, root,
          [](T a, T, T result) { return isCloseTo(std::sqrt(static_cast<double>(a)), result); }),
      TWO(A::Square, [](T a, T) { return product(a, a); }),
  };
  for (const auto& operation : operations) checkOperation(operation);
  if constexpr (std::is_same_v<T, float>) {
    checkOperation(Operation<T> TWO(A::Absolute, [](T a, T) { return std::abs(a); }));
  }
}

void logic(int variant) {
  const ForcedVariant forced(variant);
  using T = u8;
  using L = IppILogical<u8>;
  const auto both = [](T a, T b) { return static_cast<T>(a & b); };
  const auto any = [](T a, T b) { return static_cast<T>(a | b); };
  const auto one = [](T a, T b) { return static_cast<T>(a ^ b); };
  const Operation<T> operations[] = {
      THREE(L::And, both),
      TWO(L::And, both),
      THREE(L::Or, any),
      TWO(L::Or, any),
      THREE(L::Xor, one),
      TWO(L::Xor, one),
      TWO(L::Not, [](T a, T) { return static_cast<T>(~a); }),
  };
  for (const auto& operation : operations) checkOperation(operation);
}

/// A float image as its own source and accumulator.
void addWithMask(int variant) {
  const ForcedVariant forced(variant);
  forEachPosition<float>([](const Position& position) {
    if (testing::Test::HasFatalFailure()) return;
    const Pair<float> sums(0, position, options().seed);
    const Pair<u8> mask(1, {position.region, position.imageWidth, position.shift}, options().seed + 1);
    auto image = sums.image();
    auto selection = mask.image();
    for (int row = 0; row < position.region.height; ++row) {
      for (int column = 0; column < position.region.width; ++column) {
        u8& selected = mask.actual(row, column);
        selected = mask.expected(row, column) = selected % 3 == 0 ? 0 : selected;
        if (selected != 0) sums.expected(row, column) *= 2;
      }
    }
    IppIArithmetic<float>::AddWithMask(image, image, selection,
                                       {0, 0, position.region.width, position.region.height});
    ASSERT_TRUE(sums.agrees());
    ASSERT_TRUE(mask.agrees());
  });
}

/// An image of bytes as its own mask, at the same address and shifted.
void addCWithMask(int variant) {
  const ForcedVariant forced(variant);
  for (const int shift : {0, 1, 7, 83, -1, -20, -83}) {
    for (int width = 1; width <= 83; ++width) {
      const int height = 9;
      std::vector<u8> pixels(static_cast<std::size_t>(83 * (height + 2)));
      Random random(options().seed + static_cast<std::uint64_t>(width));
      for (u8& pixel : pixels) pixel = random.below(3) == 0 ? 0 : drawPixel<u8>(random);
      const std::vector<u8> before = pixels;
      const int at = 83;
      auto image = IppIMemory<u8>::CreateContainer(pixels.data() + at, 83, height);
      auto mask = IppIMemory<u8>::CreateContainer(pixels.data() + at + shift, 83, height);
      IppIArithmetic<u8>::AddCWithMask(image, mask, 100, {0, 0, width, height});
      for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
          const std::size_t i = static_cast<std::size_t>(at + 83 * row + column);
          if (before[i + static_cast<std::size_t>(shift)] == 0)
            continue;  // unselected pixels are not specified
          ASSERT_EQ(pixels[i], limited(before[i] + 100)) << "width " << width << ", shift " << shift;
        }
      }
    }
  }
}

/// Images that are only read may overlap in any way.
void imagesThatAreRead(int variant) {
  const ForcedVariant forced(variant);
  for (const int shift : {0, 1, 5, 64, 97}) {
    const int width = 97, height = 20;
    std::vector<u8> pixels(static_cast<std::size_t>(width * (height + 1)));
    Random random(options().seed);
    for (u8& pixel : pixels) pixel = random.below(2) == 0 ? 0 : drawPixel<u8>(random);
    std::vector<u8> sums(static_cast<std::size_t>(width * height));
    auto first = IppIMemory<u8>::CreateContainer(pixels.data(), width, height);
    auto second = IppIMemory<u8>::CreateContainer(pixels.data() + shift, width, height);
    auto result = IppIMemory<u8>::CreateContainer(sums.data(), width, height);
    IppIArithmetic<u8>::Add(first, second, result, first.SizeToRoi());

    int count = 0, total = 0, greatest = 0;
    for (std::size_t i = 0; i < sums.size(); ++i) {
      ASSERT_EQ(sums[i], limited(pixels[i] + pixels[i + static_cast<std::size_t>(shift)]));
      if (pixels[i + static_cast<std::size_t>(shift)] == 0) continue;
      ++count;
      total += pixels[i];
      greatest = std::max<int>(greatest, pixels[i]);
    }
    EXPECT_EQ(Statistic<u8>::Mean(first, second, first.SizeToRoi()), total / count);
    const auto record = Statistic<u8>::MeanAndStandardDeviationWithMask(first, second, first.SizeToRoi());
    EXPECT_DOUBLE_EQ(record.Mean, static_cast<double>(total) / count);
    EXPECT_EQ(Statistic<u8>::MinMaxIndexWithMask(first, second).Max, static_cast<float>(greatest));
  }
}

/// One erosion or dilation by its definition, with the region's nearest pixels outside its edges.
template <class T>
std::vector<T> extremes(const std::vector<T>& src, Size size, Size mask, bool greatest, bool turned) {
  const int w = mask.width, h = mask.height;
  const int left = turned ? w / 2 : (w - 1) / 2, above = turned ? h / 2 : (h - 1) / 2;
  std::vector<T> result(src.size());
  const auto at = [&](int row, int column) {
    return src[static_cast<std::size_t>(std::clamp(row, 0, size.height - 1) * size.width +
                                        std::clamp(column, 0, size.width - 1))];
  };
  for (int row = 0; row < size.height; ++row) {
    for (int column = 0; column < size.width; ++column) {
      T best = at(row, column);
      for (int r = row - above; r < row - above + h; ++r) {
        for (int c = column - left; c < column - left + w; ++c) {
          best = greatest ? std::max(best, at(r, c)) : std::min(best, at(r, c));
        }
      }
      result[static_cast<std::size_t>(row * size.width + column)] = best;
    }
  }
  return result;
}

template <class T>
void checkCompound(bool opening, Size region, int width, int shift, Size mask) {
  const int rows = region.height + std::abs(shift) / width + 2;
  std::vector<T> block(static_cast<std::size_t>(rows * width));
  Random random(options().seed);
  for (T& pixel : block) pixel = drawPixel<T>(random);
  T* const src = block.data() + (shift < 0 ? -shift : 0);
  T* const dst = src + shift;
  std::vector<T> pixels;
  for (int row = 0; row < region.height; ++row) {
    pixels.insert(pixels.end(), src + row * width, src + row * width + region.width);
  }
  std::vector<T> expected = block;
  pixels = extremes(extremes(pixels, region, mask, !opening, false), region, mask, opening, true);
  for (int row = 0; row < region.height; ++row) {
    std::copy_n(pixels.begin() + row * region.width, region.width,
                expected.begin() + (dst - block.data()) + row * width);
  }
  auto source = IppIMemory<T>::CreateContainer(src, width, region.height);
  auto result = IppIMemory<T>::CreateContainer(dst, width, region.height);
  const Rect rect{0, 0, region.width, region.height};
  if (opening) {
    IppIMorphology<T>::Open(source, result, rect, mask);
  } else {
    IppIMorphology<T>::Close(source, result, rect, mask);
  }
  ASSERT_EQ(block, expected) << region.width << "x" << region.height << " in rows of " << width
                             << ", shifted by " << shift << ", mask " << mask.width << "x" << mask.height;
}

/// The result of an opening or closing at any position on its source.
template <class T>
void openAndClose(int variant) {
  const ForcedVariant forced(variant);
  for (const bool opening : {true, false}) {
    for (const Size mask : {Size{1, 1}, Size{3, 3}, Size{4, 2}, Size{1, 5}, Size{9, 9}}) {
      for (const int width : {1, 2, 7, 16, 33, 70}) {
        for (const int height : {1, 3, 10}) {
          for (const int shift : {0, 1, -1, 3, -17, width + 1, -width, 2 * width, -3 * width - 2}) {
            checkCompound<T>(opening, {width, height}, width + 2, shift, mask);
            if (testing::Test::HasFatalFailure()) return;
          }
        }
      }
    }
    if (options().level == Level::few) continue;
    checkCompound<T>(opening, {900, 700}, 1000, 5003, {3, 3});
    if (options().level == Level::quick) continue;
    for (const int shift : {0, 64, -1000}) checkCompound<T>(opening, {900, 700}, 1000, shift, {3, 3});
  }
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  registerForEachVariant("Overlap", "Arithmetic8u", arithmetic<u8>);
  registerForEachVariant("Overlap", "Arithmetic32f", arithmetic<float>);
  registerForEachVariant("Overlap", "AddWithMask", addWithMask);
  registerForEachVariant("Overlap", "AddCWithMask", addCWithMask);
  registerForEachVariant("Overlap", "Logic", logic);
  registerForEachVariant("Overlap", "ImagesThatAreRead", imagesThatAreRead);
  registerForEachVariant("Overlap", "OpenAndClose8u", openAndClose<u8>);
  registerForEachVariant("Overlap", "OpenAndClose32f", openAndClose<float>);
}
