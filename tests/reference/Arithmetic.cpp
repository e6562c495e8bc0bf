#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"
#include "tests/reference/Scaling.h"

namespace Zorvan::Reference {
namespace {

/// dst = operation(src1, src2), pixel by pixel.
template <class T, class Operation>
int combine(const T* src1, int src1Step, const T* src2, int src2Step, T* dst, int dstStep, Size roi,
            Operation operation) {
  if (src1 == nullptr || src2 == nullptr || dst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      put(dst, dstStep, r, c, operation(get(src1, src1Step, r, c), get(src2, src2Step, r, c)));
    }
  }
  return 0;
}

template <class T>
auto scaledSum(int f) {
  return [f](T a, T b) { return scaled<T>(std::int64_t{a} + b, f); };
}
/// Unsigned differences below 0 are 0 before they are scaled.
template <class T>
auto scaledDifference(int f) {
  return [f](T a, T b) {
    std::int64_t s = std::int64_t{b} - a;
    if (std::numeric_limits<T>::min() == 0 && s < 0) s = 0;
    return scaled<T>(s, f);
  };
}

template <class T>
auto scaledProduct(int f) {
  return [f](T a, T b) { return scaled<T>(std::int64_t{a} * b, f); };
}

float sum(float a, float b) { return a + b; }
float difference(float a, float b) { return b - a; }
float product(float a, float b) { return a * b; }

template <class T>
int addConstant(T value, T* srcDst, int srcDstStep, Size roi, int f) {
  if (srcDst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      put(srcDst, srcDstStep, r, c, scaled<T>(std::int64_t{get(srcDst, srcDstStep, r, c)} + value, f));
    }
  }
  return 0;
}

}  // namespace

#define SCALED(name, operation, T)                                                                           \
  int name##_C1RSfs(const T* src1, int src1Step, const T* src2, int src2Step, T* dst, int dstStep, Size roi, \
                    int f) {                                                                                 \
    return combine(src1, src1Step, src2, src2Step, dst, dstStep, roi, operation<T>(f));                      \
  }                                                                                                          \
  int name##_C1IRSfs(const T* src, int srcStep, T* srcDst, int srcDstStep, Size roi, int f) {                \
    return combine<T>(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi, operation<T>(f));           \
  }
SCALED(ippiAdd_8u, scaledSum, u8)
SCALED(ippiAdd_16u, scaledSum, u16)
SCALED(ippiAdd_16s, scaledSum, s16)
SCALED(ippiSub_8u, scaledDifference, u8)
SCALED(ippiSub_16u, scaledDifference, u16)
SCALED(ippiSub_16s, scaledDifference, s16)
SCALED(ippiMul_8u, scaledProduct, u8)
SCALED(ippiMul_16u, scaledProduct, u16)
SCALED(ippiMul_16s, scaledProduct, s16)
#undef SCALED

#define FLOAT(name, operation)                                                                              \
  int name##_C1R(const float* src1, int src1Step, const float* src2, int src2Step, float* dst, int dstStep, \
                 Size roi) {                                                                                \
    return combine(src1, src1Step, src2, src2Step, dst, dstStep, roi, operation);                           \
  }                                                                                                         \
  int name##_C1IR(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {                 \
    return combine<float>(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi, operation);            \
  }
FLOAT(ippiAdd_32f, sum)
FLOAT(ippiSub_32f, difference)
FLOAT(ippiMul_32f, product)
#undef FLOAT

int ippiAddC_8u_C1IRSfs(u8 value, u8* srcDst, int srcDstStep, Size roi, int f) {
  return addConstant(value, srcDst, srcDstStep, roi, f);
}
int ippiAddC_16u_C1IRSfs(u16 value, u16* srcDst, int srcDstStep, Size roi, int f) {
  return addConstant(value, srcDst, srcDstStep, roi, f);
}
int ippiAddC_16s_C1IRSfs(s16 value, s16* srcDst, int srcDstStep, Size roi, int f) {
  return addConstant(value, srcDst, srcDstStep, roi, f);
}
int ippiAddC_32f_C1IR(float value, float* srcDst, int srcDstStep, Size roi) {
  if (srcDst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) put(srcDst, srcDstStep, r, c, get(srcDst, srcDstStep, r, c) + value);
  }
  return 0;
}

}  // namespace Zorvan::Reference
