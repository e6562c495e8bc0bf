#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T>
int copy(const T* src, int srcStep, T* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) put(dst, dstStep, r, c, get(src, srcStep, r, c));
  }
  return 0;
}

}  // namespace

int ippiCopy_8u_C1R(const u8* src, int srcStep, u8* dst, int dstStep, Size roi) {
  return copy(src, srcStep, dst, dstStep, roi);
}
int ippiCopy_16u_C1R(const u16* src, int srcStep, u16* dst, int dstStep, Size roi) {
  return copy(src, srcStep, dst, dstStep, roi);
}
int ippiCopy_16s_C1R(const s16* src, int srcStep, s16* dst, int dstStep, Size roi) {
  return copy(src, srcStep, dst, dstStep, roi);
}
int ippiCopy_32s_C1R(const int* src, int srcStep, int* dst, int dstStep, Size roi) {
  return copy(src, srcStep, dst, dstStep, roi);
}
int ippiCopy_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return copy(reinterpret_cast<const int*>(src), srcStep, reinterpret_cast<int*>(dst), dstStep, roi);
}

}  // namespace Zorvan::Reference
