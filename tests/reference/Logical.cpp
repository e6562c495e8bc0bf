#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

int complement(const u8* src, int srcStep, u8* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return -8;
  if (srcStep < 1 || dstStep < 1) return -16;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) put(dst, dstStep, r, c, u8(get(src, srcStep, r, c) ^ 255));
  }
  return 0;
}

template <class Combine>
int combine(const u8* src1, int src1Step, const u8* src2, int src2Step, u8* dst, int dstStep, Size roi,
            Combine combined) {
  if (src1 == nullptr || src2 == nullptr || dst == nullptr) return -8;
  if (src1Step < 1 || src2Step < 1 || dstStep < 1) return -16;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      put(dst, dstStep, r, c, u8(combined(get(src1, src1Step, r, c), get(src2, src2Step, r, c))));
    }
  }
  return 0;
}

constexpr auto bitXor = [](u8 a, u8 b) { return a ^ b; };
constexpr auto bitOr = [](u8 a, u8 b) { return a | b; };
constexpr auto bitAnd = [](u8 a, u8 b) { return a & b; };

}  // namespace

int ippiNot_8u_C1IR(u8* srcDst, int step, Size roi) { return complement(srcDst, step, srcDst, step, roi); }
int ippiNot_8u_C1R(const u8* src, int srcStep, u8* dst, int dstStep, Size roi) {
  return complement(src, srcStep, dst, dstStep, roi);
}

#define COMBINE(name, combined)                                                                             \
  int name##IR(const u8* src, int srcStep, u8* srcDst, int step, Size roi) {                                \
    return combine(src, srcStep, srcDst, step, srcDst, step, roi, combined);                                \
  }                                                                                                         \
  int name##R(const u8* src1, int src1Step, const u8* src2, int src2Step, u8* dst, int dstStep, Size roi) { \
    return combine(src1, src1Step, src2, src2Step, dst, dstStep, roi, combined);                            \
  }
COMBINE(ippiXor_8u_C1, bitXor)
COMBINE(ippiOr_8u_C1, bitOr)
COMBINE(ippiAnd_8u_C1, bitAnd)
#undef COMBINE

}  // namespace Zorvan::Reference
