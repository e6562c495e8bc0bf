#include "bench/plain_logical.h"

#include <cstdint>

// The pointers are restrict, so that the compiler can vectorise the loops without tests for overlap.

namespace Zorvan::Bench::Plain {
namespace {

std::int64_t countOf(Size size) { return std::int64_t{size.width} * size.height; }

}  // namespace

void bitAnd(const u8* __restrict src1, const u8* __restrict src2, u8* __restrict dst, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) dst[i] = src1[i] & src2[i];
}

void bitOr(const u8* __restrict src1, const u8* __restrict src2, u8* __restrict dst, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) dst[i] = src1[i] | src2[i];
}

void bitXor(const u8* __restrict src1, const u8* __restrict src2, u8* __restrict dst, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) dst[i] = src1[i] ^ src2[i];
}

void bitNot(const u8* __restrict src, u8* __restrict dst, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) dst[i] = src[i] ^ 255;
}

void bitAndInPlace(const u8* __restrict src, u8* __restrict srcDst, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) srcDst[i] &= src[i];
}

void bitNotInPlace(u8* __restrict srcDst, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) srcDst[i] ^= 255;
}

void compareGreater(const float* __restrict src, u8* __restrict dst, float value, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) dst[i] = src[i] > value ? 255 : 0;
}

void compareLess(const float* __restrict src, u8* __restrict dst, float value, Size size) {
  for (std::int64_t i = 0; i < countOf(size); ++i) dst[i] = src[i] < value ? 255 : 0;
}

}  // namespace Zorvan::Bench::Plain
