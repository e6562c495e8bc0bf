// Square roots of floats: the steps and the error of the estimates, the pixels that take true roots, the
// status and the floating-point control state.

#include <immintrin.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "tests/support/EntryTests.h"
#include "tests/support/FloatAgreement.h"

namespace Zorvan::Test {
namespace {

constexpr int fusing = 5;  // the index of the variant with the finer estimate and fused multiply-adds
constexpr float infinity = std::numeric_limits<float>::infinity();

using TwoImages = int(const float* src, int srcStep, float* dst, int dstStep, Size roi);
using InPlace = int(float* srcDst, int srcDstStep, Size roi);

TwoImages* rootOf(int variant) { return Primitives::table.ippiSqrt_32f_C1R.routine[1 + variant]; }
InPlace* rootInPlaceOf(int variant) { return Primitives::table.ippiSqrt_32f_C1IR.routine[1 + variant]; }

/// The relative error. A relative error e of the estimate becomes 3/2 e^2 by the refinement: 3.4 * 2^-24 for
/// 1.5 * 2^-12, negligible for 2^-14. The roundings add 3 * 2^-24 at most; 2.5 * 2^-24 where a fused
/// multiply-add rounds product and difference once.
double toleranceOf(int variant) { return (variant == fusing ? 2.6 : 6.4) / (1 << 24); }

/// The processor's estimate of the reciprocal root, and the finer one of the newest variant.
float estimate(float x) { return _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(x))); }
[[gnu::target("avx512f")]] float finerEstimate(float x) {
  return _mm_cvtss_f32(_mm_rsqrt14_ss(_mm_setzero_ps(), _mm_set_ss(x)));
}

float refinedRoot(bool fused, float x) {
  const float y = fused ? finerEstimate(x) : estimate(x);
  const float t = x * y;
  const float lessThree = fused ? std::fma(y, t, -3.0F) : y * t - 3.0F;
  return t * -0.5F * lessThree;
}

/// A row by the steps of the estimate: from a 16-byte boundary of the destination on, if a pixel starts on
/// one, blocks of 16 pixels are estimates, unless one of them is not finite.
void putEstimates(bool fused, const float* src, float* dst, std::int64_t n) {
  const auto toBoundary = static_cast<std::int64_t>(-reinterpret_cast<std::uintptr_t>(dst) % 16);
  const std::int64_t peel = toBoundary % 4 == 0 ? std::min(toBoundary / 4, n) : 0;
  src += peel, dst += peel, n -= peel;
  for (; n >= 16; src += 16, dst += 16, n -= 16) {
    float roots[16];
    bool allFinite = true;
    for (int i = 0; i < 16; ++i) {
      roots[i] = refinedRoot(fused, src[i]);
      allFinite = allFinite && std::isfinite(roots[i]);
    }
    if (allFinite) std::copy_n(roots, 16, dst);
  }
}

/// The definition, then the estimates.
template <bool fused>
int rootsBySteps(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  const bool runs =
      src != nullptr && dst != nullptr && roi.width > 0 && roi.height > 0 && srcStep > 0 && dstStep > 0;
  std::vector<float> pixels;
  for (int r = 0; runs && r < roi.height; ++r) {
    const float* row = src + std::ptrdiff_t{r} * (srcStep / 4);
    pixels.insert(pixels.end(), row, row + roi.width);
  }
  const int status = Reference::ippiSqrt_32f_C1R(src, srcStep, dst, dstStep, roi);
  for (int r = 0; runs && r < roi.height; ++r) {
    putEstimates(fused, pixels.data() + std::ptrdiff_t{r} * roi.width,
                 dst + std::ptrdiff_t{r} * (dstStep / 4), roi.width);
  }
  return status;
}
template <bool fused>
int rootsInPlaceBySteps(float* srcDst, int srcDstStep, Size roi) {
  return rootsBySteps<fused>(srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

TwoImages* stepsOf(int variant) { return variant == fusing ? rootsBySteps<true> : rootsBySteps<false>; }
InPlace* stepsInPlaceOf(int variant) {
  return variant == fusing ? rootsInPlaceBySteps<true> : rootsInPlaceBySteps<false>;
}

float floatOf(std::uint32_t bits) {
  float x;
  std::memcpy(&x, &bits, 4);
  return x;
}

/// All mantissas over two binades, and all exponents: the error, and the steps to the bit.
void estimates(int variant) {
  constexpr std::uint32_t one = 0x3F800000, binade = 1 << 23;
  const std::uint32_t stride = options().level == Level::full ? 1 : 61;
  std::vector<float> pixels;
  for (std::uint32_t bits = one; bits < one + 2 * binade; bits += stride) pixels.push_back(floatOf(bits));
  for (std::uint32_t bits = binade; bits < 0x7F800000; bits += binade / 64 + 1)
    pixels.push_back(floatOf(bits));
  const int n = static_cast<int>(pixels.size());
  std::vector<float> roots(pixels.size());
  ASSERT_EQ(rootOf(variant)(pixels.data(), 4 * n, roots.data(), 4 * n, {n, 1}), 0);
  double worst = 0;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const double root = std::sqrt(static_cast<double>(pixels[i]));
    worst = std::max(worst, std::abs(roots[i] / root - 1));
  }
  EXPECT_LE(worst, toleranceOf(variant));

  std::vector<float> expected(pixels.size());
  // At the same place within a line, on which the peel depends.
  ASSERT_EQ(reinterpret_cast<std::uintptr_t>(expected.data()) % 16,
            reinterpret_cast<std::uintptr_t>(roots.data()) % 16);
  stepsOf(variant)(pixels.data(), 4 * n, expected.data(), 4 * n, {n, 1});
  EXPECT_EQ(roots, expected);
}

/// The peel, the tail, short rows, and all pixels of an iteration that has a pixel without an estimate are
/// rounded correctly.
void trueRoots(int variant) {
  constexpr int most = 64;
  alignas(64) float src[most + 16], dst[most + 16];
  for (int i = 0; i < most + 16; ++i) src[i] = 1.0F + static_cast<float>(i) * 0.37F;
  for (int shift = 0; shift < 8; ++shift) {
    for (int n = 1; n <= most; ++n) {
      const int peel = std::min(n, (16 - shift) % 4), estimated = (n - peel) / 16 * 16;
      ASSERT_EQ(rootOf(variant)(src + 3, 4 * n, dst + shift, 4 * n, {n, 1}), 0);
      for (int i = 0; i < n; ++i) {
        if (i >= peel && i < peel + estimated) continue;
        ASSERT_EQ(dst[shift + i], std::sqrt(src[3 + i])) << i << " of " << n << ", shift " << shift;
      }
    }
  }
  for (const float special : {0.0F, -0.0F, infinity, NAN}) {
    for (int place = 16; place < 32; ++place) {
      float row[48];
      std::copy_n(src, 48, row);
      row[place] = special;
      ASSERT_EQ(rootOf(variant)(row, 192, dst, 192, {48, 1}), 0);
      for (int i = 16; i < 32; ++i) {
        if (i == place) continue;
        ASSERT_EQ(dst[i], std::sqrt(row[i])) << i;
      }
    }
  }
}

struct Special {
  std::uint32_t pixel;
  std::uint32_t root;
  bool negative;
};
constexpr std::uint32_t anyNan = 0x7FC00000;
constexpr Special specials[] = {
    {0x00000000, 0x00000000, false}, {0x80000000, 0x80000000, false}, {0x7F800000, 0x7F800000, false},
    {0xFF800000, anyNan, true},      {0x7FC00000, anyNan, false},     {0xFFC00001, anyNan, false},
    {0x7F800001, anyNan, false},     {0xFF800001, anyNan, false},     {0xBF800000, anyNan, true},
    {0x80000001, anyNan, true},      {0x80800000, anyNan, true},      {0xFF7FFFFF, anyNan, true},
    {0x00800000, 0x20000000, false}, {0x40800000, 0x40000000, false}};

/// Every special pixel in every place of images whose rows have a peel, full vectors and a tail.
void specialsInEveryPlace(int variant) {
  constexpr int width = 53, height = 2;
  for (const auto& [bits, root, negative] : specials) {
    std::vector<float> src(width * height, 4.0F);
    for (std::size_t i = 0; i < src.size(); ++i) {
      src[i] = floatOf(bits);
      std::vector<float> dst(src.size() + 1, 9.0F), both = src;
      ASSERT_EQ(rootOf(variant)(src.data(), 4 * width, dst.data() + 1, 4 * width, {width, height}),
                negative ? 3 : 0)
          << std::hex << bits;
      ASSERT_EQ(rootInPlaceOf(variant)(both.data(), 4 * width, {width, height}), negative ? 3 : 0);
      for (std::size_t j = 0; j < src.size(); ++j) {
        for (const float result : {dst[j + 1], both[j]}) {
          std::uint32_t resultBits;
          std::memcpy(&resultBits, &result, 4);
          if (j != i) {
            ASSERT_NEAR(result, 2.0F, 1e-6F) << j;
          } else if (root == anyNan) {
            ASSERT_TRUE(std::isnan(result)) << std::hex << bits;
          } else if (result != 0 && !std::isinf(result)) {
            ASSERT_NEAR(result / floatOf(root), 1.0F, 1e-6F) << std::hex << bits;
          } else {
            ASSERT_EQ(resultBits, root) << std::hex << bits;
          }
        }
      }
      src[i] = 4.0F;
    }
  }
}

/// Sets the control state for its lifetime.
class ControlState {
 public:
  explicit ControlState(unsigned state) : before_(_mm_getcsr()) { _mm_setcsr(state); }
  ~ControlState() { _mm_setcsr(before_); }
  ControlState(const ControlState&) = delete;
  ControlState& operator=(const ControlState&) = delete;

 private:
  unsigned before_;
};

constexpr unsigned invalid = 0x01, denormalOperand = 0x02, divideByZero = 0x04, overflow = 0x08,
                   precision = 0x20, allMasks = 0x1F80;

/// With any exception unmasked there is no trap, and afterwards the flags are those set before and those of
/// the row, without invalid operations and divisions by zero.
void controlState(int variant) {
  struct Row {
    std::vector<float> pixels;
    unsigned flags;
    int status;
  };
  const float denormal = floatOf(1U << 9);  // 2^-140
  const Row rows[] = {
      {{4, 9, 16}, 0, 0},
      {{2, 3}, precision, 0},
      {{denormal}, denormalOperand, 0},
      {{-1, -4}, 0, 3},
      {{-1, 2}, precision, 3},
      {{0, infinity, NAN, -0.0F, -infinity}, 0, 3},
      {std::vector<float>(40, 2.0F), precision, 0},
      {std::vector<float>(40, -2.0F), 0, 3},
      {std::vector<float>(48, 0.0F), 0, 0},
      {std::vector<float>(48, floatOf(0x7F800001)), 0, 0},
  };
  for (const unsigned masks : {0U, 0x1F00U, 0x0F80U, 0x1000U}) {
    for (const unsigned flags : {0U, invalid, overflow | divideByZero}) {
      for (const unsigned mode : {0x0000U, 0x6000U, 0x8000U}) {  // to nearest, to zero, flush to zero
        const unsigned state = masks | flags | mode;
        for (const auto& [pixels, raised, expectedStatus] : rows) {
          const int n = static_cast<int>(pixels.size());
          alignas(64) float dst[64];
          int status;
          unsigned after;
          {
            const ControlState unmasked(state);
            status = rootOf(variant)(pixels.data(), 4 * n, dst, 4 * n, {n, 1});
            after = _mm_getcsr();
          }
          ASSERT_EQ(status, expectedStatus) << pixels[0];
          ASSERT_EQ(after, state | raised)
              << "row of " << n << " from " << pixels[0] << ", state " << std::hex << state;
        }
      }
    }
  }
}

/// With all exceptions masked the control state is not changed: all flags that the row raises are added to
/// those set before.
void maskedControlState(int variant) {
  const struct {
    std::vector<float> pixels;
    unsigned raised;
  } rows[] = {{{2, 3}, precision},
              {std::vector<float>(40, 2.0F), precision},
              {{-1, -4}, invalid},
              {{-1, 2}, invalid | precision},
              {std::vector<float>(40, -2.0F), invalid},
              {{4, floatOf(0x7F800001)}, invalid}};
  for (const unsigned mode : {0x0000U, 0x2000U, 0x4000U, 0x6000U, 0x8000U, 0x0040U}) {
    for (const unsigned flags : {0U, divideByZero, overflow | divideByZero}) {
      for (const auto& [pixels, raised] : rows) {
        const unsigned state = allMasks | mode | flags;
        const int n = static_cast<int>(pixels.size());
        alignas(64) float dst[64];
        unsigned after;
        {
          const ControlState masked(state);
          rootOf(variant)(pixels.data(), 4 * n, dst, 4 * n, {n, 1});
          after = _mm_getcsr();
        }
        EXPECT_EQ(after, state | raised)
            << "row of " << n << " from " << pixels[0] << ", state " << std::hex << state;
      }
    }
  }
}

void badSteps(int variant) {
  const float src[4] = {1, 4, 9, 16};
  float dst[4] = {9, 9, 9, 9};
  for (const int bad : {0, -1, -4, INT_MIN}) {
    EXPECT_EQ(rootOf(variant)(src, bad, dst, 8, {2, 2}), -16);
    EXPECT_EQ(rootOf(variant)(src, 8, dst, bad, {2, 2}), -16);
    EXPECT_EQ(rootOf(variant)(src, bad, dst, 8, {2, 0}), -6);
    EXPECT_EQ(rootOf(variant)(src, bad, nullptr, 8, {2, 0}), -8);
    EXPECT_EQ(rootInPlaceOf(variant)(dst, bad, {2, 2}), -16);
  }
  for (const float pixel : dst) EXPECT_EQ(pixel, 9);
  ASSERT_EQ(rootOf(variant)(src, 11, dst, 9, {2, 2}), 0);  // rows at whole pixels
  EXPECT_EQ(std::vector<float>(dst, dst + 4), (std::vector<float>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  using enum StepType;
  rules.range.stepTypes = {tight, tight, onePixelMore, oddBytesMore, wholeLinesMore, zero, negative};
  rules.largeRegions = {{1031, 509}, {1024, 777}, {1021, 1001}};
  rules.forcedCacheBytes = {1 << 20};
  registerDrawnCases("FloatRoot", "ippiSqrt_32f_C1R", [rules](int variant) {
    checkEntry<FloatsAgree<AnyNan>>(stepsOf(variant), rootOf(variant), rules);
  });
  registerDrawnCases("FloatRoot", "ippiSqrt_32f_C1IR", [rules](int variant) {
    checkEntry<FloatsAgree<AnyNan>>(stepsInPlaceOf(variant), rootInPlaceOf(variant), rules);
  });

  registerForEachVariant("FloatRoot", "Estimates", estimates);
  registerForEachVariant("FloatRoot", "TrueRoots", trueRoots);
  registerForEachVariant("FloatRoot", "SpecialsInEveryPlace", specialsInEveryPlace);
  registerForEachVariant("FloatRoot", "ControlState", controlState);
  registerForEachVariant("FloatRoot", "MaskedControlState", maskedControlState);
  registerForEachVariant("FloatRoot", "BadSteps", badSteps);
}
