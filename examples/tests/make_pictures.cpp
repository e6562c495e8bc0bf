// Writes small PNGs, valid and damaged ones, into a folder.

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "text_file.h"

namespace {

struct Format {
  int width = 64;
  int height = 48;
  int depth = 8;
  int colour = PNG_COLOR_TYPE_GRAY;
  int interlace = PNG_INTERLACE_NONE;
};

/// Pixel bytes that compress badly, so that a file can be cut in the middle of them. With a seed of 0 each is
/// the column plus five times the row, which the test of the reader expects.
std::vector<png_byte> bytesOf(const Format& format, std::size_t rowBytes, unsigned seed) {
  std::vector<png_byte> bytes(rowBytes * static_cast<std::size_t>(format.height));
  unsigned state = seed;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    state = state * 1664525 + 1013904223;
    bytes[i] = static_cast<png_byte>(seed == 0 ? i % rowBytes + 5 * (i / rowBytes) : state >> 24);
  }
  return bytes;
}

void writePixels(const std::string& path, const Format& format,
                 const std::function<std::vector<png_byte>(std::size_t rowBytes)>& bytesFor) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) throw std::runtime_error("cannot write " + path);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  if (setjmp(png_jmpbuf(png)) != 0) std::abort();
  png_init_io(png, file);
  png_set_IHDR(png, info, static_cast<png_uint_32>(format.width), static_cast<png_uint_32>(format.height),
               format.depth, format.colour, format.interlace, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  const png_color palette[256] = {};
  if (format.colour == PNG_COLOR_TYPE_PALETTE) png_set_PLTE(png, info, palette, 256);
  png_write_info(png, info);
  const std::size_t rowBytes = png_get_rowbytes(png, info);
  std::vector<png_byte> bytes = bytesFor(rowBytes);
  std::vector<png_bytep> rows;
  for (int r = 0; r < format.height; ++r)
    rows.push_back(bytes.data() + static_cast<std::size_t>(r) * rowBytes);
  png_set_interlace_handling(png);
  png_write_image(png, rows.data());
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  std::fclose(file);
}

void write(const std::string& path, const Format& format, unsigned seed = 1) {
  writePixels(path, format, [&](std::size_t rowBytes) { return bytesOf(format, rowBytes, seed); });
}

/// A grid of `across` times `down` bright spots on a background of 40. The brightness of a spot falls by the
/// share `softness` to its edge: with 0 it is a flat disc.
void writeSpots(const std::string& path, int across, int down, double radius, double height,
                double softness) {
  Format format;
  format.width = 320;
  format.height = 240;
  writePixels(path, format, [&](std::size_t rowBytes) {
    std::vector<png_byte> bytes(rowBytes * static_cast<std::size_t>(format.height), 40);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const double cellWidth = format.width / std::max(across, 1),
                   cellHeight = format.height / std::max(down, 1);
      const double x = std::fmod(static_cast<double>(i % rowBytes), cellWidth) - cellWidth / 2;
      const double y = std::fmod(static_cast<double>(i / rowBytes), cellHeight) - cellHeight / 2;
      const double distance = std::hypot(x, y);
      if (across == 0 || distance > radius) continue;
      bytes[i] = static_cast<png_byte>(40 + height * (1 - softness * distance / radius));
    }
    return bytes;
  });
}

/// A file whose header announces 20000 by 20000 pixels, with a correct check sum, but without these pixels.
std::string hugeHeader(const std::string& whole) {
  std::string bytes = whole.substr(0, 33);
  const char extent[8] = {0, 0, 0x4e, 0x20, 0, 0, 0x4e, 0x20};
  bytes.replace(16, 8, extent, 8);
  // The check sum covers the chunk's name and data: a CRC with the format's reflected polynomial.
  unsigned sum = 0xFFFFFFFFu;
  for (std::size_t i = 12; i < 29; ++i) {
    sum ^= static_cast<unsigned char>(bytes[i]);
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320u : 0);
  }
  for (int i = 0; i < 4; ++i) bytes[29 + i] = static_cast<char>(~sum >> (24 - 8 * i));
  return bytes + whole.substr(33);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) return 2;
  const std::string folder = std::string(arguments[1]) + "/";
  std::filesystem::create_directories(folder);

  Format grey, interlaced, onePixel, colour, alpha, palette, sixteen, oneBit;
  interlaced.interlace = PNG_INTERLACE_ADAM7;
  onePixel.width = onePixel.height = 1;
  colour.colour = PNG_COLOR_TYPE_RGB;
  alpha.colour = PNG_COLOR_TYPE_GRAY_ALPHA;
  palette.colour = PNG_COLOR_TYPE_PALETTE;
  sixteen.depth = 16;
  oneBit.depth = 1;
  write(folder + "grey.png", grey, 0);
  write(folder + "interlaced.png", interlaced, 0);
  write(folder + "one_pixel.png", onePixel);
  Format narrow;
  narrow.width = 1;
  narrow.height = 300;
  write(folder + "narrow.png", narrow);
  writeSpots(folder + "discs.png", 4, 3, 30, 24, 0);  // large, bright, and too faint for the defaults
  writeSpots(folder + "stars.png", 5, 4, 2.5, 200, 0.6);
  writeSpots(folder + "disc.png", 1, 1, 30, 120, 0);
  writeSpots(folder + "even.png", 0, 0, 1, 0, 0);
  write(folder + "colour.png", colour);
  write(folder + "alpha.png", alpha);
  write(folder + "palette.png", palette);
  write(folder + "sixteen_bit.png", sixteen);
  write(folder + "one_bit.png", oneBit);

  write(folder + "noise.png", grey, 7);
  write(folder + "noise_interlaced.png", interlaced, 7);
  const std::string whole = Examples::readText(folder + "noise.png");
  const std::string wholeInterlaced = Examples::readText(folder + "noise_interlaced.png");
  Examples::writeText(folder + "empty.png", "");
  Examples::writeText(folder + "text.png", "This is a text, although its name ends in .png.\n");
  Examples::writeText(folder + "signature_only.png", whole.substr(0, 8));
  Examples::writeText(folder + "cut_header.png", whole.substr(0, 20));
  Examples::writeText(folder + "cut_pixels.png", whole.substr(0, whole.size() / 2));
  Examples::writeText(folder + "cut_interlaced.png", wholeInterlaced.substr(0, wholeInterlaced.size() / 2));
  Examples::writeText(folder + "cut_end.png", whole.substr(0, whole.size() - 12));
  std::string broken = whole;
  broken[broken.size() / 2] = static_cast<char>(~broken[broken.size() / 2]);
  Examples::writeText(folder + "broken_pixels.png", broken);
  broken = whole;
  broken[20] = static_cast<char>(~broken[20]);
  Examples::writeText(folder + "broken_header.png", broken);
  Examples::writeText(folder + "huge.png", hugeHeader(whole));
  Examples::writeText(folder + "file-in-the-way", "A file where a folder is needed.\n");
}
