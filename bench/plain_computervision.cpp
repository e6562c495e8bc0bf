#include "bench/plain_computervision.h"

#include <vector>

#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Bench::Plain {

template <class T>
void floodFill(T* image, T value, Size size) {
  const T old = image[0];
  std::vector<int> waiting = {0};
  const auto look = [&](int at) {
    if (image[at] != old) return;
    image[at] = value;
    waiting.push_back(at);
  };
  image[0] = value;
  while (!waiting.empty()) {
    const int at = waiting.back();
    waiting.pop_back();
    const int x = at % size.width, y = at / size.width;
    if (x > 0) look(at - 1);
    if (x < size.width - 1) look(at + 1);
    if (y > 0) look(at - size.width);
    if (y < size.height - 1) look(at + size.width);
  }
}

template void floodFill<u8>(u8*, u8, Size);
template void floodFill<float>(float*, float, Size);

}  // namespace Zorvan::Bench::Plain
