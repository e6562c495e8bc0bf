// Fill and copy under a mask. Besides the cases of all entries: masks that select blocks, their parts and
// single pixels, rows at every limit, and memory that is not readable.

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/EntryTests.h"

namespace Zorvan::Test {
namespace {

using Mask = std::function<u8(int)>;

/// The mask of a region, by pixel number counted over all rows.
std::vector<Mask> masks(int pixels) {
  std::vector<Mask> list = {[](int) -> u8 { return 0; }};
  for (const u8 set : {u8{1}, u8{127}, u8{128}, u8{255}}) list.push_back([set](int) { return set; });
  for (const int run : {1, 3, 4, 8, 16, 32, 64, 100}) {
    list.push_back([run](int i) -> u8 { return i / run % 2 == 0 ? 128 : 0; });
    list.push_back([run](int i) -> u8 { return i / run % 2 != 0 ? 1 : 0; });
  }
  for (const int only : {0, 1, 15, 16, 31, 32, 33, 63, 64, pixels / 2, pixels - 2, pixels - 1}) {
    list.push_back([only](int i) -> u8 { return i == only ? 127 : 0; });
    list.push_back([only](int i) -> u8 { return i == only ? 0 : 255; });
  }
  list.push_back([](int i) -> u8 {
    Random random(static_cast<std::uint64_t>(i));
    return random.below(2) != 0 ? static_cast<u8>(random.next()) : u8{0};
  });
  return list;
}

template <class T>
T someValue() {
  T value;
  std::memcpy(&value, "\x5A\xC3\x71\x42", sizeof value);
  return value;
}

/// A fill or a copy. `run` takes the places of the source, the destination and the mask; a fill has no
/// source.
template <class T>
struct Operation {
  bool copies;
  std::function<int(const T* src, int srcStep, T* dst, int dstStep, Size roi, const u8* mask, int maskStep)>
      run;
};

struct Steps {
  int src, dst, mask;
};

template <class T>
void compare(const Operation<T>& operation, Size roi, Steps gaps, Steps shifts, const Mask& maskOf) {
  const int rowBytes = roi.width * static_cast<int>(sizeof(T));
  const Steps steps{rowBytes + gaps.src, rowBytes + gaps.dst, roi.width + gaps.mask};
  const auto bytes = [&](int step, int row) {
    return static_cast<std::size_t>(step * (roi.height - 1) + row);
  };
  const auto inside = [](int shift) { return Placement{Placement::Edge::inside, shift}; };
  const Block src(0, bytes(steps.src, rowBytes), inside(shifts.src), 1);
  const Block expected(1, bytes(steps.dst, rowBytes), inside(shifts.dst), 2);
  const Block actual(2, bytes(steps.dst, rowBytes), inside(shifts.dst), 2);
  const Block mask(3, bytes(steps.mask, roi.width), inside(shifts.mask), 3);
  const T value = someValue<T>();
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      const u8 set = maskOf(r * roi.width + c);
      mask.data()[r * steps.mask + c] = set;
      const std::size_t offset = static_cast<std::size_t>(c) * sizeof(T);
      const void* const from = operation.copies
                                   ? static_cast<const void*>(src.data() + r * steps.src + offset)
                                   : static_cast<const void*>(&value);
      if (set != 0) std::memcpy(expected.data() + r * steps.dst + offset, from, sizeof(T));
    }
  }
  int status = -1;
  const std::string fault = faultOf([&] {
    status = operation.run(reinterpret_cast<const T*>(src.data()), steps.src,
                           reinterpret_cast<T*>(actual.data()), steps.dst, roi, mask.data(), steps.mask);
  });
  ASSERT_EQ(fault, "") << roi.width << " by " << roi.height;
  ASSERT_EQ(status, 0);
  ASSERT_TRUE(expected.sameBytes(actual)) << expected.difference(actual) << "\n"
                                          << roi.width << " by " << roi.height << ", shifts " << shifts.src
                                          << " " << shifts.dst << " " << shifts.mask;
}

/// Each width at several addresses and steps under every mask.
template <class T>
void everyMask(const Operation<T>& operation) {
  const bool full = options().level == Level::full;
  const std::vector<int> widths =
      full ? std::vector<int>{1,  7,  8,  9,  15, 16, 17, 23, 31, 32,  33,  47,  48,
                              49, 63, 64, 65, 79, 80, 95, 96, 97, 127, 128, 129, 200}
           : std::vector<int>{1, 8, 15, 16, 17, 31, 32, 33, 64, 65, 129};
  const std::vector<int> shifts = full ? std::vector<int>{0, 1, 2, 3, 4, 8, 12, 16, 28, 31, 32, 33, 60, 63}
                                       : std::vector<int>{0, 1, 4, 31, 32};
  const int pixel = sizeof(T);
  for (const int width : widths) {
    int iteration = 0;
    for (const int shift : shifts) {
      const Steps gaps[] = {{0, 0, 0}, {1, 3, 5}, {4 * pixel, pixel, 1}, {0, 0, 3}, {pixel, 0, 0}};
      for (const Mask& mask : masks(width)) {
        const int other = ++iteration % 17;
        compare(operation, {width, 1 + iteration % 3}, gaps[iteration % 5], {other, shift, 16 - other}, mask);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

/// From both sides of the sizes from which rows are not joined. Such images skip empty stores, so their masks
/// have empty and full runs.
template <class T>
void joinLimits(const Operation<T>& operation) {
  const Mask mask = [](int i) -> u8 {
    const int run = i / 100 % 4;
    if (run < 2) return run == 0 ? 0 : 1;
    return i % 5 < 2 ? 0 : static_cast<u8>(i | 1);
  };
  for (const int side : {32767, 32768, 32769}) {
    compare(operation, {side, 2}, {0, 0, 0}, {0, 0, 0}, mask);
    compare(operation, {3, side}, {0, 0, 0}, {1, 2, 3}, mask);
  }
}

/// A destination that is neither readable nor writable, from its start or from a page on: an access faults.
template <class T>
void untouchedWithoutSelection(const Operation<T>& operation) {
  constexpr int page = 4096, pixel = sizeof(T);
  constexpr int widestBlock = 64;
  const Arena arena(page);
  std::vector<unsigned char> src(3 * page, 7);
  for (const int shift : {0, 1, 2, 4, 32}) {
    for (const int readable : {0, 200 * pixel}) {
      const int width = 300;
      std::vector<u8> mask(static_cast<std::size_t>(width), 0);
      const int selected = readable / pixel - 2 * widestBlock;
      for (int i = 0; i < selected; ++i) mask[static_cast<std::size_t>(i)] = static_cast<u8>(i % 3);
      std::memset(arena.begin(), 0, arena.size());
      unsigned char* const dst = arena.end() - readable + shift;
      int status = -1;
      const std::string fault = faultOf([&] {
        status = operation.run(reinterpret_cast<const T*>(src.data() + 64), width * pixel,
                               reinterpret_cast<T*>(dst), width * pixel, {width, 1}, mask.data(), width);
      });
      ASSERT_EQ(fault, "") << "shift " << shift << ", readable " << readable;
      ASSERT_EQ(status, 0);
      const T value = someValue<T>();
      for (int i = 0; i < selected; ++i) {
        T expected{};
        if (i % 3 != 0)
          std::memcpy(&expected, operation.copies ? src.data() : static_cast<const void*>(&value), sizeof(T));
        ASSERT_EQ(std::memcmp(dst + i * pixel, &expected, sizeof(T)), 0) << i;
      }
    }
  }
}

template <class T>
void registerOperation(const std::string& name, const std::function<Operation<T>(int variant)>& of) {
  registerForEachVariant("EveryMask", name, [of](int variant) { everyMask(of(variant)); });
  registerForEachVariant("JoinLimits", name, [of](int variant) { joinLimits(of(variant)); });
  registerForEachVariant("UntouchedWithoutSelection", name,
                         [of](int variant) { untouchedWithoutSelection(of(variant)); });
}

CheckRules generalRules() {
  CheckRules rules;
  rules.largeRegions = {{1031, 509}, {32768, 3}, {3, 32768}};
  return rules;
}

template <class T>
using Fill = int(T, T*, int, Size, const u8*, int);
template <class T>
using Copy = int(const T*, int, T*, int, Size, const u8*, int);

template <class T>
void registerMasked(const std::string& name, Fill<T>* reference, const Primitives::Row<Fill<T>>& row) {
  registerEntry("Masked", name, generalRules(), reference, row);
  registerOperation<T>(name, [&row](int variant) {
    auto* const routine = row.routine[1 + variant];
    return Operation<T>{
        false, [routine](const T*, int, T* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
          return routine(someValue<T>(), dst, dstStep, roi, mask, maskStep);
        }};
  });
}
template <class T>
void registerMasked(const std::string& name, Copy<T>* reference, const Primitives::Row<Copy<T>>& row) {
  registerEntry("Masked", name, generalRules(), reference, row);
  registerOperation<T>(name, [&row](int variant) { return Operation<T>{true, row.routine[1 + variant]}; });
}
/// The plain entries of the lists.
template <class Routine>
void registerMasked(const std::string&, Routine*, const Primitives::Row<Routine>&) {}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
#define MASKED(name, ...) registerMasked(#name, &Reference::name, Primitives::table.name);
#define ENTRY(...) MASKED(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Copy.def"
#include "zorvan/primitives/frame/entries/Set.def"
#undef ENTRY
#undef MASKED
}
