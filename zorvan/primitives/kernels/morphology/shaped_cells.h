#pragma once

// The set cells of a mask that is not solid, a class for each form of mask. Each adds the pixels under the
// set cells to a block of results. The tables of a record may lie at any address.

#include <utility>

#include "zorvan/primitives/frame/MorphSpec.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/morphology/shaped_blocks.h"

namespace Zorvan::Primitives::Morphology {
namespace {

inline int tableValue(const u16* table, std::int64_t i) {
  return loadAs<u16>(reinterpret_cast<const char*>(table) + i * std::int64_t{sizeof(u16)});
}

/// Any mask, from its column table.
class TabledCells {
 public:
  explicit TabledCells(const MorphSpec& spec)
      : columns_(spec.rowOffsets), rows_(spec.maskHeight), entry_(spec.maskWidth + 1) {}

  int count() const {
    std::int64_t cells = 0;
    for (std::int64_t r = 0; r < rows_; ++r) cells += tableValue(columns_, r * entry_);
    return cells < listedCells ? static_cast<int>(cells) : listedCells;
  }

  /// `use(row, column)` for each set cell.
  template <class Use>
  void forEach(Use use) const {
    for (std::int64_t r = 0; r < rows_; ++r) {
      const std::int64_t first = r * entry_ + 1, cells = tableValue(columns_, r * entry_);
      for (std::int64_t i = 0; i < cells; ++i) use(r, std::int64_t{tableValue(columns_, first + i)});
    }
  }

  template <class Block, class Pixel, class Active>
  void addTo(Block& block, Plane<const Pixel> src, Active lanes) const {
    forEach([&](std::int64_t row, std::int64_t column) { block.add(src.from(row, column), lanes); });
  }

 private:
  const u16* columns_;
  std::int64_t rows_;
  std::int64_t entry_;  ///< table values of each row
};

/// Any mask of few cells, as a list of offsets from its first cell in bytes.
class ListedCells {
 public:
  ListedCells(const TabledCells& cells, std::int64_t step, int pixelBytes) {
    cells.forEach([&](std::int64_t row, std::int64_t column) {
      offsets_[count_++] = row * step + column * pixelBytes;
    });
  }

  template <class Block, class Pixel, class Active>
  void addTo(Block& block, Plane<const Pixel> src, Active lanes) const {
    for (int i = 0; i < count_; ++i) {
      const char* const first = reinterpret_cast<const char*>(src.pixels) + offsets_[i];
      block.add(Plane<const Pixel>{reinterpret_cast<const Pixel*>(first), src.step}, lanes);
    }
  }

 private:
  std::int64_t offsets_[listedCells];
  int count_ = 0;
};

/// A mask of at most one run in each row.
class Runs {
 public:
  explicit Runs(const MorphSpec& spec) : runs_(spec.rowRuns), rows_(spec.maskHeight) {}

  template <class Block, class Pixel, class Active>
  void addTo(Block& block, Plane<const Pixel> src, Active lanes) const {
    for (std::int64_t r = 0; r < rows_; ++r) {
      const std::int64_t cells = tableValue(runs_, 2 * r), first = tableValue(runs_, 2 * r + 1);
      for (std::int64_t i = 0; i < cells; ++i) block.add(src.from(r, first + i), lanes);
    }
  }

 private:
  const u16* runs_;
  std::int64_t rows_;
};

/// One row and one column of a square mask.
class Cross {
 public:
  explicit Cross(const MorphSpec& spec)
      : row_(tableValue(spec.rowRuns, 0)), column_(tableValue(spec.rowRuns, 1)), side_(spec.maskWidth) {}

  template <class Block, class Pixel, class Active>
  void addTo(Block& block, Plane<const Pixel> src, Active lanes) const {
    for (std::int64_t i = 0; i < side_; ++i) {
      block.add(src.from(row_, i), lanes);
      block.add(src.from(i, column_), lanes);
    }
  }

 private:
  std::int64_t row_, column_;
  std::int64_t side_;
};

struct Run {
  int first, cells;
};

struct KnownShape3 {
  static constexpr Run rows[] = {{1, 1}, {0, 3}, {1, 1}};
};
struct KnownShape5 {
  static constexpr Run rows[] = {{2, 1}, {1, 3}, {0, 5}, {1, 3}, {2, 1}};
};
struct KnownShape7 {
  static constexpr Run rows[] = {{3, 1}, {1, 5}, {1, 5}, {0, 7}, {1, 5}, {1, 5}, {3, 1}};
};

/// A known shape, unrolled: no table is read.
template <class Shape>
class KnownCells {
 public:
  template <class Block, class Pixel, class Active>
  void addTo(Block& block, Plane<const Pixel> src, Active lanes) const {
    addRows(block, src, lanes, std::make_integer_sequence<int, sizeof(Shape::rows) / sizeof(Run)>());
  }

 private:
  template <class Block, class Pixel, class Active, int... row>
  static void addRows(Block& block, Plane<const Pixel> src, Active lanes,
                      std::integer_sequence<int, row...>) {
    (addRun<row>(block, src, lanes, std::make_integer_sequence<int, Shape::rows[row].cells>()), ...);
  }
  template <int row, class Block, class Pixel, class Active, int... cell>
  static void addRun(Block& block, Plane<const Pixel> src, Active lanes,
                     std::integer_sequence<int, cell...>) {
    (block.add(src.from(row, Shape::rows[row].first + cell), lanes), ...);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
