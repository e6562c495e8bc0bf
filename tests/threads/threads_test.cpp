// Every exported operation in eight threads at once: first from a cold start, on images of each thread's own,
// then on shared sources. The results are those of one thread.

#include <gtest/gtest.h>

#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/facades/ExportedOperations.h"
#include "zorvan/ipp.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::IppIMemory;

constexpr int threadCount = 8;
constexpr Size imageSize{37, 16};

/// The argument for a parameter of type P.
template <class P>
struct Argument {
  P value{};
  explicit Argument(int) {
    if constexpr (std::is_same_v<P, Rect>) value = {0, 0, imageSize.width, imageSize.height};
    if constexpr (std::is_same_v<P, Size>) value = {3, 3};
    if constexpr (std::is_same_v<P, Point>) value = {1, 1};
    if constexpr (std::is_same_v<P, eComparison>) value = eGreater;
    if constexpr (std::is_same_v<P, eBorderType>) value = eBorderReplicate;
    if constexpr (std::is_arithmetic_v<P> && !std::is_same_v<P, bool>) value = P(5);
  }
  P get() { return value; }
  bool operator==(const Argument&) const { return true; }
  void share(const Argument&) {}
};

/// Images at different positions have different pixels, so an operation of several images changes its
/// destination.
template <class T>
struct Argument<IppIMemory<T>&> {
  std::shared_ptr<std::vector<T>> pixels = std::make_shared<std::vector<T>>();
  IppIMemory<T> image;
  explicit Argument(int position) : image(wrapped(position)) {}
  Argument(const Argument&) = delete;
  IppIMemory<T>& get() { return image; }
  bool operator==(const Argument& other) const { return *pixels == *other.pixels; }
  void share(const Argument& source) {
    pixels = source.pixels;
    image = source.image;
  }

 private:
  IppIMemory<T> wrapped(int position) {
    for (int i = 0; i < imageSize.width * imageSize.height; ++i) pixels->push_back(T((i + position) % 7 + 1));
    return IppIMemory<T>::CreateContainer(pixels->data(), imageSize);
  }
};

/// One call of one operation, with its arguments and what it returned or threw.
class Call {
 public:
  virtual ~Call() = default;
  virtual void run() = 0;
  virtual bool endsLike(const Call& other) const = 0;
  /// A new call. With `ran`, another call that has run, its sources are those of `ran`: the images that it
  /// has not changed.
  virtual std::unique_ptr<Call> another(const Call* ran) const = 0;
};

template <class R, class... P>
class CallOf : public Call {
 public:
  CallOf(R (*operation)(P...), Allocates allocates)
      : operation_(operation),
        allocates_(allocates),
        arguments_(argumentsFor(std::index_sequence_for<P...>{})) {}

  void run() override {
    try {
      if constexpr (std::is_void_v<R>) {
        std::apply([&](auto&... argument) { operation_(argument.get()...); }, arguments_);
      } else {
        keep(std::apply([&](auto&... argument) { return operation_(argument.get()...); }, arguments_));
      }
    } catch (const std::exception& thrown) {
      thrown_ = thrown.what();
    }
  }

  bool endsLike(const Call& other) const override {
    const auto& call = static_cast<const CallOf&>(other);
    return arguments_ == call.arguments_ && thrown_ == call.thrown_ && returned_ == call.returned_;
  }

  std::unique_ptr<Call> another(const Call* ran) const override {
    auto call = std::make_unique<CallOf>(operation_, allocates_);
    if (ran != nullptr && !isInPlace) {
      share(call->arguments_, static_cast<const CallOf*>(ran)->arguments_, std::index_sequence_for<P...>{});
    }
    return call;
  }

 private:
  using Arguments = std::tuple<Argument<P>...>;
  /// An operation of one image without a result writes that image, even if its pixels stay as they are.
  static constexpr bool isInPlace = std::is_void_v<R> && (std::is_reference_v<P> + ...) == 1;

  template <std::size_t... i>
  static Arguments argumentsFor(std::index_sequence<i...>) {
    return Arguments(static_cast<int>(i)...);
  }

  template <std::size_t... i>
  static void share(Arguments& fresh, const Arguments& ran, std::index_sequence<i...>) {
    (void(std::get<i>(fresh) == std::get<i>(ran) ? std::get<i>(fresh).share(std::get<i>(ran)) : void()), ...);
  }

  template <class T>
  void keep(const IppIMemory<T>& image) {
    if (allocates_ == Allocates::image) return;  // its pixels are those of the heap
    const auto block = image.buffer();
    for (int row = 0; block && row < image.height(); ++row) {
      for (int column = 0; column < image.width(); ++column) {
        returned_.push_back(static_cast<double>(block.get()[row * image.width() + column]));
      }
    }
  }
  template <class T>
  requires std::is_arithmetic_v<T>
  void keep(T value) { returned_ = {static_cast<double>(value)}; }
  void keep(MeanStdDev value) { returned_ = {value.Mean, value.StdDev}; }
  void keep(MinMaxIndex value) {
    returned_ = {value.Min, double(value.MinIndex.x), value.Max, double(value.MaxIndex.x)};
  }
  void keep(ConnectionInfo value) { returned_ = {value.area, value.value[0], double(value.rect.width)}; }

  R (*operation_)(P...);
  Allocates allocates_;
  Arguments arguments_;
  std::string thrown_;
  std::vector<double> returned_;
};

struct NamedCall {
  std::string name;
  std::unique_ptr<Call> call;
};

std::vector<NamedCall> oneCallOfEach() {
  std::vector<NamedCall> calls;
  forEachExportedOperation(
      [&]<class R, class... P>(const std::string& name, R (*operation)(P...), Allocates allocates) {
        calls.push_back({name, std::make_unique<CallOf<R, P...>>(operation, allocates)});
      });
  return calls;
}

using Calls = std::vector<std::unique_ptr<Call>>;

/// Runs the calls of each thread at the same time, each thread from another operation on.
void runTogether(std::vector<Calls>& callsOfThreads) {
  std::atomic<int> waiting{threadCount};
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < threadCount; ++t) {
    threads.emplace_back([&waiting, t, &calls = callsOfThreads[t]] {
      --waiting;
      while (waiting != 0) std::this_thread::yield();
      for (std::size_t i = 0; i < calls.size(); ++i)
        calls[(i + t * calls.size() / threadCount) % calls.size()]->run();
    });
  }
  for (std::thread& thread : threads) thread.join();
}

class Threads : public testing::TestWithParam<int> {};

TEST_P(Threads, ResultsAreThoseOfOneThread) {
  const bool coldStart = GetParam() < 0;
  if (!coldStart) Primitives::coreSelectVariant();
  if (GetParam() > Primitives::variantIndex) {
    GTEST_SKIP() << Primitives::variantNames[GetParam()] << " does not run on this processor";
  }
  Primitives::variantIndex = GetParam();

  const std::vector<NamedCall> expected = oneCallOfEach();
  EXPECT_EQ(expected.size(), countOfExportedOperations());
  for (const bool shared : {false, true}) {
    std::vector<Calls> calls(threadCount);
    for (Calls& own : calls) {
      for (const NamedCall& each : expected)
        own.push_back(each.call->another(shared ? each.call.get() : nullptr));
    }
    runTogether(calls);
    for (std::size_t i = 0; i < expected.size(); ++i) {
      if (!shared) expected[i].call->run();  // only now: the threads have made the first calls
      for (const Calls& own : calls) {
        EXPECT_TRUE(own[i]->endsLike(*expected[i].call))
            << expected[i].name << (shared ? ", shared sources" : "");
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(From, Threads, testing::Range(-1, Primitives::variantCount), [](const auto& test) {
  return test.param < 0 ? std::string("ColdStart") : std::string(Primitives::variantNames[test.param]);
});

}  // namespace
}  // namespace Zorvan::Test
