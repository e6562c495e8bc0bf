// A program for a debugger: images and buffers of each type, alive at a known line.

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "zorvan/ipp.h"

using namespace Zorvan::Ipp::Image;
using Zorvan::IppS::IppSMemory;

namespace {

struct Pair {
  IppIMemory<int> first;
  int second = 5;
};

template <class T>
void ramp(IppIMemory<T>& image, T first, T step) {
  const auto pixels = image.buffer();
  for (int i = 0; i < image.width() * image.height(); ++i)
    pixels[i] = static_cast<T>(first + static_cast<T>(i) * step);
}

// The debugger stops here.
void look() { asm volatile(""); }

template <class... Variables>
void keep(const Variables&...) {}

}  // namespace

int main() {
  IppIMemory<Zorvan::u8> bytes(6, 4);
  Initializer::Fill<Zorvan::u8>(bytes, 1, bytes.SizeToRoi());
  Initializer::Fill<Zorvan::u8>(bytes, 7, {1, 2, 3, 2});

  IppIMemory<Zorvan::u16> words(20, 5);
  ramp<Zorvan::u16>(words, 1000, 300);

  IppIMemory<Zorvan::s16> shorts(3, 2);
  ramp<Zorvan::s16>(shorts, -200, 100);

  IppIMemory<int> integers(2, 2);
  ramp(integers, -70000, 70000);

  IppIMemory<float> floats(4, 2);
  ramp(floats, -0.5f, 0.25f);
  floats.buffer()[2] = std::numeric_limits<float>::quiet_NaN();

  std::vector<double> memory = {1.5, 2.5, 3.5};
  IppIMemory<double> wrapped = IppIMemory<double>::CreateContainer(memory.data(), 3, 1);

  IppIMemory<Zorvan::u8> same;
  same = bytes;
  const IppIMemory<Zorvan::u8>& reference = bytes;
  const IppIMemory<Zorvan::u8>* pointer = &bytes;
  IppIMemory<float> empty;
  auto freed = IppIMemory<Zorvan::u8>::CreateContainer(reinterpret_cast<Zorvan::u8*>(16), 5, 5);

  IppSMemory<float> buffer(12);
  for (int i = 0; i < buffer.length(); ++i) buffer.buffer()[i] = static_cast<float>(i) / 2;
  IppSMemory<float> no_buffer;
  Pair pair;
  pair.first = integers;

  look();
  keep(bytes, words, shorts, integers, floats, wrapped, same, reference, *pointer, empty, freed, buffer,
       no_buffer, pair);
}
