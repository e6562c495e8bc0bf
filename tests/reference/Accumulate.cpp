#include "tests/reference/Accumulate.h"

#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T>
int addSelected(const T* src, int srcStep, const u8* mask, int maskStep, float* srcDst, int srcDstStep,
                Size roi) {
  return accumulate(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi,
                    [=](int r, int c, float pixel, bool selected, float before) {
                      if (selected) put(srcDst, srcDstStep, r, c, before + pixel);
                    });
}

}  // namespace

int ippiAdd_8u32f_C1IMR(const u8* src, int srcStep, const u8* mask, int maskStep, float* srcDst,
                        int srcDstStep, Size roi) {
  return addSelected(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
}
int ippiAdd_16u32f_C1IMR(const u16* src, int srcStep, const u8* mask, int maskStep, float* srcDst,
                         int srcDstStep, Size roi) {
  return addSelected(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
}
int ippiAdd_32f_C1IMR(const float* src, int srcStep, const u8* mask, int maskStep, float* srcDst,
                      int srcDstStep, Size roi) {
  return addSelected(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Reference
