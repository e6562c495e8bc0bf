#include "tests/reference/Compare.h"

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T, class Holds>
int compare(const T* src, int srcStep, T value, u8* dst, int dstStep, Size roi, int comparison, Holds holds) {
  if (src == nullptr || dst == nullptr) return -8;
  if (srcStep < 1 || dstStep < 1) return -16;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (comparison < 0 || comparison > 4) return 0;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      put(dst, dstStep, r, c, u8(holds(get(src, srcStep, r, c), value, comparison) ? 255 : 0));
    }
  }
  return 0;
}

constexpr auto inOrder = [](auto x, auto value, int comparison) {
  switch (comparison) {
    case 0:
      return x < value;
    case 1:
      return x <= value;
    case 2:
      return x == value;
    case 3:
      return x >= value;
    default:
      return x > value;
  }
};

}  // namespace

int ippiCompareC_8u_C1R(const u8* src, int srcStep, u8 value, u8* dst, int dstStep, Size roi,
                        int comparison) {
  return compare(src, srcStep, value, dst, dstStep, roi, comparison, inOrder);
}
int ippiCompareC_16s_C1R(const s16* src, int srcStep, s16 value, u8* dst, int dstStep, Size roi,
                         int comparison) {
  return compare(src, srcStep, value, dst, dstStep, roi, comparison, inOrder);
}
int ippiCompareC_16u_C1R(const u16* src, int srcStep, u16 value, u8* dst, int dstStep, Size roi,
                         int comparison) {
  return compare(src, srcStep, value, dst, dstStep, roi, comparison, inOrder);
}
int ippiCompareC_32f_C1R(const float* src, int srcStep, float value, u8* dst, int dstStep, Size roi,
                         int comparison) {
  return compare(src, srcStep, value, dst, dstStep, roi, comparison, inOrder);
}

int compareWithNanAbove(const float* src, int srcStep, float value, u8* dst, int dstStep, Size roi,
                        int comparison) {
  return compare(src, srcStep, value, dst, dstStep, roi, comparison, [](float x, float constant, int code) {
    if (code == 3) return !(x < constant);
    if (code == 4) return !(x <= constant);
    return inOrder(x, constant, code);
  });
}

}  // namespace Zorvan::Reference
