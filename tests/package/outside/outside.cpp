// A user of the library: fills an image, copies a region of it, and catches a failure.

#include <cstdio>
#include <cstring>

#include "zorvan/ipp.h"

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::printf("failed: %s\n", what);
  ++failures;
}

}  // namespace

int main() {
  using Zorvan::Ipp::IppException;
  using Zorvan::Ipp::Image::Initializer;
  using Zorvan::Ipp::Image::IppIMemory;

  IppIMemory<float> source = Initializer::Allocate<float>(8, 4);
  Initializer::Fill(source, 1.5f, source.SizeToRoi());

  IppIMemory<float> target = Initializer::Allocate<float>(8, 4);
  Initializer::Fill(target, 0.0f, target.SizeToRoi());
  Initializer::Copy(source, target, Zorvan::Rect{0, 0, 3, 2});
  float sum = 0;
  for (int pixel = 0; pixel < 8 * 4; ++pixel) sum += target.buffer()[pixel];
  expect(sum == 9, "six pixels of 1.5 have arrived");
  expect(target.buffer()[8 + 2] == 1.5f && target.buffer()[8 + 3] == 0, "the region ends in column 3");

  bool refused = false;
  try {
    Initializer::Fill(target, 1.0f, Zorvan::Rect{0, 0, 9, 1});
  } catch (const IppException& exception) {
    refused = std::strstr(exception.what(), "error Code : 29") != nullptr;
  }
  expect(refused, "a region that is wider than the image throws IppException 29");

  if (failures == 0) std::puts("outside: the library answers as expected");
  return failures;
}
