#pragma once

// Walks a row under a mask, for a fill and for a copy alike: they differ in where the selected pixels come
// from. A block is tested as a whole, so that only blocks in which some but not all pixels are selected cost
// more than a look at the mask or a store.
//
// Reads and writes nothing outside the row. Heads and tails that are done as a block overlap their
// neighbours: filling or copying a pixel twice is the same as once.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_plan.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// A fill: one value everywhere.
template <class Bits>
struct ValueSource {
  using Pixel = Bits;
  Bits value;

  Bits pixel(std::int64_t) const { return value; }
  template <class Vector>
  Vector at(std::int64_t) const {
    return Vector::broadcast(value);
  }
  ValueSource from(std::int64_t) const { return *this; }
};

/// A copy: the pixels of a row.
template <class Bits>
struct RowSource {
  using Pixel = Bits;
  const unsigned char* row;

  Bits pixel(std::int64_t i) const { return loadAs<Bits>(row + i * std::int64_t{sizeof(Bits)}); }
  template <class Vector>
  Vector at(std::int64_t i) const {
    return Vector::load(row + i * std::int64_t{sizeof(Bits)});
  }
  RowSource from(std::int64_t i) const { return {row + i * std::int64_t{sizeof(Bits)}}; }
};

// How a block whose pixels are all selected is stored.
struct AnyStore {
  static constexpr bool streaming = false;
  template <class Vector>
  static void put(Vector v, unsigned char* p) {
    v.store(p);
  }
};
struct AlignedStore {
  static constexpr bool streaming = false;
  template <class Vector>
  static void put(Vector v, unsigned char* p) {
    v.storeAligned(p);
  }
};
struct StreamingStore {
  static constexpr bool streaming = true;
  template <class Vector>
  static void put(Vector v, unsigned char* p) {
    v.stream(p);
  }
};

template <class Source>
inline void maskedPixels(Source source, unsigned char* dst, const unsigned char* mask, std::int64_t pixels) {
  using Pixel = typename Source::Pixel;
  for (std::int64_t i = 0; i < pixels; ++i) {
    if (mask[i] != 0) storeAs<Pixel>(dst + i * std::int64_t{sizeof(Pixel)}, source.pixel(i));
  }
}

/// Runs all whole blocks of a row and returns how many pixels that were.
template <class Block, class Store, class Source>
inline std::int64_t maskedBlocks(Source source, unsigned char* dst, const unsigned char* mask,
                                 std::int64_t pixels) {
  std::int64_t i = 0;
  for (; i + Block::pixels <= pixels; i += Block::pixels) {
    Block::template run<Store>(source.from(i), dst + i * std::int64_t{sizeof(typename Source::Pixel)},
                               mask + i);
  }
  return i;
}

/// What a row's end that is shorter than a block is done with.
enum class MaskedEnd { byPixels, byBlock };

/// One line of the policy: the block, what happens to the ends of a row, the stores of full blocks that lie
/// on a boundary, and the longest row that goes pixel by pixel.
template <class Block, MaskedEnd peel, MaskedEnd tail, class Store, int byPixelsUpTo = Block::pixels - 1>
struct BlockForm {
  template <class Source>
  static void row(Source source, unsigned char* dst, const unsigned char* mask, const MaskedPlan& image) {
    constexpr int pixelBytes = sizeof(typename Source::Pixel);
    const std::int64_t pixels = image.pixels;
    const auto plan = planMaskedRow<pixelBytes, byPixelsUpTo>(pixels, bytesToBoundary(dst, Block::boundary));
    if (ZORVAN_PLANNED("planMaskedRow by pixels", plan.byPixels))
      return maskedPixels(source, dst, mask, pixels);

    if (plan.peel != 0) {
      if constexpr (peel == MaskedEnd::byBlock) {
        Block::template run<AnyStore>(source, dst, mask);
      } else {
        maskedPixels(source, dst, mask, plan.peel);
      }
    }
    std::int64_t done = plan.peel;
    const std::int64_t rest = pixels - done;
    const auto after = source.from(done);
    if (plan.onBoundary) {
      done += maskedBlocks<Block, Store>(after, dst + done * pixelBytes, mask + done, rest);
      if constexpr (Store::streaming) fenceStores();
    } else {
      done += maskedBlocks<Block, AnyStore>(after, dst + done * pixelBytes, mask + done, rest);
    }
    if (done == pixels) return;
    if constexpr (tail == MaskedEnd::byBlock) {
      done = pixels - Block::pixels;
      Block::template run<AnyStore>(source.from(done), dst + done * pixelBytes, mask + done);
    } else {
      maskedPixels(source.from(done), dst + done * pixelBytes, mask + done, pixels - done);
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
