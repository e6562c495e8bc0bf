#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T>
int setMasked(T value, T* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  if (dst == nullptr || mask == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      if (get(mask, maskStep, r, c) != 0) put(dst, dstStep, r, c, value);
    }
  }
  return 0;
}

template <class T>
int copyMasked(const T* src, int srcStep, T* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  if (src == nullptr || dst == nullptr || mask == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      if (get(mask, maskStep, r, c) != 0) put(dst, dstStep, r, c, get(src, srcStep, r, c));
    }
  }
  return 0;
}

}  // namespace

int ippiSet_8u_C1MR(u8 value, u8* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked(value, dst, dstStep, roi, mask, maskStep);
}
int ippiSet_16u_C1MR(u16 value, u16* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked(value, dst, dstStep, roi, mask, maskStep);
}
int ippiSet_16s_C1MR(s16 value, s16* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked(value, dst, dstStep, roi, mask, maskStep);
}
int ippiSet_32s_C1MR(int value, int* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked(value, dst, dstStep, roi, mask, maskStep);
}
int ippiSet_32f_C1MR(float value, float* dst, int dstStep, Size roi, const u8* mask, int maskStep) {
  return setMasked(value, dst, dstStep, roi, mask, maskStep);
}

int ippiCopy_8u_C1MR(const u8* src, int srcStep, u8* dst, int dstStep, Size roi, const u8* mask,
                     int maskStep) {
  return copyMasked(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
int ippiCopy_16u_C1MR(const u16* src, int srcStep, u16* dst, int dstStep, Size roi, const u8* mask,
                      int maskStep) {
  return copyMasked(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
int ippiCopy_16s_C1MR(const s16* src, int srcStep, s16* dst, int dstStep, Size roi, const u8* mask,
                      int maskStep) {
  return copyMasked(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
int ippiCopy_32s_C1MR(const int* src, int srcStep, int* dst, int dstStep, Size roi, const u8* mask,
                      int maskStep) {
  return copyMasked(src, srcStep, dst, dstStep, roi, mask, maskStep);
}
int ippiCopy_32f_C1MR(const float* src, int srcStep, float* dst, int dstStep, Size roi, const u8* mask,
                      int maskStep) {
  return copyMasked(src, srcStep, dst, dstStep, roi, mask, maskStep);
}

}  // namespace Zorvan::Reference
