#include "steps.h"

namespace Coins {

IppIMemory<u8> wrap(Examples::Picture& decoded) {
  return IppIMemory<u8>::CreateContainer(decoded.pixels.data(), decoded.width,
                                         decoded.height);
}

}  // namespace Coins
