#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {

int ippiConvert_32s8u_C1R(const int* src, int srcStep, u8* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (srcStep < 1 || dstStep < 1) return -16;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      int value = get(src, srcStep, r, c);
      if (value < 0) value = 0;
      if (value > 255) value = 255;
      put(dst, dstStep, r, c, static_cast<u8>(value));
    }
  }
  return 0;
}

int ippiConvert_32s32f_C1R(const int* src, int srcStep, float* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      put(dst, dstStep, r, c, static_cast<float>(get(src, srcStep, r, c)));
    }
  }
  return 0;
}

}  // namespace Zorvan::Reference
