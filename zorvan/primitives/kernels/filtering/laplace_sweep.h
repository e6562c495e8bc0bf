#pragma once

// Runs a Laplace filter over a region, its surroundings made on the way.
//
// The region goes in bands of rows. A band is swept from left to right, and each vector's column walked from
// the band's top to its bottom, so that a source row is loaded and weighed once for all the output rows of
// the band that it serves. Rows that are not whole vectors end with one that overlaps the one before.
//
// Rows above and below the region that are not in memory are the nearest row, or one of the constant in the
// work memory. Reads and writes nothing else, to the byte.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/filtering/laplace_plan.h"
#include "zorvan/primitives/kernels/filtering/row_ends.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"

namespace Zorvan::Primitives {
namespace {

/// The bytes of a row from a pixel on.
template <class T>
inline const unsigned char* bytesAt(Plane<const T> plane, std::int64_t row, std::int64_t column) {
  return reinterpret_cast<const unsigned char*>(plane.at(row, column));
}
template <class T>
inline unsigned char* bytesAt(Plane<T> plane, std::int64_t row, std::int64_t column) {
  return reinterpret_cast<unsigned char*>(plane.at(row, column));
}

/// The rows of a region and those around it.
template <class T>
struct SourceRows {
  Plane<const T> plane;
  std::int64_t height;
  bool aboveInMemory, belowInMemory;
  const unsigned char* constant;  ///< null for the nearest row

  const unsigned char* at(std::int64_t y) const {
    if (y < 0 && !aboveInMemory) return constant != nullptr ? constant : bytesAt(plane, 0, 0);
    if (y >= height && !belowInMemory) return constant != nullptr ? constant : bytesAt(plane, height - 1, 0);
    return bytesAt(plane, y, 0);
  }
};

/// All that a region is filtered from and into.
template <class T>
struct LaplaceRegion {
  SourceRows<T> src;
  RowEnds<T> ends;
  Plane<T> dst;
  Size size;
};

template <class V>
struct PlainStores {
  static constexpr bool streams = false;
  void store(V vector, unsigned char* p) const { vector.store(p); }
};
/// Past the caches, of vectors on their own boundaries.
template <class V>
struct StreamingStores {
  static constexpr bool streams = true;
  void store(V vector, unsigned char* p) const { vector.stream(p); }
};

/// Regions of a vector's columns and more.
template <class Filter>
struct LaplaceSweep {
  using T = typename Filter::Pixel;
  using V = typename Filter::Vector;
  template <bool first, bool last>
  using Ends = AtRowEnds<T, V, first, last>;
  using Inside = InsideRow<T, V>;
  static constexpr int around = 2 * Filter::reach;
  static constexpr std::int64_t reachBytes = Filter::reach * sizeof(T);

  static void run(const LaplaceRegion<T>& region) {
    if constexpr (V::size == streamedVectorBytes) {
      const std::int64_t peel = bytesToBoundary(region.dst.pixels, V::size);
      if (ZORVAN_PLANNED("planLaplaceStreaming", planLaplaceStreaming(region.size, sizeof(T), region.dst.step,
                                                                      peel, Filter::reach))) {
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

    /// The column further on in the row, or in the next band, that is fetched while this one is walked: a
    /// band has more rows than the processor follows by itself. As bytes from a pixel; 0 for none.
    std::int64_t ahead(std::int64_t at) const {
      constexpr std::int64_t distance = 512;
      if (bytes <= distance) return 0;
      return at + distance < bytes ? distance : distance - bytes + count * srcStep;
    }

    /// Its loads come by value, so that what is the same for all rows is asked once.
    template <class Loads, class Stores>
    [[gnu::noinline]] void walk(std::int64_t at, Loads loads, Stores stores) const {
      Filter filter;
      for (int i = 0; i < around; ++i) filter.take(loads, rows[i] + at);
      const unsigned char* const* row = rows + around;
      const unsigned char* const* const end = row + count;
      const std::int64_t toNext = step, toPrefetch = ahead(at);
      unsigned char* to = dst + at;
      for (; row != end; ++row, to += toNext) {
        const unsigned char* const p = *row + at;
        stores.store(filter.take(loads, p), to);
        if (toPrefetch != 0) __builtin_prefetch(p + toPrefetch);
      }
    }
  };

  /// `peel` bytes lie in front of the first vector of `stores`, if not 0.
  template <class Stores>
  static void sweep(const LaplaceRegion<T>& region, std::int64_t peel, Stores stores) {
    const std::int64_t bytes = region.size.width * std::int64_t{sizeof(T)};
    const std::int64_t last = bytes - V::size;
    const LaplaceInside inside = planLaplaceInside(bytes, reachBytes, peel, V::size);
    const std::int64_t bandRows = laplaceBandRows(bytes, Filter::reach, Stores::streams);
    Band band;
    band.step = region.dst.step;
    band.srcStep = region.src.plane.step;
    band.bytes = bytes;
    for (std::int64_t y = 0; y < region.size.height; y += bandRows) {
      band.count = region.size.height - y < bandRows ? region.size.height - y : bandRows;
      for (std::int64_t i = 0; i < band.count + around; ++i) {
        band.rows[i] = region.src.at(y - Filter::reach + i);
      }
      band.dst = bytesAt(region.dst, y, 0);
      if (last == 0) {
        band.walk(0, Ends<true, true>(region.ends), PlainStores<V>{});
        continue;
      }
      band.walk(0, Ends<true, false>(region.ends), PlainStores<V>{});
      for (std::int64_t i = 0; i < inside.count; ++i) {
        band.walk(inside.first + i * V::size, Inside{}, stores);
      }
      if (inside.overlaps) band.walk(last - reachBytes, Inside{}, PlainStores<V>{});
      band.walk(last, Ends<false, true>(region.ends), PlainStores<V>{});
    }
  }
};

/// Regions of fewer columns, in rows built with their ends. `Filter` works in vectors of 16 bytes.
template <class Filter>
struct LaplaceNarrow {
  using T = typename Filter::Pixel;
  using V = typename Filter::Vector;
  static constexpr int around = 2 * Filter::reach;
  static constexpr std::int64_t pixelBytes = sizeof(T), rowBytes = 64, bandRows = narrowBandRows;

  static void run(const LaplaceRegion<T>& region) {
    const std::int64_t width = region.size.width, bytes = width * pixelBytes;
    alignas(16) unsigned char built[(bandRows + around) * rowBytes] = {};
    for (std::int64_t y = 0; y < region.size.height; y += bandRows) {
      const std::int64_t count = region.size.height - y < bandRows ? region.size.height - y : bandRows;
      for (std::int64_t i = 0; i < count + around; ++i) {
        build(region.ends, region.src.at(y - Filter::reach + i), width, built + i * rowBytes);
      }
      for (std::int64_t at = 0; at < bytes; at += V::size) {
        const std::int64_t part = bytes - at;
        const unsigned char* row = built + Filter::reach * pixelBytes + at;
        Filter filter;
        for (int i = 0; i < around; ++i, row += rowBytes) filter.take(InsideRow<T, V>{}, row);
        for (std::int64_t i = 0; i < count; ++i, row += rowBytes) {
          const V result = filter.take(InsideRow<T, V>{}, row);
          unsigned char* const to = bytesAt(region.dst, y + i, 0) + at;
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
  static void build(const RowEnds<T>& ends, const unsigned char* src, std::int64_t width,
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
}  // namespace Zorvan::Primitives
