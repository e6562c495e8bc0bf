#pragma once

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace Examples {

/// The bytes of a file, none if it cannot be read.
inline std::string readText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Writes a file. Throws std::runtime_error if it cannot be written in full.
inline void writeText(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error(path + ": cannot be written");
}

}  // namespace Examples
