// The exported operations on any images and regions, in every variant. The oracle tests the region and calls
// the definition of the entry on a copy of the pixels: it predicts each pixel, each number that is returned,
// and the text of each exception. Pixels are plain numbers; the kernels have fuzzers of their own.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/fuzz/Finding.h"
#include "tests/reference/Reference.h"
#include "tests/support/MorphCall.h"
#include "tests/support/Random.h"
#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/ipp.h"
#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;
using Ipp::ByPixelType;

// ---- texts ----

/// The text of an IppException, from the list of all statuses.
std::string textOf(int status) {
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

/// The text of what `call` throws, marked by its class; empty if it throws nothing.
template <class Call>
std::string thrownBy(Call call) {
  try {
    call();
  } catch (const Ipp::IppException& thrown) {
    return std::string("IppException ") + thrown.what();
  } catch (const std::exception& thrown) {
    return thrown.what();
  }
  return "";
}
std::string ippException(int status) { return status == 0 ? "" : "IppException " + textOf(status); }

// ---- calls ----

/// The arguments of a call that are neither images nor the region.
struct Fixed {
  float value;
  int comparison;
  Size mask;
  Point seed;
  bool use3x3, isConstantBorder;

  template <class T>
  T as() const {
    return static_cast<T>(value);
  }
};

/// The numbers that a call returns.
using Numbers = std::vector<double>;

template <class T>
struct Operand {
  T* pixels;
  int step;
};

enum class Sharing { none, oneImage };

using Before = std::string(const Fixed& fixed, Rect rect, Size first);

/// What an operation tests between the region and the entry's arguments; the result is the text that it
/// throws.
std::string nothing(const Fixed&, Rect, Size) { return ""; }

/// A facade that writes a region of its images or returns numbers, beside its definition.
template <class... T>
struct RegionCall {
  const char* name;
  void (*facade)(const Fixed&, Numbers&, Rect, IppIMemory<T>&...);
  int (*plain)(const Fixed&, Numbers&, Size, Operand<T>...);
  Sharing sharing = Sharing::none;
  double tolerance = 0;
  Before* before = nothing;
  bool allocatesForImage = false;  ///< memory of the size of the first image
};

/// A facade that returns a new image. The definition writes the region of the last operand.
template <class Result, class... T>
struct NewImageCall {
  const char* name;
  IppIMemory<Result> (*facade)(const Fixed&, Rect, bool sizeFromRect, IppIMemory<T>&...);
  int (*plain)(const Fixed&, Numbers&, Size, Operand<T>..., Operand<Result>);
  bool keepsOrigin;
  Before* before = nothing;
};

// ---- images ----

constexpr std::int64_t mostPixels = 4096;

template <class T>
T anyPixel(Random& random) {
  if constexpr (std::is_floating_point_v<T>) return static_cast<T>(random.below(4000)) * T(0.25);
  const int pixel = random.below(300) - (std::is_signed_v<T> ? 20 : 0);
  return static_cast<T>(random.below(4) == 0 ? 0 : std::min<int>(pixel, std::numeric_limits<T>::max()));
}

/// One image of a call. The pixels lie in memory of exactly their size, or in that of another image.
template <class T>
struct Picture {
  Size size{0, 0};
  bool isNull = false;
  std::shared_ptr<std::vector<T>> actual, expected;
  IppIMemory<T> image;

  bool holds(Rect rect) const {
    const bool inside = rect.x >= 0 && rect.y >= 0 && std::int64_t{rect.x} + rect.height <= size.height &&
                        std::int64_t{rect.y} + rect.width <= size.width;
    if (!inside) return false;
    const std::int64_t end = (std::int64_t{rect.x} + rect.height - 1) * size.width + rect.y + rect.width;
    return end <= static_cast<std::int64_t>(actual->size());
  }
  /// The first test of every operation; the sums wrap on 32 bits.
  bool fits(Rect rect) const {
    const auto sum = [](int a, int b) {
      return static_cast<std::int32_t>(static_cast<std::uint32_t>(std::int64_t{a} + b));
    };
    return sum(rect.x, rect.width) <= size.width && sum(rect.y, rect.height) <= size.height;
  }
  Operand<T> operand(Rect rect) const {
    const auto step = static_cast<std::uint32_t>(std::int64_t{size.width} * std::int64_t{sizeof(T)});
    if (isNull) return {nullptr, static_cast<std::int32_t>(step)};
    const auto row = static_cast<std::int32_t>(static_cast<std::uint32_t>(std::int64_t{rect.x} * size.width));
    const auto bytes = static_cast<std::uintptr_t>(std::int64_t{row} + rect.y) * sizeof(T);
    return {reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(expected->data()) + bytes),
            static_cast<std::int32_t>(step)};
  }
};

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
    if (!fits) {
      expected = ippException(29);
    } else {
      const Size first = std::get<0>(pictures).size;
      const bool isLarge = std::int64_t{first.width} * first.height > mostPixels;
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
      const int step = std::max(1, rect_.width) * static_cast<int>(sizeof(Result));
      expected = ippException(std::apply(
          [&](auto&... picture) {
            return call.plain(fixed_, none, roi(), picture.operand(rect_)...,
                              Operand<Result>{region.data(), step});
          },
          pictures));
    }
    constexpr bool canBeCopied = !std::is_same_v<Result, u16> && !std::is_same_v<Result, s16>;
    if (expected.empty() && !canBeCopied) expected = "Assign error in IppIMemory";

    std::optional<IppIMemory<Result>> made;
    const std::string text = thrownBy([&] {
      std::apply(
          [&](auto&... picture) {
            IppIMemory<Result> image = call.facade(fixed_, rect_, sizeFromRect, picture.image...);
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
    picture.image =
        IppIMemory<T>::CreateContainer(picture.isNull ? nullptr : picture.actual->data(), picture.size);
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

// ---- the list of calls ----

/// An entry of floats, called with the scale factor that only entries of integers have.
template <class... Parameters>
auto unscaled(int (*entry)(Parameters...)) {
  return [entry](Parameters... parameters, int) { return entry(parameters...); };
}

#define ENTRY(name) Reference::ippi##name
#define SCALED(name, place)                                                                                 \
  ByPixelType {                                                                                             \
    ENTRY(name##_8u_##place##RSfs), ENTRY(name##_16u_##place##RSfs), unscaled(ENTRY(name##_32f_##place##R)) \
  }

constexpr double estimate = 1.0 / (1 << 20);  // results of estimates: some units in the last place
constexpr double quotientOf8u = 1;            // which rounds a tie in either direction in vectors
template <class T>
constexpr double quotient = std::is_same_v<T, float> ? estimate : quotientOf8u;

template <class Call>
void runOne(FuzzedDataProvider& input, const Call& call) {
  Fuzz(input).run(call);
}

#define IN const Fixed &fixed, Numbers &numbers
#define UNUSED static_cast<void>(fixed), static_cast<void>(numbers)

#define THREE_IMAGES(Class, Facade, T, tolerance, entry)                                                   \
  [](FuzzedDataProvider& input) {                                                                          \
    runOne(input, RegionCall<T, T, T>{#Class "<" #T ">::" #Facade " of three images",                      \
                                      [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b,                \
                                         IppIMemory<T>& c) { UNUSED, Class<T>::Facade(a, b, c, rect); },   \
                                      [](IN, Size roi, Operand<T> a, Operand<T> b, Operand<T> c) {         \
                                        UNUSED;                                                            \
                                        return entry(a.pixels, a.step, b.pixels, b.step, c.pixels, c.step, \
                                                     roi, 0);                                              \
                                      },                                                                   \
                                      Sharing::oneImage, tolerance});                                      \
  }
#define TWO_IMAGES(Class, Facade, T, tolerance, entry)                                         \
  [](FuzzedDataProvider& input) {                                                              \
    runOne(input, RegionCall<T, T>{#Class "<" #T ">::" #Facade " of two images",               \
                                   [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {     \
                                     UNUSED, Class<T>::Facade(a, b, rect);                     \
                                   },                                                          \
                                   [](IN, Size roi, Operand<T> a, Operand<T> b) {              \
                                     UNUSED;                                                   \
                                     return entry(a.pixels, a.step, b.pixels, b.step, roi, 0); \
                                   },                                                          \
                                   Sharing::oneImage, tolerance});                             \
  }
#define ONE_IMAGE(Class, Facade, T, tolerance, entry)                                                       \
  [](FuzzedDataProvider& input) {                                                                           \
    runOne(input, RegionCall<T>{#Class "<" #T ">::" #Facade " of one image",                                \
                                [](IN, Rect rect, IppIMemory<T>& a) { UNUSED, Class<T>::Facade(a, rect); }, \
                                [](IN, Size roi, Operand<T> a) {                                            \
                                  UNUSED;                                                                   \
                                  return entry(a.pixels, a.step, roi, 0);                                   \
                                },                                                                          \
                                Sharing::none, tolerance});                                                 \
  }

using Run = void (*)(FuzzedDataProvider&);

#define ARITHMETIC(T)                                                                          \
  THREE_IMAGES(IppIArithmetic, Add, T, 0, (SCALED(Add, C1))),                                  \
      TWO_IMAGES(IppIArithmetic, Add, T, 0, (SCALED(Add, C1I))),                               \
      THREE_IMAGES(IppIArithmetic, Subtract, T, 0, (SCALED(Sub, C1))),                         \
      TWO_IMAGES(IppIArithmetic, Subtract, T, 0, (SCALED(Sub, C1I))),                          \
      THREE_IMAGES(IppIArithmetic, Multiply, T, 0, (SCALED(Mul, C1))),                         \
      TWO_IMAGES(IppIArithmetic, Multiply, T, 0, (SCALED(Mul, C1I))),                          \
      THREE_IMAGES(IppIArithmetic, Divide, T, quotient<T>, (SCALED(Div, C1))),                 \
      TWO_IMAGES(IppIArithmetic, Divide, T, quotient<T>,                                       \
                 (ByPixelType{ENTRY(Div_8u_C1IRSfs), unscaled(ENTRY(Div_32f_C1IR))})),         \
      TWO_IMAGES(IppIArithmetic, Square, T, 0, (SCALED(Sqr, C1))),                             \
      ONE_IMAGE(IppIArithmetic, Square, T, 0, (SCALED(Sqr, C1I))),                             \
      TWO_IMAGES(IppIArithmetic, SquareRoot, T, estimate, (SCALED(Sqrt, C1))),                 \
      ONE_IMAGE(IppIArithmetic, SquareRoot, T, estimate, (SCALED(Sqrt, C1I))),                 \
      TWO_IMAGES(IppIArithmetic, Absolute, T, 0, (ByPixelType{unscaled(ENTRY(Abs_32f_C1R))})), \
      ONE_IMAGE(IppIArithmetic, Absolute, T, 0, (ByPixelType{unscaled(ENTRY(Abs_32f_C1IR))}))
const Run arithmetic[] = {ARITHMETIC(u8), ARITHMETIC(float)};

#define LOGIC(T)                                                                        \
  THREE_IMAGES(IppILogical, And, T, 0, (ByPixelType{unscaled(ENTRY(And_8u_C1R))})),     \
      TWO_IMAGES(IppILogical, And, T, 0, (ByPixelType{unscaled(ENTRY(And_8u_C1IR))})),  \
      THREE_IMAGES(IppILogical, Or, T, 0, (ByPixelType{unscaled(ENTRY(Or_8u_C1R))})),   \
      TWO_IMAGES(IppILogical, Or, T, 0, (ByPixelType{unscaled(ENTRY(Or_8u_C1IR))})),    \
      THREE_IMAGES(IppILogical, Xor, T, 0, (ByPixelType{unscaled(ENTRY(Xor_8u_C1R))})), \
      TWO_IMAGES(IppILogical, Xor, T, 0, (ByPixelType{unscaled(ENTRY(Xor_8u_C1IR))})),  \
      TWO_IMAGES(IppILogical, Not, T, 0, (ByPixelType{unscaled(ENTRY(Not_8u_C1R))})),   \
      ONE_IMAGE(IppILogical, Not, T, 0, (ByPixelType{unscaled(ENTRY(Not_8u_C1IR))}))
const Run logic[] = {LOGIC(u8), LOGIC(float)};

/// A call of which the facade and the definition are written out.
#define CALL(...) [](FuzzedDataProvider& input) { runOne(input, __VA_ARGS__); }

#define OF_ALL_TYPES(name)                                                                                \
  (ByPixelType{ENTRY(name##_8u_C1R), ENTRY(name##_16u_C1R), ENTRY(name##_16s_C1R), ENTRY(name##_32s_C1R), \
               ENTRY(name##_32f_C1R)})
#define MASKED_OF_ALL_TYPES(name)                                                     \
  (ByPixelType{ENTRY(name##_8u_C1MR), ENTRY(name##_16u_C1MR), ENTRY(name##_16s_C1MR), \
               ENTRY(name##_32s_C1MR), ENTRY(name##_32f_C1MR)})

#define INITIALIZER(T)                                                                                       \
  CALL(RegionCall<T>{                                                                                        \
      "Fill<" #T ">",                                                                                        \
      [](IN, Rect rect, IppIMemory<T>& a) { UNUSED, Initializer::Fill<T>(a, fixed.as<T>(), rect); },         \
      [](IN, Size roi, Operand<T> a) {                                                                       \
        UNUSED;                                                                                              \
        return OF_ALL_TYPES(Set)(fixed.as<T>(), a.pixels, a.step, roi);                                      \
      }}),                                                                                                   \
      CALL(RegionCall<T, u8>{"FillWithMask<" #T ">",                                                         \
                             [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                     \
                               UNUSED, Initializer::FillWithMask<T>(a, mask, fixed.as<T>(), rect);           \
                             },                                                                              \
                             [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                              \
                               UNUSED;                                                                       \
                               return MASKED_OF_ALL_TYPES(Set)(fixed.as<T>(), a.pixels, a.step, roi,         \
                                                               mask.pixels, mask.step);                      \
                             }}),                                                                            \
      CALL(RegionCall<T, T>{"Copy<" #T ">",                                                                  \
                            [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {                          \
                              UNUSED, Initializer::Copy<T>(a, b, rect);                                      \
                            },                                                                               \
                            [](IN, Size roi, Operand<T> a, Operand<T> b) {                                   \
                              UNUSED;                                                                        \
                              return OF_ALL_TYPES(Copy)(a.pixels, a.step, b.pixels, b.step, roi);            \
                            }}),                                                                             \
      CALL(                                                                                                  \
          RegionCall<T, T, u8>{"CopyWithMask<" #T ">",                                                       \
                               [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<u8>& mask) { \
                                 UNUSED, Initializer::CopyWithMask<T>(a, b, mask, rect);                     \
                               },                                                                            \
                               [](IN, Size roi, Operand<T> a, Operand<T> b, Operand<u8> mask) {              \
                                 UNUSED;                                                                     \
                                 return MASKED_OF_ALL_TYPES(Copy)(a.pixels, a.step, b.pixels, b.step, roi,   \
                                                                  mask.pixels, mask.step);                   \
                               }}),                                                                          \
      CALL(NewImageCall<T, T>{"Copy<" #T "> to a new image",                                                 \
                              [](const Fixed&, Rect rect, bool sizeFromRect, IppIMemory<T>& a) {             \
                                return Initializer::Copy<T>(a, rect, sizeFromRect);                          \
                              },                                                                             \
                              [](IN, Size roi, Operand<T> a, Operand<T> b) {                                 \
                                UNUSED;                                                                      \
                                return OF_ALL_TYPES(Copy)(a.pixels, a.step, b.pixels, b.step, roi);          \
                              },                                                                             \
                              true})

#define CONVERSION(T, entry)                                                        \
  CALL(RegionCall<int, T>{"Convert to " #T,                                         \
                          [](IN, Rect rect, IppIMemory<int>& a, IppIMemory<T>& b) { \
                            UNUSED, Initializer::Convert<int, T>(a, b, rect);       \
                          },                                                        \
                          [](IN, Size roi, Operand<int> a, Operand<T> b) {          \
                            UNUSED;                                                 \
                            return entry(a.pixels, a.step, b.pixels, b.step, roi);  \
                          }})
const Run initializer[] = {INITIALIZER(u8),
                           INITIALIZER(u16),
                           INITIALIZER(s16),
                           INITIALIZER(int),
                           INITIALIZER(float),
                           CONVERSION(u8, ENTRY(Convert_32s8u_C1R)),
                           CONVERSION(float, ENTRY(Convert_32s32f_C1R))};

#define WITH_CONSTANTS(T)                                                                                   \
  CALL(RegionCall<T>{                                                                                       \
      "AddC<" #T ">",                                                                                       \
      [](IN, Rect rect, IppIMemory<T>& a) { UNUSED, IppIArithmetic<T>::AddC(a, fixed.as<T>(), rect); },     \
      [](IN, Size roi, Operand<T> a) {                                                                      \
        UNUSED;                                                                                             \
        return ByPixelType{ENTRY(AddC_8u_C1IRSfs), unscaled(ENTRY(AddC_32f_C1IR))}(fixed.as<T>(), a.pixels, \
                                                                                   a.step, roi, 0);         \
      }}),                                                                                                  \
      CALL(RegionCall<T, u8, float>{                                                                        \
          "AddWithMask<" #T ">",                                                                            \
          [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask, IppIMemory<float>& sum) {               \
            UNUSED, IppIArithmetic<T>::AddWithMask(a, sum, mask, rect);                                     \
          },                                                                                                \
          [](IN, Size roi, Operand<T> a, Operand<u8> mask, Operand<float> sum) {                            \
            UNUSED;                                                                                         \
            return ByPixelType{ENTRY(Add_8u32f_C1IMR), ENTRY(Add_32f_C1IMR)}(                               \
                a.pixels, a.step, mask.pixels, mask.step, sum.pixels, sum.step, roi);                       \
          }})
const Run constants[] = {
    WITH_CONSTANTS(u8), WITH_CONSTANTS(float),
    CALL(RegionCall<float, u8>{"Compare",
                               [](IN, Rect rect, IppIMemory<float>& a, IppIMemory<u8>& b) {
                                 UNUSED, Comparer<float>::Compare(a, b, rect, fixed.value,
                                                                  static_cast<eComparison>(fixed.comparison));
                               },
                               [](IN, Size roi, Operand<float> a, Operand<u8> b) {
                                 UNUSED;
                                 return ENTRY(CompareC_32f_C1R)(a.pixels, a.step, std::trunc(fixed.value),
                                                                b.pixels, b.step, roi, fixed.comparison);
                               }})};

#define NEW_LOGIC(Name, entry)                                                               \
  CALL(NewImageCall<u8, u8, u8>{                                                             \
      #Name " of a new image",                                                               \
      [](const Fixed&, Rect rect, bool sizeFromRect, IppIMemory<u8>& a, IppIMemory<u8>& b) { \
        return IppILogical<u8>::Name(a, b, rect, sizeFromRect);                              \
      },                                                                                     \
      [](IN, Size roi, Operand<u8> a, Operand<u8> b, Operand<u8> c) {                        \
        UNUSED;                                                                              \
        return entry(a.pixels, a.step, b.pixels, b.step, c.pixels, c.step, roi);             \
      },                                                                                     \
      false})
const Run newLogic[] = {
    NEW_LOGIC(And, ENTRY(And_8u_C1R)), NEW_LOGIC(Or, ENTRY(Or_8u_C1R)), NEW_LOGIC(Xor, ENTRY(Xor_8u_C1R)),
    CALL(NewImageCall<u8, u8>{"Not of a new image",
                              [](const Fixed&, Rect rect, bool sizeFromRect, IppIMemory<u8>& a) {
                                return IppILogical<u8>::Not(a, rect, sizeFromRect);
                              },
                              [](IN, Size roi, Operand<u8> a, Operand<u8> b) {
                                UNUSED;
                                return ENTRY(Not_8u_C1R)(a.pixels, a.step, b.pixels, b.step, roi);
                              },
                              true})};

// The facade converts a mean to the pixel type, toward zero.
#define EXTREME(T, Name, bits)                                                                        \
  CALL(RegionCall<T>{#Name "<" #T ">",                                                                \
                     [](IN, Rect rect, IppIMemory<T>& a) {                                            \
                       UNUSED, numbers = {static_cast<double>(Statistic<T>::Name(a, rect))};          \
                     },                                                                               \
                     [](IN, Size roi, Operand<T> a) {                                                 \
                       T result{};                                                                    \
                       const int status = ENTRY(Name##_##bits##_C1R)(a.pixels, a.step, roi, &result); \
                       UNUSED, numbers = {static_cast<double>(result)};                               \
                       return status;                                                                 \
                     }})
#define STATISTIC(T, bits, hint)                                                                           \
  EXTREME(T, Min, bits), EXTREME(T, Max, bits),                                                            \
      CALL(RegionCall<T>{"Mean<" #T ">",                                                                   \
                         [](IN, Rect rect, IppIMemory<T>& a) {                                             \
                           UNUSED, numbers = {static_cast<double>(Statistic<T>::Mean(a, rect))};           \
                         },                                                                                \
                         [](IN, Size roi, Operand<T> a) {                                                  \
                           double mean = 0;                                                                \
                           const int status = ENTRY(Mean_##bits##_C1R)(a.pixels, a.step, roi, &mean hint); \
                           UNUSED, numbers = {static_cast<double>(static_cast<T>(mean))};                  \
                           return status;                                                                  \
                         },                                                                                \
                         Sharing::none, estimate}),                                                        \
      CALL(RegionCall<T, u8>{"Mean<" #T "> under a mask",                                                  \
                             [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                   \
                               UNUSED, numbers = {static_cast<double>(Statistic<T>::Mean(a, mask, rect))}; \
                             },                                                                            \
                             [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                            \
                               double mean = 0;                                                            \
                               const int status = ENTRY(Mean_##bits##_C1MR)(a.pixels, a.step, mask.pixels, \
                                                                            mask.step, roi, &mean);        \
                               UNUSED, numbers = {static_cast<double>(static_cast<T>(mean))};              \
                               return status;                                                              \
                             },                                                                            \
                             Sharing::oneImage, estimate})
#define SECOND , 2

#define MASKED_STATISTIC(T, bits)                                                                            \
  CALL(RegionCall<T, u8>{"MeanAndStandardDeviationWithMask<" #T ">",                                         \
                         [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                         \
                           const auto found = Statistic<T>::MeanAndStandardDeviationWithMask(a, mask, rect); \
                           UNUSED, numbers = {found.Mean, found.StdDev};                                     \
                         },                                                                                  \
                         [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                                  \
                           double mean = 0, deviation = 0;                                                   \
                           const int status = ENTRY(Mean_StdDev_##bits##_C1MR)(                              \
                               a.pixels, a.step, mask.pixels, mask.step, roi, &mean, &deviation);            \
                           UNUSED, numbers = {mean, deviation};                                              \
                           return status;                                                                    \
                         },                                                                                  \
                         Sharing::oneImage, 1.0 / 256}),                                                     \
      CALL(RegionCall<T, u8>{                                                                                \
          "MinMaxIndexWithMask<" #T ">",                                                                     \
          [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<u8>& mask) {                                        \
            const auto found = Statistic<T>::MinMaxIndexWithMask(a, mask, rect);                             \
            UNUSED, numbers = {found.Min,                                                                    \
                               found.Max,                                                                    \
                               double(found.MinIndex.x),                                                     \
                               double(found.MinIndex.y),                                                     \
                               double(found.MaxIndex.x),                                                     \
                               double(found.MaxIndex.y)};                                                    \
          },                                                                                                 \
          [](IN, Size roi, Operand<T> a, Operand<u8> mask) {                                                 \
            float low = 0, high = 0;                                                                         \
            Point lowAt{}, highAt{};                                                                         \
            const int status = ENTRY(MinMaxIndx_##bits##_C1MR)(a.pixels, a.step, mask.pixels, mask.step,     \
                                                               roi, &low, &high, &lowAt, &highAt);           \
            UNUSED,                                                                                          \
                numbers = {low, high, double(lowAt.x), double(lowAt.y), double(highAt.x), double(highAt.y)}; \
            return status;                                                                                   \
          },                                                                                                 \
          Sharing::oneImage})
const Run statistic[] = {STATISTIC(u8, 8u, ), STATISTIC(u16, 16u, ), STATISTIC(float, 32f, SECOND),
                         MASKED_STATISTIC(u8, 8u), MASKED_STATISTIC(float, 32f)};

std::string textOfMask(const Fixed& fixed, Rect rect, Size) {
  if (fixed.mask.width < 1) return "invalid image size";
  const bool isSize = rect.width > 0 && rect.height > 0 && fixed.mask.height > 0;
  return isSize ? "" : "Morph border get size error.";
}

template <class Spec, class T, class Entry>
int morph(Entry entry, const Fixed& fixed, Size roi, Operand<T> src, Operand<T> dst) {
  int specBytes = 0, bufferBytes = 0;
  MorphState<Spec, T>::sizes(roi, fixed.mask, &specBytes, &bufferBytes);
  std::vector<u8> spec(static_cast<std::size_t>(specBytes)), buffer(static_cast<std::size_t>(bufferBytes));
  const std::vector<u8> ones(static_cast<std::size_t>((fixed.mask.width | 1) * (fixed.mask.height | 1)), 1);
  auto* const record = reinterpret_cast<Spec*>(spec.data());
  MorphState<Spec, T>::fill(roi, ones.data(), fixed.mask, record, buffer.data());
  return entry(src.pixels, src.step, dst.pixels, dst.step, roi, 1, T(0), record, buffer.data());
}

#define MORPHOLOGY(T, bits, Name, Spec)                                                                  \
  CALL(RegionCall<T, T>{                                                                                 \
      #Name "<" #T ">",                                                                                  \
      [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {                                            \
        UNUSED, IppIMorphology<T>::Name(a, b, rect, fixed.mask);                                         \
      },                                                                                                 \
      [](IN, Size roi, Operand<T> a, Operand<T> b) {                                                     \
        UNUSED;                                                                                          \
        return morph<Primitives::Spec>(ENTRY(Morph##Name##Border_##bits##_C1R), fixed, roi, a, b);       \
      },                                                                                                 \
      std::is_same_v<Primitives::Spec, Primitives::MorphAdvSpec> ? Sharing::oneImage : Sharing::none, 0, \
      textOfMask}),                                                                                      \
      CALL(NewImageCall<T, T>{#Name "<" #T "> of a new image",                                           \
                              [](const Fixed& fixed, Rect rect, bool useRectSize, IppIMemory<T>& a) {    \
                                return IppIMorphology<T>::Name(a, rect, useRectSize, fixed.mask);        \
                              },                                                                         \
                              [](IN, Size roi, Operand<T> a, Operand<T> b) {                             \
                                UNUSED;                                                                  \
                                return morph<Primitives::Spec>(ENTRY(Morph##Name##Border_##bits##_C1R),  \
                                                               fixed, roi, a, b);                        \
                              },                                                                         \
                              true, textOfMask})
#define MORPHOLOGY_OF(T, bits)                                                   \
  MORPHOLOGY(T, bits, Erode, MorphSpec), MORPHOLOGY(T, bits, Dilate, MorphSpec), \
      MORPHOLOGY(T, bits, Open, MorphAdvSpec), MORPHOLOGY(T, bits, Close, MorphAdvSpec)
const Run morphology[] = {MORPHOLOGY_OF(u8, 8u), MORPHOLOGY_OF(float, 32f)};

std::string textOfLaplace(const Fixed&, Rect, Size first) {
  return first.width < 1 || first.height < 1 ? "invalid length" : "";
}
#define LAPLACE(T, bits)                                                                           \
  CALL(RegionCall<T, T>{"LaplaceBorder<" #T ">",                                                   \
                        [](IN, Rect rect, IppIMemory<T>& a, IppIMemory<T>& b) {                    \
                          UNUSED, FilteringFunction::LaplaceBorder<T>(                             \
                                      a, b, rect, fixed.use3x3,                                    \
                                      fixed.isConstantBorder ? eBorderConstant : eBorderReplicate, \
                                      fixed.as<T>());                                              \
                        },                                                                         \
                        [](IN, Size roi, Operand<T> a, Operand<T> b) {                             \
                          UNUSED;                                                                  \
                          u8 work = 0;                                                             \
                          return ENTRY(FilterLaplaceBorder_##bits##_C1R)(                          \
                              a.pixels, a.step, b.pixels, b.step, roi, fixed.use3x3 ? 33 : 55,     \
                              fixed.isConstantBorder ? 6 : 1, fixed.as<T>(), &work);               \
                        },                                                                         \
                        Sharing::none, 0, textOfLaplace, true})
std::string textOfFill(const Fixed&, Rect rect, Size) {
  return rect.width < 1 || rect.height < 1 ? "invalid length" : "";
}
#define FLOOD_FILL(T, bits)                                                                                  \
  CALL(RegionCall<T>{"FloodFill<" #T ">",                                                                    \
                     [](IN, Rect rect, IppIMemory<T>& a) {                                                   \
                       const auto filled = ComputerVision::FloodFill<T>(a, fixed.seed, fixed.as<T>(), rect); \
                       UNUSED, numbers = {filled.area,                                                       \
                                          filled.value[0],                                                   \
                                          filled.value[1],                                                   \
                                          filled.value[2],                                                   \
                                          double(filled.rect.x),                                             \
                                          double(filled.rect.y),                                             \
                                          double(filled.rect.width),                                         \
                                          double(filled.rect.height)};                                       \
                     },                                                                                      \
                     [](IN, Size roi, Operand<T> a) {                                                        \
                       u8 work = 0;                                                                          \
                       Primitives::_IppiConnectedComp filled{};                                              \
                       const int status = ENTRY(FloodFill_4Con_##bits##_C1IR)(                               \
                           a.pixels, a.step, roi, fixed.seed, fixed.as<T>(), &filled, &work);                \
                       UNUSED, numbers = {filled.area,                                                       \
                                          filled.value[0],                                                   \
                                          filled.value[1],                                                   \
                                          filled.value[2],                                                   \
                                          double(filled.rect.x),                                             \
                                          double(filled.rect.y),                                             \
                                          double(filled.rect.width),                                         \
                                          double(filled.rect.height)};                                       \
                       return status;                                                                        \
                     },                                                                                      \
                     Sharing::none, 0, textOfFill})
const Run neighbours[] = {LAPLACE(u8, 8u),       LAPLACE(s16, 16s),    LAPLACE(float, 32f),
                          FLOOD_FILL(u8, 8u),    FLOOD_FILL(u16, 16u), FLOOD_FILL(int, 32s),
                          FLOOD_FILL(float, 32f)};

std::vector<Run> allRuns() {
  std::vector<Run> all;
  const auto add = [&](const auto& list) { all.insert(all.end(), std::begin(list), std::end(list)); };
  add(initializer), add(arithmetic), add(constants), add(logic), add(newLogic), add(statistic),
      add(morphology), add(neighbours);
  return all;
}

}  // namespace
}  // namespace Zorvan::Test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto runs = Zorvan::Test::allRuns();
  FuzzedDataProvider input(data, size);
  runs[input.ConsumeIntegralInRange<std::size_t>(0, runs.size() - 1)](input);
  return 0;
}
