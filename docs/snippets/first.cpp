// snippet
#include <iostream>

#include "zorvan/ipp.h"

int main() {
  using namespace Zorvan::Ipp::Image;
  IppIMemory<Zorvan::u8> image = Initializer::Allocate<Zorvan::u8>(6, 4);
  Initializer::Fill<Zorvan::u8>(image, 1, image.SizeToRoi());
  Initializer::Fill<Zorvan::u8>(image, 7, {1, 2, 3, 2});  // row 1, column 2; 3 wide, 2 high
  for (int pixel = 0; pixel < 24; ++pixel) {
    std::cout << int{image.buffer()[pixel]} << (pixel % 6 == 5 ? "\n" : " ");
  }
}
// end of snippet
