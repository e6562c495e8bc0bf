#pragma once

// Flood fill: the entries, and which variant fills the rows of which pixels how.

#include <type_traits>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/computervision/flood_blocks.h"
#include "zorvan/primitives/kernels/computervision/flood_fill.h"
#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_masked.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

#ifndef __AVX512BW__
template <class T>
struct MaskedRow;
template <class T>
struct MaskedWindowRow;
struct FloatBlock32;
#endif

/// `Row` for all regions, `WindowRow` for large ones.
template <class V, class T>
struct Policy;
template <class V>
struct Policy<V, u8> {
  using Blocks = BlockRow<ByteBlock>;
  using Windows = BlockWindowRow<ByteBlock>;
  using Row = ByVariant<V, Blocks, Blocks, Blocks, Blocks, Blocks, MaskedRow<u8>>;
  using WindowRow = ByVariant<V, Windows, Windows, Windows, Windows, Windows, MaskedWindowRow<u8>>;
};
template <class V>
struct Policy<V, u16> {
  using Row = PlainRow<u16>;
  using WindowRow = Row;
};
template <class V>
struct Policy<V, int> {
  using Plain = PlainRow<int>;
  using Blocks = BlockRow<IntBlock>;
  using Windows = BlockWindowRow<IntBlock>;
  using Row = ByVariant<V, Plain, Plain, Plain, Blocks, Blocks, MaskedRow<int>>;
  using WindowRow = ByVariant<V, Plain, Plain, Plain, Windows, Windows, MaskedWindowRow<int>>;
};
template <class V>
struct Policy<V, float> {
  using Blocks = BlockRow<FloatBlock>;
  using Windows = BlockWindowRow<FloatBlock>;
  using Row = ByVariant<V, Blocks, Blocks, Blocks, Blocks, Blocks, BlockRow<FloatBlock32>>;
  using WindowRow = ByVariant<V, Windows, Windows, Windows, Windows, Windows, BlockWindowRow<FloatBlock32>>;
};

template <class V, class T>
int floodFill(T* image, int step, Size roi, Point seed, T newValue, _IppiConnectedComp* region, u8* buffer) {
  if (image == nullptr || region == nullptr || buffer == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (step < std::int64_t{roi.width} * std::int64_t{sizeof(T)}) return ippStsStepErr;
  if (step % static_cast<int>(sizeof(T)) != 0) return Ipp::ippStsNotEvenStepErr;
  if (seed.x < 0 || seed.x >= roi.width || seed.y < 0 || seed.y >= roi.height)
    return Ipp::ippStsOutOfRangeErr;

  using Row = typename Policy<V, T>::Row;
  const Plane<u8> rows{reinterpret_cast<u8*>(image), step};
  const T old = loadAs<T>(Row::at(rows.at(seed.y), seed.x));
  if (old == newValue) return ippStsNoErr;

  const auto filled = [&](auto row) { return Filler<decltype(row)>(row, rows, roi, buffer).run(seed); };
  using WindowRow = typename Policy<V, T>::WindowRow;
  FilledArea area;
  if (WindowRow::hasWindows && ZORVAN_PLANNED("usesWindows", usesWindows(roi))) {
    area = filled(WindowRow(old, newValue, roi.width - 1));
  } else {
    area = filled(Row(old, newValue, roi.width - 1));
  }
  region->area = static_cast<std::int32_t>(area.count);
  region->value[0] = newValue;
  region->value[1] = 0;
  region->value[2] = 0;
  region->rect = {area.minX, area.minY, area.maxX - area.minX + 1, area.maxY - area.minY + 1};
  return ippStsNoErr;
}

template <class V>
int getSize(Size roi, int* bufferSize) {
  if (bufferSize == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  *bufferSize = reportedFillBufferBytes(roi);
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiFloodFillGetSize = getSize<V>;
  static constexpr auto ippiFloodFill_4Con_8u_C1IR = floodFill<V, u8>;
  static constexpr auto ippiFloodFill_4Con_16u_C1IR = floodFill<V, u16>;
  static constexpr auto ippiFloodFill_4Con_32s_C1IR = floodFill<V, int>;
  static constexpr auto ippiFloodFill_4Con_32f_C1IR = floodFill<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
