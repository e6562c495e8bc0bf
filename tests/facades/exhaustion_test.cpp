// Every operation of every facade with each of its allocations refused, one at a time, and with all refused
// from one on. It ends as if nothing had been refused, or with an exception that its documentation names and
// unchanged images; and nothing leaks. If there is no memory for the text of an exception, it is
// std::bad_alloc.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/Heap.h"
#include "zorvan/ipp.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

constexpr Size imageSize{16, 16};
constexpr int imagePixels = 16 * 16;

/// The arguments of a call that vary.
struct Choice {
  Rect rect;
  bool flag;
  Size mask;
};

constexpr Choice choices[] = {
    {{0, 0, 16, 16}, true, {3, 3}},  // the result is all of the new image
    {{2, 3, 8, 9}, true, {4, 6}},    // the region extends beyond the new image
    {{2, 3, 8, 9}, false, {11, 3}},
};

bool isWholeImage(Rect rect) { return rect.width == imageSize.width && rect.height == imageSize.height; }

/// The argument for a parameter of type P, constructed before the heap is watched.
template <class P>
struct Argument {
  P value{};
  explicit Argument(const Choice& choice) {
    if constexpr (std::is_same_v<P, Rect>) value = choice.rect;
    if constexpr (std::is_same_v<P, bool>) value = choice.flag;
    if constexpr (std::is_same_v<P, Size>) value = choice.mask;
    if constexpr (std::is_same_v<P, Point>) value = {1, 1};
    if constexpr (std::is_same_v<P, eComparison>) value = eGreater;
    if constexpr (std::is_same_v<P, eBorderType>) value = eBorderReplicate;
    if constexpr (std::is_arithmetic_v<P> && !std::is_same_v<P, bool>) value = P(5);
  }
  P get() { return value; }
  bool operator==(const Argument&) const { return true; }
};

template <class T>
struct Argument<IppIMemory<T>&> {
  std::array<T, imagePixels> pixels{};
  IppIMemory<T> image;
  explicit Argument(const Choice&) : image(IppIMemory<T>::CreateContainer(pixels.data(), imageSize)) {
    for (int i = 0; i < imagePixels; ++i) pixels[static_cast<std::size_t>(i)] = T(i % 5 + 1);
  }
  Argument(const Argument&) = delete;
  IppIMemory<T>& get() { return image; }
  bool operator==(const Argument& other) const { return pixels == other.pixels; }
};

enum Returned { nothing, plainValue, imageWithPixels, imageWithoutPixels };

/// How a call ended. Has no memory on the watched heap.
struct Outcome {
  Returned returned = nothing;
  std::array<unsigned char, imagePixels * sizeof(float)> pixels{};  ///< of an image that is the result
  char thrown[160] = "";
  std::size_t requests = 0;
  std::size_t leaked = 0;

  template <class T>
  void keep(const IppIMemory<T>& image, Rect rect) {
    const auto block = image.buffer();
    returned = block ? imageWithPixels : imageWithoutPixels;
    if (block && isWholeImage(rect) && image.width() == imageSize.width &&
        image.height() == imageSize.height) {
      std::memcpy(pixels.data(), block.get(), imagePixels * sizeof(T));
    }
  }
  template <class R>
  void keep(const R&, Rect) {
    returned = plainValue;
  }
};

/// Calls with some requests refused: `refused` has the number of the first and their count.
template <class R, class... P, class Arguments>
Outcome outcomeOf(R (*operation)(P...), Arguments& arguments, Rect rect,
                  std::pair<std::size_t, std::size_t> refused) {
  Outcome outcome;
  WatchedHeap heap;
  heap.refuseSome(refused.first, refused.second);
  try {
    std::apply(
        [&](auto&... argument) {
          if constexpr (std::is_void_v<R>) {
            operation(argument.get()...);
          } else {
            outcome.keep(operation(argument.get()...), rect);
          }
        },
        arguments);
  } catch (const std::exception& failure) {
    std::strncpy(outcome.thrown, failure.what(), sizeof outcome.thrown - 1);
  }
  outcome.requests = heap.allRequests();
  outcome.leaked = heap.liveBlocks();
  return outcome;
}

constexpr const char* noBuffer = "ippStsNullPtrErr: Null pointer error( error Code : -8 )";
constexpr const char* notCopied = "Assign error in IppIMemory";
constexpr const char* notPrepared = "Morph border init error.";
constexpr const char* noMemory = "std::bad_alloc";

constexpr const char* emptyImage = "an image without pixels";

constexpr std::size_t allLater = ~std::size_t{0};

using Texts = std::vector<std::string>;

bool isOneOf(const Texts& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// The operations that have been called, by their addresses.
std::set<void (*)()> called;

template <class... P>
std::tuple<Argument<P>...> argumentsFor(const Choice& choice) {
  return std::tuple<Argument<P>...>((static_cast<void>(sizeof(Argument<P>)), choice)...);
}

/// Calls `operation` with each choice of arguments, and with each of its allocations refused. `documented`
/// states how it may end without memory.
template <class R, class... P>
void refuseEach(const char* name, R (*operation)(P...), const Texts& documented) {
  called.insert(reinterpret_cast<void (*)()>(operation));
  for (const Choice& choice : choices) {
    const auto before = argumentsFor<P...>(choice);
    auto after = argumentsFor<P...>(choice);
    const Outcome expected = outcomeOf(operation, after, choice.rect, {0, 0});
    const bool throws = expected.thrown[0] != '\0';
    EXPECT_EQ(expected.leaked, 0u) << name;

    for (std::size_t first = 0; first < expected.requests; ++first) {
      for (const std::size_t count : {std::size_t{1}, allLater}) {
        SCOPED_TRACE(testing::Message() << name << ", choice " << &choice - choices << ", refused: request "
                                        << first << (count == 1 ? "" : " and all later ones"));
        auto arguments = argumentsFor<P...>(choice);
        const Outcome outcome = outcomeOf(operation, arguments, choice.rect, {first, count});
        EXPECT_EQ(outcome.leaked, 0u);
        if (std::strcmp(outcome.thrown, expected.thrown) == 0) {
          EXPECT_TRUE(arguments == after) << "the images differ from what they are without a refusal";
          if (outcome.returned == imageWithoutPixels) {
            EXPECT_TRUE(isOneOf(documented, emptyImage)) << emptyImage;
          } else {
            EXPECT_EQ(outcome.returned, expected.returned);
            EXPECT_EQ(outcome.pixels, expected.pixels);
          }
        } else {
          // There is no memory for the text of an exception, which the call throws in any case or for the
          // first refusal.
          const bool textIsRefused = throws || count != 1;
          EXPECT_TRUE(isOneOf(documented, outcome.thrown) ||
                      (textIsRefused && std::strcmp(outcome.thrown, noMemory) == 0))
              << outcome.thrown;
          EXPECT_TRUE(arguments == (throws ? after : before)) << "the images have been written";
        }
      }
    }
  }
}

#define REFUSE(documented, Signature, ...) \
  refuseEach(#__VA_ARGS__, static_cast<std::add_pointer_t<Signature>>(&__VA_ARGS__), documented)

template <class T>
using Image = IppIMemory<T>;
using Mask = IppIMemory<u8>;

const Texts nothingElse = {};
const Texts workRefused = {noBuffer};
const Texts newImageRefused = {noBuffer, notCopied};
const Texts morphologyRefused = {noBuffer, notCopied, notPrepared};

template <class T>
void refuseInitializer() {
  REFUSE(Texts{emptyImage}, Image<T>(int, int), Initializer::Allocate<T>);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Initializer::Copy<T>);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&), Initializer::Copy<T>);
  REFUSE(newImageRefused, Image<T>(Image<T>&, Rect, bool), Initializer::Copy<T>);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Mask&, Rect), Initializer::CopyWithMask<T>);
  REFUSE(nothingElse, void(Image<T>&, T, Rect), Initializer::Fill<T>);
  REFUSE(nothingElse, void(Image<T>&, Mask&, T, Rect), Initializer::FillWithMask<T>);
}

void refuseConvert() {
  REFUSE(nothingElse, void(Image<int>&, Image<u8>&, Rect), Initializer::Convert<int, u8>);
  REFUSE(nothingElse, void(Image<int>&, Image<float>&, Rect), Initializer::Convert<int, float>);
}

template <class T>
void refuseArithmetic() {
  using Facade = IppIArithmetic<T>;
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Image<T>&, Rect), Facade::Add);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Add);
  REFUSE(nothingElse, void(Image<T>&, T, Rect), Facade::AddC);
  REFUSE(nothingElse, void(Image<T>&, Image<float>&, Mask&, Rect), Facade::AddWithMask);
  REFUSE(workRefused, void(Image<T>&, Mask&, T, Rect), Facade::AddCWithMask);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Image<T>&, Rect), Facade::Subtract);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Subtract);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Image<T>&, Rect), Facade::Multiply);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Multiply);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Image<T>&, Rect), Facade::Divide);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Divide);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Absolute);
  REFUSE(nothingElse, void(Image<T>&, Rect), Facade::Absolute);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Square);
  REFUSE(nothingElse, void(Image<T>&, Rect), Facade::Square);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::SquareRoot);
  REFUSE(nothingElse, void(Image<T>&, Rect), Facade::SquareRoot);
}

template <class T>
void refuseLogical() {
  using Facade = IppILogical<T>;
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::And);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Image<T>&, Rect), Facade::And);
  REFUSE(newImageRefused, Image<T>(Image<T>&, Image<T>&, Rect, bool), Facade::And);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Or);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Image<T>&, Rect), Facade::Or);
  REFUSE(newImageRefused, Image<T>(Image<T>&, Image<T>&, Rect, bool), Facade::Or);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Xor);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Image<T>&, Rect), Facade::Xor);
  REFUSE(newImageRefused, Image<T>(Image<T>&, Image<T>&, Rect, bool), Facade::Xor);
  REFUSE(nothingElse, void(Image<T>&, Rect), Facade::Not);
  REFUSE(nothingElse, void(Image<T>&, Image<T>&, Rect), Facade::Not);
  REFUSE(newImageRefused, Image<T>(Image<T>&, Rect, bool), Facade::Not);
}

void refuseComparer() {
  REFUSE(nothingElse, void(Image<float>&, Mask&, Rect, float, eComparison), Comparer<float>::Compare);
}

template <class T>
void refuseStatistic() {
  using Facade = Statistic<T>;
  REFUSE(nothingElse, T(Image<T>&, Rect), Facade::Min);
  REFUSE(nothingElse, T(Image<T>&, Rect), Facade::Max);
  REFUSE(nothingElse, T(Image<T>&, Rect), Facade::Mean);
  REFUSE(nothingElse, T(Image<T>&, Mask&, Rect), Facade::Mean);
  REFUSE(nothingElse, MeanStdDev(Image<T>&, Mask&, Rect), Facade::MeanAndStandardDeviationWithMask);
  REFUSE(nothingElse, MinMaxIndex(Image<T>&, Mask&), Facade::MinMaxIndexWithMask);
  REFUSE(nothingElse, MinMaxIndex(Image<T>&, Mask&, Rect), Facade::MinMaxIndexWithMask);
}

template <class T>
void refuseMorphology() {
  using Facade = IppIMorphology<T>;
  REFUSE(morphologyRefused, Image<T>(Image<T>&, Rect, bool, Size), Facade::Erode);
  REFUSE(morphologyRefused, void(Image<T>&, Image<T>&, Rect, Size), Facade::Erode);
  REFUSE(morphologyRefused, Image<T>(Image<T>&, Rect, bool, Size), Facade::Dilate);
  REFUSE(morphologyRefused, void(Image<T>&, Image<T>&, Rect, Size), Facade::Dilate);
  REFUSE(morphologyRefused, Image<T>(Image<T>&, Rect, bool, Size), Facade::Open);
  REFUSE(morphologyRefused, void(Image<T>&, Image<T>&, Rect, Size), Facade::Open);
  REFUSE(morphologyRefused, Image<T>(Image<T>&, Rect, bool, Size), Facade::Close);
  REFUSE(morphologyRefused, void(Image<T>&, Image<T>&, Rect, Size), Facade::Close);
}

template <class T>
void refuseFiltering() {
  using Facade = FilteringFunction;
  REFUSE(workRefused, void(Image<T>&, Image<T>&, Rect, bool, eBorderType, T), Facade::LaplaceBorder<T>);
  REFUSE(workRefused, void(Image<T>&, Image<T>&, bool, eBorderType, T), Facade::LaplaceBorder<T>);
  REFUSE(workRefused, void(Image<T>&, Image<T>&, Rect, eBorderType, T), Facade::LaplaceBorder3x3<T>);
  REFUSE(workRefused, void(Image<T>&, Image<T>&, eBorderType, T), Facade::LaplaceBorder3x3<T>);
  REFUSE(workRefused, void(Image<T>&, Image<T>&, Rect, eBorderType, T), Facade::LaplaceBorder5x5<T>);
  REFUSE(workRefused, void(Image<T>&, Image<T>&, eBorderType, T), Facade::LaplaceBorder5x5<T>);
}

template <class T>
void refuseComputerVision() {
  REFUSE(workRefused, ConnectionInfo(Image<T>&, Point, T, Rect), ComputerVision::FloodFill<T>);
}

/// The lines of the list of exported names that are operations of a facade.
std::size_t exportedOperations() {
  const std::regex operation(
      R"(Image::(Initializer|IppIArithmetic<[a-z ]+>|IppILogical<[a-z ]+>|Comparer<float>|Statistic<[a-z ]+>|)"
      R"(IppIMorphology<[a-z ]+>|FilteringFunction|ComputerVision)::[A-Z])");
  std::ifstream list(ZORVAN_EXPORTED_NAMES);
  std::size_t count = 0;
  for (std::string line; std::getline(list, line);) count += std::regex_search(line, operation);
  return count;
}

TEST(Exhaustion, EndsEachOperationAsDocumented) {
  refuseInitializer<u8>();
  refuseInitializer<u16>();
  refuseInitializer<s16>();
  refuseInitializer<int>();
  refuseInitializer<float>();
  refuseConvert();
  refuseArithmetic<u8>();
  refuseArithmetic<float>();
  refuseLogical<u8>();
  refuseLogical<float>();
  refuseComparer();
  refuseStatistic<u8>();
  refuseStatistic<u16>();
  refuseStatistic<float>();
  refuseMorphology<u8>();
  refuseMorphology<float>();
  refuseFiltering<u8>();
  refuseFiltering<s16>();
  refuseFiltering<float>();
  refuseComputerVision<u8>();
  refuseComputerVision<u16>();
  refuseComputerVision<int>();
  refuseComputerVision<float>();
  EXPECT_EQ(called.size(), exportedOperations());
}

}  // namespace
}  // namespace Zorvan::Test
