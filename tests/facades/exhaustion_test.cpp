// Every operation of every facade with each of its allocations refused, one at a time, and with all refused
// from one on. It ends as if nothing had been refused, or with an exception that its documentation names and
// unchanged images; and nothing leaks. If there is no memory for the text of an exception, it is
// std::bad_alloc.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/facades/ExportedOperations.h"
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
  bool withPixels = true;
};

constexpr Choice choices[] = {
    {{0, 0, 16, 16}, true, {3, 3}},  // the result is all of the new image
    {{2, 3, 8, 9}, true, {4, 6}},    // the region extends beyond the new image
    {{2, 3, 8, 9}, false, {11, 3}},
    {{0, 0, 16, 16}, true, {3, 3}, false},  // every operation throws: images without pixels, negative sizes
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
    if constexpr (std::is_arithmetic_v<P> && !std::is_same_v<P, bool>)
      value = choice.withPixels ? P(5) : P(-5);
  }
  P get() { return value; }
  bool operator==(const Argument&) const { return true; }
};

template <class T>
struct Argument<IppIMemory<T>&> {
  std::array<T, imagePixels> pixels{};
  IppIMemory<T> image;
  explicit Argument(const Choice& choice)
      : image(IppIMemory<T>::CreateContainer(choice.withPixels ? pixels.data() : nullptr, imageSize)) {
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

template <class... P>
std::tuple<Argument<P>...> argumentsFor(const Choice& choice) {
  return std::tuple<Argument<P>...>((static_cast<void>(sizeof(Argument<P>)), choice)...);
}

/// Calls `operation` with each choice of arguments, and with each of its allocations refused. `documented`
/// states how it may end without memory.
template <class R, class... P>
void refuseEach(const std::string& name, R (*operation)(P...), const Texts& documented) {
  bool hadNoText = false;
  for (const Choice& choice : choices) {
    const auto before = argumentsFor<P...>(choice);
    auto after = argumentsFor<P...>(choice);
    const Outcome expected = outcomeOf(operation, after, choice.rect, {0, 0});
    const bool throws = expected.thrown[0] != '\0';
    EXPECT_EQ(expected.leaked, 0u) << name;
    EXPECT_TRUE(throws || choice.withPixels) << name;

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
          const bool textIsRefused = (throws || count != 1) && std::strcmp(outcome.thrown, noMemory) == 0;
          EXPECT_TRUE(isOneOf(documented, outcome.thrown) || textIsRefused) << outcome.thrown;
          hadNoText |= textIsRefused;
          EXPECT_TRUE(arguments == (throws ? after : before)) << "the images have been written";
        }
      }
    }
  }
  EXPECT_TRUE(hadNoText) << name << " has never ended with " << noMemory;
}

/// How an operation may end without the memory that it allocates.
Texts endsOf(Allocates allocates) {
  switch (allocates) {
    case Allocates::nothing:
      return {};
    case Allocates::image:
      return {emptyImage};
    case Allocates::workMemory:
      return {noBuffer};
    case Allocates::newImage:
      return {noBuffer, notCopied};
    case Allocates::maskState:
      return {notPrepared};
    case Allocates::newImageAndMaskState:
      return {noBuffer, notCopied, notPrepared};
  }
  return {};
}

TEST(Exhaustion, EndsEachOperationAsDocumented) {
  std::set<std::string> called;
  forEachExportedOperation([&](const std::string& name, auto operation, Allocates allocates) {
    refuseEach(name, operation, endsOf(allocates));
    called.insert(name);
  });
  EXPECT_EQ(called.size(), countOfExportedOperations());
}

}  // namespace
}  // namespace Zorvan::Test
