#pragma once

#include <string>
#include <vector>

#include "zorvan/ipp.h"

namespace Examples {

/// A decoded picture: rows of `width` pixels without gaps, as in the library's images.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<Zorvan::u8> pixels;
};

/// Reads an 8-bit grey PNG. Throws std::runtime_error for everything else: no file, no PNG, damaged or cut
/// off, colour, alpha, other bit depths. The text contains the file's name and the reason.
Picture readPng(const std::string& path);

/// Writes an image as an 8-bit grey PNG. Throws std::runtime_error if the file cannot be written in full.
void writePng(const std::string& path, const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& image);

}  // namespace Examples
