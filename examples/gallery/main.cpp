// Runs every exported operation in each of its forms, and writes gallery.tsv and its pictures into the
// current folder.

#include <exception>

#include "gallery.h"

namespace Gallery {
namespace {

template <class T>
IppIMemory<u8> stretched(const IppIMemory<T>& image) {
  const auto pixels = image.buffer();
  const int count = image.width() * image.height();
  double low = pixels[0], high = pixels[0];
  for (int i = 0; i < count; ++i) {
    low = std::min(low, static_cast<double>(pixels[i]));
    high = std::max(high, static_cast<double>(pixels[i]));
  }
  IppIMemory<u8> bytes(image.size());
  const double scale = high > low ? 255 / (high - low) : 0;
  for (int i = 0; i < count; ++i) bytes.buffer()[i] = static_cast<u8>((pixels[i] - low) * scale + 0.5);
  return bytes;
}

}  // namespace

IppIMemory<u8> look(const IppIMemory<u8>& image) { return image; }
IppIMemory<u8> look(const IppIMemory<float>& image) { return stretched(image); }
IppIMemory<u8> look(const IppIMemory<int>& image) { return stretched(image); }

}  // namespace Gallery

int main() try {
  Gallery::Rows rows;
  Gallery::showInitializer(rows);
  Gallery::showArithmetic(rows);
  Gallery::showLogical(rows);
  Gallery::showComparer(rows);
  Gallery::showStatistic(rows);
  Gallery::showMorphology(rows);
  Gallery::showFiltering(rows);
  Gallery::showComputerVision(rows);
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
