// Pairs of operands: all pairs of bytes, and all pairs of the limits of wider pixels, under every scale
// factor with a result of its own and some beyond. In long rows, which go in vectors, and in rows of 7
// pixels, which the older variants compute one by one.

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/EntryTests.h"
#include "tests/support/Quotients.h"

namespace Zorvan::Test {
namespace {

constexpr int shortRow = 7;

template <class T>
std::vector<T> operands() {
  std::vector<T> values;
  if constexpr (std::is_same_v<T, u8>) {
    for (int i = 0; i < 256; ++i) values.push_back(static_cast<u8>(i));
  } else if constexpr (std::is_same_v<T, float>) {
    for (const float v : specialValues<float>()) values.push_back(v);
    for (const int exponent : {-149, -148, -127, -126, -125, 120, 124, 125, 126, 127}) {
      for (const float m : {1.0F, -1.0F, 1.5F, 1.9999999F}) values.push_back(std::ldexp(m, exponent));
    }
    for (const float v : {3.0F, 7.0F, 10.0F, 1e-3F, 1e10F, -0.1F, 0.99999994F, 1.0000001F})
      values.push_back(v);
  } else {
    for (int i = 0; i <= 8; ++i) values.push_back(static_cast<T>(i));
    for (int bit = 4; bit < 16; ++bit) {
      for (const int near : {-1, 0, 1}) values.push_back(static_cast<T>((1 << bit) + near));
    }
    for (const int v : {13,    100,   181, 182, 257, 1000, 12345, 46340, 46341, 54321,  65533,
                        65534, 65535, -2,  -3,  -5,  -100, -181,  -255,  -256,  -32767, -12345}) {
      values.push_back(static_cast<T>(v));
    }
  }
  return values;
}

/// Each operand with each: the second one changes first.
template <class T>
struct Pairs {
  std::vector<T> first, second;
  int count() const { return static_cast<int>(first.size()); }
};
template <class T>
const Pairs<T>& allPairs() {
  static const Pairs<T> pairs = [] {
    Pairs<T> made;
    const std::vector<T> values = operands<T>();
    for (const T a : values) {
      for (const T b : values) {
        made.first.push_back(a);
        made.second.push_back(b);
      }
    }
    return made;
  }();
  return pairs;
}

std::vector<int> scaleFactors() {
  if (options().level == Level::few) return {-16, -8, -7, -1, 0, 1, 2, 8, 9, 10, 16, 17};
  std::vector<int> factors = {-2147483647 - 1, -2147483647, -64, 64, 2147483647};
  for (int f = -34; f <= 34; ++f) factors.push_back(f);
  return factors;
}

/// `call` runs reference and routine on the pairs in rows of `width` pixels and returns both statuses.
template <class T, class Call>
void expectPairs(int variant, bool division, int width, int f, Call call) {
  const Pairs<T>& pairs = allPairs<T>();
  const Size roi{width, pairs.count() / width};
  std::vector<T> want(pairs.second), got(pairs.second);  // the operand of a form in place
  const int step = width * static_cast<int>(sizeof(T));
  const auto [wantStatus, gotStatus] = call(pairs, step, roi, want.data(), got.data());
  EXPECT_EQ(gotStatus, wantStatus);
  for (int y = 0; division && y < roi.height; ++y) {
    const auto row = static_cast<std::size_t>(y * width);
    const T *divisors = &pairs.first[row], *numerators = &pairs.second[row];
    const InVectors vectors = vectorsOfRow(variant, divisors, numerators, &got[row], width);
    putVectorQuotients(variant, vectors, divisors, numerators, &want[row], f);
  }
  for (std::size_t i = 0; i < got.size(); ++i) {
    ASSERT_TRUE(samePixel(want[i], got[i]))
        << "operands " << +pairs.first[i] << " and " << +pairs.second[i] << " with scale factor " << f << ": "
        << +got[i] << " instead of " << +want[i] << " in rows of " << width;
  }
}

template <class T>
std::vector<int> rowLengths() {
  return {static_cast<int>(operands<T>().size()), shortRow};
}

template <class T>
void registerPairs(const std::string& name, bool division,
                   int (*reference)(const T*, int, const T*, int, T*, int, Size, int),
                   const Primitives::Row<int(const T*, int, const T*, int, T*, int, Size, int)>& row) {
  registerForEachVariant("Pairs", name, [=, &row](int variant) {
    for (const int f : scaleFactors()) {
      for (const int width : rowLengths<T>()) {
        expectPairs<T>(variant, division, width, f, [&](auto& p, int step, Size roi, T* want, T* got) {
          const auto run = [&](auto routine, T* dst) {
            return routine(p.first.data(), step, p.second.data(), step, dst, step, roi, f);
          };
          return std::pair(run(reference, want), run(row.routine[1 + variant], got));
        });
      }
    }
  });
}

template <class T>
void registerPairs(const std::string& name, bool division,
                   int (*reference)(const T*, int, T*, int, Size, int),
                   const Primitives::Row<int(const T*, int, T*, int, Size, int)>& row) {
  registerForEachVariant("Pairs", name, [=, &row](int variant) {
    for (const int f : scaleFactors()) {
      for (const int width : rowLengths<T>()) {
        expectPairs<T>(variant, division, width, f, [&](auto& p, int step, Size roi, T* want, T* got) {
          const auto run = [&](auto routine, T* dst) {
            return routine(p.first.data(), step, dst, step, roi, f);
          };
          return std::pair(run(reference, want), run(row.routine[1 + variant], got));
        });
      }
    }
  });
}

void registerPairs(const std::string& name, bool division,
                   int (*reference)(const float*, int, const float*, int, float*, int, Size),
                   const Primitives::Row<int(const float*, int, const float*, int, float*, int, Size)>& row) {
  registerForEachVariant("Pairs", name, [=, &row](int variant) {
    for (const int width : rowLengths<float>()) {
      expectPairs<float>(variant, division, width, 0,
                         [&](auto& p, int step, Size roi, float* want, float* got) {
                           const auto run = [&](auto routine, float* dst) {
                             return routine(p.first.data(), step, p.second.data(), step, dst, step, roi);
                           };
                           return std::pair(run(reference, want), run(row.routine[1 + variant], got));
                         });
    }
  });
}

void registerPairs(const std::string& name, bool division,
                   int (*reference)(const float*, int, float*, int, Size),
                   const Primitives::Row<int(const float*, int, float*, int, Size)>& row) {
  registerForEachVariant("Pairs", name, [=, &row](int variant) {
    for (const int width : rowLengths<float>()) {
      expectPairs<float>(variant, division, width, 0,
                         [&](auto& p, int step, Size roi, float* want, float* got) {
                           const auto run = [&](auto routine, float* dst) {
                             return routine(p.first.data(), step, dst, step, roi);
                           };
                           return std::pair(run(reference, want), run(row.routine[1 + variant], got));
                         });
    }
  });
}

/// Every constant with an image of every operand.
template <class T, class Reference, class Routine, class... Factor>
void expectConstants(Reference reference, Routine routine, Factor... f) {
  const std::vector<T> values = operands<T>();
  const int count = static_cast<int>(values.size());
  for (const T value : values) {
    for (const int width : {count, shortRow}) {
      std::vector<T> want(values), got(values);
      const int step = width * static_cast<int>(sizeof(T));
      const Size roi{width, count / width};
      EXPECT_EQ(routine(value, got.data(), step, roi, f...), reference(value, want.data(), step, roi, f...));
      for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(samePixel(want[static_cast<std::size_t>(i)], got[static_cast<std::size_t>(i)]))
            << +value << " with pixel " << i << " of " << width;
      }
    }
  }
}

template <class T>
void registerPairs(const std::string& name, bool, int (*reference)(T, T*, int, Size, int),
                   const Primitives::Row<int(T, T*, int, Size, int)>& row) {
  registerForEachVariant("Pairs", name, [=, &row](int variant) {
    for (const int f : scaleFactors()) expectConstants<T>(reference, row.routine[1 + variant], f);
  });
}
void registerPairs(const std::string& name, bool, int (*reference)(float, float*, int, Size),
                   const Primitives::Row<int(float, float*, int, Size)>& row) {
  registerForEachVariant(
      "Pairs", name, [=, &row](int variant) { expectConstants<float>(reference, row.routine[1 + variant]); });
}

}  // namespace

void registerEntryTests() {
#define PAIRS(name, ...) registerPairs(#name, division, &Reference::name, Primitives::table.name);
  bool division = false;
#define ENTRY(...) PAIRS(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Arithmetic.def"
  division = true;
#include "zorvan/primitives/frame/entries/Divide.def"
#undef ENTRY
#undef PAIRS
}

}  // namespace Zorvan::Test
