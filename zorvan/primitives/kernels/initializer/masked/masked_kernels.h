#pragma once

// Fill and copy under a mask: the entries, and which variant uses which form. A pixel is written exactly when
// its mask byte is not zero.

#include <cstdint>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_blocks16.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_blocks32.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_plan.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_row.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_row64.h"

namespace Zorvan::Primitives::Masked {
namespace {

/// When the rows of an image without gaps are joined, and the form of a row.
template <MaskedRows joining, class RowForm>
struct Form {
  static constexpr MaskedRows rows = joining;
  using Row = RowForm;
};

constexpr MaskedEnd byPixels = MaskedEnd::byPixels;
constexpr MaskedEnd byBlock = MaskedEnd::byBlock;
constexpr MaskedRows apart = MaskedRows::apart;
constexpr MaskedRows joinedIfSmall = MaskedRows::joinedIfSmall;
constexpr MaskedRows joinedUnlessOverflow = MaskedRows::joinedUnlessOverflow;

// Rows, then: block, peel, tail, stores of full blocks, and the longest row that is processed pixel by pixel;
// by default it is one pixel shorter than a block.
using Bytes16 = Form<apart, RowInBlocks<ByteBlock16, byPixels, byPixels, Stores::aligned>>;
using Words16 = Form<joinedUnlessOverflow, RowInBlocks<WordBlock16, byBlock, byBlock, Stores::aligned>>;
using WordsApart16 = Form<apart, RowInBlocks<WordBlock16, byPixels, byPixels, Stores::aligned>>;
using Sparse16 = Form<apart, RowInBlocks<SparseBlock16, byPixels, byPixels, Stores::streaming>>;
using Nibbles16 = Form<joinedUnlessOverflow, RowInBlocks<NibbleBlock16, byPixels, byBlock, Stores::aligned>>;
#ifdef __SSE4_2__
using Quarters16 = Form<joinedIfSmall, RowInBlocks<ShuffledBlock16, byPixels, byBlock, Stores::aligned, 16>>;
#else
struct Quarters16;
#endif
#ifdef __AVX2__
using Bytes32 = Form<joinedIfSmall, RowInBlocks<ByteBlock32, byBlock, byBlock, Stores::plain, 32>>;
using Words32 = Form<joinedUnlessOverflow, RowInBlocks<WordBlock32, byBlock, byBlock, Stores::plain>>;
using Dwords32 = Form<joinedIfSmall, RowInBlocks<DwordBlock32, byPixels, byBlock, Stores::plain, 32>>;
#else
struct Bytes32;
struct Words32;
struct Dwords32;
#endif
#ifdef __AVX512BW__
using Registers64 = Form<joinedIfSmall, RowByMaskRegisters<32>>;
using WordRegisters64 = Form<joinedUnlessOverflow, RowByMaskRegisters<15>>;
#else
struct Registers64;
struct WordRegisters64;
#endif

/// By the pixel's bits. A fill and a copy differ in one place: the oldest variant streams no copied words.
template <class V, class Bits>
struct Policy;
template <class V>
struct Policy<V, u8> {
  using Fill = ByVariant<V, Bytes16, Bytes16, Bytes16, Bytes16, Bytes32, Registers64>;
  using Copy = Fill;
};
template <class V>
struct Policy<V, u16> {
  using Fill = ByVariant<V, Sparse16, Words16, Words16, Words16, Words32, WordRegisters64>;
  using Copy = ByVariant<V, WordsApart16, Words16, Words16, Words16, Words32, WordRegisters64>;
};
template <class V>
struct Policy<V, std::uint32_t> {
  using Fill = ByVariant<V, Sparse16, Nibbles16, Quarters16, Quarters16, Dwords32, Registers64>;
  using Copy = Fill;
};

// Types of one size share a routine.

template <class V, class Bits>
int fill(Bits value, void* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  if (dst == nullptr || mask == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  using Form = typename Policy<V, Bits>::Fill;
  const bool tight = isTight(roi, sizeof(Bits), dstStep) && isTight(roi, 1, maskStep);
  const MaskedPlan plan = planMasked<Form::rows>(roi, tight);
  if constexpr (Form::rows != MaskedRows::apart)
    ZORVAN_NOTE_ONE_ROW("planMasked as one row", plan.rows, roi.height);
  forEachRow(
      plan.rows,
      [&](u8* dstRow, const u8* maskRow) { Form::Row::run(ValueSource<Bits>{value}, dstRow, maskRow, plan); },
      Plane<u8>{static_cast<u8*>(dst), dstStep}, Plane<const u8>{mask, maskStep});
  return ippStsNoErr;
}
template <class V>
int fillFloats(float value, float* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return fill<V>(__builtin_bit_cast(std::uint32_t, value), dst, dstStep, roi, mask, maskStep);
}

template <class V, class Bits>
int copy(const void* src, int srcStep, void* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  if (src == nullptr || dst == nullptr || mask == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  using Form = typename Policy<V, Bits>::Copy;
  const bool tight =
      isTight(roi, sizeof(Bits), srcStep) && isTight(roi, sizeof(Bits), dstStep) && isTight(roi, 1, maskStep);
  const MaskedPlan plan = planMasked<Form::rows>(roi, tight);
  if constexpr (Form::rows != MaskedRows::apart)
    ZORVAN_NOTE_ONE_ROW("planMasked as one row", plan.rows, roi.height);
  forEachRow(
      plan.rows,
      [&](const u8* srcRow, u8* dstRow, const u8* maskRow) {
        Form::Row::run(RowSource<Bits>{srcRow}, dstRow, maskRow, plan);
      },
      Plane<const u8>{static_cast<const u8*>(src), srcStep}, Plane<u8>{static_cast<u8*>(dst), dstStep},
      Plane<const u8>{mask, maskStep});
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiSet_8u_C1MR = fill<V, u8>;
  static constexpr auto ippiSet_16u_C1MR = fill<V, u16>;
  static constexpr auto ippiSet_16s_C1MR = fill<V, u16>;
  static constexpr auto ippiSet_32s_C1MR = fill<V, std::uint32_t>;
  static constexpr auto ippiSet_32f_C1MR = fillFloats<V>;

  static constexpr auto ippiCopy_8u_C1MR = copy<V, u8>;
  static constexpr auto ippiCopy_16u_C1MR = copy<V, u16>;
  static constexpr auto ippiCopy_16s_C1MR = copy<V, u16>;
  static constexpr auto ippiCopy_32s_C1MR = copy<V, std::uint32_t>;
  static constexpr auto ippiCopy_32f_C1MR = copy<V, std::uint32_t>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Masked
