#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T>
int set(T value, T* dst, int dstStep, Size roi) {
  if (dst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) put(dst, dstStep, r, c, value);
  }
  return 0;
}

}  // namespace

int ippiSet_8u_C1R(u8 value, u8* dst, int dstStep, Size roi) { return set(value, dst, dstStep, roi); }
int ippiSet_16u_C1R(u16 value, u16* dst, int dstStep, Size roi) { return set(value, dst, dstStep, roi); }
int ippiSet_16s_C1R(s16 value, s16* dst, int dstStep, Size roi) { return set(value, dst, dstStep, roi); }
int ippiSet_32s_C1R(int value, int* dst, int dstStep, Size roi) { return set(value, dst, dstStep, roi); }
int ippiSet_32f_C1R(float value, float* dst, int dstStep, Size roi) { return set(value, dst, dstStep, roi); }

}  // namespace Zorvan::Reference
