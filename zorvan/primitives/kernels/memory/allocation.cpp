// The entries that allocate images and buffers.

#include <cstdint>

#include "zorvan/foundation/Allocation.h"
#include "zorvan/foundation/Wrapping.h"
#include "zorvan/primitives/frame/Routines.h"

namespace Zorvan::Primitives {

namespace {

constexpr std::uint64_t largestBytes = 0x7FFFFFFF;

// Pixel types differ in the size of their elements only. Every failure returns null, with a step of 0 unless
// the whole block is too large or the heap is exhausted. Callers test the pointer, not the step.
template <int elementBytes>
void* imageMalloc(int widthPixels, int heightPixels, int* pStepBytes) {
  if (pStepBytes == nullptr) return nullptr;
  *pStepBytes = 0;
  if (widthPixels <= 0 || heightPixels <= 0) return nullptr;

  const std::int64_t rowBytes = std::int64_t{widthPixels} * elementBytes;
  if (static_cast<std::uint64_t>(rowBytes) > largestBytes) return nullptr;

  // Less than the width only if the sum has wrapped.
  const std::int32_t step = wrappedSum(static_cast<std::int32_t>(rowBytes), allocationAlignmentBytes - 1) &
                            -allocationAlignmentBytes;
  if (step < widthPixels) return nullptr;
  *pStepBytes = step;

  const std::int64_t total = std::int64_t{step} * heightPixels;
  if (static_cast<std::uint64_t>(total) > largestBytes) return nullptr;
  return coreMalloc(static_cast<int>(total));
}

}  // namespace

void CommonRoutines::ippiFree(void* ptr) { coreFree(ptr); }

u8* CommonRoutines::ippiMalloc_8u_C1(int widthPixels, int heightPixels, int* pStepBytes) {
  return static_cast<u8*>(imageMalloc<1>(widthPixels, heightPixels, pStepBytes));
}

u16* CommonRoutines::ippiMalloc_16u_C1(int widthPixels, int heightPixels, int* pStepBytes) {
  return static_cast<u16*>(imageMalloc<2>(widthPixels, heightPixels, pStepBytes));
}

s16* CommonRoutines::ippiMalloc_16s_C1(int widthPixels, int heightPixels, int* pStepBytes) {
  return static_cast<s16*>(imageMalloc<2>(widthPixels, heightPixels, pStepBytes));
}

int* CommonRoutines::ippiMalloc_32s_C1(int widthPixels, int heightPixels, int* pStepBytes) {
  return static_cast<int*>(imageMalloc<4>(widthPixels, heightPixels, pStepBytes));
}

float* CommonRoutines::ippiMalloc_32f_C1(int widthPixels, int heightPixels, int* pStepBytes) {
  return static_cast<float*>(imageMalloc<4>(widthPixels, heightPixels, pStepBytes));
}

void CommonRoutines::ippsFree(void* ptr) { coreFree(ptr); }

float* CommonRoutines::ippsMalloc_32f(int length) {
  if (length <= 0) return nullptr;
  const std::int64_t bytes = std::int64_t{length} * 4;
  if (static_cast<std::uint64_t>(bytes) > largestBytes) return nullptr;
  return static_cast<float*>(coreMalloc(static_cast<int>(bytes)));
}

u8* CommonRoutines::ippsMalloc_8u(int length) {
  return length <= 0 ? nullptr : static_cast<u8*>(coreMalloc(length));
}

}  // namespace Zorvan::Primitives
