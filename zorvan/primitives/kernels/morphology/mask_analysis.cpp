#include "zorvan/primitives/kernels/morphology/mask_analysis.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Zorvan::Primitives::Morphology {
namespace {

constexpr u8 setCell = 255;

/// 16-bit values at any address.
class Table16 {
 public:
  explicit Table16(unsigned char* at) : at_(at) {}
  u16* address() const { return reinterpret_cast<u16*>(at_); }
  void set(std::ptrdiff_t i, std::int32_t value) const {
    const u16 stored = static_cast<u16>(value);
    std::memcpy(at_ + 2 * i, &stored, sizeof stored);
  }
  void copy(std::ptrdiff_t to, std::ptrdiff_t from, std::ptrdiff_t values) const {
    std::memcpy(at_ + 2 * to, at_ + 2 * from, static_cast<std::size_t>(2 * values));
  }

 private:
  unsigned char* at_;
};

/// The cells of the padded mask.
struct Cells {
  u8* at;
  std::ptrdiff_t width, height;

  u8* row(std::ptrdiff_t r) const { return at + r * width; }
  bool isSet(std::ptrdiff_t r, std::ptrdiff_t c) const { return at[r * width + c] != 0; }
  std::ptrdiff_t setInRow(std::ptrdiff_t r) const {
    std::ptrdiff_t count = 0;
    for (std::ptrdiff_t c = 0; c < width; ++c) count += isSet(r, c);
    return count;
  }
  std::ptrdiff_t setInColumn(std::ptrdiff_t c) const {
    std::ptrdiff_t count = 0;
    for (std::ptrdiff_t r = 0; r < height; ++r) count += isSet(r, c);
    return count;
  }
};

void normalise(const u8* mask, Size size, const Cells& cells, MaskPadding padding) {
  const bool first = padding == MaskPadding::topLeft;
  const std::ptrdiff_t skippedRows = first ? cells.height - size.height : 0;
  const std::ptrdiff_t skippedColumns = first ? cells.width - size.width : 0;
  for (std::ptrdiff_t r = 0; r < cells.height; ++r) {
    for (std::ptrdiff_t c = 0; c < cells.width; ++c) {
      const std::ptrdiff_t row = r - skippedRows, column = c - skippedColumns;
      const bool inside = row >= 0 && row < size.height && column >= 0 && column < size.width;
      cells.row(r)[c] = inside && mask[row * size.width + column] != 0 ? setCell : 0;
    }
  }
}

void listColumns(const Cells& cells, const Table16& columns) {
  for (std::ptrdiff_t r = 0; r < cells.height; ++r) {
    const std::ptrdiff_t entry = r * (cells.width + 1);
    std::int32_t count = 0;
    for (std::ptrdiff_t c = 0; c < cells.width; ++c) {
      if (cells.isSet(r, c)) columns.set(entry + ++count, static_cast<std::int32_t>(c));
    }
    columns.set(entry, count);
  }
}

/// Whether the set cells of each row are one run. The table ends with the first row that has more than one
/// run.
bool listRuns(const Cells& cells, const Table16& runs) {
  constexpr std::int32_t none = 0xFFFF;
  for (std::ptrdiff_t r = 0; r < cells.height; ++r) {
    std::int32_t count = 0, first = none;
    bool ended = false, broken = false;
    for (std::ptrdiff_t c = 0; c < cells.width && !broken; ++c) {
      if (!cells.isSet(r, c)) {
        ended = count != 0;
      } else if (ended) {
        broken = true;
      } else {
        if (count++ == 0) first = static_cast<std::int32_t>(c);
      }
    }
    runs.set(2 * r, count);
    runs.set(2 * r + 1, first);
    if (broken) return false;
  }
  return true;
}

/// The one line of `lines` with `full` set cells, if no other has more than one; else -1.
template <class CountOf>
std::ptrdiff_t onlyFullLine(std::ptrdiff_t lines, std::ptrdiff_t full, CountOf countOf) {
  std::ptrdiff_t found = -1;
  for (std::ptrdiff_t line = 0; line < lines; ++line) {
    const std::ptrdiff_t count = countOf(line);
    if (count == full) {
      if (found >= 0) return -1;
      found = line;
    } else if (count > 1) {
      return -1;
    }
  }
  return found;
}

struct Cross {
  std::ptrdiff_t row, column;
};

/// A full row is one of `height` cells and a full column one of `width`, so only square masks can be crosses.
bool findCross(const Cells& cells, Cross& cross) {
  if (cells.width < 2 || cells.height < 2) return false;
  cross.row = onlyFullLine(cells.height, cells.height, [&](auto r) { return cells.setInRow(r); });
  if (cross.row < 0) return false;
  cross.column = onlyFullLine(cells.width, cells.width, [&](auto c) { return cells.setInColumn(c); });
  return cross.column >= 0;
}

struct KnownShape {
  std::ptrdiff_t side;
  const char* cells;
  std::uint32_t code;
};

constexpr KnownShape knownShapes[] = {{3,
                                       ".#."
                                       "###"
                                       ".#.",
                                       MorphSpec::knownShape},
                                      {5,
                                       "..#.."
                                       ".###."
                                       "#####"
                                       ".###."
                                       "..#..",
                                       MorphSpec::knownShape5},
                                      {7,
                                       "...#..."
                                       ".#####."
                                       ".#####."
                                       "#######"
                                       ".#####."
                                       ".#####."
                                       "...#...",
                                       MorphSpec::knownShape7}};

/// The code of the known shape that the mask equals, 0 if none.
std::uint32_t knownShapeOf(const Cells& cells) {
  for (const KnownShape& shape : knownShapes) {
    if (shape.side != cells.width || shape.side != cells.height) continue;
    std::ptrdiff_t i = 0;
    while (i < shape.side * shape.side && (cells.at[i] != 0) == (shape.cells[i] == '#')) ++i;
    if (i == shape.side * shape.side) return shape.code;
  }
  return 0;
}

/// Of a mask with an unset cell.
std::uint32_t fillFlags(const Cells& cells) {
  const bool anySet =
      std::memchr(cells.at, setCell, static_cast<std::size_t>(cells.width * cells.height)) != nullptr;
  const bool emptyEdge = cells.setInRow(0) == 0 || cells.setInRow(cells.height - 1) == 0 ||
                         cells.setInColumn(0) == 0 || cells.setInColumn(cells.width - 1) == 0;
  return (anySet ? 0 : MorphSpec::noneSet) | (emptyEdge ? MorphSpec::emptyEdge : 0);
}

/// Whether all cells are set and none pads the mask.
bool isSolid(const u8* mask, Size size) {
  const auto cells = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  return (size.width & size.height & 1) != 0 && std::memchr(mask, 0, cells) == nullptr;
}

/// The tables of a solid mask, whose rows are equal.
void tabulateSolid(const Cells& cells, const Table16& columns, const Table16& runs) {
  std::memset(cells.at, setCell, static_cast<std::size_t>(cells.width * cells.height));
  columns.set(0, static_cast<std::int32_t>(cells.width));
  for (std::ptrdiff_t c = 0; c < cells.width; ++c) columns.set(1 + c, static_cast<std::int32_t>(c));
  // Each copy doubles the number of rows.
  const std::ptrdiff_t entry = cells.width + 1, end = entry * cells.height;
  for (std::ptrdiff_t made = entry; made < end; made *= 2) {
    columns.copy(made, 0, made < end - made ? made : end - made);
  }
  for (std::ptrdiff_t r = 0; r < cells.height; ++r) {
    runs.set(2 * r, static_cast<std::int32_t>(cells.width));
    runs.set(2 * r + 1, 0);
  }
}

/// Sets one field of a record at any address. Unused bytes of the record stay unchanged.
template <class Field>
void setField(MorphSpec* spec, std::size_t offset, Field value) {
  std::memcpy(reinterpret_cast<unsigned char*>(spec) + offset, &value, sizeof value);
}
#define SET_FIELD(field, value) setField<decltype(MorphSpec::field)>(spec, offsetof(MorphSpec, field), value)

}  // namespace

void analyseMask(const u8* mask, Size size, MorphSpec* spec, MaskPadding padding) {
  auto* const tables = reinterpret_cast<unsigned char*>(spec) + sizeof(MorphSpec);
  const Cells cells{tables, size.width | 1, size.height | 1};
  const Table16 columns(tables + cells.width * cells.height);
  const Table16 runs(tables + cells.width * cells.height + 2 * (cells.width + 1) * cells.height);

  bool contiguous = true, isCross = false;
  std::uint32_t shape = 0, found = MorphSpec::allSet;
  if (isSolid(mask, size)) {
    tabulateSolid(cells, columns, runs);
  } else {
    normalise(mask, size, cells, padding);
    listColumns(cells, columns);
    contiguous = listRuns(cells, runs);
    Cross cross{};
    isCross = findCross(cells, cross);
    if (isCross) {
      runs.set(0, static_cast<std::int32_t>(cross.row));
      runs.set(1, static_cast<std::int32_t>(cross.column));
    }
    shape = knownShapeOf(cells);
    found = fillFlags(cells);
  }

  SET_FIELD(cells, cells.at);
  SET_FIELD(maskWidth, static_cast<std::int32_t>(cells.width));
  SET_FIELD(maskHeight, static_cast<std::int32_t>(cells.height));
  SET_FIELD(anchorX, size.width >> 1);
  SET_FIELD(anchorY, size.height >> 1);
  SET_FIELD(rowOffsets, columns.address());
  SET_FIELD(rowsContiguous, contiguous);
  SET_FIELD(rowRuns, runs.address());
  SET_FIELD(flags,
            found | (contiguous ? MorphSpec::contiguous : 0) | (isCross ? MorphSpec::cross : 0) | shape);
  SET_FIELD(isCross, isCross);
  SET_FIELD(isKnownShape, shape != 0);
}

}  // namespace Zorvan::Primitives::Morphology
