#pragma once

// Runs a Laplace filter over a region and creates its border on the fly.
//
// The region is divided into bands of rows. A band goes from left to right, and each column of vectors from
// the band's top to its bottom, so that a source row is loaded and weighted once for all output rows of the
// band that it serves. Rows that are not whole vectors end with one that overlaps the one before.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/filtering/laplace_plan.h"
#include "zorvan/primitives/kernels/filtering/row_ends.h"
#include "zorvan/primitives/kernels/neighbourhood/border_rows.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"

namespace Zorvan::Primitives::Laplace {
namespace {

/// The bytes of a row.
template <class T>
inline const unsigned char* bytesOf(const T* row) {
  return reinterpret_cast<const unsigned char*>(row);
}
template <class T>
inline unsigned char* bytesOf(T* row) {
  return reinterpret_cast<unsigned char*>(row);
}

/// A region with its border, and the result.
template <class T>
struct Region {
  BorderRows<T> rows;
  RowEnds<T> ends;
  Plane<T> dst;
  Size size;
};

template <class V>
struct PlainStores {
  static constexpr bool streams = false;
  void store(V vector, unsigned char* p) const { vector.store(p); }
};
/// Of aligned vectors.
template <class V>
struct StreamingStores {
  static constexpr bool streams = true;
  void store(V vector, unsigned char* p) const { vector.stream(p); }
};

/// Regions at least as wide as a vector.
template <class Filter>
struct Sweep {
  using T = typename Filter::Pixel;
  using V = typename Filter::Vector;
  template <bool first, bool last>
  using Ends = AtRowEnds<T, V, first, last>;
  using Inside = InsideRow<T, V>;
  static constexpr int around = 2 * Filter::reach;
  static constexpr std::int64_t reachBytes = Filter::reach * sizeof(T);

  static void run(const Region<T>& region) {
    if constexpr (V::size == streamedBlockBytes) {
      const std::int64_t peel = bytesToBoundary(region.dst.pixels, V::size);
      if (ZORVAN_PLANNED("planLaplaceStreaming",
                         planStreaming(region.size, sizeof(T), region.dst.step, peel, Filter::reach))) {
        sweep(region, peel, StreamingStores<V>{});
        return fenceStores();
      }
    }
    sweep(region, 0, PlainStores<V>{});
  }

 private:
  /// A column of vectors of a band.
  struct Band {
    const unsigned char* rows[mostBandRows + around];
    unsigned char* dst;
    std::int64_t step, srcStep;
    std::int64_t bytes;  ///< of a row
    std::int64_t count;

    /// Bytes from a column to the one that is prefetched with it, further on in the row or in the next band;
    /// 0 for none. A band has more rows than the hardware's prefetcher follows.
    std::int64_t prefetchDistance(std::int64_t at) const {
      constexpr std::int64_t distance = 512;
      if (bytes <= distance) return 0;
      return at + distance < bytes ? distance : distance - bytes + count * srcStep;
    }

    /// `loads` is a copy, so that its members stay in registers.
    template <class Loads, class Stores>
    [[gnu::noinline]] void filterColumn(std::int64_t at, Loads loads, Stores stores) const {
      Filter filter;
      for (int i = 0; i < around; ++i) filter.take(loads, rows[i] + at);
      const unsigned char* const* row = rows + around;
      const unsigned char* const* const end = row + count;
      const std::int64_t toNext = step, toPrefetch = prefetchDistance(at);
      unsigned char* to = dst + at;
      for (; row != end; ++row, to += toNext) {
        const unsigned char* const p = *row + at;
        stores.store(filter.take(loads, p), to);
        if (toPrefetch != 0) prefetchLine(p + toPrefetch);
      }
    }
  };

  /// The first vector of `stores` begins at `peel` bytes, if not 0.
  template <class Stores>
  static void sweep(const Region<T>& region, std::int64_t peel, Stores stores) {
    const std::int64_t bytes = region.size.width * std::int64_t{sizeof(T)};
    const std::int64_t last = bytes - V::size;
    const VectorsInside inside = planInside(bytes, reachBytes, peel, V::size);
    const std::int64_t bandRows = planBandRows(bytes, Filter::reach, Stores::streams);
    Band band;
    band.step = region.dst.step;
    band.srcStep = region.rows.src.step;
    band.bytes = bytes;
    for (std::int64_t y = 0; y < region.size.height; y += bandRows) {
      band.count = region.size.height - y < bandRows ? region.size.height - y : bandRows;
      for (std::int64_t i = 0; i < band.count + around; ++i) {
        band.rows[i] = bytesOf(region.rows.at(y - Filter::reach + i));
      }
      band.dst = bytesOf(region.dst.at(y));
      if (last == 0) {
        band.filterColumn(0, Ends<true, true>(region.ends), PlainStores<V>{});
        continue;
      }
      band.filterColumn(0, Ends<true, false>(region.ends), PlainStores<V>{});
      for (std::int64_t i = 0; i < inside.count; ++i) {
        band.filterColumn(inside.first + i * V::size, Inside{}, stores);
      }
      if (inside.overlaps) band.filterColumn(last - reachBytes, Inside{}, PlainStores<V>{});
      band.filterColumn(last, Ends<false, true>(region.ends), PlainStores<V>{});
    }
  }
};

/// Narrower regions: rows are copied with their border. `Filter` has vectors of 16 bytes.
template <class Filter>
struct NarrowRegion {
  using T = typename Filter::Pixel;
  using V = typename Filter::Vector;
  static constexpr int around = 2 * Filter::reach;
  static constexpr std::int64_t pixelBytes = sizeof(T), rowBytes = 64, bandRows = narrowBandRows;

  static void run(const Region<T>& region) {
    const std::int64_t width = region.size.width, bytes = width * pixelBytes;
    alignas(16) unsigned char built[(bandRows + around) * rowBytes] = {};
    for (std::int64_t y = 0; y < region.size.height; y += bandRows) {
      const std::int64_t count = region.size.height - y < bandRows ? region.size.height - y : bandRows;
      for (std::int64_t i = 0; i < count + around; ++i) {
        copyRow(region.ends, bytesOf(region.rows.at(y - Filter::reach + i)), width, built + i * rowBytes);
      }
      for (std::int64_t at = 0; at < bytes; at += V::size) {
        const std::int64_t part = bytes - at;
        const unsigned char* row = built + Filter::reach * pixelBytes + at;
        Filter filter;
        for (int i = 0; i < around; ++i, row += rowBytes) filter.take(InsideRow<T, V>{}, row);
        for (std::int64_t i = 0; i < count; ++i, row += rowBytes) {
          const V result = filter.take(InsideRow<T, V>{}, row);
          unsigned char* const to = bytesOf(region.dst.at(y + i)) + at;
          if (part < V::size) {
            storeFirst(to, result, part);
          } else {
            result.store(to);
          }
        }
      }
    }
  }

 private:
  static void copyRow(const RowEnds<T>& ends, const unsigned char* src, std::int64_t width,
                      unsigned char* dst) {
    using Bits = typename RowEnds<T>::Bits;
    const std::int64_t left = ends.leftInMemory ? Filter::reach : 0;
    const std::int64_t right = ends.rightInMemory ? Filter::reach : 0;
    copyRun(dst + (Filter::reach - left) * pixelBytes, src - left * pixelBytes,
            (left + width + right) * pixelBytes);
    if (left == 0) {
      fillRun(dst, ends.replicates ? loadAs<Bits>(src) : ends.constant, Filter::reach);
    }
    if (right == 0) {
      fillRun(dst + (Filter::reach + width) * pixelBytes,
              ends.replicates ? loadAs<Bits>(src + (width - 1) * pixelBytes) : ends.constant, Filter::reach);
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
