#pragma once

// Runs a Laplace filter over a region and creates its border on the fly.
//
// The region is divided into bands of rows. A band goes from left to right, and each column of vectors from
// the band's top to its bottom, with its sums in registers; then it hands them on to the next band, so that
// each source row is loaded and weighted once. Rows that are not whole vectors end with one that overlaps the
// one before.
//
// Large results are streamed in whole lines. Where a line has several vectors, as many adjacent columns are
// collected on the stack, down the band.

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
  static constexpr bool streams = false, prefetchesForWrite = false;
  static void prefetchAfter(const unsigned char*, const unsigned char*) {}
  void store(V vector, unsigned char* p) const { vector.store(p); }
};
/// The rows of a band lie in different pages, where the processor's own prefetches end too early.
template <class V>
struct PrefetchedStores : PlainStores<V> {
  static constexpr bool prefetchesForWrite = true;
  [[gnu::always_inline]] static void prefetchAfter(const unsigned char* src, const unsigned char* dst) {
    prefetchLine(src + laplacePrefetchDistance);
    prefetchForWrite(dst + laplacePrefetchDistance);
  }
};
/// Of aligned vectors.
template <class V>
struct StreamingStores {
  static constexpr bool streams = true, prefetchesForWrite = false;
  [[gnu::always_inline]] static void prefetchAfter(const unsigned char* src, const unsigned char*) {
    prefetchLine(src + laplacePrefetchDistance);
  }
  void store(V vector, unsigned char* p) const { vector.stream(p); }
};
/// Of vectors that are streamed later, as whole lines.
template <class V>
struct StagingStores : StreamingStores<V> {
  void store(V vector, unsigned char* p) const { vector.storeAligned(p); }
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

  /// Integers in the shortest vectors take longer to filter than to store, unless rows collide.
  static constexpr bool isFast = V::size > 16 || sizeof(T) == 4;

  static void run(const Region<T>& region) {
    const std::int64_t peel = bytesToBoundary(region.dst.pixels, V::size);
    const bool gains = isFast || planColliding(region.rows.src.step, region.dst.step, false);
    if (ZORVAN_PLANNED("planLaplaceStreaming", gains && planStreaming(region.size, sizeof(T), region.dst.step,
                                                                      peel, Filter::reach, V::size))) {
      sweep(region, peel, StreamingStores<V>{});
      return fenceStores();
    }
    if (ZORVAN_PLANNED("planLaplacePrefetch", planPrefetch(region.size, sizeof(T)))) {
      sweep(region, 0, PrefetchedStores<V>{});
    } else {
      sweep(region, 0, PlainStores<V>{});
    }
  }

 private:
  /// Columns inside the rows that are filtered from the top of the region to its bottom before the next ones.
  static constexpr int mostInside = planColumns(sizeof(Filter));
  static_assert(mostInside > 0);

  /// Rows that are filtered together, and the sums that their columns hand on to the next band.
  struct Band {
    const unsigned char* rows[laplaceNearestBandRows + around];
    unsigned char* dst;
    std::int64_t step;
    std::int64_t count;
    bool isFirst, isLast;
    Filter carried[mostInside + 3];  // and at the ends of the rows

    /// `loads` is a copy, so that its members stay in registers.
    template <class Loads, class Stores>
    [[gnu::noinline]] void filterColumn(std::int64_t at, Filter* state, Loads loads, Stores stores) const {
      filterRows(at, *state, loads, stores, dst + at, step);
    }

    /// Adjacent columns of vectors, all inside the rows.
    template <class Stores>
    [[gnu::noinline]] void filterColumns(std::int64_t at, std::int64_t columns, Filter* state,
                                         Stores stores) const {
      Filter* const end = state + columns;
      for (; state != end; ++state, at += V::size) filterRows(at, *state, Inside{}, stores, dst + at, step);
    }

    /// The same by streaming stores of whole lines, each of several vectors. The first column is aligned.
    [[gnu::noinline]] void streamColumns(std::int64_t at, std::int64_t columns, Filter* state) const {
      constexpr int lineVectors = streamedBlockBytes / V::size;
      const std::int64_t toLine = bytesToBoundary(dst + at, streamedBlockBytes) / V::size;
      const std::int64_t before = toLine < columns ? toLine : columns;
      filterColumns(at, before, state, PlainStores<V>{});
      at += before * V::size, state += before, columns -= before;

      alignas(streamedBlockBytes) unsigned char lines[laplaceNearestBandRows * streamedBlockBytes];
      for (; columns >= lineVectors; columns -= lineVectors, at += streamedBlockBytes) {
        for (int i = 0; i < lineVectors; ++i, ++state) {
          filterRows(at + i * V::size, *state, Inside{}, StagingStores<V>{}, lines + i * V::size,
                     streamedBlockBytes);
        }
        const unsigned char* line = lines;
        unsigned char* to = dst + at;
        for (std::int64_t r = 0; r < count; ++r, line += streamedBlockBytes, to += step) {
          for (int i = 0; i < lineVectors; ++i) V::load(line + i * V::size).stream(to + i * V::size);
        }
      }
      filterColumns(at, columns, state, PlainStores<V>{});
    }

   private:
    template <class Loads, class Stores>
    [[gnu::always_inline]] void filterRows(std::int64_t at, Filter& state, const Loads& loads, Stores stores,
                                           unsigned char* to, std::int64_t toNext) const {
      const unsigned char* const* row = rows;
      Filter filter{};
      if (isFirst) {
        for (int i = 0; i < around; ++i) filter.take(loads, *row++ + at);
      } else {
        filter.assign(state);
      }
      const unsigned char* const* const end = row + count;
      for (; row != end; ++row, to += toNext) {
        Stores::prefetchAfter(*row + at, to);
        stores.store(filter.take(loads, *row + at), to);
      }
      if (!isLast) state.assign(filter);
    }
  };

  /// The first vector of `stores` begins at `peel` bytes, if not 0.
  template <class Stores>
  static void sweep(const Region<T>& region, std::int64_t peel, Stores stores) {
    const std::int64_t bytes = region.size.width * std::int64_t{sizeof(T)};
    const VectorsInside inside = planInside(bytes, reachBytes, peel, V::size);
    const bool collide = ZORVAN_PLANNED(
        "planColliding", planColliding(region.rows.src.step, region.dst.step, Stores::streams));
    const int rows = planBandRows(bytes * region.size.height, collide);
    Band band;
    band.step = region.dst.step;
    for (std::int64_t first = 0; first == 0 || first < inside.count; first += mostInside) {
      const std::int64_t left = inside.count - first, columns = left < mostInside ? left : mostInside;
      for (std::int64_t y = 0; y < region.size.height; y += rows) {
        startBand(band, region, y, rows);
        filterBand(band, region, inside, first, columns, stores);
      }
    }
  }

  static void startBand(Band& band, const Region<T>& region, std::int64_t y, std::int64_t rows) {
    const std::int64_t left = region.size.height - y;
    band.isFirst = y == 0;
    band.isLast = left <= rows;
    band.count = band.isLast ? left : rows;
    band.dst = bytesOf(region.dst.at(y));

    const unsigned char** row = band.rows;
    std::int64_t r = band.isFirst ? -Filter::reach : y + Filter::reach;
    const std::int64_t end = y + band.count + Filter::reach;
    for (; r < 0; ++r) *row++ = bytesOf(region.rows.at(r));
    const std::int64_t endInside = end < region.size.height ? end : region.size.height;
    if (r < endInside) {
      const unsigned char* inside = bytesOf(region.rows.src.at(r));
      for (; r < endInside; ++r, inside += region.rows.src.step) *row++ = inside;
    }
    for (; r < end; ++r) *row++ = bytesOf(region.rows.at(r));
  }

  template <class Stores>
  static void filterBand(Band& band, const Region<T>& region, const VectorsInside& inside, std::int64_t first,
                         std::int64_t columns, Stores stores) {
    const std::int64_t last = region.size.width * std::int64_t{sizeof(T)} - V::size;
    Filter* state = band.carried;
    if (last == 0) return band.filterColumn(0, state, Ends<true, true>(region.ends), PlainStores<V>{});
    if (first == 0) band.filterColumn(0, state++, Ends<true, false>(region.ends), PlainStores<V>{});
    const std::int64_t at = inside.first + first * V::size;
    if constexpr (Stores::prefetchesForWrite) {
      const std::int64_t ahead = planPrefetchedColumns(last - at, columns, V::size);
      band.filterColumns(at, ahead, state, stores);
      band.filterColumns(at + ahead * V::size, columns - ahead, state + ahead, PlainStores<V>{});
    } else if constexpr (Stores::streams && V::size < streamedBlockBytes) {
      band.streamColumns(at, columns, state);
    } else {
      band.filterColumns(at, columns, state, stores);
    }
    if (first + columns < inside.count) return;
    state += columns;
    if (inside.overlaps) band.filterColumn(last - reachBytes, state++, Inside{}, PlainStores<V>{});
    band.filterColumn(last, state, Ends<false, true>(region.ends), PlainStores<V>{});
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
        Filter filter{};
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
