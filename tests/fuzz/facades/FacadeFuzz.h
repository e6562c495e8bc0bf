#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tests/fuzz/Finding.h"
#include "tests/fuzz/Thrown.h"
#include "tests/fuzz/facades/FacadeCalls.h"
#include "tests/fuzz/facades/Picture.h"
#include "tests/support/Random.h"
#include "zorvan/ipp.h"
#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {

/// The text of an IppException, from the list of all statuses.
inline std::string textOf(int status) {
  const std::string end = "( error Code : " + std::to_string(status) + " )";
#define ZORVAN_IPP_STATUS(code, label, message) \
  if (status == (code)) return std::string(#label ": ") + (message) + end;
#define ZORVAN_IPP_PLAIN_STATUS(code, message) \
  if (status == (code)) return (message) + end;
#include "zorvan/foundation/StatusTable.def"
#undef ZORVAN_IPP_STATUS
#undef ZORVAN_IPP_PLAIN_STATUS
  finding("status " + std::to_string(status) + " has no text");
}
inline std::string ippException(int status) { return status == 0 ? "" : "IppException " + textOf(status); }

/// Calls with arguments from an input. The oracle tests the region and calls the definition on a copy of the
/// pixels: it predicts each pixel, each number that is returned, and the text of each exception.
class Fuzz {
 public:
  explicit Fuzz(FuzzedDataProvider& input) : input_(input), random_(input.ConsumeIntegral<std::uint16_t>()) {
    Primitives::variantIndex = -1;
    static const int highest = (Primitives::coreSelectVariant(), std::int32_t{Primitives::variantIndex});
    Primitives::variantIndex = input_.ConsumeIntegralInRange(-1, highest);
    first_ = anySize();
    rect_ = anyRect();
    fixed_.value = static_cast<float>(input_.ConsumeIntegral<std::uint8_t>());
    if (input_.ConsumeIntegralInRange(0, 7) == 0) fixed_.value = 7.75F;
    fixed_.comparison = input_.ConsumeIntegralInRange(0, 5);
    fixed_.mask = {input_.ConsumeIntegralInRange(-1, 7), input_.ConsumeIntegralInRange(-1, 7)};
    fixed_.seed = {input_.ConsumeIntegralInRange(-1, 12), input_.ConsumeIntegralInRange(-1, 12)};
    fixed_.use3x3 = input_.ConsumeBool();
    fixed_.isConstantBorder = input_.ConsumeBool();
  }

  template <class... T>
  void run(const RegionCall<T...>& call) {
    std::tuple<Picture<T>...> pictures;
    const bool mayShare = call.sharing == Sharing::oneImage;
    std::apply([&](auto&... picture) { (draw(picture, pictures, mayShare), ...); }, pictures);

    std::string expected;
    Numbers actualNumbers, expectedNumbers;
    const bool fits = std::apply([&](auto&... picture) { return (picture.fits(rect_) && ...); }, pictures);
    const Size first = std::get<0>(pictures).size;
    const bool isLarge = std::int64_t{first.width} * first.height > mostPixels;
    if (call.beginsWithNewImage && (isLarge || !isHeld(pictures))) return;
    if (call.beginsWithNewImage && (first.width < 1 || first.height < 1)) {
      expected = "invalid image size";
    } else if (!fits) {
      expected = ippException(29);
    } else {
      if (!mayRun(pictures) || (call.allocatesForImage && isLarge)) return;
      expected = call.before(fixed_, rect_, first);
      if (expected.empty()) {
        const int status = std::apply(
            [&](auto&... picture) {
              return call.plain(fixed_, expectedNumbers, roi(), picture.operand(rect_)...);
            },
            pictures);
        expected = ippException(status);
        if (status != 0) expectedNumbers.clear();
      }
    }
    const std::string text = thrownBy([&] {
      std::apply([&](auto&... picture) { call.facade(fixed_, actualNumbers, rect_, picture.image...); },
                 pictures);
    });
    if (!text.empty()) actualNumbers.clear();
    requireSame(call.name + describe(pictures) + ": text", text, expected);
    requireSame(std::string(call.name) + ": count of results", actualNumbers.size(), expectedNumbers.size());
    for (std::size_t i = 0; i < actualNumbers.size(); ++i) {
      if (!isNear(actualNumbers[i], expectedNumbers[i], call.tolerance))
        requireSame(call.name + describe(pictures) + ": result", actualNumbers[i], expectedNumbers[i]);
    }
    std::apply([&](auto&... picture) { (comparePixels(call.name, picture, call.tolerance), ...); }, pictures);
  }

  template <class Result, class... T>
  void run(const NewImageCall<Result, T...>& call) {
    std::tuple<Picture<T>...> pictures;
    std::apply([&](auto&... picture) { (draw(picture, pictures, true), ...); }, pictures);
    const bool sizeFromRect = input_.ConsumeBool();
    const Size size = sizeFromRect ? roi() : std::get<0>(pictures).size;
    const bool isLarge = std::int64_t{size.width} * size.height > mostPixels;
    if (!mayRun(pictures) || isLarge) return;

    std::string expected = call.before(fixed_, rect_, std::get<0>(pictures).size);
    std::vector<Result> region(
        static_cast<std::size_t>(std::max(0, rect_.width) * std::max(0, rect_.height)) + 1);
    if (expected.empty() && (size.width < 1 || size.height < 1)) expected = "invalid image size";
    if (expected.empty()) {
      Numbers none;
      expected = ippException(std::apply(
          [&](auto&... picture) {
            return call.plain(fixed_, none, roi(), picture.operand(rect_)...,
                              Operand<Result>{region.data(), tightStep<Result>(roi())});
          },
          pictures));
    }
    constexpr bool canBeCopied = !std::is_same_v<Result, u16> && !std::is_same_v<Result, s16>;
    if (expected.empty() && !canBeCopied) expected = "Assign error in IppIMemory";

    std::optional<Ipp::Image::IppIMemory<Result>> made;
    const std::string text = thrownBy([&] {
      std::apply(
          [&](auto&... picture) {
            Ipp::Image::IppIMemory<Result> image = call.facade(fixed_, rect_, sizeFromRect, picture.image...);
            made.emplace();
            *made = image;
          },
          pictures);
    });
    requireSame(call.name + describe(pictures) + ": text", text, expected);
    std::apply([&](auto&... picture) { (comparePixels(call.name, picture, 0), ...); }, pictures);
    if (!made) return;
    requireSame("the width of the new image", made->width(), size.width);
    requireSame("the height of the new image", made->height(), size.height);
    const auto buffer = made->buffer();
    const std::int64_t origin = call.keepsOrigin ? std::int64_t{rect_.x} * size.width + rect_.y : 0;
    for (int r = 0; r < rect_.height; ++r) {
      for (int c = 0; c < rect_.width; ++c) {
        const std::int64_t at = origin + std::int64_t{r} * size.width + c;
        if (at < 0 || at >= std::int64_t{size.width} * size.height) continue;
        const Result wanted = region[static_cast<std::size_t>(r * rect_.width + c)];
        if (buffer[at] != wanted) finding(call.name + describe(pictures) + ": a pixel of the new image");
      }
    }
  }

 private:
  Size roi() const { return {rect_.width, rect_.height}; }

  int anyExtent() {
    constexpr int edges[] = {
        0, -1, 1 << 29, 1 << 30, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};
    if (input_.ConsumeIntegralInRange(0, 15) != 0) return input_.ConsumeIntegralInRange(1, 40);
    return input_.PickValueInArray(edges);
  }
  Size anySize() {
    const int width = anyExtent();
    return {width, anyExtent()};
  }

  /// Mostly a region inside the first image; else any numbers.
  Rect anyRect() {
    if (input_.ConsumeIntegralInRange(0, 3) == 0) {
      const auto number = [&] {
        constexpr int edges[] = {0, 1, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};
        const int kind = input_.ConsumeIntegralInRange(0, 3);
        if (kind == 0) return input_.ConsumeIntegral<int>();
        return kind == 1 ? input_.PickValueInArray(edges) : input_.ConsumeIntegralInRange(-3, 63);
      };
      const int x = number(), y = number(), width = number();
      return {x, y, width, number()};
    }
    const int rows = std::clamp(std::min(first_.width, first_.height), 0, 60);
    const int x = input_.ConsumeIntegralInRange(0, rows / 2), y = input_.ConsumeIntegralInRange(0, rows / 2);
    const int mostWidth = std::clamp(first_.width - std::max(x, y), 0, 60);
    const int mostHeight = std::clamp(first_.height - std::max(x, y), 0, 60);
    const int width = input_.ConsumeIntegralInRange(0, mostWidth);
    return {x, y, width, input_.ConsumeIntegralInRange(0, mostHeight)};
  }

  template <class T, class Pictures>
  void draw(Picture<T>& picture, Pictures& all, bool mayShare) {
    Picture<T>* earlier = nullptr;
    if (mayShare && input_.ConsumeBool()) {
      std::apply([&](auto&... other) { (consider(other, picture, earlier), ...); }, all);
    }
    if (earlier != nullptr) {
      picture.size = earlier->size;
      picture.isNull = earlier->isNull;
      picture.actual = earlier->actual;
      picture.expected = earlier->expected;
    } else {
      picture.size = first_;
      const bool isUsual = first_.width > 0 && first_.width < 100;
      if (isUsual && input_.ConsumeIntegralInRange(0, 3) == 0)
        picture.size.width += input_.ConsumeIntegralInRange(-2, 9);
      if (input_.ConsumeIntegralInRange(0, 7) == 0) picture.size = anySize();
      picture.isNull = input_.ConsumeIntegralInRange(0, 15) == 0;
      const std::int64_t pixels = std::int64_t{picture.size.width} * picture.size.height;
      const bool isReal = pixels > 0 && pixels <= mostPixels;
      picture.actual = std::make_shared<std::vector<T>>(isReal ? static_cast<std::size_t>(pixels) : 1);
      for (T& pixel : *picture.actual) pixel = anyPixel<T>(random_);
      picture.expected = std::make_shared<std::vector<T>>(*picture.actual);
    }
    picture.image = Ipp::Image::IppIMemory<T>::CreateContainer(
        picture.isNull ? nullptr : picture.actual->data(), picture.size);
  }
  template <class T, class Other>
  void consider(Picture<Other>& other, const Picture<T>& picture, Picture<T>*& earlier) {
    if constexpr (std::is_same_v<T, Other>) {
      if (&other != &picture && other.actual) earlier = &other;
    }
  }

  /// The caller has to keep a region that has pixels inside all images.
  template <class... T>
  bool mayRun(const std::tuple<Picture<T>...>& pictures) const {
    if (rect_.width < 1 || rect_.height < 1) return true;
    if (std::int64_t{rect_.width} * rect_.height > mostPixels) return false;
    return std::apply(
        [&](const auto&... picture) { return (picture.isNull || ...) || (picture.holds(rect_) && ...); },
        pictures);
  }

  /// The same where an image is used before another is known to be null.
  template <class... T>
  bool isHeld(const std::tuple<Picture<T>...>& pictures) const {
    if (rect_.width < 1 || rect_.height < 1) return true;
    return std::apply(
        [&](const auto&... picture) { return ((picture.isNull || picture.holds(rect_)) && ...); }, pictures);
  }

  static bool isNear(double actual, double expected, double tolerance) {
    if (std::isnan(actual) || std::isnan(expected)) return std::isnan(actual) && std::isnan(expected);
    return actual == expected || std::abs(actual - expected) <= tolerance * std::max(1.0, std::abs(expected));
  }

  /// The tolerance is relative for floats and absolute for integers.
  template <class T>
  void comparePixels(const std::string& name, const Picture<T>& picture, double tolerance) {
    for (std::size_t i = 0; i < picture.actual->size(); ++i) {
      const auto actual = static_cast<double>((*picture.actual)[i]),
                 expected = static_cast<double>((*picture.expected)[i]);
      const bool agree = std::is_integral_v<T> ? std::abs(actual - expected) <= tolerance
                                               : isNear(actual, expected, tolerance);
      if (!agree) requireSame(name + describe() + ": pixel " + std::to_string(i), actual, expected);
    }
  }

  std::string describe() const {
    return " (region " + std::to_string(rect_.x) + ", " + std::to_string(rect_.y) + ", " +
           std::to_string(rect_.width) + " by " + std::to_string(rect_.height) + ", variant " +
           std::to_string(Primitives::variantIndex) + ")";
  }
  template <class... T>
  std::string describe(const std::tuple<Picture<T>...>& pictures) const {
    std::string text = describe();
    std::apply(
        [&](const auto&... picture) {
          ((text += " image " + std::to_string(picture.size.width) + " by " +
                    std::to_string(picture.size.height) + (picture.isNull ? " without pixels" : "")),
           ...);
        },
        pictures);
    return text;
  }

  FuzzedDataProvider& input_;
  Random random_;
  Size first_{};
  Rect rect_{};
  Fixed fixed_{};
};

}  // namespace Zorvan::Test
