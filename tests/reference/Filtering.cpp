#include <algorithm>
#include <limits>
#include <type_traits>
#include <vector>

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

/// The value that the filter uses for a pixel inside or outside the region.
template <class T>
T pixelAt(const T* src, int step, Size roi, int extent, int border, T value, int row, int column) {
  bool above = border & 0x10, below = border & 0x20, left = border & 0x40, right = border & 0x80;
  const bool all = above && below && left && right;
  if (!all && (roi.width <= extent || roi.height <= extent)) above = below = left = right = false;
  int r = row, c = column;
  if (!above) r = std::max(r, 0);
  if (!below) r = std::min(r, roi.height - 1);
  if (!left) c = std::max(c, 0);
  if (!right) c = std::min(c, roi.width - 1);
  const bool readable = r == row && c == column;
  return !readable && (border & 15) == 6 ? value : get(src, step, r, c);
}

/// Integers in 64 bits from the weights of the kernel, saturated to the type's range.
template <class T>
T filtered3x3(const T (&p)[3][3]) {
  if constexpr (std::is_same_v<T, float>) {
    float sums[3];
    for (int r = 0; r < 3; ++r) sums[r] = p[r][0] + p[r][1] + p[r][2];
    return 9 * p[1][1] - (sums[0] + sums[1] + sums[2]);
  } else {
    std::int64_t sum = 0;
    for (int r = 0; r < 3; ++r) {
      for (int c = 0; c < 3; ++c) sum += (r == 1 && c == 1 ? 8 : -1) * p[r][c];
    }
    return static_cast<T>(
        std::clamp<std::int64_t>(sum, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
  }
}

template <class T>
T filtered5x5(const T (&p)[5][5]) {
  if constexpr (std::is_same_v<T, float>) {
    const auto outer = [&](int r) { return p[r][0] + p[r][4]; };
    const auto inner = [&](int r) { return p[r][1] + p[r][3]; };
    const auto a = [&](int r) { return -outer(r) - 3 * inner(r) - 4 * p[r][2]; };
    const auto b = [&](int r) { return -3 * outer(r) + 6 * p[r][2]; };
    return a(0) + b(1) + (-4 * outer(2) + 6 * inner(2) + 20 * p[2][2]) + b(3) + a(4);
  } else {
    constexpr int kernel[5][5] = {
        {-1, -3, -4, -3, -1}, {-3, 0, 6, 0, -3}, {-4, 6, 20, 6, -4}, {-3, 0, 6, 0, -3}, {-1, -3, -4, -3, -1}};
    std::int64_t sum = 0;
    for (int r = 0; r < 5; ++r) {
      for (int c = 0; c < 5; ++c) sum += kernel[r][c] * p[r][c];
    }
    return static_cast<T>(
        std::clamp<std::int64_t>(sum, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
  }
}

template <int extent, class T>
void filter(const T* src, int srcStep, T* dst, int dstStep, Size roi, int border, T value) {
  constexpr int reach = extent / 2;
  const int columns = roi.width + 2 * reach, rows = roi.height + 2 * reach;
  std::vector<T> extended;
  extended.reserve(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < columns; ++c) {
      extended.push_back(pixelAt(src, srcStep, roi, extent, border, value, r - reach, c - reach));
    }
  }

  for (int y = 0; y < roi.height; ++y) {
    for (int x = 0; x < roi.width; ++x) {
      T p[extent][extent];
      for (int r = 0; r < extent; ++r) {
        for (int c = 0; c < extent; ++c)
          p[r][c] = extended[static_cast<std::size_t>((y + r) * columns + x + c)];
      }
      if constexpr (extent == 3) {
        put(dst, dstStep, y, x, filtered3x3(p));
      } else {
        put(dst, dstStep, y, x, filtered5x5(p));
      }
    }
  }
}

template <class T>
int filterLaplace(const T* src, int srcStep, T* dst, int dstStep, Size roi, int mask, int border, T value,
                  const u8* buffer) {
  if (src == nullptr || dst == nullptr || buffer == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (mask != 33 && mask != 55) return -33;
  if (border > 255) return -225;
  if (border != 240 && (border & 15) != 1 && (border & 15) != 6) return -225;
  if (mask == 33) {
    filter<3>(src, srcStep, dst, dstStep, roi, border, value);
  } else {
    filter<5>(src, srcStep, dst, dstStep, roi, border, value);
  }
  return 0;
}

std::uint64_t align32(std::uint64_t bytes) { return (bytes + 31) / 32 * 32; }

}  // namespace

int ippiFilterLaplaceBorderGetBufferSize(Size roi, int mask, int srcType, int dstType, int channels,
                                         int* bufferSize) {
  if (bufferSize == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (mask != 33 && mask != 55) return -33;
  if (srcType != 1 && srcType != 7 && srcType != 13) return -59;
  if (srcType != dstType) return -59;
  if (channels != 1 && channels != 3 && channels != 4) return -53;
  const std::uint64_t m = mask == 33 ? 3 : 5, w = static_cast<unsigned>(roi.width),
                      h = static_cast<unsigned>(roi.height);
  const std::uint64_t e = srcType == 1 ? 1 : srcType == 7 ? 2 : 4, f = srcType == 1 ? 2 : 4;
  const std::uint64_t n =
      m >= w || m >= h ? (m + w - 1) * (m + h - 1) : (std::max(w, h) + m - 1) * (m == 3 ? 3 : 6);
  const auto c = static_cast<std::uint64_t>(channels);
  const std::uint64_t expansion = align32(c * n * e);
  const std::uint64_t l = align32((w + (m == 3 ? 2 : 0)) * c * f);
  *bufferSize = static_cast<int>(static_cast<unsigned>(expansion + (m == 3 ? l : 12 * l) + 32));
  return 0;
}

int ippiFilterLaplaceBorder_8u_C1R(const u8* src, int srcStep, u8* dst, int dstStep, Size roi, int mask,
                                   int borderType, u8 borderValue, u8* buffer) {
  return filterLaplace(src, srcStep, dst, dstStep, roi, mask, borderType, borderValue, buffer);
}
int ippiFilterLaplaceBorder_16s_C1R(const s16* src, int srcStep, s16* dst, int dstStep, Size roi, int mask,
                                    int borderType, s16 borderValue, u8* buffer) {
  return filterLaplace(src, srcStep, dst, dstStep, roi, mask, borderType, borderValue, buffer);
}
int ippiFilterLaplaceBorder_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi,
                                    int mask, int borderType, float borderValue, u8* buffer) {
  return filterLaplace(src, srcStep, dst, dstStep, roi, mask, borderType, borderValue, buffer);
}

}  // namespace Zorvan::Reference
