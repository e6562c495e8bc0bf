#pragma once

// Compares one routine of an entry with the reference, over all cases.
//
// Handles every entry with parameters of this form: a pixel pointer followed by a step is an image, `Size` is
// the region, a pointer without a step receives a result, and all others are values. Both sides start with
// the same bytes. The bytes around every image are compared too, and images lie next to unreadable pages.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/Cache.h"
#include "tests/support/Cases.h"
#include "tests/support/Comparison.h"
#include "tests/support/Guarded.h"
#include "tests/support/Pixels.h"

namespace Zorvan::Test {

/// The cases of a family's entries.
struct CheckRules {
  CaseRange range = {};
  /// The values, one after the other, of `int` arguments other than steps: a scale factor, an operator, a
  /// hint.
  std::vector<int> parameters = {0};
  /// Regions above the limits of the entry, run at the full level with each forced cache size.
  std::vector<Size> largeRegions = {};
  std::vector<int> forcedCacheBytes = {0, 1 << 20, 1 << 30};
  /// Whether images of a call may be one image. Each case is then run once more with such images.
  bool imagesMayBeOne = false;
  /// Cases whose results are not specified.
  bool (*isOpen)(const Case&) = [](const Case&) { return false; };
};

/// The agreement of blocks unless a family has another: their bytes are the same. An agreement whose
/// tolerance follows from the pixels takes the arguments of the call too.
struct SameBytes {
  static bool agree(const Block& expected, const Block& actual) { return expected.sameBytes(actual); }
};

template <class Routine>
class EntryCall;

template <class Result, class... Parameters>
class EntryCall<Result(Parameters...)> {
 public:
  using Arguments = std::tuple<Parameters...>;

  static constexpr int imageCount() {
    int count = 0;
    for (const Role type : roles()) count += type == Role::image;
    return count;
  }
  static constexpr int pointerCount() {
    int count = 0;
    for (const Role type : roles()) count += type == Role::image || type == Role::result;
    return count;
  }
  /// Allocates the images of `c` for one of the two sides of a comparison. `parameter` is the value of `int`
  /// arguments.
  EntryCall(const Case& c, int parameter, int side) {
    build(c, parameter, side, std::index_sequence_for<Parameters...>{});
  }

  Result run(Result (*routine)(Parameters...)) const { return std::apply(routine, arguments_); }

  /// Makes the n-th pointer null, counted over images and results.
  void setNull(int n) { setNull(n, std::index_sequence_for<Parameters...>{}); }

  const Arguments& arguments() const { return arguments_; }
  const std::vector<Block>& blocks() const { return blocks_; }
  std::vector<Block>& blocks() { return blocks_; }

 private:
  enum class Role { image, step, roi, result, parameter, value };

  template <class P>
  static constexpr bool isPixelPointer() {
    using Pixel = std::remove_const_t<std::remove_pointer_t<P>>;
    return std::is_pointer_v<P> && std::is_arithmetic_v<Pixel> && !std::is_same_v<Pixel, double>;
  }

  static constexpr auto roles() {
    constexpr std::size_t count = sizeof...(Parameters);
    constexpr bool pixelPointer[] = {isPixelPointer<Parameters>()...};
    constexpr bool pointer[] = {std::is_pointer_v<Parameters>...};
    constexpr bool integer[] = {std::is_same_v<Parameters, int>...};
    constexpr bool roi[] = {std::is_same_v<Parameters, Size>...};
    std::array<Role, count> roles{};
    for (std::size_t i = 0; i < count; ++i) {
      const bool first = i == 0;
      if (roi[i]) {
        roles[i] = Role::roi;
      } else if (pixelPointer[i] && i + 1 < count && integer[i + 1]) {
        roles[i] = Role::image;
      } else if (pointer[i]) {
        roles[i] = Role::result;
      } else if (integer[i] && !first && roles[i - 1] == Role::image) {
        roles[i] = Role::step;
      } else if (integer[i] && !first) {
        roles[i] = Role::parameter;
      } else {
        roles[i] = Role::value;  // the first parameter: a pixel value, even if it is an int
      }
    }
    return roles;
  }

  template <std::size_t... i>
  void build(const Case& c, int parameter, int side, std::index_sequence<i...>) {
    blocks_.reserve(sizeof...(i));
    int image = 0;
    (buildArgument<i>(c, parameter, side, image), ...);
  }

  template <std::size_t i>
  void buildArgument(const Case& c, int parameter, int side, int& image) {
    using P = std::tuple_element_t<i, Arguments>;
    constexpr Role type = roles()[i];
    auto& argument = std::get<i>(arguments_);
    const std::uint64_t seed = c.seed + i;
    const int slot = static_cast<int>(2 * i) + side;
    if constexpr (type == Role::image) {
      using Pixel = std::remove_const_t<std::remove_pointer_t<P>>;
      constexpr int pixelBytes = sizeof(Pixel);
      const auto number = static_cast<std::size_t>(image++);
      const std::size_t same = c.identity.empty() ? number : static_cast<std::size_t>(c.identity[number]);
      const Layout& layout = c.images[same];
      const int rowBytes = c.roi.width * pixelBytes;
      const int step = layout.step(rowBytes, pixelBytes);
      std::get<i + 1>(arguments_) = step;
      if (same != number) {
        argument = reinterpret_cast<Pixel*>(firsts_[same]);
        return;
      }
      const std::size_t span =
          static_cast<std::size_t>(c.roi.height - 1) * static_cast<std::size_t>(std::abs(step));
      const Block& block =
          blocks_.emplace_back(slot, span + static_cast<std::size_t>(rowBytes), layout.placement, seed);
      unsigned char* const first = block.data() + (step < 0 ? span : 0);
      for (int r = 0; r < c.roi.height; ++r) {
        fillPixels<Pixel>(first + std::ptrdiff_t{r} * step, static_cast<std::size_t>(c.roi.width),
                          layout.content, seed + static_cast<std::uint64_t>(r));
      }
      argument = reinterpret_cast<Pixel*>(first);
      firsts_[number] = first;
    } else if constexpr (type == Role::result) {
      using Target = std::remove_const_t<std::remove_pointer_t<P>>;
      const Block& block =
          blocks_.emplace_back(slot, sizeof(Target), Placement{Placement::Edge::inside, 0}, seed);
      argument = reinterpret_cast<Target*>(block.data());
    } else if constexpr (type == Role::roi) {
      argument = c.roi;
    } else if constexpr (type == Role::parameter) {
      argument = parameter;
    } else if constexpr (type == Role::value) {
      Random random(seed);
      argument = random.below(2) != 0 ? random.oneOf(specialValues<P>()) : randomValue<P>(random);
    }
  }

  template <std::size_t... i>
  void setNull(int n, std::index_sequence<i...>) {
    int pointer = 0;
    const auto clear = [&](auto& argument) {
      if constexpr (std::is_pointer_v<std::remove_reference_t<decltype(argument)>>) {
        if (pointer++ == n) argument = nullptr;
      }
    };
    (clear(std::get<i>(arguments_)), ...);
  }

 public:
  /// Replaces the region only.
  void setRoi(Size roi) {
    std::apply(
        [roi](auto&... argument) {
          const auto set = [roi](auto& a) {
            if constexpr (std::is_same_v<std::remove_reference_t<decltype(a)>, Size>) a = roi;
          };
          (set(argument), ...);
        },
        arguments_);
  }

 private:
  Arguments arguments_{};
  std::vector<Block> blocks_;
  std::array<unsigned char*, 4> firsts_{};  ///< the first pixel of each image
};

/// Compares one routine with the reference. Stops after a few differences.
template <class Agreement, class Result, class... Parameters>
class EntryCheck {
 public:
  using Routine = Result(Parameters...);
  using Call = EntryCall<Routine>;

  EntryCheck(Routine* reference, Routine* actual, const CheckRules& rules)
      : reference_(reference), actual_(actual), rules_(rules) {}

  void all() {
    cases();
    if (options().level != Level::fuzz) refusals();
    if (options().level == Level::full) largeCases();
  }

 private:
  static constexpr int differencesShown = 3;

  void cases() {
    std::size_t index = 0;
    forEachCase(rules_.range, Call::imageCount(), [&](const Case& c) {
      const bool isDrawn = options().level == Level::fuzz;
      const std::size_t number = isDrawn ? c.seed : index++;
      const int parameter = rules_.parameters[number % rules_.parameters.size()];
      compare(c, parameter, "");
      if (rules_.imagesMayBeOne && Call::imageCount() > 1) compareOneImage(c, parameter, number + 1);
      if (isDrawn && c.seed >> 8 == 0) refusals();
    });
  }

  /// Two or all images of the case are one. Rows that lie on one another are not.
  void compareOneImage(Case c, int parameter, std::size_t index) {
    const std::vector<int> ofThree[] = {{0, 0, 2}, {0, 1, 0}, {0, 1, 1}, {0, 0, 0}};
    for (const Layout& layout : c.images) {
      if (layout.stepType == StepType::zero) return;
    }
    c.identity = Call::imageCount() == 3 ? ofThree[index % std::size(ofThree)] : std::vector{0, 0};
    compare(c, parameter, "");
  }

  /// Pointers are tested first, sizes second, and nothing is written: every combination of a null pointer and
  /// an invalid size.
  void refusals() {
    Case c{{5, 2}, {}, options().seed};
    c.images.assign(static_cast<std::size_t>(Call::imageCount()),
                    {StepType::onePixelMore, {Placement::Edge::inside, 0}, Content::random});
    for (int null = -1; null < Call::pointerCount(); ++null) {
      for (const Size roi : {Size{5, 2}, Size{0, 2}, Size{5, 0}, Size{-1, 2}, Size{5, -1}, Size{0, 0}}) {
        compare(c, rules_.parameters[0],
                "argument " + std::to_string(null) + " null, region " + std::to_string(roi.width) + " by " +
                    std::to_string(roi.height),
                [&](Call& call) {
                  if (null >= 0) call.setNull(null);
                  call.setRoi(roi);
                });
      }
    }
  }

  void largeCases() {
    std::uint64_t seed = options().seed;
    for (const Size roi : rules_.largeRegions) {
      for (const int bytes : rules_.forcedCacheBytes) {
        for (const StepType type : {StepType::tight, StepType::oddBytesMore, StepType::wholeLinesMore}) {
          const ForcedCache cache(bytes);
          Case c{roi, {}, ++seed};
          for (int image = 0; image < Call::imageCount(); ++image) {
            const int shift = (image + static_cast<int>(seed)) % 3;
            c.images.push_back({type,
                                {Placement::Edge::inside, shift == 0 ? 0 : shift * 13},
                                image % 2 == 0 ? Content::random : Content::blocks});
          }
          compare(c, rules_.parameters[0], "cache of " + std::to_string(bytes) + " bytes");
        }
      }
    }
    const ForcedCache unknown(0, 0, 37);
    for (const Size roi : rules_.largeRegions) {
      Case c{roi, {}, ++seed};
      c.images.assign(static_cast<std::size_t>(Call::imageCount()),
                      {StepType::tight, {Placement::Edge::inside, 16}, Content::random});
      compare(c, rules_.parameters[0], "cache unknown");
    }
  }

  template <class Change>
  void compare(const Case& c, int parameter, const std::string& note, Change change) {
    if (differences_ >= differencesShown || rules_.isOpen(c)) return;
    Call expected(c, parameter, 0), actual(c, parameter, 1);
    change(expected);
    change(actual);
    const auto agree = [&](const Block& expectedBlock, Block& actualBlock) {
      if constexpr (requires { Agreement::agree(expectedBlock, actualBlock, expected.arguments()); }) {
        return Agreement::agree(expectedBlock, actualBlock, expected.arguments());
      } else {
        return Agreement::agree(expectedBlock, actualBlock);
      }
    };
    const std::string difference = differenceOf(
        expected.run(reference_), [&] { return actual.run(actual_); }, std::as_const(expected).blocks(),
        actual.blocks(), agree);
    if (difference.empty()) return;
    ++differences_;
    ADD_FAILURE() << difference << "\n" << c.text() << "\n  parameter " << parameter << " " << note;
  }
  void compare(const Case& c, int parameter, const std::string& note) {
    compare(c, parameter, note, [](Call&) {});
  }

  Routine* reference_;
  Routine* actual_;
  const CheckRules& rules_;
  int differences_ = 0;
};

template <class Agreement = SameBytes, class Result, class... Parameters>
void checkEntry(Result (*reference)(Parameters...), Result (*actual)(Parameters...),
                const CheckRules& rules) {
  EntryCheck<Agreement, Result, Parameters...>(reference, actual, rules).all();
}

}  // namespace Zorvan::Test
