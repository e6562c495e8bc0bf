// The reader and the writer keep every pixel.

#include "png_file.h"

#include <gtest/gtest.h>

#include <string>

#include "folder.h"
#include "text_file.h"

namespace {

using Zorvan::u8;
using Zorvan::Ipp::Image::IppIMemory;

bool isRamp(const Examples::Picture& picture) {
  if (picture.width != 64 || picture.height != 48) return false;
  for (int r = 0; r < 48; ++r) {
    for (int c = 0; c < 64; ++c) {
      if (picture.pixels[static_cast<std::size_t>(r * 64 + c)] != static_cast<u8>(c + 5 * r)) return false;
    }
  }
  return true;
}

TEST(Png, IsReadAsItIs) {
  EXPECT_TRUE(isRamp(Examples::readPng(folder + "/grey.png")));
  EXPECT_TRUE(isRamp(Examples::readPng(folder + "/interlaced.png")));
}

TEST(Png, IsWrittenAndReadAgain) {
  Examples::Picture odd{7, 3, {}};
  for (int i = 0; i < 21; ++i) odd.pixels.push_back(static_cast<u8>(i * 12));
  Examples::writePng(folder + "/written.png", IppIMemory<u8>::CreateContainer(odd.pixels.data(), 7, 3));
  const Examples::Picture back = Examples::readPng(folder + "/written.png");
  EXPECT_TRUE(back.width == 7 && back.height == 3 && back.pixels == odd.pixels);

  // The second byte of the compressed data contains the level: 2 means 6, 3 means more.
  const std::string bytes = Examples::readText(folder + "/written.png");
  const std::size_t data = bytes.find("IDAT");
  EXPECT_TRUE(data != std::string::npos && static_cast<unsigned char>(bytes.at(data + 5)) >> 6 == 2);
}

}  // namespace
