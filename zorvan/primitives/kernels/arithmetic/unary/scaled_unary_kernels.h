#pragma once

// Scaled squares and square roots of integer pixels: the operation for each scale factor. The variants differ
// in the width of their vectors only.

#include "zorvan/primitives/kernels/arithmetic/unary/byte_lookup.h"
#include "zorvan/primitives/kernels/arithmetic/unary/byte_roots.h"
#include "zorvan/primitives/kernels/arithmetic/unary/byte_rows.h"
#include "zorvan/primitives/kernels/arithmetic/unary/root_tables.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_images.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/arithmetic/unary/word_roots.h"
#include "zorvan/primitives/kernels/arithmetic/unary/word_squares.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives::Unary {
namespace {

using Ipp::ippStsSqrtNegArg;

/// 16-bit pixels are widened to 32-bit lanes, where 64-byte vectors gain nothing.
template <class V>
using WordVector = ByVariant<V, Vector16, Vector16, Vector16, Vector16, Vector32, Vector32>;
template <class V>
using ByteVector = ByVariant<V, Vector16, Vector16, Vector16, Vector16, Vector32, Vector64>;

template <class Vector, class Operation>
void eachByteRow(Operation operation, const UnaryImages& images, Size roi) {
  const ByteRowsPlan plan =
      planByteRows(roi, images.src.step, images.dst.step, images.inPlace, queryCacheSize);
  ZORVAN_NOTE_ONE_ROW("planByteRows as one row", plan.rows, roi.height);
  const auto row = [&](const u8* src, u8* dst) {
    bytesRow<Vector, false>(operation, src, dst, plan.rowPixels);
  };
  const auto streamedRow = [&](const u8* src, u8* dst) {
    bytesRow<Vector, true>(operation, src, dst, plan.rowPixels);
  };
  if (ZORVAN_PLANNED("planByteRows streaming", plan.streaming)) {
    forEachRow(plan.rows, streamedRow, images.src, images.dst);
    return fenceStores();
  }
  forEachRow(plan.rows, row, images.src, images.dst);
}

template <class Vector>
void squareBytes(const UnaryImages& images, Size roi, int f) {
  const auto run = [&](const auto& operation) { eachByteRow<Vector>(operation, images, roi); };
  if (f < -7) return run(BytesOtherThanZero{});
  if (f == -7) return run(SquareOfBytes<SquareRaised>{{7}, 8});
  if (f < 0) return run(SquareOfBytes<SquareRaised>{{-f}, 16});
  if (f == 0) return run(SquareOfBytes<SquareKept>{{}, 16});
  if (f <= 3) return run(SquareOfBytes<SquareTruncated>{{f}});
  if (f <= 9) return run(SquareOfBytes<SquareRounded>{{f}});
  run(SquareOfBytes<SquareAveraged>{{f}});
}

template <class Vector>
void rootsOfBytes(const UnaryImages& images, Size roi, int f) {
  const auto run = [&](const auto& operation) { eachByteRow<Vector>(operation, images, roi); };
  if (f < -7) return run(BytesOtherThanZero{});
#ifdef __SSSE3__
  if (f == 0) return run(RootOfByte{});
#endif
  if (f <= 0) {
    const int k = -f;
    const u8* const table = rootTables()[k];
#ifdef __AVX2__
    if (k < 5) return run(ByteLookup{table});
#endif
    const auto row = [&](const u8* src, u8* dst) {
#ifndef __AVX2__
      if (k < 5) return lookUpRow(table, src, dst, roi.width);
#endif
      lookUpRowUpTo(table, lastOfRootTable(k), src, dst, roi.width);
    };
    return forEachRow(roi.height, row, images.src, images.dst);
  }
  // The last bytes before the next result. A tie belongs to the even one of the two.
  if (f == 1) return run(BytesAbove<8>{{1, 8, 25, 48, 81, 120, 169, 224}});
  if (f == 2) return run(BytesAbove<4>{{4, 35, 100, 195}});
  if (f == 3) return run(BytesAbove<2>{{16, 143}});
  if (f == 4) return run(BytesAbove<1>{{64}});
  run(BytesOfZero{});
}

template <class V, class T>
int squarePixels(const UnaryImages& images, Size roi, int f) {
  if constexpr (sizeof(T) == 1) {
    squareBytes<ByteVector<V>>(images, roi, f);
  } else {
    withSquareScaling<T>(f, [&](const auto& scaling) {
      const auto row = [&](const u8* src, u8* dst) {
        squareWordsRow<WordVector<V>, T>(scaling, src, dst, roi.width);
      };
      forEachRow(roi.height, row, images.src, images.dst);
    });
  }
  return ippStsNoErr;
}

template <class V, class T>
int rootPixels(const UnaryImages& images, Size roi, int f) {
  bool negative = false;
  if constexpr (sizeof(T) == 1) {
    rootsOfBytes<ByteVector<V>>(images, roi, f);
  } else {
    withRootScaling<T>(f, [&](const auto& root) {
      const auto row = [&](const u8* src, u8* dst) {
        negative |= rootWordsRow<WordVector<V>, T>(root, src, dst, roi.width);
      };
      forEachRow(roi.height, row, images.src, images.dst);
    });
  }
  return negative ? ippStsSqrtNegArg : ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Unary
