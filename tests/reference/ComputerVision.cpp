#include <algorithm>
#include <deque>

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

/// Breadth first: tests the four neighbours of each pixel of the area.
template <class T>
int floodFill(T* image, int step, Size roi, Point seed, T newValue, _IppiConnectedComp* region,
              const u8* buffer) {
  if (image == nullptr || region == nullptr || buffer == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (step < std::int64_t{roi.width} * static_cast<int>(sizeof(T))) return -16;
  if (step % static_cast<int>(sizeof(T)) != 0) return -108;
  if (seed.x < 0 || seed.x >= roi.width || seed.y < 0 || seed.y >= roi.height) return -11;
  const T old = get(image, step, seed.y, seed.x);
  if (old == newValue) return 0;

  int area = 0, minX = seed.x, maxX = seed.x, minY = seed.y, maxY = seed.y;
  std::deque<Point> pending;
  const auto fill = [&](int x, int y) {
    put(image, step, y, x, newValue);
    ++area;
    minX = std::min(minX, x), maxX = std::max(maxX, x), minY = std::min(minY, y), maxY = std::max(maxY, y);
    pending.push_back({x, y});
  };
  fill(seed.x, seed.y);
  while (!pending.empty()) {
    const Point p = pending.front();
    pending.pop_front();
    for (const Point next : {Point{p.x - 1, p.y}, {p.x + 1, p.y}, {p.x, p.y - 1}, {p.x, p.y + 1}}) {
      if (next.x < 0 || next.x >= roi.width || next.y < 0 || next.y >= roi.height) continue;
      if (get(image, step, next.y, next.x) == old) fill(next.x, next.y);
    }
  }
  region->area = area;
  region->value[0] = static_cast<double>(newValue);
  region->value[1] = region->value[2] = 0;
  region->rect = {minX, minY, maxX - minX + 1, maxY - minY + 1};
  return 0;
}

}  // namespace

int ippiFloodFillGetSize(Size roi, int* bufferSize) {
  if (bufferSize == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  const std::uint64_t bytes =
      std::uint64_t{6} * static_cast<std::uint64_t>(roi.width) * static_cast<std::uint64_t>(roi.height) + 32;
  *bufferSize = static_cast<int>(static_cast<unsigned>(bytes));
  return 0;
}

int ippiFloodFill_4Con_8u_C1IR(u8* image, int step, Size roi, Point seed, u8 newValue,
                               _IppiConnectedComp* region, u8* buffer) {
  return floodFill(image, step, roi, seed, newValue, region, buffer);
}
int ippiFloodFill_4Con_16u_C1IR(u16* image, int step, Size roi, Point seed, u16 newValue,
                                _IppiConnectedComp* region, u8* buffer) {
  return floodFill(image, step, roi, seed, newValue, region, buffer);
}
int ippiFloodFill_4Con_32s_C1IR(int* image, int step, Size roi, Point seed, int newValue,
                                _IppiConnectedComp* region, u8* buffer) {
  return floodFill(image, step, roi, seed, newValue, region, buffer);
}
int ippiFloodFill_4Con_32f_C1IR(float* image, int step, Size roi, Point seed, float newValue,
                                _IppiConnectedComp* region, u8* buffer) {
  return floodFill(image, step, roi, seed, newValue, region, buffer);
}

}  // namespace Zorvan::Reference
