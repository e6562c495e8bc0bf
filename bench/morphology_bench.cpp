#include <string>
#include <vector>

#include "bench/families.h"
#include "bench/plain_morphology.h"
#include "zorvan/operations/morphology/IppIMorphology.h"

namespace Zorvan::Bench {

namespace {

using Ipp::Image::IppIMemory;
using Ipp::Image::IppIMorphology;

template <class T>
std::vector<T> between(Size size) {
  return std::vector<T>(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
}

template <class T>
void addSquare(Suite& suite, const char* pixels, int side) {
  using Image = IppIMemory<T>;
  using M = IppIMorphology<T>;
  const auto add = [&](const std::string& operation, void (*ours)(Image&, Image&, Rect, Size), auto plain) {
    const std::string length = std::to_string(side);
    const std::string name = operation + length + 'x' + length;
    suite.add<Read<T>, Write<T>>(
        name.c_str(), pixels,
        [=](Image& src, Image& dst, Rect rect) {
          ours(src, dst, rect, Size{side, side});
        },
        [=](const T* src, T* dst, Size size) { plain(src, dst, side, size); });
  };
  add("dilate", &M::Dilate, Plain::dilate<T>);
  add("erode", &M::Erode, Plain::erode<T>);
  if (side > 5) return;
  add("open", &M::Open, [](const T* src, T* dst, int n, Size size) {
    auto eroded = between<T>(size);
    Plain::erode(src, eroded.data(), n, size);
    Plain::dilate(eroded.data(), dst, n, size);
  });
  add("close", &M::Close, [](const T* src, T* dst, int n, Size size) {
    auto dilated = between<T>(size);
    Plain::dilate(src, dilated.data(), n, size);
    Plain::erode(dilated.data(), dst, n, size);
  });
}

}  // namespace

void addMorphology(Suite& suite) {
  for (const int side : {3, 5, 7, 9}) {
    addSquare<u8>(suite, "u8", side);
    addSquare<float>(suite, "f32", side);
  }
}

}  // namespace Zorvan::Bench
