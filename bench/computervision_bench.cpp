#include <vector>

#include "bench/families.h"
#include "bench/plain_computervision.h"
#include "zorvan/operations/computervision/ComputerVision.h"

namespace Zorvan::Bench {

namespace {

using Ipp::Image::ComputerVision;
using Ipp::Image::IppIMemory;

/// The pixels of the area have one of two values. Each fill replaces one by the other. The pixels around the
/// area have a third value.
template <class T>
T otherValue(T value) {
  return value == T{1} ? T{2} : T{1};
}

/// An area that contains the first pixel.
template <class T, class Shape>
struct Area : Operand<T, Access::update> {
  static void prepare(T* pixels, Size size, std::uint32_t seed) {
    const Shape shape(size, seed);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) *pixels++ = shape.contains(x, y) ? T{1} : T{9};
    }
  }
};

struct Constant {
  Constant(Size, std::uint32_t) {}
  bool contains(int, int) const { return true; }
};

/// Areas with a diameter of some tens of pixels, connected by thin lines.
struct Blobs {
  Blobs(Size size, std::uint32_t seed) : width(size.width), mask(static_cast<std::size_t>(pixelsOf(size))) {
    makeBlobMask(mask.data(), size, seed);
  }
  bool contains(int x, int y) const {
    return x == 0 || y % 32 == 0 ||
           mask[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + x] != 0;
  }
  int width;
  std::vector<u8> mask;
};

/// Every second row, connected at alternating ends.
struct Serpentine {
  Serpentine(Size size, std::uint32_t) : width(size.width) {}
  bool contains(int x, int y) const { return y % 2 == 0 || x == (y % 4 == 1 ? width - 1 : 0); }
  int width;
};

/// Every second column, connected by the first row.
struct Comb {
  Comb(Size, std::uint32_t) {}
  bool contains(int x, int y) const { return y == 0 || x % 2 == 0; }
};

template <class T, class Shape>
void addFill(Suite& suite, const char* name, const char* pixels) {
  suite.add<Area<T, Shape>>(
      name, pixels,
      [](IppIMemory<T>& image, Rect rect) {
        ComputerVision::FloodFill(image, {0, 0}, otherValue(*image.ToIppStream(rect)), rect);
      },
      [](T* image, Size size) { Plain::floodFill(image, otherValue(*image), size); });
}

template <class T>
void addFills(Suite& suite, const char* pixels) {
  addFill<T, Constant>(suite, "flood_constant", pixels);
  addFill<T, Blobs>(suite, "flood_blobs", pixels);
  addFill<T, Serpentine>(suite, "flood_serpentine", pixels);
  addFill<T, Comb>(suite, "flood_comb", pixels);
}

}  // namespace

void addComputerVision(Suite& suite) {
  addFills<u8>(suite, "u8");
  addFills<float>(suite, "f32");
}

}  // namespace Zorvan::Bench
