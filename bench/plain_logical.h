#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

/// The most obvious loops, left to the compiler and this machine's instruction set.
namespace Zorvan::Bench::Plain {

void bitAnd(const u8* src1, const u8* src2, u8* dst, Size size);
void bitOr(const u8* src1, const u8* src2, u8* dst, Size size);
void bitXor(const u8* src1, const u8* src2, u8* dst, Size size);
void bitNot(const u8* src, u8* dst, Size size);

void bitAndInPlace(const u8* src, u8* srcDst, Size size);
void bitNotInPlace(u8* srcDst, Size size);

/// 255 where the pixel is greater than `value`, 0 elsewhere.
void compareGreater(const float* src, u8* dst, float value, Size size);
void compareLess(const float* src, u8* dst, float value, Size size);

}  // namespace Zorvan::Bench::Plain
