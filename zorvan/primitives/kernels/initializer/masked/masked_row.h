#pragma once

// Processes a row under a mask in blocks, for a fill and for a copy: they differ only in where the selected
// pixels come from. A block is tested as a whole: only a block with selected and unselected pixels loads its
// destination.
//
// Reads and writes nothing outside the row. A peel or tail that is processed as a block overlaps its
// neighbours: filling or copying a pixel twice is the same as once.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_plan.h"
#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Masked {
namespace {

/// Of a fill: one value.
template <class Bits>
struct ValueSource {
  using Pixel = Bits;
  static constexpr int bytesRead = 0;  ///< for each pixel
  Bits value;

  Bits pixel(std::int64_t) const { return value; }
  template <class Vector>
  Vector at(std::int64_t) const {
    return Vector::broadcast(value);
  }
  ValueSource from(std::int64_t) const { return *this; }
};

/// Of a copy: the pixels of a row.
template <class Bits>
struct RowSource {
  using Pixel = Bits;
  static constexpr int bytesRead = sizeof(Bits);
  const u8* row;

  Bits pixel(std::int64_t i) const { return loadAs<Bits>(row + i * std::int64_t{sizeof(Bits)}); }
  template <class Vector>
  Vector at(std::int64_t i) const {
    return Vector::load(row + i * std::int64_t{sizeof(Bits)});
  }
  RowSource from(std::int64_t i) const { return {row + i * std::int64_t{sizeof(Bits)}}; }
};

template <class Source>
inline void maskedPixels(Source source, u8* dst, const u8* mask, std::int64_t pixels) {
  using Pixel = typename Source::Pixel;
  for (std::int64_t i = 0; i < pixels; ++i) {
    if (mask[i] != 0) storeAs<Pixel>(dst + i * std::int64_t{sizeof(Pixel)}, source.pixel(i));
  }
}

/// Processes the whole blocks of a row and returns the number of their pixels.
template <class Block, Stores stores, class Source>
inline std::int64_t maskedBlocks(Source source, u8* dst, const u8* mask, std::int64_t pixels) {
  std::int64_t i = 0;
  for (; i + Block::pixels <= pixels; i += Block::pixels) {
    Block::template run<stores>(source.from(i), dst + i * std::int64_t{sizeof(typename Source::Pixel)},
                                mask + i);
  }
  return i;
}

/// How an end of a row that is shorter than a block is processed.
enum class MaskedEnd { byPixels, byBlock };

/// A row in blocks: the block, how the ends of a row are processed, the stores of full blocks on a boundary,
/// and the longest row that is processed pixel by pixel.
template <class Block, MaskedEnd peel, MaskedEnd tail, Stores stores, int byPixelsUpTo = Block::pixels - 1>
struct RowInBlocks {
  template <class Source>
  static void run(Source source, u8* dst, const u8* mask, const MaskedPlan& image) {
    constexpr int pixelBytes = sizeof(typename Source::Pixel);
    const std::int64_t pixels = image.pixels;
    const auto plan = planMaskedRow<pixelBytes, byPixelsUpTo>(pixels, bytesToBoundary(dst, Block::boundary));
    if (ZORVAN_PLANNED("planMaskedRow by pixels", plan.byPixels))
      return maskedPixels(source, dst, mask, pixels);

    if (plan.peel != 0) {
      if constexpr (peel == MaskedEnd::byBlock) {
        Block::template run<Stores::plain>(source, dst, mask);
      } else {
        maskedPixels(source, dst, mask, plan.peel);
      }
    }
    std::int64_t done = plan.peel;
    const std::int64_t rest = pixels - done;
    const auto after = source.from(done);
    if (plan.onBoundary) {
      done += maskedBlocks<Block, stores>(after, dst + done * pixelBytes, mask + done, rest);
      if constexpr (stores == Stores::streaming) fenceStores();
    } else {
      done += maskedBlocks<Block, Stores::plain>(after, dst + done * pixelBytes, mask + done, rest);
    }
    if (done == pixels) return;
    if constexpr (tail == MaskedEnd::byBlock) {
      done = pixels - Block::pixels;
      Block::template run<Stores::plain>(source.from(done), dst + done * pixelBytes, mask + done);
    } else {
      maskedPixels(source.from(done), dst + done * pixelBytes, mask + done, pixels - done);
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Masked
