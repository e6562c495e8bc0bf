// Passes if all pixels of two pictures are equal:
// same_picture <expected.png> <found.png>

#include <cstdio>
#include <exception>

#include "png_file.h"

int main(int argc, char** argv) try {
  if (argc != 3) return 2;
  const Examples::Picture expected = Examples::readPng(argv[1]),
                          found = Examples::readPng(argv[2]);
  if (expected.width != found.width || expected.height != found.height) {
    std::printf("%s is %d x %d and not %d x %d\n", argv[2], found.width,
                found.height, expected.width, expected.height);
    return 1;
  }
  for (std::size_t i = 0; i < expected.pixels.size(); ++i) {
    if (expected.pixels[i] == found.pixels[i]) continue;
    const auto width = static_cast<std::size_t>(expected.width);
    std::printf("%s has %d and not %d in column %zu of row %zu\n", argv[2],
                found.pixels[i], expected.pixels[i], i % width, i / width);
    return 1;
  }
  return 0;
} catch (const std::exception& failure) {
  std::printf("%s\n", failure.what());
  return 1;
}
