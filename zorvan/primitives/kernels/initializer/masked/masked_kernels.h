#pragma once

// Fill and copy under a mask: the entries, and which variant goes about it how. A pixel is written exactly
// when its mask byte is not zero.

#include <cstdint>

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_blocks.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_plan.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_register_row.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_row.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_wide_blocks.h"

namespace Zorvan::Primitives {
namespace {

namespace masked {

/// A line of the policy: when the rows of an image without gaps run as one, and the form of a row.
template <MaskedRows when, class RowForm>
struct Line {
  static constexpr MaskedRows rows = when;
  using Form = RowForm;
};

constexpr MaskedEnd byPixels = MaskedEnd::byPixels;
constexpr MaskedEnd byBlock = MaskedEnd::byBlock;
constexpr MaskedRows apart = MaskedRows::apart;
constexpr MaskedRows joinedBelow32768 = MaskedRows::joinedBelow32768;
constexpr MaskedRows joinedUnlessOverflow = MaskedRows::joinedUnlessOverflow;

// Rows, then: block, head, tail, stores of full blocks, and the longest row that goes pixel by pixel where
// that is more than what is shorter than a block.
using Bytes = Line<apart, BlockForm<BlendedBytes16, byPixels, byPixels, AlignedStore>>;
using Words = Line<joinedUnlessOverflow, BlockForm<BlendedWords16, byBlock, byBlock, AlignedStore>>;
using WordsApart = Line<apart, BlockForm<BlendedWords16, byPixels, byPixels, AlignedStore>>;
using Streamed = Line<apart, BlockForm<SparsePixels16, byPixels, byPixels, StreamingStore>>;
using Nibbles = Line<joinedUnlessOverflow, BlockForm<NibbleDwords8, byPixels, byBlock, AlignedStore>>;
#ifdef __SSE4_2__
using Quarters = Line<joinedBelow32768, BlockForm<ShuffledDwords16, byPixels, byBlock, AlignedStore, 16>>;
#else
struct Quarters;
#endif
#ifdef __AVX2__
using WideBytes = Line<joinedBelow32768, BlockForm<WideBytes32, byBlock, byBlock, AnyStore, 32>>;
using WideWords = Line<joinedUnlessOverflow, BlockForm<WideWords16, byBlock, byBlock, AnyStore>>;
using WideDwords = Line<joinedBelow32768, BlockForm<WideDwords32, byPixels, byBlock, AnyStore, 32>>;
#else
struct WideBytes;
struct WideWords;
struct WideDwords;
#endif
#ifdef __AVX512BW__
using Register = Line<joinedBelow32768, RegisterForm<32>>;
using RegisterWords = Line<joinedUnlessOverflow, RegisterForm<15>>;
#else
struct Register;
struct RegisterWords;
#endif

/// By the pixel's bits. A fill and a copy differ in one place: the oldest variant streams no copied words.
template <class V, class Bits>
struct Policy;
template <class V>
struct Policy<V, std::uint8_t> {
  using Fill = ByVariant<V, Bytes, Bytes, Bytes, Bytes, WideBytes, Register>;
  using Copy = Fill;
};
template <class V>
struct Policy<V, std::uint16_t> {
  using Fill = ByVariant<V, Streamed, Words, Words, Words, WideWords, RegisterWords>;
  using Copy = ByVariant<V, WordsApart, Words, Words, Words, WideWords, RegisterWords>;
};
template <class V>
struct Policy<V, std::uint32_t> {
  using Fill = ByVariant<V, Streamed, Nibbles, Quarters, Quarters, WideDwords, Register>;
  using Copy = Fill;
};

}  // namespace masked

template <class V, class Bits>
int setMasked(Bits value, void* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  if (dst == nullptr || mask == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  using Line = typename masked::Policy<V, Bits>::Fill;
  const bool tight = isTight(roi, sizeof(Bits), dstStep) && isTight(roi, 1, maskStep);
  const MaskedPlan plan = planMasked<Line::rows>(roi, tight);
  if constexpr (Line::rows != MaskedRows::apart)
    ZORVAN_NOTE_ONE_ROW("planMasked as one row", plan.rows, roi.height);
  for (std::int64_t r = 0; r < plan.rows; ++r) {
    Line::Form::row(ValueSource<Bits>{value}, rowAt(static_cast<unsigned char*>(dst), dstStep, r),
                    rowAt(mask, maskStep, r), plan);
  }
  return ippStsNoErr;
}

template <class V, class Bits>
int copyMasked(const void* src, int srcStep, void* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  if (src == nullptr || dst == nullptr || mask == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  using Line = typename masked::Policy<V, Bits>::Copy;
  const bool tight =
      isTight(roi, sizeof(Bits), srcStep) && isTight(roi, sizeof(Bits), dstStep) && isTight(roi, 1, maskStep);
  const MaskedPlan plan = planMasked<Line::rows>(roi, tight);
  if constexpr (Line::rows != MaskedRows::apart)
    ZORVAN_NOTE_ONE_ROW("planMasked as one row", plan.rows, roi.height);
  for (std::int64_t r = 0; r < plan.rows; ++r) {
    Line::Form::row(RowSource<Bits>{rowAt(static_cast<const unsigned char*>(src), srcStep, r)},
                    rowAt(static_cast<unsigned char*>(dst), dstStep, r), rowAt(mask, maskStep, r), plan);
  }
  return ippStsNoErr;
}

}  // namespace

// Only bits count: types of one size share the routine of one of them.
template <class V>
int Routines<V>::ippiSet_8u_C1MR(u8 value, u8* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked<V, std::uint8_t>(value, dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiSet_16u_C1MR(u16 value, u16* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked<V, std::uint16_t>(value, dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiSet_16s_C1MR(s16 value, s16* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked<V>(static_cast<std::uint16_t>(value), dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiSet_32s_C1MR(int value, int* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked<V>(static_cast<std::uint32_t>(value), dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiSet_32f_C1MR(float value, float* dst, int dstStep, Size roi, const u8* mask,
                                  int maskStep) {
  return setMasked<V>(__builtin_bit_cast(std::uint32_t, value), dst, dstStep, roi, mask, maskStep);
}

template <class V>
int Routines<V>::ippiCopy_8u_C1MR(const u8* src, int srcStep, u8* dst, int dstStep, Size roi, const u8* mask,
                                  int maskStep) {
  return copyMasked<V, std::uint8_t>(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiCopy_16u_C1MR(const u16* src, int srcStep, u16* dst, int dstStep, Size roi,
                                   const u8* mask, int maskStep) {
  return copyMasked<V, std::uint16_t>(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiCopy_16s_C1MR(const s16* src, int srcStep, s16* dst, int dstStep, Size roi,
                                   const u8* mask, int maskStep) {
  return copyMasked<V, std::uint16_t>(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiCopy_32s_C1MR(const int* src, int srcStep, int* dst, int dstStep, Size roi,
                                   const u8* mask, int maskStep) {
  return copyMasked<V, std::uint32_t>(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
template <class V>
int Routines<V>::ippiCopy_32f_C1MR(const float* src, int srcStep, float* dst, int dstStep, Size roi,
                                   const u8* mask, int maskStep) {
  return copyMasked<V, std::uint32_t>(src, srcStep, dst, dstStep, roi, mask, maskStep);
}

}  // namespace Zorvan::Primitives
