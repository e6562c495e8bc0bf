// Erosion and dilation by definition: over the neighbourhood of each pixel, in an image that is extended in
// all directions.

#include <cstring>
#include <functional>
#include <vector>

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

using Primitives::MorphAdvSpec;
using Primitives::MorphSpec;

constexpr int replicateBorder = 1, mirrorBorder = 3, defaultBorder = 5, constantBorder = 6;
constexpr int aboveInMemory = 0x10, belowInMemory = 0x20, leftInMemory = 0x40, rightInMemory = 0x80,
              allInMemory = 0xF0;

template <class Record>
Record recordAt(const Record* at) {
  Record record;
  std::memcpy(static_cast<void*>(&record), static_cast<const void*>(at), sizeof record);
  return record;
}

template <class T>
struct Image {
  const T* pixels;
  int step;
  Size size;
};

/// The index in a row or column of `n` pixels whose pixel is used for index `i` outside.
int inside(int i, int n, int border) {
  if (border == replicateBorder) return i < 0 ? 0 : n - 1;
  while (i < 0 || i >= n) {  // mirror at the nearer end until inside
    if (n == 1) return 0;
    i = i < 0 ? -i : 2 * (n - 1) - i;
  }
  return i;
}

template <class T>
T extendedPixel(const Image<T>& image, int row, int column, int word, T value) {
  const bool rowMade =
      (row < 0 && !(word & aboveInMemory)) || (row >= image.size.height && !(word & belowInMemory));
  const bool columnMade =
      (column < 0 && !(word & leftInMemory)) || (column >= image.size.width && !(word & rightInMemory));
  const int border = word & 15;
  if ((rowMade || columnMade) && border == constantBorder) return value;
  const int r = rowMade ? inside(row, image.size.height, border) : row;
  const int c = columnMade ? inside(column, image.size.width, border) : column;
  return get(image.pixels, image.step, r, c);
}

template <class T>
T startValue(bool dilate);
template <>
u8 startValue(bool dilate) {
  return dilate ? 0 : 255;
}
template <>
float startValue(bool dilate) {
  return dilate ? -3.4028235e38f : 3.4028235e38f;
}

/// The extreme pixel under the set cells, for each pixel of the region. Cell by cell for all pixels, which is
/// quicker: each pixel meets the cells in their order.
template <class T, class IsBeyond>
std::vector<T> extremes(const T* extended, int columns, Size roi, const std::vector<Size>& cells, T start,
                        IsBeyond isBeyond) {
  std::vector<T> result(static_cast<std::size_t>(roi.width) * static_cast<std::size_t>(roi.height), start);
  for (const Size cell : cells) {
    for (int r = 0; r < roi.height; ++r) {
      const T* const pixels = extended + (r + cell.height) * columns + cell.width;
      T* const row = result.data() + r * roi.width;
      for (int c = 0; c < roi.width; ++c) row[c] = isBeyond(row[c], pixels[c]) ? row[c] : pixels[c];
    }
  }
  return result;
}

/// The status of the tests of the arguments.
template <class T>
int testArguments(const T* src, int srcStep, const T* dst, int dstStep, Size roi, const void* spec,
                  const u8* buffer) {
  if (src == nullptr || dst == nullptr || spec == nullptr || buffer == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  const std::int64_t rowBytes = static_cast<std::int64_t>(sizeof(T)) * roi.width;
  if (srcStep < rowBytes || dstStep < rowBytes) return -16;
  if (sizeof(T) == 4 && (srcStep % 4 != 0 || dstStep % 4 != 0)) return -108;
  return 0;
}

template <class T>
int morph(bool dilate, const T* src, int srcStep, T* dst, int dstStep, Size roi, int word, T value,
          const MorphSpec* spec, const u8* buffer) {
  const int status = testArguments(src, srcStep, dst, dstStep, roi, spec, buffer);
  if (status != 0) return status;
  if (word > 4095) return -225;
  const int border = word & 15;
  if (word != 240 && border != replicateBorder && border != mirrorBorder && border != defaultBorder &&
      border != constantBorder)
    return -225;
  if (dilate && sizeof(T) == 1) word |= (word >> 4) & allInMemory;
  if (border == defaultBorder) {
    word = (word & ~15) | constantBorder;
    value = startValue<T>(dilate);
  }

  const MorphSpec mask = recordAt(spec);
  const int width = mask.maskWidth, height = mask.maskHeight;

  if (width == 1) word |= leftInMemory | rightInMemory;
  if (height == 1) word |= aboveInMemory | belowInMemory;
  const bool small = width >= roi.width || height >= roi.height;
  if (small && (word & allInMemory) != allInMemory) word &= ~allInMemory;

  std::vector<Size> cells;  // the set ones, from the mask's first row and column
  for (int i = 0; i < height; ++i) {
    for (int j = 0; j < width; ++j) {
      if (mask.cells[i * width + j] != 0) cells.push_back({j, i});
    }
  }

  const Image<T> image{src, srcStep, roi};
  const int columns = roi.width + width - 1, rows = roi.height + height - 1;
  std::vector<T> extended;
  extended.reserve(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < columns; ++c) {
      extended.push_back(extendedPixel(image, r - height / 2, c - width / 2, word, value));
    }
  }

  const bool copies = cells.empty() || width * height == 1;
  if (copies) cells = {{width / 2, height / 2}};
  const auto extremesBy = [&](auto isBeyond) {
    return extremes(extended.data(), columns, roi, cells, startValue<T>(dilate), isBeyond);
  };
  const std::vector<T> result = copies   ? extremesBy([](T, T) { return false; })
                                : dilate ? extremesBy(std::greater<T>())
                                         : extremesBy(std::less<T>());
  std::size_t i = 0;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) put(dst, dstStep, r, c, result[i++]);
  }
  return 0;
}

template <class T>
int morphTwice(bool dilateFirst, const T* src, int srcStep, T* dst, int dstStep, Size roi, int word, T value,
               const MorphAdvSpec* spec, const u8* buffer) {
  const int status = testArguments(src, srcStep, dst, dstStep, roi, spec, buffer);
  if (status != 0) return status;
  if (word > 4095) return -225;
  const int border = word & 15;
  const bool hasType = border == replicateBorder || border == mirrorBorder || border == defaultBorder ||
                       border == constantBorder;
  if (!hasType && (word & allInMemory) != allInMemory) return -225;

  const MorphAdvSpec both = recordAt(spec);
  const auto pixels = static_cast<std::size_t>(roi.width) * static_cast<std::size_t>(roi.height);
  std::vector<T> between(pixels);
  const int step = roi.width * static_cast<int>(sizeof(T));
  const int first =
      morph(dilateFirst, src, srcStep, between.data(), step, roi, word, value, both.first, buffer);
  if (first != 0) return first;
  return morph<T>(!dilateFirst, between.data(), step, dst, dstStep, roi, hasType ? border : defaultBorder,
                  value, both.second, buffer);
}

}  // namespace

#define DEFINE(pixels, T)                                                                             \
  int ippiMorphDilateBorder_##pixels##_C1R(const T* src, int srcStep, T* dst, int dstStep, Size roi,  \
                                           int borderType, T borderValue, const MorphSpec* spec,      \
                                           u8* buffer) {                                              \
    return morph(true, src, srcStep, dst, dstStep, roi, borderType, borderValue, spec, buffer);       \
  }                                                                                                   \
  int ippiMorphErodeBorder_##pixels##_C1R(const T* src, int srcStep, T* dst, int dstStep, Size roi,   \
                                          int borderType, T borderValue, const MorphSpec* spec,       \
                                          u8* buffer) {                                               \
    return morph(false, src, srcStep, dst, dstStep, roi, borderType, borderValue, spec, buffer);      \
  }                                                                                                   \
  int ippiMorphCloseBorder_##pixels##_C1R(const T* src, int srcStep, T* dst, int dstStep, Size roi,   \
                                          int borderType, T borderValue, const MorphAdvSpec* spec,    \
                                          u8* buffer) {                                               \
    return morphTwice(true, src, srcStep, dst, dstStep, roi, borderType, borderValue, spec, buffer);  \
  }                                                                                                   \
  int ippiMorphOpenBorder_##pixels##_C1R(const T* src, int srcStep, T* dst, int dstStep, Size roi,    \
                                         int borderType, T borderValue, const MorphAdvSpec* spec,     \
                                         u8* buffer) {                                                \
    return morphTwice(false, src, srcStep, dst, dstStep, roi, borderType, borderValue, spec, buffer); \
  }
DEFINE(8u, u8)
DEFINE(32f, float)
#undef DEFINE

}  // namespace Zorvan::Reference
